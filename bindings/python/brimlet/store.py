"""The store of a folder, as a command uses it: checked first, read through a copy, renamed rather than removed."""

import os
import sqlite3
from contextlib import contextmanager
from pathlib import Path
from typing import Iterator
from urllib.parse import quote

from .inspection import flaws
from .kept import SUFFIXES, damaged_name
from .snapshot import Busy, Snapshot, Unsound, beside, snapshot


@contextmanager
def sound_copy(file: Path, timeout: float) -> Iterator[Snapshot]:
    """A copy on which the library can be launched. Raises Unsound if the launch would replace the file, or
    if its pages are damaged."""
    with snapshot(file) as copy:
        found = flaws(copy, timeout)
        if found:
            raise Unsound(found[0] + (f", and {len(found) - 1} more" if found[1:] else ""))
        yield copy


def require_idle(file: Path) -> None:
    """Raises Busy if another process has locked the file. A launch that cannot read it replaces it."""
    connection = sqlite3.connect(f"file:{quote(str(file.absolute()))}?mode=rw", uri=True, isolation_level=None)
    try:
        connection.execute("BEGIN IMMEDIATE")
        connection.execute("ROLLBACK")
    except sqlite3.OperationalError as failure:
        raise Busy(f"{file} cannot be written: {failure}; try again when no other process is using it") from None
    finally:
        connection.close()


def put_aside(file: Path) -> Path:
    """Renames a file with its journal and its write-ahead log, and gives the new name."""
    kept = Path(damaged_name(str(file)))
    for suffix in SUFFIXES:
        if os.path.lexists(beside(file, suffix)):
            os.rename(beside(file, suffix), beside(kept, suffix))
    return kept
