"""Exports and descriptions, each with an object of the library that lives as long as the call."""

from __future__ import annotations

import contextlib
import ctypes
import json
import os
import signal
import threading
from collections.abc import Callable, Iterable, Iterator

from . import _library
from ._description import Description
from ._json import from_json
from ._library import MessageLevel, library
from ._report import Outcome, Report

Path = str | bytes | os.PathLike[str] | os.PathLike[bytes]
ProgressCallback = Callable[[int], bool | None]
MessageCallback = Callable[[MessageLevel, str], None]


class Error(Exception):
    """Nothing was written, or nothing described; the text says why. report is an export's, where there is one."""

    def __init__(self, reason: str, report: Report | None = None) -> None:
        super().__init__(reason)
        self.report = report


class Cancelled(Error):
    """The export was cancelled, so nothing was written."""


def _path(path: Path) -> bytes:
    encoded = os.fsencode(path)
    if b"\0" in encoded:
        raise ValueError("embedded null byte")
    return encoded


def _text(text: str) -> bytes:
    if "\0" in text:
        raise ValueError("embedded null character")
    return text.encode()


class _Callbacks:
    """What the library calls, and the exception that one ended with: it cancels the run and is raised after it."""

    def __init__(self, progress: ProgressCallback | None, message: MessageCallback | None) -> None:
        self._progress, self._message = progress, message
        self._thrown: BaseException | None = None
        self.on_progress = _library.Progress(self._told_progress)
        self.on_message = _library.Message(self._told_message)

    def _told_progress(self, _user: object, items: int) -> int:
        # Called where nobody is to be told, too: signals are heard where Python runs.
        try:
            if self._thrown is None and (self._progress is None or self._progress(items) is not False):
                return 0
        except BaseException as thrown:  # it must not pass through the library
            self._thrown = thrown
        return 1

    def _told_message(self, _user: object, level: int, text: bytes) -> None:
        try:
            if self._thrown is None and self._message is not None:
                self._message(MessageLevel(level), text.decode())
        except BaseException as thrown:
            self._thrown = thrown

    def settle(self) -> None:
        """Raises what a callback raised."""
        if self._thrown is not None:
            raise self._thrown


@contextlib.contextmanager
def _keyboard(cancel: Callable[[], object]) -> Iterator[None]:
    """An interruption from the keyboard cancels, and is raised afterwards: inside a callback it would be lost."""
    own = signal.default_int_handler
    if threading.current_thread() is not threading.main_thread() or signal.getsignal(signal.SIGINT) is not own:
        yield
        return
    interrupted = False

    def note(_signal: int, _frame: object) -> None:
        nonlocal interrupted
        interrupted = True
        cancel()

    signal.signal(signal.SIGINT, note)
    try:
        yield
    finally:
        signal.signal(signal.SIGINT, own)
    if interrupted:
        raise KeyboardInterrupt


@contextlib.contextmanager
def _object(kind: str, *arguments: bytes) -> Iterator[ctypes.c_void_p]:
    pointer = getattr(library, f"halvane_{kind}_new")(*arguments)
    if pointer is None:
        raise MemoryError
    handle = ctypes.c_void_p(pointer)
    try:
        yield handle
    finally:
        getattr(library, f"halvane_{kind}_free")(handle)


def export(
    map: Path | None,
    control: Path,
    output: Path,
    *,
    allow_connections: bool = False,
    tags: tuple[Path, str] | None = None,
    select: Iterable[str] = (),
    processors: Iterable[Path] = (),
    item_limit: int | None = None,
    sync: bool = True,
    progress: ProgressCallback | None = None,
    message: MessageCallback | None = None,
) -> Report:
    """Writes the document that a control file prescribes.

    map: a map document, a QGIS project, or any dataset or folder; None for control files that find their data by themselves.
    control: the control file's path, or its URL.
    output: the document's path; it gets ".xml" appended unless its name holds the letters XML.
    allow_connections: whether a QGIS project may name databases of servers, which are then read.
    tags: a second document and the XPath of its nodes that pair tag names with aliases.
    select: "LAYER=FIDS" or "LAYER=WHERE", one for each layer.
    processors: libraries of external processors, whose code runs in this process.
    item_limit: how many items a repeated node may write, from 1 on.
    sync: whether to wait until the document is on the disk.
    progress: called with the number of items, at most ten times a second; False cancels.
    message: called with each line that the program would write on a terminal.

    Returns the report; its outcome is WRITTEN or INCOMPLETE. Raises Error, with the report, where nothing was written,
    Cancelled where it was cancelled: the document is then what it was before. What progress raises cancels, and is raised;
    at the end that is too late, and the document stands. An interruption from the keyboard cancels at the next item.
    """
    if item_limit is not None and not 1 <= item_limit < 2**63:
        raise ValueError("item_limit is a whole number from 1 on")
    callbacks = _Callbacks(progress, message)
    with _object("export", _path(control), _path(output)) as handle:
        # What the library does not take is told when it runs.
        library.halvane_export_set_map(handle, None if map is None else _path(map))
        library.halvane_export_allow_connections(handle, int(bool(allow_connections)))
        if tags is not None:
            library.halvane_export_set_tags(handle, _path(tags[0]), _text(tags[1]))
        for selection in select:
            library.halvane_export_select(handle, _text(selection))
        for processor in processors:
            library.halvane_export_add_processor(handle, _path(processor))
        if item_limit is not None:
            library.halvane_export_set_item_limit(handle, item_limit)
        library.halvane_export_set_sync(handle, int(bool(sync)))
        library.halvane_export_on_progress(handle, callbacks.on_progress, None)
        if message is not None:
            library.halvane_export_on_message(handle, callbacks.on_message, None)
        with _keyboard(lambda: library.halvane_export_cancel(handle)):
            outcome = library.halvane_export_run(handle)
        callbacks.settle()
        text = library.halvane_export_report(handle)
        report = from_json(Report, json.loads(text)) if text else None
        if report is not None and outcome in (_library.WRITTEN, _library.INCOMPLETE):
            return report
        cancelled = report is not None and report.outcome is Outcome.CANCELLED
        raise (Cancelled if cancelled else Error)(library.halvane_export_error(handle).decode(), report)


def describe(
    map: Path, *, allow_connections: bool = False, message: MessageCallback | None = None
) -> Description:
    """Tells everything that a control file could name in a map.

    map: a map document, a QGIS project, or any dataset or folder. allow_connections: whether a project may name
    databases of servers, which are then read. message: called with a line for what is odd in it.
    Raises Error where the map cannot be opened, and what the callback raised.
    """
    callbacks = _Callbacks(None, message)
    with _object("description", _path(map)) as handle:
        library.halvane_description_allow_connections(handle, int(bool(allow_connections)))
        if message is not None:
            library.halvane_description_on_message(handle, callbacks.on_message, None)
        with _keyboard(lambda: library.halvane_description_cancel(handle)):
            outcome = library.halvane_description_run(handle)
        callbacks.settle()
        if outcome != _library.WRITTEN:
            raise Error(library.halvane_description_error(handle).decode())
        return from_json(Description, json.loads(library.halvane_description_json(handle)))
