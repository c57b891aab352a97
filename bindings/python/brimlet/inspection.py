"""A look at the file while the library is not running. Nothing is written."""

import shutil
import sqlite3
from dataclasses import dataclass
from pathlib import Path
from tempfile import TemporaryDirectory
from typing import List, Optional
from urllib.parse import quote

from .schema import TABLES, VERSION, Column


@dataclass(frozen=True)
class TableSize:
    """What a table holds. The bytes are those of its pages with its indexes, None where SQLite cannot tell."""

    name: str
    rows: int
    bytes: Optional[int]


@dataclass(frozen=True)
class EventCounts:
    """The events, by what a purge, clearEventsBeforeDateExceptAffects, does with them."""

    all: int
    """All events."""
    marked: int
    """Those with the affect flag: kept until removeAffectFlag takes it away."""
    withoutMark: int
    """Those that came without a word about the flag: no purge takes them."""
    withoutTime: int
    """Those without a time: no purge takes them."""
    beyondPurge: int
    """Those that no purge takes, for one reason or both."""
    ofUnknownDevices: int
    """Those that no list shows, since the store does not hold their device."""


@dataclass(frozen=True)
class Inspection:
    """What there is to say about a file."""

    schema: List[str]
    """How it differs from the expected schema; with any difference the library would replace the file at launch, but
    for a type, a key or something that is there in addition."""
    pages: List[str]
    """What SQLite's check of the pages complains about."""
    tables: List[TableSize]
    """The tables that it holds."""
    events: Optional[EventCounts]
    """None where the events' table is not as it should be."""

    @property
    def is_sound(self) -> bool:
        """Whether schema and pages are as they should be."""
        return not self.schema and not self.pages


def inspect(path: Path) -> Inspection:
    """Looks at a file. Raises sqlite3.Error where it is no database or cannot be opened for reading.

    A file beside its journal was left in the middle of a change, which SQLite takes back before anything is read. That
    is done on a copy of both: what is found is what the next launch will find.
    """
    journal = path.with_name(path.name + "-journal")
    if not journal.exists():
        return _inspect(path, "ro")
    with TemporaryDirectory() as directory:
        shutil.copy(journal, directory)
        return _inspect(Path(shutil.copy(path, directory)), "rw")


def _inspect(path: Path, mode: str) -> Inspection:
    connection = sqlite3.connect(f"file:{quote(str(path.absolute()))}?mode={mode}", uri=True)
    connection.text_factory = lambda text: text.decode("utf-8", "replace")
    try:
        schema = _schema(connection)
        return Inspection(schema, _pages(connection), _sizes(connection), _events(connection))
    finally:
        connection.close()


def _table_names(connection: sqlite3.Connection) -> List[str]:
    rows = connection.execute("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%'")
    return [row[0] for row in rows]


def _quoted(name: str) -> str:
    return '"' + name.replace('"', '""') + '"'


def _columns(connection: sqlite3.Connection, table: str) -> List[Column]:
    rows = connection.execute(f"PRAGMA table_info({_quoted(table)})")
    return [Column(name, kind, bool(key)) for _, name, kind, _, _, key in rows]


def _schema(connection: sqlite3.Connection) -> List[str]:
    found = _table_names(connection)
    differences = [f"table {table} is missing" for table in TABLES if table not in found]
    differences += [f"table {table} is unknown" for table in found if table not in TABLES]
    for table, columns in TABLES.items():
        if table in found:
            differences += _column_differences(table, columns, _columns(connection, table))
    if "Version" in found:
        differences += _version_differences(connection)
    return differences


def _column_differences(table: str, expected: List[Column], found: List[Column]) -> List[str]:
    by_name = {column.name: column for column in found}
    differences = []
    for column in expected:
        other = by_name.pop(column.name, None)
        if other is None:
            differences.append(f"column {table}.{column.name} is missing")
        elif other.type != column.type:
            differences.append(f"column {table}.{column.name} is {other.type or 'without a type'}, not {column.type}")
        elif other.is_key != column.is_key:
            differences.append(f"column {table}.{column.name} is {'' if other.is_key else 'not '}part of the key")
    return differences + [f"column {table}.{name} is unknown" for name in by_name]


def _version_differences(connection: sqlite3.Connection) -> List[str]:
    try:
        row = connection.execute("SELECT VersionNumber FROM Version WHERE VersionId = 0").fetchone()
    except sqlite3.OperationalError:
        return []  # a column is missing, and that has been said
    if row is None:
        return ["the version is missing"]
    return [] if row[0] == VERSION else [f"the version is {row[0]}, not {VERSION}"]


def _pages(connection: sqlite3.Connection) -> List[str]:
    try:
        complaints = [str(row[0]) for row in connection.execute("PRAGMA integrity_check")]
    except sqlite3.DatabaseError as failure:
        return [str(failure)]
    return [] if complaints == ["ok"] else complaints


def _sizes(connection: sqlite3.Connection) -> List[TableSize]:
    sizes = []
    for table in _table_names(connection):
        try:
            rows = connection.execute(f"SELECT count(*) FROM {_quoted(table)}").fetchone()[0]
        except sqlite3.DatabaseError:
            continue  # its pages are broken, and the check says so
        sizes.append(TableSize(table, rows, _bytes(connection, table)))
    return sizes


def _bytes(connection: sqlite3.Connection, table: str) -> Optional[int]:
    try:
        row = connection.execute(
            "SELECT sum(pgsize) FROM dbstat WHERE name IN (SELECT name FROM sqlite_master WHERE tbl_name = ?)", [table]
        ).fetchone()
    except sqlite3.DatabaseError:
        return None  # built without dbstat
    return int(row[0] or 0)


def _events(connection: sqlite3.Connection) -> Optional[EventCounts]:
    counts = (
        "count(*)",
        "count(CASE WHEN EventsAffect <> 0 THEN 1 END)",
        "count(CASE WHEN EventsAffect IS NULL THEN 1 END)",
        "count(CASE WHEN EventsTime IS NULL THEN 1 END)",
        "count(CASE WHEN EventsAffect IS NULL OR EventsTime IS NULL THEN 1 END)",
        "count(CASE WHEN EventsDeviceId IS NULL OR EventsDeviceId NOT IN (SELECT DevicesId FROM Devices) THEN 1 END)",
    )
    try:
        row = connection.execute(f"SELECT {', '.join(counts)} FROM Events").fetchone()
    except sqlite3.DatabaseError:
        return None
    return EventCounts(*row)
