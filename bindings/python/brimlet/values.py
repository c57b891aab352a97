"""What the enumerations of codes.py are made of: numbers with a meaning."""

from enum import IntEnum
from typing import Type, TypeVar

V = TypeVar("V", bound="Value")


class Value(IntEnum):
    """A number that the library returns, with its meaning."""

    meaning: str

    def __new__(cls: Type[V], number: int, meaning: str = "") -> V:
        value = int.__new__(cls, number)
        value._value_ = number
        value.meaning = meaning
        return value


class LaunchValue(Value):
    """The result of a launch."""

    @property
    def is_usable(self) -> bool:
        """Whether the store can be read and written after such a launch."""
        return self.name in ("OPENED", "CREATED")

    @property
    def is_replaced(self) -> bool:
        """Whether the file was replaced by one without tables, which has to be removed before the store can be used."""
        return self.name.startswith("REPLACED_")
