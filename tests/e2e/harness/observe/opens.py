"""Counts how often a file of the home is opened."""

import ctypes
import os
import struct

_OPENED = 0x20
_EVENT = struct.Struct("iIII")


class Opens:
    """Counts from the constructor on. The file may be replaced meanwhile; its folder may not."""

    def __init__(self, path):
        library = ctypes.CDLL(None, use_errno=True)
        self._name = os.fsencode(path.name)
        self._descriptor = library.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        watch = library.inotify_add_watch(self._descriptor, os.fsencode(path.parent), _OPENED)
        if self._descriptor < 0 or watch < 0:
            raise OSError(ctypes.get_errno(), "inotify")

    def close(self):
        """Ends the count and returns it."""
        count = 0
        try:
            while data := os.read(self._descriptor, 65536):
                while data:
                    _watch, _mask, _cookie, length = _EVENT.unpack_from(data)
                    name = data[_EVENT.size : _EVENT.size + length].rstrip(b"\0")
                    count += name == self._name
                    data = data[_EVENT.size + length :]
        except BlockingIOError:
            pass
        os.close(self._descriptor)
        return count
