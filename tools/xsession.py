"""A desktop of one's own for a test or a demonstration.

`Session` starts an X server on a free display, a session bus and a window manager, with a home, configuration and data
directory made for it, and ends all of it for sure. Any number of them run side by side. Standard library only.

Run as a program, `xsession.py COMMAND...` runs a command on such a desktop and ends with its status.
"""

import json
import os
import pathlib
import re
import select
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import uuid

# Ten times and more of what a busy machine takes for any single step of a desktop.
PATIENCE = 30.0

# What programs in the session see of the environment outside it.
INHERITED = ("PATH", "TMPDIR", "TZ", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS")


class SessionError(Exception):
    """Something of the desktop did not come to be; the text says what."""


def wait_for(condition, timeout=PATIENCE, what="a condition"):
    """Calls `condition` until it gives something true and returns that; raises SessionError after `timeout` seconds."""
    deadline = time.monotonic() + timeout
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > deadline:
            raise SessionError(f"waited {timeout:g} s in vain for {what}")
        time.sleep(0.02)


class Program:
    """A running program: its own process group, its standard output and error collected in files."""

    def __init__(self, command, environment, folder, name, descriptors=()):
        self.name = name
        self.command = [str(part) for part in command]
        self.output_path = folder / f"{name}.out"
        self.error_path = folder / f"{name}.err"
        with open(self.output_path, "wb") as output, open(self.error_path, "wb") as error:
            # The kernel ends the program should this process be killed before it can do so itself.
            self.process = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", *self.command], env=environment,
                                            stdin=subprocess.DEVNULL, stdout=output, stderr=error,
                                            start_new_session=True, pass_fds=descriptors)

    @property
    def pid(self):
        return self.process.pid

    def running(self):
        return self.process.poll() is None

    def output(self):
        return self.output_path.read_text(errors="replace")

    def error_lines(self):
        """The complete lines that the program wrote to standard error so far."""
        return self.error_path.read_text(errors="replace").splitlines()

    def wait(self, timeout=PATIENCE):
        """Waits for the program to end by itself; its exit status, negative for a signal."""
        wait_for(lambda: not self.running(), timeout, f"the end of {self.name}")
        return self.process.returncode

    def stop(self, timeout=PATIENCE):
        """Asks the program to end, and kills what is left of its process group; its exit status."""
        if self.running():
            self.process.terminate()
            try:
                self.process.wait(timeout)
            except subprocess.TimeoutExpired:
                pass
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except (ProcessLookupError, PermissionError):
            pass
        return self.process.wait()


