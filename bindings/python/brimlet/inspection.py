"""A look into a store. It reads a copy, and runs no view, trigger, virtual table or expression of the file."""

import sqlite3
import threading
from collections import Counter
from contextlib import contextmanager
from dataclasses import dataclass
from typing import Any, Dict, Iterator, List, Optional, Tuple
from urllib.parse import quote

from .codes import Error
from .schema import TABLES, VERSION, Column
from .snapshot import Snapshot, Unsound

_INDEX = "EventsTimeIndex"  # made with the first event
_OF_SQLITE = "sqlite_"  # how the names of SQLite's own tables and indexes begin
_GENERATED = (2, 3)  # what PRAGMA table_xinfo says of a generated column
_EXPRESSION = -2  # what PRAGMA index_xinfo says in place of a column
_SETTINGS = ("trusted_schema = OFF", "query_only = ON", "cell_size_check = ON", "ignore_check_constraints = ON")
_PAUSE = 0.1  # between two interruptions


class TookTooLong(Error):
    """The look at the file was given up."""


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

    leftOut: List[str]
    """Journals that cannot be trusted, with the reason. The file is shown as it is without them."""
    missing: List[str]
    """What the library needs and the file lacks. A launch would replace the file."""
    different: List[str]
    """What else the schema has or types differently. The library accepts it."""
    pages: List[str]
    """What SQLite's check of the pages complains about."""
    tables: List[TableSize]
    """The tables that it holds."""
    events: Optional[EventCounts]
    """None where the events' table is not as it should be."""

    @property
    def is_sound(self) -> bool:
        """Whether all is as it should be."""
        return not (self.leftOut or self.missing or self.different or self.pages)


def inspect(copy: Snapshot, timeout: float) -> Inspection:
    """Looks at a copy of a file. Raises Unsound if it is no database, TookTooLong after `timeout` seconds.

    A file with a hot journal was left in the middle of a change. SQLite rolls the copy back before it reads, as it does
    with the file at the next launch.
    """
    with _reading(copy, timeout) as reader:
        tables = _tables(reader)
        missing, pages = _missing(reader, tables), _pages(reader, tables)
        different = _different(tables) + _unknown(reader)
        sizes: List[TableSize] = []
        events = None
        try:
            sizes.extend(_sizes(reader, tables))
            events = _events(reader, tables)
        except TookTooLong:
            if not pages:
                raise
            # broken pages can lead in circles: what could be counted is shown
        return Inspection(copy.left_out, missing, different, pages, sizes, events)


def flaws(copy: Snapshot, timeout: float) -> List[str]:
    """Returns why the library should not be launched on a file, a part of what `inspect` finds. Raises the same."""
    with _reading(copy, timeout) as reader:
        tables = _tables(reader)
        return copy.left_out + _missing(reader, tables) + _pages(reader, tables)


# ---- Reading, and nothing else ----


class _Reader:
    """A connection whose statements end in time. They read ordinary tables only, see `_tables`."""

    def __init__(self, file: str) -> None:
        self._connection = sqlite3.connect(f"file:{quote(file)}?mode=rw", uri=True)
        self._connection.text_factory = lambda text: text.decode("utf-8", "replace")
        for setting in _SETTINGS:
            self._connection.execute(f"PRAGMA {setting}")
        self._is_done = threading.Event()
        self._is_late = False

    def rows(self, statement: str) -> Iterator[Tuple[Any, ...]]:
        """What a statement finds, row by row."""
        try:
            yield from self._connection.execute(statement)
        except sqlite3.OperationalError:
            if self._is_late:
                raise TookTooLong from None
            raise

    @contextmanager
    def limited(self, timeout: float) -> Iterator[None]:
        """Interrupts every statement that runs after the time."""
        watch = threading.Thread(target=self._interrupt_after, args=[timeout], daemon=True)
        watch.start()
        try:
            yield
        finally:
            self._is_done.set()
            watch.join()
            self._connection.close()

    def _interrupt_after(self, timeout: float) -> None:
        pause = min(timeout, threading.TIMEOUT_MAX)
        while not self._is_done.wait(pause):
            self._is_late = True
            self._connection.interrupt()
            pause = _PAUSE


@contextmanager
def _reading(copy: Snapshot, timeout: float) -> Iterator[_Reader]:
    try:
        reader = _Reader(str(copy.file))
        with reader.limited(timeout):
            yield reader
    except TookTooLong:
        raise TookTooLong(f"the check takes longer than {timeout:g} seconds; --timeout allows more") from None
    except sqlite3.Error as failure:
        raise Unsound(str(failure)) from None


def _quoted(name: str) -> str:
    return '"' + name.replace('"', '""') + '"'


# ---- What is found ----


@dataclass(frozen=True)
class _Table:
    """An ordinary table."""

    columns: Dict[str, Column]
    generated: List[str]
    """The columns that SQLite computes when they are read."""


def _tables(reader: _Reader) -> Dict[str, _Table]:
    """The ordinary tables: not virtual, and with a name that no view has as well in a forged schema."""
    rows = list(reader.rows(
        "SELECT name, type = 'table' AND sql LIKE 'CREATE TABLE %' FROM sqlite_master WHERE type <> 'trigger'"
    ))
    bearers = Counter(name.lower() for name, _ in rows)
    return {name: _table(reader, name) for name, is_table in rows if is_table and bearers[name.lower()] == 1}


