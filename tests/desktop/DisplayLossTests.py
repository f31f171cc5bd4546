"""The program at the end of its display."""

import os
import pathlib
import signal
import struct
import zlib

from desktop_case import DesktopCase, wait_for


def white_png(width, height):
    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))
    rows = (b"\0" + b"\xff" * width) * height
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class DisplayLoss(DesktopCase):
    def keep_screenshot(self):
        """There is no screen left."""

    def test_it_ends_without_a_crash_after_a_picture(self):
        self.session.copy(white_png(200, 60), "image/png")
        self.wait_for_row("SELECT id FROM clips WHERE kind = 'image'")
        server = next(service for service in self.session.services
                      if pathlib.Path(f"/proc/{service.pid}/comm").read_text().strip() == "Xvfb")
        program, self.program = self.program, None

        os.kill(server.pid, signal.SIGKILL)

        wait_for(lambda: not program.running(), what="the program to end")
        self.assertEqual(1, program.stop())
        self.assertIn("Brimquill: the X display is lost", program.error_lines())
