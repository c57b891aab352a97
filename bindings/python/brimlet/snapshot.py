"""A copy of a store, in an empty temporary folder.

A command that only reads uses such a copy, since SQLite does not leave what it reads alone: it rolls a hot journal back
and removes it, it deletes the super-journal that a journal names, it creates files beside a store in WAL mode, and its
locks can cost another process a write. A launch of the library even replaces a store that is locked for too long.
"""

import os
import shutil
import stat
import time
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path
from tempfile import TemporaryDirectory
from typing import BinaryIO, Iterator, List, Optional, Tuple

from .codes import Error
from .kept import SUFFIXES

_SIDECARS = SUFFIXES[1:]  # what SQLite applies to the file beside it
_MAGIC = bytes.fromhex("d9d505f920a163d7")  # at the start of a journal's segments, and behind a super-journal's name
_HEADER_LENGTH = 100  # the header of the file holds a counter of its changes
_ATTEMPTS = 10
_PAUSE = 0.05
_FLAGS = sum(getattr(os, flag, 0) for flag in ("O_RDONLY", "O_BINARY", "O_NONBLOCK", "O_NOFOLLOW"))
_REGULAR = "a regular file"
_KINDS = {
    stat.S_IFIFO: "a FIFO",
    stat.S_IFSOCK: "a socket",
    stat.S_IFCHR: "a device",
    stat.S_IFBLK: "a device",
    stat.S_IFDIR: "a folder",
    stat.S_IFLNK: "a symbolic link",
}


class Unsound(Error):
    """What is there is no sound store. The message says why."""


class Missing(Unsound):
    """There is no store."""


class Busy(Error):
    """Another process is using the store."""


@dataclass(frozen=True)
class Snapshot:
    """A copy of a store."""

    file: Path
    left_out: List[str]
    """The journals that are not copied, each with the reason."""


@contextmanager
def snapshot(file: Path) -> Iterator[Snapshot]:
    """Copies a store with its journal and its WAL. The copy is gone at the end of the block.

    Takes no lock and waits for nobody. A store that changes meanwhile is copied again. Raises Unsound if there is
    no regular file, Busy if the store keeps changing.
    """
    source = _store(file)
    for _ in range(_ATTEMPTS):
        with TemporaryDirectory(prefix="brimlet-") as directory:
            copy = _unchanged_copy(source, Path(directory) / file.name)
            if copy:
                yield copy
                return
        time.sleep(_PAUSE)
    raise Busy(f"another process keeps changing {file}; try again later")


def _store(file: Path) -> Path:
    """The file behind a name, which may be a link. SQLite keeps the journal beside the file, not beside the link."""
    source = Path(os.path.realpath(file))
    kind = _kind(source)
    if kind == _REGULAR:
        return source
    if kind:
        raise Unsound(f"it is {kind}, not a regular file")
    if os.path.lexists(file):
        raise Unsound("it is a symbolic link to nothing")
    for suffix in _SIDECARS:
        if os.path.lexists(beside(file, suffix)):
            raise Unsound(f"it is missing, and {beside(file, suffix).name} is there without it")
    raise Missing(f"there is no {file.name} in {file.parent}")


def beside(file: Path, suffix: str) -> Path:
    """The path of a sidecar, or of the file itself for an empty suffix."""
    return file.with_name(file.name + suffix)


def _kind(path: Path) -> Optional[str]:
    """What is at a path, None for nothing."""
    try:
        mode = os.lstat(path).st_mode
    except FileNotFoundError:
        return None
    return _REGULAR if stat.S_ISREG(mode) else _KINDS.get(stat.S_IFMT(mode), "something special")


def _unchanged_copy(source: Path, target: Path) -> Optional[Snapshot]:
    """A copy, or None if the store changed meanwhile."""
    try:
        before = _state(source)
        reasons = {suffix: reason for suffix in _SIDECARS for reason in _objections(beside(source, suffix), suffix)}
        parts = [suffix for suffix in SUFFIXES if suffix not in reasons and _kind(beside(source, suffix))]
        _require_room(sum(beside(source, suffix).stat().st_size for suffix in parts), target.parent)
        for suffix in parts:
            with _open(beside(source, suffix)) as content, beside(target, suffix).open("xb") as copied:
                shutil.copyfileobj(content, copied, 1 << 20)
        is_unchanged = _state(source) == before
    except FileNotFoundError:  # a transaction has just ended, and its journal is gone
        is_unchanged = False
    return Snapshot(target, list(reasons.values())) if is_unchanged else None


def _objections(sidecar: Path, suffix: str) -> Iterator[str]:
    kind = _kind(sidecar)
    if kind not in (None, _REGULAR):
        yield f"{sidecar.name} is {kind}, not a regular file"
    elif kind and suffix == "-journal" and _names_super_journal(sidecar):
        yield f"{sidecar.name} names a super-journal, which SQLite would delete"


def _names_super_journal(journal: Path) -> bool:
    """SQLite looks for the name at the very end of a journal, after all segments, and nowhere else."""
    with _open(journal) as content:
        is_over = content.read(1) in (b"", b"\0")  # SQLite ignores it
        end = content.seek(0, os.SEEK_END)
        content.seek(max(0, end - len(_MAGIC)))
        return not is_over and content.read() == _MAGIC


def _open(path: Path) -> BinaryIO:
    """Opens a regular file for reading. Does not wait if a FIFO has just taken its place."""
    content = os.fdopen(os.open(path, _FLAGS), "rb")
    if not stat.S_ISREG(os.fstat(content.fileno()).st_mode):
        content.close()
        raise Unsound("it is not a regular file")
    return content


def _state(source: Path) -> Tuple[object, ...]:
    """What every transaction changes."""
    state: List[object] = []
    for path in (beside(source, suffix) for suffix in SUFFIXES):
        status = path.lstat() if _kind(path) else None
        state.append(status and (status.st_ino, status.st_size, status.st_mtime_ns))
    with _open(source) as content:
        return (*state, content.read(_HEADER_LENGTH))


def _require_room(needed: int, directory: Path) -> None:
    if needed > shutil.disk_usage(directory).free:
        raise Error(f"{directory.parent} has no room for a copy of {needed} bytes; the environment variable TMPDIR "
                    "names another folder")
