"""The records, each field once.

A record is a frozen dataclass. The annotation of a field says what it is in Python, and, hidden in it, how it lies in
the flat record of the same name in FlatRecords.h; the ctypes Structure and its reader are made from that. Fields stand
in the order of the flat record and bear its names. An absent field is None, arrays are tuples, and the counts behind
them are left out.
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
    """UTF-16 of a text. Halves of surrogate pairs that stand alone pass as they are, here and on the way back."""
    return text.encode(_ENCODING, "surrogatepass")


def read_text(pointer: Any) -> Optional[str]:
    """The text behind a pointer to UTF-16 ended by a zero unit; None for a null pointer."""
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


class _Count:
    """The name of a count that is not that of its array with "Count" behind."""

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


def _flat(record: Type[R]) -> Type[R]:
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


# ---- The records ----


@_flat
@dataclass(frozen=True)
class Locale:
    """A locale."""

    id: Key
    iso: Text
    description: Text


@_flat
@dataclass(frozen=True)
class Domain:
    """A domain, with its locale if the store holds it."""

    id: Key
    name: Text
    orgId: Number
    locale: One[Locale]


@_flat
@dataclass(frozen=True)
class User:
    """An operator of the monitoring service, with the domain if the store holds it."""

    id: Key
    name: Text
    login: Text
    contacts: Text
    isActive: Flag
    domainId: Number
    roles: Number
    phone: Long
    domain: One[Domain]
    orgId: Number


@_flat
@dataclass(frozen=True)
class Person:
    """The contact person of an organization."""

    id: Key
    name: Text
    phone: Text
    email: Text
    postal: Text


@_flat
@dataclass(frozen=True)
class Organization:
    """An organization, with its contact person and its locale if the store holds them."""

    id: Key
    inn: Text
    officialName: Text
    shortName: Text
    kpp: Text
    ogrn: Text
    address: Text
    contact: One[Person]
    locale: One[Locale]


@_flat
@dataclass(frozen=True)
class Contractor:
    """A party to contracts."""

    id: Key
    inn: Text
    orgId: Number
    type: Number
    officialName: Text
    name: Text
    extra: Text


@_flat
@dataclass(frozen=True)
class Contract:
    """A contract, with its contractor and its operator if the store holds them."""

    id: Key
    number: Text
    contractor: One[Contractor]
    name: Text
    status: Number
    date: Number
    description: Text
    extra: Text
    user: One[User]


@_flat
@dataclass(frozen=True)
class Zone:
    """A zone. Its device and section are not part of it."""

    id: Key
    name: Text
    detector: Number
    physic: Number
    form: Number
    flags: Number
    delay: Number
    scheduleId: Number
    tracert: Number
    uidType: Number
    arm: Number


@_flat
@dataclass(frozen=True)
class Section:
    """A section with its zones. Its device is not part of it."""

    id: Key
    name: Text
    scheduleId: Number
    zones: Many[Zone]
    tracert: Number
    flags: Number
    detector: Number
    arm: Number
    physic: Number
    form: Number
    delay: Number
    uidType: Number


@_flat
@dataclass(frozen=True)
class DeviceUser:
    """A user programmed into a device, with the numbers of the sections that this user reaches."""

    id: Key
    name: Text
    comment: Text
    phone: Text
    sections: Numbers


@_flat
@dataclass(frozen=True)
class Device:
    """A device with its sections and users, and with the domain if the store holds it."""

    id: Key
    account: Number
    domain: One[Domain]
    configVersion: Number
    sections: Many[Section]
    users: Many[DeviceUser]
    isParted: Flag
    clusterId: Number
    domainId: Number


@_flat
@dataclass(frozen=True)
class Location:
    """Where a site lies, under the site's own id."""

    id: Key
    latitude: Real
    longitude: Real


@_flat
@dataclass(frozen=True)
class Site:
    """A site, with its domain, location and contract if the store holds them. A read gives no devices."""

    id: Key
    name: Text
    comment: Text
    extra: Text
    isCrossing: Flag
    domain: One[Domain]
    address: Text
    contract: One[Contract]
    contractStatus: Signed
    type: Number
    category: Number
    armMode: Number
    isDelegated: Flag
    devices: Annotated[Many[Device], _Count("deviceCount")]
    domainId: Number
    location: One[Location]
    contractId: Signed
    isSitePlanExists: Flag


@_flat
@dataclass(frozen=True)
class Event:
    """An event. The last four fields come from the equipment and the operator that the event names."""

    id: Key
    time: Number
    deviceId: Signed
    sectionId: Number
    zoneId: Number
    active: Small
    eventClass: Small
    detector: Small
    reason: Small
    localTime: Number
    channel: Signed
    data: Text
    reviewId: Number
    reviewState: Small
    userId: Number
    isClosed: Flag
    affect: Flag
    jData: Text
    account: Number
    sectionName: Text
    zoneName: Text
    domainName: Text
