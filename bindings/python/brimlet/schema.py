"""The tables of the file, as a launch that finds no file makes them."""

from dataclasses import dataclass
from typing import Dict, Iterator, List, Tuple

VERSION = "0.1"
"""What the one row of the table Version holds."""

_TYPES = {
    "number": "UNSIGNED BIG INT",
    "text": "VARCHAR(255)",
    "flag": "BOOLEAN",
    "real": "DOUBLE",
    "rowid": "INTEGER",
}

# A column's name in the file begins with that of its table. A star marks the primary key.
_TABLES = """
Users: *Id number, Name text, Login text, Contacts text, IsActive flag, DomainId number, OrgId number, Roles
    number, Phone real
Domains: *Id number, Name text, OrgId number, LocaleId number
Organizations: *Id number, Inn text, OfficialName text, ShortName text, Kpp text, Ogrn text, ContactId number,
    LocaleId number, Address text
Locales: *Id number, Iso text, Description text
Persons: *Id number, Name text, Phone text, Email text, Postal text
Contractors: *Id number, Inn text, OrgId number, Type number, OfficialName text, Name text, Extra text
Contracts: *Id number, Number text, ContractorId number, Name text, Status number, Date number, Description
    text, Extra text, UserId number
Zones: *DeviceId number, SectionId number, *ZoneId number, Name text, Detector number, Physic number, Form
    number, Flags number, Delay number, ScheduleId number, Tracert number, UidType number, Arm number
Sections: *DeviceId number, *SectionId number, Name text, ScheduleId number, Tracert number, Flags number,
    Detector number, Arm number, Physic number, Form number, Delay number, UidType number
Devices: *Id number, Account number, DomainId number, ConfigVersion number, IsParted flag, ClusterId number
Locations: *Id number, Latitude real, Longitude real
Sites: *Id number, Name text, Comment text, Extra text, IsCrossing flag, DomainId number, Address text,
    ContractId number, ContractStatus number, Type number, Category number, ArmMode number, IsDelegated flag,
    IsSitePlanExists flag
DeviceUsers: *DeviceId number, *DeviceUserId number, Name text, Comment text, Phone text
Events: *Id number, Time number, DeviceId number, SectionId number, ZoneId number, Active flag, Class number,
    Detector number, Reason number, LocalTime number, Channel number, Data text, ReviewId number, ReviewState
    number, UserId number, IsClosed flag, Affect flag, JData text
DeviceUserSectionLinks: *DeviceId number, *DeviceUserId number, *SectionId number
Session: *Id rowid, Ip text
Version: *Id rowid, Number text
"""


@dataclass(frozen=True)
class Column:
    """A column of a table."""

    name: str
    type: str
    is_key: bool


def _columns(table: str, text: str) -> Iterator[Column]:
    for column in text.split(","):
        name, kind = column.split()
        yield Column(table + name.lstrip("*"), _TYPES[kind], name.startswith("*"))


def _tables() -> Iterator[Tuple[str, List[Column]]]:
    for line in _TABLES.replace("\n    ", " ").strip().splitlines():
        table, columns = line.split(":")
        yield table, list(_columns(table, columns))


TABLES: Dict[str, List[Column]] = dict(_tables())
"""The columns of each table, both in the order of creation."""
