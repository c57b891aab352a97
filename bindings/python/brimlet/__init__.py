"""Brimlet for Python: a local, disposable copy of a monitoring service's reference data and event journal.

    with brimlet.Session("cache") as session:
        session.addUsers([{"id": 7, "name": "Anna"}])
        print(session.getUser(7).name)

The functions and the fields of records bear the names that they have in brimlet.h and FlatRecords.h, which are the
manual; what is the package's own is named as in all Python.
"""

from .codes import *
from .documents import BareId as BareId, Document as Document
from .errors import (
    AlreadyLaunched as AlreadyLaunched,
    BackupFailed as BackupFailed,
    CallError as CallError,
    CallInProgress as CallInProgress,
    Error as Error,
    LaunchEnded as LaunchEnded,
    LaunchTimedOut as LaunchTimedOut,
    LibraryNotFound as LibraryNotFound,
    NotLaunched as NotLaunched,
    SessionError as SessionError,
)
from .launch import LaunchReport as LaunchReport
from .records import *
from .session import Answer as Answer, Session as Session
from .version import __version__ as __version__
