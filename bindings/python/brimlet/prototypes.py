"""The 96 functions, each once: its family, what it gives and what it takes.

The prototypes for ctypes are made from this table, and a session has its methods from it. A function of the table is a
descriptor: `session.getUser` is the method, `Functions.getUser` the entry.
"""

import ctypes
from dataclasses import dataclass
from enum import Enum
from typing import Any, Callable, Dict, Generic, List, Optional, Tuple, Type, TypeVar, Union, overload

from .documents import BareId, Batch, Document, Form, Ids, OneRecord
from .records import (
    Contract, Contractor, Device, Domain, Event, Locale, Organization, Section, Site, TextPointer, User, Zone,
    layout_of,
)

C = TypeVar("C", bound=Callable[..., Any])
R = TypeVar("R")


class Gives(Enum):
    """What a function hands out beside its code."""

    NOTHING = "nothing"
    RECORD = "a record"
    LIST = "a list"
    TEXTS = "texts"


class Role(Enum):
    """Who calls a function."""

    CALL = "a client, through a session"
    LIFECYCLE = "the session, at its launch and its end"
    RELEASE = "the package, behind every call that hands out records"


@dataclass(frozen=True)
class TextInput:
    """A text, with its length behind it in C."""

    name: str


@dataclass(frozen=True)
class DocumentInput:
    """A document, with its length behind it in C."""

    name: str
    form: Form


@dataclass(frozen=True)
class NumberInput:
    """An unsigned number of 32 bits."""

    name: str


Input = Union[TextInput, DocumentInput, NumberInput]


class Function(Generic[C]):
    """An exported function, and the type of the method that a session has for it."""

    def __init__(
        self,
        family: Optional[type],
        gives: Gives = Gives.NOTHING,
        takes: Tuple[Input, ...] = (),
        texts: int = 0,
        role: Role = Role.CALL,
        reads: bool = False,
        result: Any = ctypes.c_uint32,
        arguments: Optional[List[Any]] = None,
    ) -> None:
        self.name = ""
        self.family = family
        self.gives = gives
        self.takes = takes
        self.texts = texts
        self.role = role
        self.is_list_read = reads and gives is Gives.LIST
        self.result = result
        self.arguments = self._arguments() if arguments is None else arguments

    def __set_name__(self, owner: type, name: str) -> None:
        self.name = name

    @overload
    def __get__(self, session: None, owner: type) -> "Function[C]": ...

    @overload
    def __get__(self, session: Any, owner: type) -> C: ...

    def __get__(self, session: Any, owner: type) -> Any:
        if session is None:
            return self
        if self.role is not Role.CALL:
            raise AttributeError(f"{self.name} is called by {self.role.value}")

        def method(*arguments: Any) -> Any:
            return session.call(self.name, *arguments)

        method.__name__ = method.__qualname__ = self.name
        method.__doc__ = str(self)
        return method

    def __str__(self) -> str:
        takes = ", ".join(
            f"{put.name}: {put.form}" if isinstance(put, DocumentInput) else put.name for put in self.takes
        )
        kind = self.family.__name__ if self.family else ""
        gives = {Gives.RECORD: kind, Gives.LIST: f"list of {kind}", Gives.TEXTS: ", ".join(["text"] * self.texts)}
        return f"{self.name}({takes})" + (f" -> {gives[self.gives]}" if self.gives in gives else "")

    __repr__ = __str__  # what `help(Session)` shows for each

    def _arguments(self) -> List[Any]:
        arguments: List[Any] = [ctypes.POINTER(TextPointer)] * self.texts
        if self.gives in (Gives.RECORD, Gives.LIST):
            arguments.append(ctypes.POINTER(ctypes.POINTER(self.structure)))
        if self.gives is Gives.LIST:
            arguments.append(ctypes.POINTER(ctypes.c_uint32))
        for put in self.takes:
            arguments += [ctypes.c_uint32] if isinstance(put, NumberInput) else [TextPointer, ctypes.c_uint32]
        return arguments

    @property
    def structure(self) -> Any:
        """The flat record of the family."""
        assert self.family
        return layout_of(self.family).structure