class Session:
    """One desktop, up when the constructor returns. Use it in a `with` block, or call `stop`."""

    def __init__(self, size="1600x1000", depth=24, window_manager=("openbox", "--sm-disable"), environment=None):
        """`size` in pixels; an empty `window_manager` gives bare X; `environment` is added for everything inside."""
        self.mark = uuid.uuid4().hex
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="brimquill-"))
        self.programs = []
        self.services = []
        self.environment = self._make_environment(environment or {})
        try:
            self._start_server(size, depth)
            self._start_bus()
            if window_manager:
                self._start_window_manager(window_manager)
        except BaseException:
            self.stop()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    # Starting

    def _make_environment(self, added):
        directories = {"HOME": "home", "XDG_CONFIG_HOME": "config", "XDG_DATA_HOME": "share",
                       "XDG_CACHE_HOME": "cache", "XDG_STATE_HOME": "state", "XDG_RUNTIME_DIR": "runtime",
                       "BRIMQUILL_DATA_DIR": "data"}
        environment = {name: os.environ[name] for name in INHERITED if name in os.environ}
        for name, directory in directories.items():
            path = self.folder / directory
            path.mkdir(mode=0o700)
            environment[name] = str(path)
        environment.update(LANG="C.UTF-8", BRIMQUILL_DEFAULTS_SUITE="brimquill.test", BRIMQUILL_TEST_SESSION=self.mark)
        environment.update(added)
        return environment

    def _start_service(self, name, command):
        """Starts a program that writes one line to a descriptor once it serves, and returns that line.

        `command` makes the command from the number of that descriptor.
        """
        reading, writing = os.pipe()
        with open(reading, "rb") as told:
            try:
                service = Program(command(writing), self.environment, self.folder, name, (writing,))
            finally:
                os.close(writing)
            self.services.append(service)
            ready, _, _ = select.select([told], [], [], PATIENCE)
            line = told.readline().decode().strip() if ready else ""
        if not line:
            raise SessionError(f"{name} did not start: {' '.join(service.error_lines()[-5:])}")
        return line

    def _start_server(self, size, depth):
        screen = f"{size}x{depth}"
        number = self._start_service("Xvfb", lambda told: [
            "Xvfb", "-displayfd", told, "-screen", "0", screen, "-noreset", "-nolisten", "tcp"])
        self.environment["DISPLAY"] = f":{number}"

    def _start_bus(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_service("dbus-daemon", lambda told: [
            "dbus-daemon", "--session", "--nofork", "--nopidfile", f"--print-address={told}"])

    def _start_window_manager(self, command):
        self.services.append(Program(command, self.environment, self.folder, "window-manager"))
        wait_for(lambda: "window id" in self.window_property("root", "_NET_SUPPORTING_WM_CHECK"), what="a window manager")
        # A manager that says it is there may still be taking over, and windows made meanwhile can stay unmapped for ever.
        if not any(self._manages_a_probe(patience) for patience in (0.5, 1, 2, 4, 8, 16)):
            raise SessionError("the window manager maps no windows")

    def _manages_a_probe(self, patience):
        probe = Program(["xev", "-name", "probe", "-event", "property"], self.environment, self.folder, "probe")
        try:
            wait_for(lambda: self._managed("probe"), patience, "the probe")
            return True
        except SessionError:
            return False
        finally:
            probe.stop()
            wait_for(lambda: not self.client_windows(), what="the probe to go")

    def _managed(self, name):
        found = self.windows(name=name)
        return found and found[0] in self.client_windows()

    # Ending

    def stop(self):
        """Ends every program of the session, whatever became of it, and removes its folder. Safe to call twice."""
        for program in reversed(self.programs + self.services):
            program.stop(timeout=2)
        self.programs, self.services = [], []
        wait_for(lambda: not self._kill_marked(), what="the end of the session's processes")
        shutil.rmtree(self.folder, ignore_errors=True)

    def _kill_marked(self):
        """Kills what left its process group, such as services that the bus started; whether there was any.

        What runs in the session carries its mark in its environment, which is empty once a process has ended.
        """
        mark = f"BRIMQUILL_TEST_SESSION={self.mark}".encode()
        found = False
        for entry in pathlib.Path("/proc").iterdir():
            try:
                if entry.name.isdigit() and mark in (entry / "environ").read_bytes().split(b"\0"):
                    found = True
                    os.kill(int(entry.name), signal.SIGKILL)
            except OSError:
                continue
        return found

    # Programs and tools

    def start(self, *command, name=None, environment=None):
        """Starts a program in the session; it is ended with it. `name` tells its files apart."""
        name = name or f"{len(self.programs)}-{pathlib.Path(command[0]).name}"
        program = Program(command, {**self.environment, **(environment or {})}, self.folder, name)
        self.programs.append(program)
        return program

    def run(self, *command, data=None, timeout=PATIENCE, check=True):
        """Runs a short-lived tool to its end; what it printed, as bytes. `data` is its standard input."""
        try:
            done = subprocess.run([str(part) for part in command], env=self.environment, input=data or b"",
                                  capture_output=True, timeout=timeout)
        except subprocess.TimeoutExpired as late:
            raise SessionError(f"{command[0]} did not end within {timeout:g} s") from late
        if check and done.returncode != 0:
            raise SessionError(f"{command[0]} failed: {done.stderr.decode(errors='replace').strip()}")
        return done.stdout

    # Keys and pointer

    def keys(self, *chords):
        """Presses key chords in xdotool's spelling ("super+shift+v", "Return"), as a keyboard would."""
        self.run("xdotool", "key", *chords)

    def type(self, text):
        """Types text as a keyboard would."""
        self.run("xdotool", "type", "--delay", "10", text)

    def click(self, x, y, button=1):
        self.run("xdotool", "mousemove", x, y, "click", button)

    # Windows

    def windows(self, name=None, window_class=None):
        """The ids of the mapped windows whose name or class matches the regular expression; the oldest first."""
        pattern = ["--name", name] if name else ["--class", window_class]
        return [int(line) for line in self.run("xdotool", "search", "--onlyvisible", *pattern, check=False).split()]

    def geometry(self, window):
        """Where a window is on the screen and how large: x, y, width, height."""
        # xdotool would count the window manager's frame twice.
        shown = self.run("xwininfo", "-id", window).decode()
        return tuple(int(re.search(rf"{name}: +(-?[0-9]+)", shown)[1])
                     for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def client_windows(self):
        """The ids of the windows that the window manager manages."""
        _, _, listed = self.window_property("root", "_NET_CLIENT_LIST").partition("#")
        return [int(number, 16) for number in listed.replace(",", " ").split()]

    def active_window(self):
        """The id of the active window, 0 for none."""
        _, _, listed = self.window_property("root", "_NET_ACTIVE_WINDOW").partition("#")
        return int(listed.replace(",", " ").split()[0], 16) if listed.strip() else 0

    def wait_window(self, name=None, window_class=None):
        """Waits for a mapped and managed window and returns its id."""
        def found():
            managed = self.client_windows()
            return next((window for window in self.windows(name, window_class) if window in managed), None)
        return wait_for(found, what=f"a window of {name or window_class}")

    def activate(self, window):
        """Makes a window the active one and waits until it is."""
        self.run("xdotool", "windowactivate", window)
        wait_for(lambda: self.active_window() == window, what=f"window {window} to be active")

    def window_property(self, window, name):
        """A window's property as xprop shows it, or an empty string; `window` is an id or "root"."""
        target = ["-root"] if window == "root" else ["-id", str(window)]
        shown = self.run("xprop", *target, name, check=False).decode(errors="replace").strip()
        return "" if shown.endswith("not found.") or shown.endswith("no such atom on any window.") else shown

    def screenshot(self, path):
        """Saves the whole screen as a PNG."""
        path = pathlib.Path(path)
        path.parent.mkdir(parents=True, exist_ok=True)
        self.run("import", "-window", "root", path)

    # Clipboard

    def copy(self, data, target="UTF8_STRING"):
        """Makes a foreign program own the clipboard with this content (str or bytes) in one target; that program."""
        source = self.folder / f"clipboard-{len(self.programs)}"
        source.write_bytes(data.encode() if isinstance(data, str) else data)
        owner = self.start("xclip", "-quiet", "-selection", "clipboard", "-target", target, "-in", source)
        wait_for(lambda: self.paste(target) == source.read_bytes(), what=f"the clipboard to hold {target}")
        return owner

    def paste(self, target="UTF8_STRING"):
        """The clipboard's content in a target as bytes, empty when there is none."""
        return self.run("xclip", "-selection", "clipboard", "-target", target, "-out", check=False)

    # Brimquill's own files

    @property
    def database(self):
        return pathlib.Path(self.environment["BRIMQUILL_DATA_DIR"]) / "brimquill.db"

    def write_settings(self, values):
        """Writes the program's settings file, as it would have left it; before the program starts."""
        path = pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "brimquill"
        path.mkdir(mode=0o700, exist_ok=True)
        file = path / f"{self.environment['BRIMQUILL_DEFAULTS_SUITE']}.json"
        file.touch(mode=0o600)
        file.write_text(json.dumps(values))

    def query(self, sql, *values):
        """The rows of a query on the program's database, an empty list while there is no database yet."""
        if not self.database.exists():
            return []
        connection = sqlite3.connect(f"file:{self.database}?mode=ro", uri=True, timeout=PATIENCE)
        try:
            return connection.execute(sql, values).fetchall()
        except sqlite3.OperationalError as failure:
            if "no such" in str(failure):
                return []
            raise
        finally:
            connection.close()


if __name__ == "__main__":
    with Session() as desktop:
        sys.exit(subprocess.run(sys.argv[1:], env=desktop.environment, stdin=subprocess.DEVNULL).returncode)
