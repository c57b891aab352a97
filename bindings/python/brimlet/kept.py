"""The file as it was before a launch, kept if the launch replaces it."""

import errno
import os
import re
import shutil
import stat
from contextlib import suppress
from datetime import datetime, timedelta, timezone
from pathlib import Path
from typing import List, Optional, Tuple

from .codes import BackupFailed

SUFFIXES = ("", "-journal", "-wal")
"""The file, and what SQLite needs beside it after a crash."""
_DENIED = (errno.EACCES, errno.EPERM, errno.EROFS)


class _Unwritable(Exception):
    """The folder cannot be written, so the library cannot replace a file in it either."""


class Backup:
    """A second name for the file, its journal and its write-ahead log, from before a launch until after it.

    A hard link costs nothing, and it opens nothing: to close a file drops the locks that this process has on it. Where
    there are no hard links the backup is a copy.
    """

    def __init__(self, file: str, limit: int) -> None:
        """Backs up a file, to keep at most `limit` damaged ones. With 0 it does nothing.

        Does nothing either if the file is empty or not a regular one, or if the folder cannot be written.
        """
        self._file = file
        self._limit = limit
        self._name = file + ".before-launch"
        self._held: List[str] = []
        self._before: Optional[Tuple[int, ...]] = None
        if limit > 0:
            with suppress(_Unwritable):
                self._settle_stale()
                self._hold()

    def settle(self, is_usable: bool) -> Optional[Path]:
        """After the launch: drops the backup, or keeps it if the file was replaced. Returns the kept file."""
        if not self._held:
            return None
        if is_usable or self._is_in_place():
            self.drop()
            return None
        return self._keep()

    def drop(self) -> None:
        """Removes the backup. What cannot be removed, as on Windows while the file is open, the next time."""
        left = []
        for suffix in self._held:
            try:
                os.remove(self._name + suffix)
            except FileNotFoundError:
                pass
            except OSError:
                left.append(suffix)
        self._held = left

    def _settle_stale(self) -> None:
        """A backup that a process left when it died may be the only copy of a file."""
        self._held = [suffix for suffix in SUFFIXES if _is_regular(self._name + suffix)]
        try:
            self.settle(is_usable=False)
        except OSError as failure:
            self._held = []
            raise _reason(failure, self._name) from failure

    def _hold(self) -> None:
        if not _is_regular(self._file):
            return
        present = [suffix for suffix in SUFFIXES if _is_regular(self._file + suffix)]
        if not any(os.path.getsize(self._file + suffix) for suffix in present):
            return  # an unusable launch leaves an empty file: kept each time, it would push out those that count
        self._before = _identity(os.lstat(self._file))
        try:
            for suffix in present:
                if _duplicate(self._file + suffix, self._name + suffix):
                    self._held.append(suffix)
        except (BackupFailed, _Unwritable):
            self.drop()
            raise

    def _is_in_place(self) -> bool:
        try:
            file = os.lstat(self._file)
            return os.path.samestat(file, os.lstat(self._name)) or _identity(file) == self._before
        except FileNotFoundError:
            return False

    def _keep(self) -> Path:
        kept = damaged_name(self._file)
        for suffix in list(self._held):
            os.rename(self._name + suffix, kept + suffix)
            self._held.remove(suffix)
        self._remove_older(os.path.basename(kept))
        return Path(kept)

    def _remove_older(self, kept: str) -> None:
        """Counts by name, since a clock may have been set back; only the file just kept stays in any case."""
        folder, name = os.path.split(self._file)
        pattern = re.compile(re.escape(name) + r"\.damaged-[0-9]{8}T[0-9]{6}\.[0-9]{3}Z")
        others = [other for other in os.listdir(folder) if pattern.fullmatch(other) and other != kept]
        for older in sorted(others, reverse=True)[self._limit - 1:]:
            for suffix in SUFFIXES:
                with suppress(OSError):
                    os.remove(os.path.join(folder, older + suffix))


def damaged_name(file: str) -> str:
    """A name for a damaged file that nothing bears yet."""
    moment = datetime.now(timezone.utc)
    while True:
        name = f"{file}.damaged-{moment:%Y%m%dT%H%M%S}.{moment.microsecond // 1000:03}Z"
        if not any(os.path.lexists(name + suffix) for suffix in SUFFIXES):
            return name
        moment += timedelta(milliseconds=1)


def _is_regular(path: str) -> bool:
    return os.path.isfile(path) and not os.path.islink(path)


def _identity(status: os.stat_result) -> Tuple[int, ...]:
    """What tells a file from its replacement, which may get the number of the file that is gone."""
    return status.st_dev, status.st_ino, status.st_size, status.st_mtime_ns


def _duplicate(source: str, target: str) -> bool:
    """Gives a file a second name. Returns false if it is gone."""
    try:
        os.link(source, target)
    except FileNotFoundError:
        return False
    except OSError:  # no hard links here, or none to the file of another owner
        _copy(source, target)
    return True


def _copy(source: str, target: str) -> None:
    try:
        rights = stat.S_IMODE(os.stat(source).st_mode)
        copy = open(target, "xb", opener=lambda path, flags: os.open(path, flags, rights))
    except OSError as failure:
        raise _reason(failure, source) from failure
    try:
        with copy, open(source, "rb") as original:
            shutil.copyfileobj(original, copy)
            copy.flush()
            os.fsync(copy.fileno())  # the launch may remove the file
    except OSError as failure:
        os.remove(target)
        raise _failed(failure, source) from failure


def _reason(failure: OSError, file: str) -> Exception:
    """Why there is no new name in the folder: it cannot be written, or something else is wrong."""
    return _Unwritable() if failure.errno in _DENIED else _failed(failure, file)


def _failed(failure: OSError, file: str) -> BackupFailed:
    return BackupFailed(f"{file} cannot be kept from the launch, which replaces a damaged file: {failure}. "
                        "Remove the cause, or launch with keep_damaged=0")