def _table(reader: _Reader, name: str) -> _Table:
    rows = list(reader.rows(f"PRAGMA table_xinfo({_quoted(name)})"))
    columns = {row[1]: Column(row[1], row[2], bool(row[5])) for row in rows if row[6] not in _GENERATED}
    return _Table(columns, [row[1] for row in rows if row[6] in _GENERATED])


def _missing(reader: _Reader, tables: Dict[str, _Table]) -> List[str]:
    missing = [words for name in TABLES for words in _missing_of(name, tables)]
    return missing if _missing_of("Version", tables) else missing + _version_differences(reader)


def _missing_of(name: str, tables: Dict[str, _Table]) -> List[str]:
    if name not in tables:
        return [f"table {name} is missing"]
    table = tables[name]
    absent = [column.name for column in TABLES[name] if column.name not in {*table.columns, *table.generated}]
    return [f"column {name}.{column} is missing" for column in absent] + [
        f"column {name}.{column} is generated" for column in table.generated
    ]


def _different(tables: Dict[str, _Table]) -> List[str]:
    differences = []
    for name, columns in TABLES.items():
        found = dict(tables[name].columns) if name in tables else {}
        for column in columns:
            other = found.pop(column.name, column)
            if other.type != column.type:
                found_type = other.type or "without a type"
                differences.append(f"column {name}.{column.name} is {found_type}, not {column.type}")
            elif other.is_key != column.is_key:
                differences.append(f"column {name}.{column.name} is {'' if other.is_key else 'not '}part of the key")
        differences += [f"column {name}.{column} is unknown" for column in found]
    return differences


def _unknown(reader: _Reader) -> List[str]:
    expected = {("index", _INDEX), *(("table", table) for table in TABLES)}
    found = [row for row in reader.rows("SELECT type, name FROM sqlite_master") if not row[1].startswith(_OF_SQLITE)]
    return [f"{kind} {name} is unknown" for kind, name in found if (kind, name) not in expected]


def _version_differences(reader: _Reader) -> List[str]:
    for version, in reader.rows("SELECT VersionNumber FROM Version WHERE VersionId = 0"):
        return [] if version == VERSION else [f"the version is {str(version):.40}, not {VERSION}"]
    return ["the version is missing"]


def _pages(reader: _Reader, tables: Dict[str, _Table]) -> List[str]:
    """The full check evaluates generated columns and expressions of indexes, which may take forever."""
    names = reader.rows("SELECT name FROM sqlite_master WHERE type = 'table'")
    hazards = [f"{name} is not an ordinary table" for name, in names if name not in tables] + [
        f"column {name}.{column} is generated" for name, table in tables.items() for column in table.generated
    ]
    if hazards:
        return [f"not checked, since {hazards[0]}"]
    check = "quick_check" if any(_computes_index(reader, table) for table in tables) else "integrity_check"
    complaints = []
    try:
        for complaint, in reader.rows(f"PRAGMA {check}"):
            complaints.append(str(complaint))
    except sqlite3.DatabaseError as failure:
        complaints.append(str(failure))
    return [] if complaints == ["ok"] else complaints


def _computes_index(reader: _Reader, table: str) -> bool:
    """Whether an index of the table is partial or of an expression."""
    indexes = list(reader.rows(f"PRAGMA index_list({_quoted(table)})"))
    return any(partial for _, _, _, _, partial in indexes) or any(
        row[1] == _EXPRESSION for index in indexes for row in reader.rows(f"PRAGMA index_xinfo({_quoted(index[1])})")
    )


def _sizes(reader: _Reader, tables: Dict[str, _Table]) -> Iterator[TableSize]:
    sizes = _bytes(reader)
    for table in tables:
        if table.startswith(_OF_SQLITE):
            continue
        try:
            for rows, in reader.rows(f"SELECT count(*) FROM {_quoted(table)}"):
                yield TableSize(table, rows, sizes.get(table))
        except sqlite3.DatabaseError:
            pass  # its pages are broken, and the check says so


def _bytes(reader: _Reader) -> Dict[str, int]:
    try:
        rows = reader.rows("SELECT tbl_name, sum(pgsize) FROM dbstat JOIN sqlite_master USING (name) GROUP BY tbl_name")
        return {table: size for table, size in rows}
    except sqlite3.DatabaseError:
        return {}  # built without dbstat, or broken pages


def _events(reader: _Reader, tables: Dict[str, _Table]) -> Optional[EventCounts]:
    if _missing_of("Events", tables) or _missing_of("Devices", tables):
        return None
    counts = (
        "count(*)",
        "count(CASE WHEN EventsAffect <> 0 THEN 1 END)",
        "count(CASE WHEN EventsAffect IS NULL THEN 1 END)",
        "count(CASE WHEN EventsTime IS NULL THEN 1 END)",
        "count(CASE WHEN EventsAffect IS NULL OR EventsTime IS NULL THEN 1 END)",
        "count(CASE WHEN EventsDeviceId IS NULL OR EventsDeviceId NOT IN (SELECT DevicesId FROM Devices) THEN 1 END)",
    )
    try:
        return EventCounts(*next(reader.rows(f"SELECT {', '.join(counts)} FROM Events")))
    except sqlite3.DatabaseError:
        return None
