"""The exceptions of this package, except those of codes.py: one for each result code."""

from .values import Value


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
    """A function returned a code other than 0. Each code has a class of its own."""

    def __init__(self, function: str, code: int) -> None:
        self.function = function
        """The function that returned the code."""
        self.code = code
        """The code: a Code, or a plain number if it is unknown."""
        self.meaning = code.meaning if isinstance(code, Value) else "a code that is unknown"
        """The meaning of the code."""
        super().__init__(function, code)

    def __str__(self) -> str:
        return f"{self.function}: {int(self.code)}, {self.meaning}"
