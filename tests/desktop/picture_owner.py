"""A GTK program that copies the picture of a file, prints "copied", and at SIGTERM quits as such programs do: what it
copied is left with the clipboard manager first. Prints "quit" then."""

import ctypes
import signal
import sys

GTK = ctypes.CDLL("libgtk-3.so.0")
POINTER, TEXT = ctypes.c_void_p, ctypes.c_char_p
QUIT = ctypes.CFUNCTYPE(ctypes.c_int, POINTER)


def function(name, result, *arguments):
    """A function of GTK or of a library below it."""
    found = getattr(GTK, name)
    found.restype, found.argtypes = result, arguments
    return found


def main(path):
    function("gtk_init", None, POINTER, POINTER)(None, None)
    picture = function("gdk_pixbuf_new_from_file", POINTER, TEXT, POINTER)(path.encode(), None)
    if not picture:
        sys.exit(f"{path} is no picture")
    selection = function("gdk_atom_intern", POINTER, TEXT, ctypes.c_int)(b"CLIPBOARD", 0)
    clipboard = function("gtk_clipboard_get", POINTER, POINTER)(selection)
    function("gtk_clipboard_set_image", None, POINTER, POINTER)(clipboard, picture)
    function("gtk_clipboard_set_can_store", None, POINTER, POINTER, ctypes.c_int)(clipboard, None, 0)

    @QUIT
    def quit_main(_):
        function("gtk_clipboard_store", None, POINTER)(clipboard)
        function("gtk_main_quit", None)()
        return 0

    function("g_unix_signal_add", ctypes.c_uint, ctypes.c_int, QUIT, POINTER)(signal.SIGTERM, quit_main, None)
    print("copied", flush=True)
    function("gtk_main", None)()
    print("quit", flush=True)


if __name__ == "__main__":
    main(sys.argv[1])
