"""The functions of halvane.h. While one runs, other threads of Python run, too."""

from __future__ import annotations

import ctypes
import enum
import os

WRITTEN, REFUSED, INCOMPLETE, NOT_WRITTEN = 0, 2, 3, 4


class MessageLevel(enum.IntEnum):
    """How much a message matters."""

    RESULT = 0
    NOTE = 1
    FAILURE = 2


Progress = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_uint64)
Message = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_int, ctypes.c_char_p)

_HANDLE = ctypes.c_void_p
_TEXT = ctypes.c_char_p
_SIGNATURES: dict[str, tuple[object, list[object]]] = {
    "version": (_TEXT, []),
    "export_new": (_HANDLE, [_TEXT, _TEXT]),
    "export_free": (None, [_HANDLE]),
    "export_set_map": (ctypes.c_int, [_HANDLE, _TEXT]),
    "export_set_tags": (ctypes.c_int, [_HANDLE, _TEXT, _TEXT]),
    "export_select": (ctypes.c_int, [_HANDLE, _TEXT]),
    "export_add_processor": (ctypes.c_int, [_HANDLE, _TEXT]),
    "export_set_item_limit": (ctypes.c_int, [_HANDLE, ctypes.c_int64]),
    "export_allow_connections": (ctypes.c_int, [_HANDLE, ctypes.c_int]),
    "export_set_sync": (ctypes.c_int, [_HANDLE, ctypes.c_int]),
    "export_on_progress": (ctypes.c_int, [_HANDLE, Progress, ctypes.c_void_p]),
    "export_on_message": (ctypes.c_int, [_HANDLE, Message, ctypes.c_void_p]),
    "export_run": (ctypes.c_int, [_HANDLE]),
    "export_cancel": (None, [_HANDLE]),
    "export_error": (_TEXT, [_HANDLE]),
    "export_report": (_TEXT, [_HANDLE]),
    "description_new": (_HANDLE, [_TEXT]),
    "description_free": (None, [_HANDLE]),
    "description_allow_connections": (ctypes.c_int, [_HANDLE, ctypes.c_int]),
    "description_on_message": (ctypes.c_int, [_HANDLE, Message, ctypes.c_void_p]),
    "description_run": (ctypes.c_int, [_HANDLE]),
    "description_cancel": (None, [_HANDLE]),
    "description_error": (_TEXT, [_HANDLE]),
    "description_json": (_TEXT, [_HANDLE]),
}


def _load() -> ctypes.CDLL:
    name = os.environ.get("HALVANE_LIBRARY") or "libhalvane.so.0"
    try:
        loaded = ctypes.CDLL(name)
    except OSError as error:
        raise ImportError(f"the library of Halvane cannot be loaded: {error}; install libhalvane0, or name the file "
                          "in HALVANE_LIBRARY") from error
    for function, (result, arguments) in _SIGNATURES.items():
        entry = getattr(loaded, f"halvane_{function}")
        entry.restype, entry.argtypes = result, arguments
    return loaded


library = _load()


def version() -> str:
    """The version of the library that is loaded."""
    return str(library.halvane_version().decode())
