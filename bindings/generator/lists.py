"""The library's own lists as data: the functions that take a document or a search, their records, and the tables.

The program `describe` prints them as JSON; read() makes Lists of that.
"""

import json
import subprocess
from dataclasses import dataclass
from typing import Any, Dict, List


@dataclass(frozen=True)
class Id:
    """An id in a document beside the record, or alone."""

    key: str
    column: str


@dataclass(frozen=True)
class Function:
    name: str
    form: str
    """"batch", "record", "ids" or "search"."""
    record: str
    """The record of the document or of the search. Empty for "ids"."""
    ids: List[Id]
    searches: List[str]
    """The keys to search by."""


@dataclass(frozen=True)
class Member:
    """A member of a record's object in a document."""

    keys: List[str]
    """The key, and the one that is read if it is missing."""
    kind: str
    """One of the kinds that describe.cpp lists."""
    record: str
    """The record that it refers to or contains, or empty."""
    is_required: bool
    is_searchable: bool
    field: str
    """The field of the flat record that shows it."""
    count: str
    """The field that counts an array, or empty."""
    column: str
    """The column that stores it, or empty."""


@dataclass(frozen=True)
class Record:
    name: str
    flat: str
    table: str
    members: List[Member]

    @property
    def is_searched(self) -> bool:
        """Whether a function searches for the record."""
        return any(member.is_searchable for member in self.members)


@dataclass(frozen=True)
class Column:
    name: str
    type: str
    is_key: bool
    """Whether it is part of the primary key."""


@dataclass(frozen=True)
class Table:
    name: str
    columns: List[Column]


@dataclass(frozen=True)
class Lists:
    functions: List[Function]
    records: List[Record]
    tables: List[Table]
    """In the order of their creation."""
    schema_version: str

    def record(self, name: str) -> Record:
        return next(record for record in self.records if record.name == name)

    def table(self, name: str) -> Table:
        return next(table for table in self.tables if table.name == name)


def read(describe: str) -> Lists:
    """Runs the program `describe`."""
    return parse(json.loads(subprocess.run([describe], check=True, stdout=subprocess.PIPE).stdout))


def parse(description: Dict[str, Any]) -> Lists:
    """Makes Lists of what the program prints."""
    return Lists(
        functions=[_function(item) for item in description["functions"]],
        records=[Record(item["name"], item["flat"], item["table"], [_member(member) for member in item["members"]])
                 for item in description["records"]],
        tables=[_table(item) for item in description["tables"]],
        schema_version=description["schemaVersion"],
    )


def _function(item: Dict[str, Any]) -> Function:
    ids = [Id(one["key"], one["column"]) for one in item.get("ids", [])]
    return Function(item["name"], item["form"], item.get("record", ""), ids, item.get("keys", []))


def _member(item: Dict[str, Any]) -> Member:
    return Member(
        keys=[item[name] for name in ("key", "alternative") if name in item], kind=item["kind"],
        record=item.get("record", ""), is_required=item["required"], is_searchable=item["searchable"],
        field=item["field"], count=item.get("count", ""), column=item.get("column", ""),
    )


def _table(item: Dict[str, Any]) -> Table:
    return Table(item["name"], [Column(column["name"], column["type"], column["name"] in item["primaryKey"])
                                for column in item["columns"]])
