"""A launch of the library: its thread and working directory, its calls one at a time, and its end.

Signal handlers and finalizers run on a thread that may be anywhere in here, and a handler may raise. So no thread waits
for itself, and what is cut short is left in a state from which the next session, or the end of the process, goes on.
"""

import atexit
import os
import sys
import threading
import time
from contextlib import suppress
from dataclasses import dataclass
from pathlib import Path
from typing import Any, Callable, Dict, List, Optional

from .codes import LaunchResult, State
from .errors import AlreadyLaunched, CallInProgress, LaunchEnded, LaunchTimedOut, NotLaunched
from .kept import Backup
from .library import Library

FILE_NAME = "CacheDb"
_POLL = 0.001


@dataclass(frozen=True)
class LaunchReport:
    """How the launches of a session went."""

    first: LaunchResult
    """The first launch."""
    second: Optional[LaunchResult] = None
    """The second launch, where recovery took one."""
    kept: Optional[Path] = None
    """The file that the first launch replaced, under the name that it is kept by."""

    @property
    def last(self) -> LaunchResult:
        """The launch that the session runs on."""
        return self.first if self.second is None else self.second


class Host:
    """The one launch that a library can have at a time, with its thread, its working directory and its backup."""

    _hosts: Dict[Library, "Host"] = {}

    @classmethod
    def of(cls, library: Library) -> "Host":
        return cls._hosts.setdefault(library, cls(library))

    @classmethod
    def all(cls) -> List["Host"]:
        return list(cls._hosts.values())

    def __init__(self, library: Library) -> None:
        self._exports = library.exports
        self._claim: Dict[str, "Launch"] = {}  # one entry at most: setdefault claims in one step, without a lock
        self._thread: Optional[threading.Thread] = None
        self._before: Optional[str] = None
        self._backup: Optional[Backup] = None
        self._is_parents = False

    # ---- Who has it ----

    def claim(self, launch: "Launch") -> None:
        if self._is_parents:
            raise AlreadyLaunched("the library was launched by the parent process, and a forked child cannot launch it "
                                  'again; start the child in another way, as multiprocessing does by "spawn"')
        if self._claim.setdefault("", launch) is not launch:
            raise AlreadyLaunched("the library is launched already")

    def is_claimed_by(self, launch: "Launch") -> bool:
        return self._claim.get("") is launch

    def disclaim(self, launch: "Launch") -> None:
        if self.is_claimed_by(launch):
            self._claim.clear()

    # ---- From the launch to the exit ----

    def launch(self, directory: str, timeout: float, keep: int = 0) -> LaunchResult:
        self._end_forgotten(timeout)
        if self._exports["getState"]() != State.NONE:
            raise AlreadyLaunched("the library is launched already, by another part of the process")
        before = os.getcwd()
        self._backup = Backup(os.path.join(directory, FILE_NAME), keep)
        self._before = before
        # A daemon, since a process that forgets its session would else wait for it for ever, before it could end it.
        self._thread = threading.Thread(target=self._exports["launchCache"], name="brimlet", daemon=True)
        try:
            os.chdir(directory)
            self._thread.start()
        except (OSError, RuntimeError):
            self._thread = None
            self._go_back()
            self._backup.drop()
            raise
        return self._wait_until_running(timeout)

    def settle(self, result: LaunchResult) -> Optional[Path]:
        """Keeps the file if the launch replaced it. Returns where it is kept."""
        return self._backup.settle(result.is_usable) if self._backup else None

    def exit(self) -> None:
        if self._thread:
            self._exports["exitCache"]()
            self._thread.join()
            self._thread = None

    def end(self, launch: "Launch") -> None:
        """Exits and disclaims. Does nothing for a launch that does not have the library, as in a forked child."""
        if self.is_claimed_by(launch):
            try:
                self.exit()
                if self._backup:
                    self._backup.drop()
            finally:
                self._claim.clear()

    def _end_forgotten(self, timeout: float) -> None:
        """Ends a launch that its session gave up: one that took too long, or that a signal handler cut short."""
        if self._thread:
            result = LaunchResult.NONE
            with suppress(LaunchEnded):
                result = self._wait_until_running(timeout)
                self.exit()
            self.settle(result)

    def _wait_until_running(self, timeout: float) -> LaunchResult:
        """Polls, since the state is the only sign of life. An exit before the event loop runs would be missed."""
        thread = self._thread
        assert thread
        end = time.monotonic() + timeout
        while self._exports["getState"]() != State.RUNNING:
            if not thread.is_alive():
                self._thread = None
                self._go_back()
                raise LaunchEnded("the launch came back without having run")
            if time.monotonic() >= end:
                raise LaunchTimedOut("the launch is not finished in time")
            time.sleep(_POLL)
        self._go_back()
        return LaunchResult(self._exports["getLaunchCacheResult"]())

    def _go_back(self) -> None:
        before, self._before = self._before, None
        if before is not None:
            with suppress(OSError):  # the directory may be gone, and nothing here needs it
                os.chdir(before)

    # ---- The end of the process, and a forked one ----

    def close(self) -> None:
        """At the end of the process, waits for what is under way and ends it."""
        for launch in list(self._claim.values()):
            launch.end()
        if not self._claim:
            self._end_forgotten(float("inf"))

    def forget(self) -> None:
        """In a forked child: the launch is the parent's, and so is its file. The child has none of its threads."""
        for launch in self._claim.values():
            launch.forget()
        self._claim.clear()
        self._is_parents = self._is_parents or self._thread is not None
        self._thread = None
        self._backup = None
        self._go_back()


