"""The shared library: found, loaded, given its prototypes, and called one function at a time."""

import ctypes
import ctypes.util
import os
import sys
from functools import partial
from typing import Any, Callable, Dict, List, Optional, Tuple, Union

from .codes import Code, code_of, error_for
from .documents import text_of
from .errors import LibraryNotFound
from .functions import FUNCTIONS
from .layout import TextPointer, layout_of, read_text, units_of
from .prototypes import DocumentInput, Function, Gives, Input, NumberInput, Role

LIBRARY_VARIABLE = "BRIMLET_LIBRARY"
PathArgument = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]


def _candidates() -> List[str]:
    """The names under which the system may know the library."""
    if sys.platform == "win32":
        names = ["brimlet.dll"]
    elif sys.platform == "darwin":
        names = ["libbrimlet.0.dylib"]
    else:
        names = ["libbrimlet.so.0"]
    found = ctypes.util.find_library("brimlet")
    return names + ([found] if found and found not in names else [])


def _open(path: Optional[PathArgument]) -> ctypes.CDLL:
    chosen = path or os.environ.get(LIBRARY_VARIABLE)
    failures = []
    for name in [os.fsdecode(chosen)] if chosen else _candidates():
        try:
            return ctypes.CDLL(name)
        except OSError as failure:
            failures.append(str(failure))
    raise LibraryNotFound(
        f"the shared library cannot be loaded, {'; '.join(failures)}. "
        f"It is looked for by argument, then by the variable {LIBRARY_VARIABLE}, then on the system's path"
    )


def _release_text() -> Callable[[Any], None]:
    """What releases a plain text: the platform's allocator."""
    if sys.platform == "win32":
        release = ctypes.windll.ole32.CoTaskMemFree
    else:
        release = ctypes.CDLL(None).free
    release.argtypes = [ctypes.c_void_p]
    release.restype = None

    def release_text(pointer: Any) -> None:
        release(ctypes.cast(pointer, ctypes.c_void_p))

    return release_text


class Library:
    """The loaded library. Its functions are called through a session."""

    _loaded: Dict[int, "Library"] = {}

    @classmethod
    def load(cls, path: Optional[PathArgument] = None) -> "Library":
        """The library by argument, by environment variable or on the system's path; one object for one library."""
        handle = _open(path)
        return cls._loaded.setdefault(handle._handle, cls(handle))

    def __init__(self, handle: ctypes.CDLL) -> None:
        self.exports: Dict[str, Any] = {}
        self.releases: Dict[Tuple[type, int], Any] = {}
        for name, entry in FUNCTIONS.items():
            try:
                export = handle[name]
            except AttributeError:
                raise LibraryNotFound(f"{handle._name} has no function {name}") from None
            export.restype = entry.result
            export.argtypes = entry.arguments
            self.exports[name] = export
            if entry.role is Role.RELEASE and entry.family:
                self.releases[entry.family, len(entry.arguments)] = export
        self.release_text = _release_text()

    def call(self, entry: Function[Any], arguments: Tuple[Any, ...], run: Callable[..., int]) -> Tuple[int, Any]:
        """Calls a function by `run`. Returns the code and, with the code 0, what came out, all of it copied.

        What the library handed out is free again when this returns, also if the copying fails or a signal handler
        raises as the function returns.
        """
        puts = _inputs(entry, arguments)
        call = partial(run, self.exports[entry.name])
        if entry.gives is Gives.TEXTS:
            return self._call_for_texts(entry, call, puts)
        if entry.gives is Gives.NOTHING:
            return code_of(call(*puts)), None
        return self._call_for_records(entry, call, puts)

    def _call_for_records(self, entry: Function[Any], call: Callable[..., int], puts: List[Any]) -> Tuple[int, Any]:
        assert entry.family
        target = ctypes.POINTER(entry.structure)()
        count = [ctypes.c_uint32()] if entry.gives is Gives.LIST else []
        read: Callable[[Any], Any] = layout_of(entry.family).read
        try:
            code = call(ctypes.byref(target), *map(ctypes.byref, count), *puts)
            if code != Code.DONE:
                return code_of(code), None
            return Code.DONE, [read(target[index]) for index in range(count[0].value)] if count else read(target[0])
        finally:
            if target:
                freed = self.releases[entry.family, 1 + len(count)](target, *count)
                if freed != Code.DONE:
                    raise error_for("the release behind " + entry.name, freed)

    def _call_for_texts(self, entry: Function[Any], call: Callable[..., int], puts: List[Any]) -> Tuple[int, Any]:
        targets = [TextPointer() for _ in range(entry.texts)]
        try:
            code = call(*map(ctypes.byref, targets), *puts)
            texts = tuple(read_text(target) for target in targets)
        finally:
            for target in targets:
                self.release_text(target)
        return code_of(code), None if code != Code.DONE else texts if len(texts) > 1 else texts[0]


def _inputs(entry: Function[Any], arguments: Tuple[Any, ...]) -> List[Any]:
    if len(arguments) != len(entry.takes):
        raise TypeError(f"{entry} takes {len(entry.takes)} arguments, not {len(arguments)}")
    return [part for put, argument in zip(entry.takes, arguments) for part in _input(entry, put, argument)]


def _input(entry: Function[Any], put: Input, argument: Any) -> List[Any]:
    if isinstance(put, NumberInput):
        if not isinstance(argument, int):
            raise TypeError(f"{put.name} of {entry} has to be a number")
        if not 0 <= argument < 2**32:
            raise ValueError(f"{put.name} of {entry} has to be a number of 32 bits")
        return [int(argument)]
    text = text_of(argument, put.form) if isinstance(put, DocumentInput) else argument
    if not isinstance(text, str):
        raise TypeError(f"{put.name} of {entry} has to be a text")
    units = units_of(text)
    block = (ctypes.c_uint16 * (len(units) // 2)).from_buffer_copy(units)
    return [block, len(block)]
