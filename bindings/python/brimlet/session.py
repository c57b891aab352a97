"""The session: the library from its launch to its exit."""

import atexit
import os
import threading
import time
import weakref
from dataclasses import dataclass
from types import TracebackType
from typing import Any, Dict, Iterator, NamedTuple, Optional, Type
from contextlib import contextmanager

from .codes import (
    AlreadyLaunched, Code, LaunchEnded, LaunchResult, LaunchTimedOut, NotLaunched, State, error_for,
)
from .functions import FUNCTIONS, Function, Functions, Role
from .library import Library, PathArgument

FILE_NAME = "CacheDb"
_POLL = 0.001


@dataclass(frozen=True)
class LaunchReport:
    """How the launches of a session went."""

    first: LaunchResult
    """The first launch."""
    second: Optional[LaunchResult] = None
    """The second launch, where recovery took one."""

    @property
    def last(self) -> LaunchResult:
        """The launch that the session runs on."""
        return self.first if self.second is None else self.second


class Answer(NamedTuple):
    """What a function answered: its code, a Code where the number is one, and with the code 0 what came out."""

    code: int
    value: Any


class _Host:
    """The one launch that a library can have at a time, with its thread and its working directory."""

    _hosts: Dict[Library, "_Host"] = {}

    @classmethod
    def of(cls, library: Library) -> "_Host":
        return cls._hosts.setdefault(library, cls(library))

    def __init__(self, library: Library) -> None:
        self._exports = library.exports
        self._claim = threading.Lock()
        self._thread: Optional[threading.Thread] = None
        self._before: Optional[str] = None

    def claim(self) -> None:
        if not self._claim.acquire(blocking=False):
            raise AlreadyLaunched("the library is launched already")

    def disclaim(self) -> None:
        self._claim.release()

    def launch(self, directory: PathArgument, timeout: float) -> LaunchResult:
        self.end_forgotten(timeout)
        if self._exports["getState"]() != State.NONE:
            raise AlreadyLaunched("the library is launched already, by another part of the process")
        before = os.getcwd()
        os.chdir(directory)
        self._before = before
        # A daemon, since a process that forgets its session would else wait for it for ever, before it could end it.
        self._thread = threading.Thread(target=self._exports["launchCache"], name="brimlet", daemon=True)
        try:
            self._thread.start()
        except RuntimeError:
            self._thread = None
            self._go_back()
            raise
        self._wait_until_running(timeout)
        return LaunchResult(self._exports["getLaunchCacheResult"]())

    def exit(self) -> None:
        thread, self._thread = self._thread, None
        if thread:
            self._exports["exitCache"]()
            thread.join()

    def end_forgotten(self, timeout: float) -> None:
        """Ends a launch that was given up by its session because it took too long."""
        if self._thread:
            self._wait_until_running(timeout)
            self.exit()

    def _wait_until_running(self, timeout: float) -> None:
        """Polls, since the state is the only sign of life. An exit before the event loop runs would be missed."""
        assert self._thread
        end = time.monotonic() + timeout
        while self._exports["getState"]() != State.RUNNING:
            if not self._thread.is_alive():
                self._thread = None
                self._go_back()
                raise LaunchEnded("the launch came back without having run")
            if time.monotonic() >= end:
                raise LaunchTimedOut("the launch is not finished in time")
            time.sleep(_POLL)
        self._go_back()

    def _go_back(self) -> None:
        before, self._before = self._before, None
        if before is not None:
            try:
                os.chdir(before)
            except OSError:
                pass  # the directory may be gone, and nothing here needs it


@atexit.register
def _end_forgotten_launches() -> None:
    for host in list(_Host._hosts.values()):
        try:
            host.end_forgotten(float("inf"))
        except LaunchEnded:
            pass  # it came back by itself


class _Launch:
    """A launch that runs, apart from its session, so that it can be ended for one that is gone."""

    def __init__(self, host: _Host) -> None:
        self._host = host
        self._lock = threading.Lock()
        self._is_open = True

    @contextmanager
    def turn(self, entry: "Function[Any]") -> Iterator[None]:
        """For the time of a call."""
        with self._lock:
            if not self._is_open:
                raise NotLaunched(f"{entry.name} was called after the session's end")
            yield

    def end(self) -> None:
        """Waits for a call that is under way, then for the launch thread. Does nothing when called again."""
        with self._lock:
            if self._is_open:
                self._is_open = False
                try:
                    self._host.exit()
                finally:
                    self._host.disclaim()


class Session(Functions):
    """The library, from its launch to its exit. One at a time in a process.

    Every function of brimlet.h that needs a launched library is a method of the same name; `help` of a method shows
    its arguments. A code other than 0 is an exception of codes.py, but a list read that finds nothing gives an empty
    list. Several threads may use a session at once, their calls wait for each other.

    The library keeps its file in the working directory at launch, so a session makes its directory the working
    directory of the whole process while it launches, and goes back as soon as the library runs.

    A file that fails its checks is replaced at launch by one that cannot be used. Nothing of it is left then, so a
    session recovers unless it is told not to: it exits, removes the file and its journal, and launches again. Both
    results stand in `report`.
    """

    def __init__(
        self,
        directory: PathArgument = ".",
        *,
        library: Optional[PathArgument] = None,
        timeout: float = 10.0,
        recover: bool = True,
    ) -> None:
        """Launches the library on a thread of its own and waits until it runs, for each launch up to `timeout` seconds.

        Raises LibraryNotFound; AlreadyLaunched where another session lives; LaunchTimedOut where a launch takes too
        long: it goes on behind the scenes, and the working directory stays where it is until the next session or the
        end of the process has waited for it and ended it; LaunchEnded where launchCache comes back by itself; OSError
        where the directory cannot be entered or its file not be removed.
        """
        self._library = Library.load(library)
        host = _Host.of(self._library)
        host.claim()
        try:
            self.report = self._launch(host, os.path.abspath(directory), timeout, recover)
        except BaseException:
            host.disclaim()
            raise
        self._running = _Launch(host)
        weakref.finalize(self, self._running.end)  # where a session is dropped, and at the process's end

    @staticmethod
    def _launch(host: _Host, directory: str, timeout: float, recover: bool) -> LaunchReport:
        first = host.launch(directory, timeout)
        if not recover or not first.is_replaced:
            return LaunchReport(first)
        host.exit()
        for name in (FILE_NAME, FILE_NAME + "-journal"):
            try:
                os.remove(os.path.join(directory, name))
            except FileNotFoundError:
                pass
        return LaunchReport(first, host.launch(directory, timeout))

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
        """Calls a function by its name and gives its code with what came out. Raises nothing for a code."""
        entry = FUNCTIONS.get(name)
        if entry is None:
            raise AttributeError(f"there is no function {name}")
        if entry.role is not Role.CALL:
            raise AttributeError(f"{name} is called by {entry.role.value}")
        return Answer(*self._library.call(entry, arguments, self._running.turn(entry)))

    def call(self, name: str, *arguments: Any) -> Any:
        """Calls a function by its name, as the method of that name does."""
        code, value = self.answer(name, *arguments)
        if code == Code.DONE:
            return value
        if code == Code.NOT_FOUND and FUNCTIONS[name].is_list_read:
            return []
        raise error_for(name, code)

    def close(self) -> None:
        """Exits, once a call that is under way has ended, and waits for the launch thread. May be called again."""
        self._running.end()

    def __enter__(self) -> "Session":
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        error: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self.close()
