"""What the library answers: codes with their meaning, and the exceptions that carry them."""

from enum import IntEnum
from typing import Dict, Type


class Code(IntEnum):
    """The answer of every function but those of the lifecycle."""

    meaning: str

    def __new__(cls, number: int, meaning: str = "") -> "Code":
        code = int.__new__(cls, number)
        code._value_ = number
        code.meaning = meaning
        return code

    DONE = 0, "done"
    NO_BLOCK = 3, "no block for the list could be had"
    INCOMPLETE = 5, "a required member of the document is missing, or a member has a wrong type"
    READ_FAILED = 7, "the store could not be read"
    NOT_FOUND = 8, "the store holds nothing that fits"
    WRITE_FAILED = 9, "the store could not be written"
    REFUSED = 10, "an argument is refused"
    NO_PARENT = 11, "written, but the device or section is not in the store"
    NO_RECORD = 255, "a record was promised and is not there"


class LaunchResult(IntEnum):
    """How a launch went."""

    meaning: str

    def __new__(cls, number: int, meaning: str = "") -> "LaunchResult":
        result = int.__new__(cls, number)
        result._value_ = number
        result.meaning = meaning
        return result

    OPENED = 0, "the file was opened"
    FAILED = 6, "the file could not be created or replaced"
    CREATED = 100, "the file was created"
    REPLACED_SCHEMA = 101, "a table or column was missing, the file was replaced by an empty one"
    REPLACED_UNREADABLE = 102, "the file would not open, it was replaced by an empty one"
    REPLACED_VERSION = 103, "the file is no database or of another version, it was replaced by an empty one"
    NONE = 255, "nothing is launched"

    @property
    def is_usable(self) -> bool:
        """Whether the store can be read and written after a launch that went so."""
        return self in (LaunchResult.OPENED, LaunchResult.CREATED)

    @property
    def is_replaced(self) -> bool:
        """Whether the file was replaced by one without tables, which has to be removed before it can be used."""
        return self in (
            LaunchResult.REPLACED_SCHEMA,
            LaunchResult.REPLACED_UNREADABLE,
            LaunchResult.REPLACED_VERSION,
        )


class State(IntEnum):
    """How far a launch is."""

    NONE = 0
    LAUNCHED = 1
    RUNNING = 2


class Error(Exception):
    """The base of all exceptions of this package."""


class LibraryNotFound(Error):
    """The shared library cannot be loaded, or it lacks a function."""


class SessionError(Error):
    """A launch did not go as it should, or a call came out of order."""


class AlreadyLaunched(SessionError):
    """The library is launched already; it can be so only once in a process."""


class NotLaunched(SessionError):
    """A call came after the session's end, or in a forked child, where the launch is the parent's."""


class CallInProgress(SessionError):
    """A call came in the middle of another one on the same thread, from a signal handler or a finalizer."""


class LaunchTimedOut(SessionError, TimeoutError):
    """A launch is not finished in the time that it was given."""


class LaunchEnded(SessionError):
    """launchCache came back without having run."""


class BackupFailed(SessionError):
    """The file cannot be backed up before the launch, which would replace it if it is damaged."""


class CallError(Error):
    """A function answered another code than 0. The classes below are one for each code."""

    def __init__(self, function: str, code: int) -> None:
        self.function = function
        """The function that answered."""
        self.code = code
        """What it answered, a Code where the number is one."""
        self.meaning = code.meaning if isinstance(code, Code) else "a code that is unknown"
        """The code in words."""
        super().__init__(function, code)

    def __str__(self) -> str:
        return f"{self.function}: {int(self.code)}, {self.meaning}"


class NoBlock(CallError):
    """3: a list was read, but no block for it could be had."""


class Incomplete(CallError, ValueError):
    """5: a required member of the document or its envelope is missing, or a member has a wrong type."""


class ReadFailed(CallError):
    """7: the store could not be read."""


class NotFound(CallError, LookupError):
    """8: the store was read and holds nothing that fits."""


class WriteFailed(CallError):
    """9: the store could not be written; it is as it was before the call."""


class Refused(CallError, ValueError):
    """10: an argument is refused: a text that is no JSON object, an empty batch, a key that cannot be searched for."""


class NoParent(CallError):
    """11: the row was written, but its device or section is not in the store."""


class NoRecord(CallError):
    """255: a record was promised and is not there."""


_ERRORS: Dict[Code, Type[CallError]] = {
    Code.NO_BLOCK: NoBlock,
    Code.INCOMPLETE: Incomplete,
    Code.READ_FAILED: ReadFailed,
    Code.NOT_FOUND: NotFound,
    Code.WRITE_FAILED: WriteFailed,
    Code.REFUSED: Refused,
    Code.NO_PARENT: NoParent,
    Code.NO_RECORD: NoRecord,
}


_CODES = {int(code): code for code in Code}


def code_of(number: int) -> int:
    """The Code of a number, or the number itself where it is none."""
    return _CODES.get(number, number)


def error_for(function: str, number: int) -> CallError:
    """The exception for a code that is not 0."""
    code = code_of(number)
    kind: Type[CallError] = _ERRORS.get(code, CallError) if isinstance(code, Code) else CallError
    return kind(function, code)
