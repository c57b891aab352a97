"""The session: the library from its launch to its exit."""

import os
import weakref
from functools import partial
from types import TracebackType
from typing import Any, NamedTuple, Optional, Tuple, Type, cast

from .codes import Code, LaunchResult, State, error_for
from .functions import FUNCTIONS, Calls
from .launch import FILE_NAME as FILE_NAME, Host, Launch
from .library import Library, PathArgument
from .prototypes import Function, R, Role


class Answer(NamedTuple):
    """What a function returned: its code, a Code unless the number is unknown, and with the code 0 what came out."""

    code: int
    value: Any


class Session(Calls):
    """The library, from its launch to its exit. One at a time in a process.

    Every function of brimlet.h that needs a launched library is a method of the same name; `help` of a method shows
    its parameters and what it raises. A code other than 0 is an exception, but a list read that finds nothing returns
    an empty list. Several threads may use a session at once, their calls wait for each other.

    A document is a dict, or a list of dicts where the function takes a batch. Its keys stand in the help of the class
    of the record, such as `help(brimlet.User)`. An id-only document may be the id alone.

    The library keeps its file in the working directory at launch, so a session makes its directory the working
    directory of the whole process while it launches, and goes back as soon as the library runs.

    A launch replaces a file that fails its checks by one that cannot be used. The session keeps the old file beside it,
    as `CacheDb.damaged-` with the time, and recovers unless it is told not to: it exits, removes the new file, and
    launches again. Both results, and the kept file, stand in `report`.

    A signal handler, or a finalizer that the garbage collector runs, may come in the middle of a call on the same
    thread. A call raises CallInProgress there; `close` returns at once, and the session ends with the call that is in
    progress. In a forked child the session is closed: the launch is the parent's, and the child cannot launch.
    """

    def __init__(
        self,
        directory: PathArgument = ".",
        *,
        library: Optional[PathArgument] = None,
        timeout: float = 10.0,
        recover: bool = True,
        keep_damaged: int = 3,
    ) -> None:
        """Launches the library on a thread of its own and waits until it runs, for each launch up to `timeout` seconds.

        Keeps the newest `keep_damaged` of the files that launches replaced; 0 keeps none, and removes none.

        Raises LibraryNotFound; AlreadyLaunched where another session lives; LaunchTimedOut where a launch takes too
        long: it goes on behind the scenes, and the working directory stays where it is until the next session or the
        end of the process has waited for it and ended it, and so it is if a signal handler raises meanwhile;
        LaunchEnded where launchCache comes back by itself; BackupFailed where the file cannot be kept; OSError where
        the directory cannot be entered or its file not be removed.
        """
        if keep_damaged < 0:
            raise ValueError("keep_damaged has to be 0 or more")
        self._library = Library.load(library)
        self._launch = Launch(Host.of(self._library))
        # Before the launch, so that no session that was launched is without. The end of the process has a hook.
        weakref.finalize(self, self._launch.end).atexit = False
        self.report = self._launch.begin(os.path.abspath(os.fsdecode(directory)), timeout, recover, keep_damaged)
        """How the launches went, and the file that was kept."""

    @property
    def is_usable(self) -> bool:
        """Whether the store can be read and written."""
        return self.report.last.is_usable

    @property
    def state(self) -> State:
        """What getState answers."""
        return State(self._library.exports["getState"]())

    @property
    def launch_result(self) -> LaunchResult:
        """What getLaunchCacheResult answers."""
        return LaunchResult(self._library.exports["getLaunchCacheResult"]())

    def answer(self, name: str, *arguments: Any) -> Answer:
        """Calls a function by its name and returns its code with what came out. Raises nothing for a code."""
        return self._answer(_function(name), arguments)

    def call(self, name: str, *arguments: Any) -> Any:
        """Calls a function by its name, as the method of that name does."""
        return self._call(_function(name), *arguments)

    def _call(self, function: Function[R], *arguments: Any) -> R:
        code, value = self._answer(function, arguments)
        if code == Code.NOT_FOUND and function.is_list_read:
            value = []
        elif code != Code.DONE:
            raise error_for(function.name, code)
        return cast(R, value)

    def _answer(self, function: Function[Any], arguments: Tuple[Any, ...]) -> Answer:
        return Answer(*self._library.call(function, arguments, partial(self._launch.call, function.name)))

    def close(self) -> None:
        """Exits when a call in progress has returned, and waits for the launch thread. May be called again.

        In the middle of a call on the same thread, as in a signal handler, it returns at once: no further call is
        taken, and the call in progress exits before it returns.
        """
        self._launch.end()

    def __enter__(self) -> "Session":
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        error: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self.close()


def _function(name: str) -> Function[Any]:
    """The entry of a function for clients."""
    function = FUNCTIONS.get(name)
    if function is None:
        raise AttributeError(f"there is no function {name}")
    if function.role is not Role.CALL:
        raise AttributeError(f"{name} is called by {function.role.value}")
    return function
