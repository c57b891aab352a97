"""What an exported function takes and gives. The prototypes for ctypes are made from it."""

import ctypes
from dataclasses import dataclass
from enum import Enum
from typing import Any, ClassVar, Generic, List, Optional, Tuple, TypeVar, Union

from .documents import Form
from .layout import TextPointer, layout_of

R = TypeVar("R")


class Gives(Enum):
    """What a function hands out beside its result code."""

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


class Function(Generic[R]):
    """An exported function. R is what a call by its name returns in Python."""

    role: ClassVar[Role] = Role.CALL
    result: Any = ctypes.c_uint32

    def __init__(self, family: Optional[type], gives: Gives, *takes: Input, texts: int = 0) -> None:
        """`family` is the record that the function is about, `texts` the number of texts that it hands out."""
        self.name = ""
        self.family = family
        self.gives = gives
        self.takes = takes
        self.texts = texts
        self.arguments = self._arguments()

    def __set_name__(self, owner: type, name: str) -> None:
        self.name = name

    def __str__(self) -> str:
        takes = ", ".join(
            f"{put.name}: {put.form}" if isinstance(put, DocumentInput) else put.name for put in self.takes
        )
        kind = self.family.__name__ if self.family else ""
        gives = {Gives.RECORD: kind, Gives.LIST: f"list of {kind}", Gives.TEXTS: ", ".join(["text"] * self.texts)}
        return f"{self.name}({takes})" + (f" -> {gives[self.gives]}" if self.gives in gives else "")

    __repr__ = __str__

    @property
    def is_list_read(self) -> bool:
        """Whether it reads a list, which may be empty. Adding events is no read, although it hands out a list."""
        return self.gives is Gives.LIST and not any(isinstance(put, DocumentInput) for put in self.takes)

    @property
    def structure(self) -> Any:
        """The flat record of the family."""
        assert self.family
        return layout_of(self.family).structure

    def _arguments(self) -> List[Any]:
        arguments: List[Any] = [ctypes.POINTER(TextPointer)] * self.texts
        if self.gives in (Gives.RECORD, Gives.LIST):
            arguments.append(ctypes.POINTER(ctypes.POINTER(self.structure)))
        if self.gives is Gives.LIST:
            arguments.append(ctypes.POINTER(ctypes.c_uint32))
        for put in self.takes:
            arguments += [ctypes.c_uint32] if isinstance(put, NumberInput) else [TextPointer, ctypes.c_uint32]
        return arguments


class Lifecycle(Function[Any]):
    """A function of the launch and the exit, with the ctypes type of its result."""

    role = Role.LIFECYCLE

    def __init__(self, result: Any) -> None:
        super().__init__(None, Gives.NOTHING)
        self.result = result


class Release(Function[int]):
    """A function that releases a record or a list of them."""

    role = Role.RELEASE

    def __init__(self, family: type, releases: Gives) -> None:
        self.releases = releases
        super().__init__(family, Gives.NOTHING)

    def _arguments(self) -> List[Any]:
        count = [ctypes.c_uint32] if self.releases is Gives.LIST else []
        return [ctypes.POINTER(self.structure), *count]
