"""Looks at single pixels of a display, which is much quicker than a screenshot."""

import ctypes
import ctypes.util

_ALL_PLANES = ctypes.c_ulong(-1).value
_Z_PIXMAP = 2


def _library():
    x11 = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
    x11.XDefaultRootWindow.restype = ctypes.c_ulong
    x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
    x11.XGetImage.restype = ctypes.c_void_p
    x11.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int, ctypes.c_uint,
                              ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
    x11.XGetPixel.restype = ctypes.c_ulong
    x11.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
    x11.XDestroyImage.argtypes = [ctypes.c_void_p]
    return x11


class Screen:
    def __init__(self, display):
        self._x11 = _library()
        self._display = self._x11.XOpenDisplay(display.encode())
        if not self._display:
            raise RuntimeError(f"the display {display} cannot be opened")
        self._root = self._x11.XDefaultRootWindow(self._display)

    def pixel(self, x, y):
        image = self._x11.XGetImage(self._display, self._root, x, y, 1, 1, _ALL_PLANES, _Z_PIXMAP)
        value = self._x11.XGetPixel(image, 0, 0)
        self._x11.XDestroyImage(image)
        return value >> 16 & 255, value >> 8 & 255, value & 255
