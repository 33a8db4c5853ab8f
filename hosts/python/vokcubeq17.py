"""VokCubeQ17 for Python programs: run saved cube queries into Excel workbooks.

    import vokcubeq17

    cube = vokcubeq17.Cube(settings_folder="/srv/reports/settings")
    print(cube.names("DataSourceInfo"), cube.names("Periods"))
    run = cube.run("Sales", "2024", "/srv/reports/sales")
    print(run.workbook, run.rows)

Needs libvokcubeq17.so.16, in the system's library folders or named by VOKCUBE_LIBRARY. What fails
is vokcubeq17.Failure, with its code. Calls of several threads take turns, each thread has a Cube of
its own; only `stop` may be called on the Cube of another thread.
"""

import ctypes
import os
from dataclasses import dataclass

_MESSAGE = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_char_p)
_PROGRESS = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_double)
_OUT = (ctypes.c_char_p, ctypes.c_size_t)
_FUNCTIONS = {
    "new": (ctypes.c_void_p,),
    "free": (None, ctypes.c_void_p),
    "version": (ctypes.c_char_p,),
    "use_settings_folder": (ctypes.c_int32, ctypes.c_void_p, ctypes.c_char_p),
    "run": (ctypes.c_int32, ctypes.c_void_p) + (ctypes.c_char_p,) * 3,
    "stop": (None, ctypes.c_void_p),
    "rows": (ctypes.c_uint64, ctypes.c_void_p),
    "workbook": (ctypes.c_size_t, ctypes.c_void_p) + _OUT,
    "milliseconds": (ctypes.c_uint32, ctypes.c_void_p),
    "code": (ctypes.c_int32, ctypes.c_void_p),
    "cause": (ctypes.c_size_t, ctypes.c_void_p) + _OUT,
    "list": (ctypes.c_int32, ctypes.c_void_p, ctypes.c_char_p),
    "count": (ctypes.c_size_t, ctypes.c_void_p),
    "name": (ctypes.c_size_t, ctypes.c_void_p, ctypes.c_size_t) + _OUT,
    "show_messages": (None, _MESSAGE, ctypes.c_void_p),
    "show_progress": (None, ctypes.c_void_p, _PROGRESS, ctypes.c_void_p),
}


def _load():
    library = ctypes.CDLL(os.environ.get("VOKCUBE_LIBRARY", "libvokcubeq17.so.16"))
    for name, (result, *arguments) in _FUNCTIONS.items():
        function = getattr(library, "vokcube_" + name)
        function.restype, function.argtypes = result, arguments
    return library


_library = _load()
_message_handler = _MESSAGE()  # kept while the library may call it


class Failure(Exception):
    """What failed, in words; `code` is its number, STOPPED for a run that was asked to end."""

    STOPPED = -2147217842

    def __init__(self, code, cause):
        super().__init__(f"{code}: {cause}" if cause else str(code))
        self.code, self.cause = code, cause


@dataclass(frozen=True)
class Run:
    """What a run left. `workbook` is "" when there was nothing to write."""

    workbook: str
    rows: int
    milliseconds: int


def version():
    """Such as "16.8.28"."""
    return _library.vokcube_version().decode()


def show_messages(show):
    """Messages of the process go to show(title, text); None: to standard error."""
    global _message_handler
    handler = _MESSAGE(lambda _, title, text: show(title.decode(), text.decode())) if show else _MESSAGE()
    _library.vokcube_show_messages(handler, None)
    _message_handler = handler


class Cube:
    """Saved queries. `settings_folder` is that of the process, None leaves it as it is; `progress`
    is told each step of a run: progress(step, done), done from 0 to 1."""

    def __init__(self, settings_folder=None, progress=None):
        self._handle = _library.vokcube_new()
        if not self._handle:
            raise MemoryError
        if settings_folder is not None:
            self._check(_library.vokcube_use_settings_folder(self._handle, os.fsencode(settings_folder)))
        if progress:
            self._progress = _PROGRESS(lambda _, step, done: progress(step.decode(), done))
            _library.vokcube_show_progress(self._handle, self._progress, None)

    def __del__(self):
        if getattr(self, "_handle", None):
            _library.vokcube_free(self._handle)

    def names(self, table):
        """The names saved in "DataSourceInfo" or "Periods"."""
        self._check(_library.vokcube_list(self._handle, table.encode()))
        count = _library.vokcube_count(self._handle)
        return [self._text(_library.vokcube_name, i) for i in range(count)]

    def run(self, data_source, periods, output):
        """Writes the workbook `output` + ".xlsX" and returns what it did."""
        self._check(
            _library.vokcube_run(self._handle, data_source.encode(), periods.encode(), os.fsencode(output)))
        return Run(self._text(_library.vokcube_workbook), _library.vokcube_rows(self._handle),
                   _library.vokcube_milliseconds(self._handle))

    def stop(self):
        """From any thread: ends the run that is in progress."""
        _library.vokcube_stop(self._handle)

    def _check(self, code):
        if code != 0:
            raise Failure(code, self._text(_library.vokcube_cause))

    def _text(self, function, *arguments):
        size = function(self._handle, *arguments, None, 0) + 1
        buffer = ctypes.create_string_buffer(size)
        function(self._handle, *arguments, buffer, size)
        return buffer.value.decode(errors="surrogateescape")
