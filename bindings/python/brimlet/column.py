"""What the list of the file's tables, in schema.py, is made of."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Column:
    """A column of a table."""

    name: str
    type: str
    is_key: bool