class Launch:
    """A launch that a session has, apart from it, so that it can be ended for one that is gone."""

    def __init__(self, host: Host) -> None:
        self._host = host
        self._lock = threading.RLock()  # re-entrant: a signal handler does not wait for the thread that it interrupts
        self._is_open = False
        self._is_busy = False
        self._refusal = "after the session's end"

    def begin(self, directory: str, timeout: float, recover: bool, keep: int) -> LaunchReport:
        with self._lock:
            try:
                self._host.claim(self)
                report = self._launch(directory, timeout, recover, keep)
                self._is_open = self._host.is_claimed_by(self)  # not so in a child that a signal handler forked
                return report
            except BaseException:
                self._host.disclaim(self)
                raise

    def _launch(self, directory: str, timeout: float, recover: bool, keep: int) -> LaunchReport:
        first = self._host.launch(directory, timeout, keep)
        if not recover or not first.is_replaced:
            return LaunchReport(first, kept=self._host.settle(first))
        self._host.exit()
        try:
            for name in (FILE_NAME, FILE_NAME + "-journal"):
                with suppress(FileNotFoundError):
                    os.remove(os.path.join(directory, name))
        finally:
            kept = self._host.settle(first)
        return LaunchReport(first, self._host.launch(directory, timeout), kept)

    def call(self, name: str, export: Callable[..., Any], *arguments: Any) -> int:
        """Calls a function when the calls of other threads have returned."""
        with self._lock:
            if not self._is_open:
                raise NotLaunched(f"{name} was called {self._refusal}")
            if self._is_busy:
                raise CallInProgress(f"{name} was called in the middle of another call on the same thread, by a signal "
                                     "handler or a finalizer. Set a flag there, and call when the other has returned")
            self._is_busy = True
            try:
                code: int = export(*arguments)
                return code
            finally:
                self._is_busy = False
                if not self._is_open:
                    self._exit()

    def end(self) -> None:
        """Waits for the call of another thread, then for the launch thread.

        In the middle of a call on the same thread, leaves the exit to that call. May be called again.
        """
        with self._lock:
            self._is_open = False
            if not self._is_busy:
                self._exit()

    def _exit(self) -> None:
        self._is_busy = True
        try:
            self._host.end(self)
        finally:
            self._is_busy = False

    def forget(self) -> None:
        """In a forked child, where another thread of the parent may have had the lock."""
        self._lock = threading.RLock()
        self._is_open = False
        self._refusal = "in a forked child process, and the launch is the parent's"


@atexit.register
def _close_all() -> None:
    for host in Host.all():
        host.close()


def _forget_all() -> None:
    for host in Host.all():
        host.forget()


if sys.platform != "win32":
    os.register_at_fork(after_in_child=_forget_all)
