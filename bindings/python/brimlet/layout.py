"""How a record is read from its flat record: the kinds of fields, and what ctypes needs of each.

The annotation of a field of a record says what it is in Python, and, hidden in it, how it lies in the flat record of
the same name; the ctypes Structure and its reader are made from that.
"""

import ctypes
import sys
from array import array
from dataclasses import dataclass, fields
from itertools import takewhile
from typing import (
    Annotated, Any, Callable, Dict, Generic, List, Optional, Tuple, Type, TypeVar, cast, get_args, get_type_hints,
)

R = TypeVar("R")
Reader = Callable[[Any], Any]
Member = Tuple[str, Any]

_ENCODING = "utf-16-le" if sys.byteorder == "little" else "utf-16-be"
TextPointer = ctypes.POINTER(ctypes.c_uint16)


def units_of(text: str) -> bytes:
    """The UTF-16 of a text. Unpaired surrogates pass unchanged, in both directions."""
    return text.encode(_ENCODING, "surrogatepass")


def read_text(pointer: Any) -> Optional[str]:
    """The text at a pointer to NUL-terminated UTF-16; None for a null pointer."""
    if not pointer:
        return None
    return array("H", takewhile(bool, pointer)).tobytes().decode(_ENCODING, "surrogatepass")


# ---- How a field lies in its flat record ----


class _Cell:
    """A kind of field: its members in the Structure, and how to read them. `hint` is its type in Python."""

    def members(self, name: str, hint: Any) -> List[Member]:
        raise NotImplementedError

    def reader(self, name: str, hint: Any) -> Reader:
        raise NotImplementedError


class _InPlace(_Cell):
    def members(self, name: str, hint: Any) -> List[Member]:
        return [(name, ctypes.c_uint32)]

    def reader(self, name: str, hint: Any) -> Reader:
        return lambda flat: getattr(flat, name)


class _Block(_Cell):
    def __init__(self, kind: Any, convert: Callable[[Any], Any]) -> None:
        self.kind = kind
        self.convert = convert

    def members(self, name: str, hint: Any) -> List[Member]:
        return [(name, ctypes.POINTER(self.kind))]

    def reader(self, name: str, hint: Any) -> Reader:
        convert = self.convert

        def read(flat: Any) -> Any:
            pointer = getattr(flat, name)
            return convert(pointer[0]) if pointer else None

        return read


class _Text(_Cell):
    def members(self, name: str, hint: Any) -> List[Member]:
        return [(name, TextPointer)]

    def reader(self, name: str, hint: Any) -> Reader:
        return lambda flat: read_text(getattr(flat, name))


class _OneRecord(_Cell):
    @staticmethod
    def layout(hint: Any) -> "Layout[Any]":
        return layout_of(get_args(hint)[0])

    def members(self, name: str, hint: Any) -> List[Member]:
        return [(name, ctypes.POINTER(self.layout(hint).structure))]

    def reader(self, name: str, hint: Any) -> Reader:
        read_record = self.layout(hint).read

        def read(flat: Any) -> Any:
            pointer = getattr(flat, name)
            return read_record(pointer[0]) if pointer else None

        return read


class Count:
    """The name of a count that is not the name of its array with "Count" behind."""

    def __init__(self, name: str) -> None:
        self.name = name


class _Many(_Cell):
    def __init__(self, count: Optional[str] = None) -> None:
        self.count = count

    def named(self, count: str) -> "_Many":
        return type(self)(count)

    def element(self, hint: Any) -> Any:
        raise NotImplementedError

    def element_reader(self, hint: Any) -> Reader:
        raise NotImplementedError

    def members(self, name: str, hint: Any) -> List[Member]:
        return [(name, ctypes.POINTER(self.element(hint))), (self.count or name + "Count", ctypes.c_uint32)]

    def reader(self, name: str, hint: Any) -> Reader:
        count_name = self.count or name + "Count"
        read_element = self.element_reader(hint)

        def read(flat: Any) -> Any:
            pointer = getattr(flat, name)
            return tuple(read_element(pointer[index]) for index in range(getattr(flat, count_name)))

        return read


class _ManyRecords(_Many):
    def element(self, hint: Any) -> Any:
        return _OneRecord.layout(hint).structure

    def element_reader(self, hint: Any) -> Reader:
        return _OneRecord.layout(hint).read


class _ManyNumbers(_Many):
    def element(self, hint: Any) -> Any:
        return ctypes.c_uint32

    def element_reader(self, hint: Any) -> Reader:
        return int


class Layout(Generic[R]):
    """The flat record of a dataclass."""

    def __init__(self, record: Type[R]) -> None:
        self.record = record
        hints = get_type_hints(record, include_extras=True)
        members: List[Member] = []
        self._readers: List[Reader] = []
        for field in fields(cast(Any, record)):
            hint, *metadata = get_args(hints[field.name])
            cell = metadata[0]
            for further in metadata[1:]:
                cell = cell.named(further.name)
            members += cell.members(field.name, hint)
            self._readers.append(cell.reader(field.name, hint))
        self.structure: Any = type("Flat" + record.__name__, (ctypes.Structure,), {"_fields_": members})

    def read(self, flat: Any) -> R:
        """The record of a Structure. It holds nothing of it afterwards."""
        return self.record(*[read(flat) for read in self._readers])


_LAYOUTS: Dict[type, Layout[Any]] = {}


def layout_of(record: Type[R]) -> Layout[R]:
    """The layout of a record."""
    return _LAYOUTS[record]


def all_records() -> List[type]:
    """The dataclasses, each behind those that it is made of."""
    return list(_LAYOUTS)


def flat(record: Type[R]) -> Type[R]:
    """Gives a dataclass its layout."""
    _LAYOUTS[record] = Layout(record)
    return record


# ---- The kinds of fields ----

Key = Annotated[int, _InPlace()]
Number = Annotated[Optional[int], _Block(ctypes.c_uint32, int)]
Signed = Annotated[Optional[int], _Block(ctypes.c_int32, int)]
Long = Annotated[Optional[int], _Block(ctypes.c_uint64, int)]
Small = Annotated[Optional[int], _Block(ctypes.c_uint8, int)]
Flag = Annotated[Optional[bool], _Block(ctypes.c_uint8, bool)]
Real = Annotated[Optional[float], _Block(ctypes.c_double, float)]
Text = Annotated[Optional[str], _Text()]
Numbers = Annotated[Tuple[int, ...], _ManyNumbers()]
One = Annotated[Optional[R], _OneRecord()]
Many = Annotated[Tuple[R, ...], _ManyRecords()]
