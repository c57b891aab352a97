"""Brimlet for Python: a local, disposable copy of a monitoring service's reference data and event journal.

    with brimlet.Session("cache") as session:
        session.addUsers([{"id": 7, "name": "Anna"}])
        print(session.getUser(7).name)

The functions and the fields of records bear the names that they have in brimlet.h and FlatRecords.h, which are the
manual; what is the package's own is named as in all Python.
"""

from .codes import (
    AlreadyLaunched as AlreadyLaunched,
    BackupFailed as BackupFailed,
    CallError as CallError,
    CallInProgress as CallInProgress,
    Code as Code,
    Error as Error,
    Incomplete as Incomplete,
    LaunchEnded as LaunchEnded,
    LaunchResult as LaunchResult,
    LaunchTimedOut as LaunchTimedOut,
    LibraryNotFound as LibraryNotFound,
    NoBlock as NoBlock,
    NoParent as NoParent,
    NoRecord as NoRecord,
    NotFound as NotFound,
    NotLaunched as NotLaunched,
    ReadFailed as ReadFailed,
    Refused as Refused,
    SessionError as SessionError,
    State as State,
    WriteFailed as WriteFailed,
)
from .documents import BareId as BareId, Document as Document
from .launch import LaunchReport as LaunchReport
from .records import (
    Contract as Contract,
    Contractor as Contractor,
    Device as Device,
    DeviceUser as DeviceUser,
    Domain as Domain,
    Event as Event,
    Locale as Locale,
    Location as Location,
    Organization as Organization,
    Person as Person,
    Section as Section,
    Site as Site,
    User as User,
    Zone as Zone,
)
from .session import Answer as Answer, Session as Session
from .version import __version__ as __version__
