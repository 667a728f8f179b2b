"""Asks a window to close, as the button in its frame does: close_window.py TITLE, on the display of the environment."""

import ctypes
import ctypes.util
import subprocess
import sys

_CLIENT_MESSAGE = 33


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("rest", ctypes.c_long * 24)]


def main(title):
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"], check=True,
                           capture_output=True, text=True).stdout.split()
    x11 = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XInternAtom.restype = ctypes.c_ulong
    x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x11.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
    x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
    display = x11.XOpenDisplay(None)
    event = _ClientMessage(type=_CLIENT_MESSAGE, display=display, window=int(found[0]), format=32,
                           message_type=x11.XInternAtom(display, b"WM_PROTOCOLS", 0))
    event.data[0] = x11.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    x11.XSendEvent(display, event.window, 0, 0, ctypes.byref(event))
    x11.XCloseDisplay(display)  # which sends what waits


if __name__ == "__main__":
    main(sys.argv[1])