# ---- The shapes that functions come in ----


def _numbers(names: Tuple[str, ...]) -> Tuple[Input, ...]:
    return tuple(NumberInput(name) for name in names)


def _put(family: type, form: Form) -> "Function[Callable[[Document], None]]":
    return Function(family, takes=(DocumentInput("json", form),))


def _remove(family: type, *keys: str) -> "Function[Callable[[BareId], None]]":
    return Function(family, takes=(DocumentInput("json", Ids(keys)),))


def _exchange(family: Type[R]) -> "Function[Callable[[Document], R]]":
    return Function(family, Gives.RECORD, (DocumentInput("json", OneRecord()),))


@overload
def _one(family: Type[R], __a: str) -> "Function[Callable[[int], R]]": ...
@overload
def _one(family: Type[R], __a: str, __b: str) -> "Function[Callable[[int, int], R]]": ...
@overload
def _one(family: Type[R], __a: str, __b: str, __c: str) -> "Function[Callable[[int, int, int], R]]": ...
def _one(family: Any, *ids: str) -> Any:
    return Function(family, Gives.RECORD, _numbers(ids))


@overload
def _many(family: Type[R]) -> "Function[Callable[[], List[R]]]": ...
@overload
def _many(family: Type[R], __a: str) -> "Function[Callable[[int], List[R]]]": ...
@overload
def _many(family: Type[R], __a: str, __b: str) -> "Function[Callable[[int, int], List[R]]]": ...
def _many(family: Any, *ids: str) -> Any:
    return Function(family, Gives.LIST, _numbers(ids), reads=True)


@overload
def _find(family: Type[R]) -> "Function[Callable[[str, str], List[R]]]": ...
@overload
def _find(family: Type[R], __a: str) -> "Function[Callable[[str, str, int], List[R]]]": ...
@overload
def _find(family: Type[R], __a: str, __b: str) -> "Function[Callable[[str, str, int, int], List[R]]]": ...
def _find(family: Any, *ids: str) -> Any:
    return Function(family, Gives.LIST, (TextInput("key"), TextInput("value"), *_numbers(ids)), reads=True)


def _free(family: type) -> "Function[Callable[[Any], int]]":
    return Function(family, role=Role.RELEASE, arguments=[ctypes.POINTER(layout_of(family).structure)])


def _free_array(family: type) -> "Function[Callable[[Any, int], int]]":
    pointer = ctypes.POINTER(layout_of(family).structure)
    return Function(family, role=Role.RELEASE, arguments=[pointer, ctypes.c_uint32])


def _lifecycle(result: Any) -> "Function[Callable[[], Any]]":
    return Function(None, role=Role.LIFECYCLE, result=result)


_batch = Batch()
_record = OneRecord()


class Functions:
    """The table, in the order of brimlet.h, which is the manual of every function."""

    launchCache = _lifecycle(ctypes.c_int32)
    exitCache = _lifecycle(None)
    getState = _lifecycle(ctypes.c_uint32)
    getLaunchCacheResult = _lifecycle(ctypes.c_uint32)

    setServerIp: "Function[Callable[[str], None]]" = Function(None, takes=(TextInput("text"),))
    getServerIp: "Function[Callable[[], Optional[str]]]" = Function(None, Gives.TEXTS, texts=1)

    addLocales = _put(Locale, _batch)
    getLocale = _one(Locale, "id")
    getLocales = _many(Locale)
    getLocalesWithParams = _find(Locale)
    freeLocale = _free(Locale)
    freeLocalesArray = _free_array(Locale)

    addDomains = _put(Domain, _batch)
    updateDomain = _exchange(Domain)
    deleteDomain = _remove(Domain, "domain_id")
    getDomain = _one(Domain, "id")
    getDomains = _many(Domain)
    getDomainsWithParams = _find(Domain)
    freeDomain = _free(Domain)
    freeDomainsArray = _free_array(Domain)

    addUsers = _put(User, _batch)
    updateUser = _exchange(User)
    deleteUser = _remove(User, "op_id")
    getUser = _one(User, "id")
    getUsers = _many(User)
    getUsersWithParams = _find(User)
    freeUser = _free(User)
    freeUsersArray = _free_array(User)

    addOrganizations = _put(Organization, _batch)
    updateOrganization = _exchange(Organization)
    deleteOrganization = _remove(Organization, "org_id")
    getOrganization = _one(Organization, "id")
    getOrganizations = _many(Organization)
    getOrganizationsWithParams = _find(Organization)
    freeOrganization = _free(Organization)
    freeOrganizationsArray = _free_array(Organization)

    addContractors = _put(Contractor, _batch)
    updateContractor = _exchange(Contractor)
    deleteContractor = _remove(Contractor, "id")
    getContractor = _one(Contractor, "id")
    getContractors = _many(Contractor)
    getContractorsWithParams = _find(Contractor)
    freeContractor = _free(Contractor)
    freeContractorsArray = _free_array(Contractor)

    addContracts = _put(Contract, _batch)
    updateContract = _exchange(Contract)
    deleteContract = _remove(Contract, "id")
    getContract = _one(Contract, "id")
    getContracts = _many(Contract)
    getContractsWithParams = _find(Contract)
    freeContract = _free(Contract)
    freeContractsArray = _free_array(Contract)

    addDevice = _put(Device, _record)
    addDevices = _put(Device, _batch)
    updateDeviceFw = _exchange(Device)
    deleteDevice = _remove(Device, "id")
    getDevice = _one(Device, "id")
    getDevices = _many(Device)
    getDevicesWithParams = _find(Device)
    freeDevice = _free(Device)
    freeDevicesArray = _free_array(Device)

    updateSection = _exchange(Section)
    deleteSection = _remove(Section, "device", "section")
    getSection = _one(Section, "sectionId", "deviceId")
    getSections = _many(Section, "deviceId")
    getSectionsWithParams = _find(Section, "deviceId")
    freeSection = _free(Section)
    freeSectionsArray = _free_array(Section)

    updateZone = _exchange(Zone)
    deleteZone = _remove(Zone, "device", "section", "zone")
    getZone = _one(Zone, "zoneId", "deviceId", "sectionId")
    getZones = _many(Zone, "deviceId")
    getZonesForSection = _many(Zone, "deviceId", "sectionId")
    getZonesWithParams = _find(Zone, "deviceId")
    getZonesForSectionWithParams = _find(Zone, "deviceId", "sectionId")
    freeZone = _free(Zone)
    freeZonesArray = _free_array(Zone)

    addSites = _put(Site, _batch)
    updateSite = _exchange(Site)
    deleteSite = _remove(Site, "site_id")
    getSite = _one(Site, "id")
    getSites = _many(Site)
    getSitesWithParams = _find(Site)
    getSiteNameAndAddress: "Function[Callable[[int], Tuple[Optional[str], Optional[str]]]]" = Function(
        Site, Gives.TEXTS, (NumberInput("id"),), texts=2
    )
    freeSite = _free(Site)
    freeSitesArray = _free_array(Site)

    addEvent = _exchange(Event)
    addEvents: "Function[Callable[[Document], List[Event]]]" = Function(
        Event, Gives.LIST, (DocumentInput("json", _batch),)
    )
    getEvents = _many(Event, "from", "to")
    getAffectEvents = _many(Event)
    removeAffectFlag: "Function[Callable[[BareId], Event]]" = Function(
        Event, Gives.RECORD, (DocumentInput("json", Ids(("id",))),)
    )
    clearEventsBeforeDateExceptAffects: "Function[Callable[[int], None]]" = Function(
        Event, takes=(NumberInput("date"),)
    )
    freeEvent = _free(Event)
    freeEventsArray = _free_array(Event)

    clearAll: "Function[Callable[[], None]]" = Function(None)
    clearAllExceptEvents: "Function[Callable[[], None]]" = Function(None)


FUNCTIONS: Dict[str, Function[Any]] = {
    name: entry for name, entry in vars(Functions).items() if isinstance(entry, Function)
}
"""The table by name, in its order."""
