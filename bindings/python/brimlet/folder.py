"""A folder of documents, loaded in the order that their references need.

A document's file name says which function takes it: users.json goes to addUsers, update_site.json to updateSite,
add_device.json to addDevice. Where the name of the file says nothing, that of its folder does: events/hour_00.json goes
to addEvents.
"""

from dataclasses import dataclass
from pathlib import Path
from typing import Iterator, List, Optional

from .errors import Error
from .session import Session

# What is referred to comes before what refers to it, removals come last.
_ORDER = (
    "addLocales addDomains addOrganizations addUsers addContractors addContracts addDevices addDevice addSites "
    "addEvents addEvent "
    "updateDomain updateOrganization updateUser updateContractor updateContract updateDeviceFw updateSection "
    "updateZone updateSite removeAffectFlag "
    "deleteZone deleteSection deleteDevice deleteSite deleteContract deleteContractor deleteUser deleteOrganization "
    "deleteDomain"
).split()


class UnknownDocument(Error):
    """The name of a document says of no function that it takes it."""


@dataclass(frozen=True)
class Step:
    """A document on its way into the library."""

    file: Path
    function: str


@dataclass(frozen=True)
class Loaded:
    """What became of a document."""

    file: str
    function: str
    code: int


def plan(folder: Path) -> List[Step]:
    """The documents of a folder and its subfolders, in the order to load them."""
    steps = []
    for file in sorted(folder.rglob("*.json")):
        function = _function_for(file.stem)
        if function is None and file.parent != folder:
            function = _function_for(file.parent.name)
        if function is None:
            raise UnknownDocument(f"no function takes a document of the name {file.relative_to(folder)}")
        steps.append(Step(file, function))
    return sorted(steps, key=lambda step: _ORDER.index(step.function))  # a stable sort: by name within a function


def load(session: Session, folder: Path, steps: List[Step]) -> Iterator[Loaded]:
    """Loads the documents one by one; goes on behind one that is refused, since no other depends on it."""
    for step in steps:
        text = step.file.read_text(encoding="utf-8-sig")
        code = session.answer(step.function, text).code
        yield Loaded(step.file.relative_to(folder).as_posix(), step.function, code)


def _function_for(name: str) -> Optional[str]:
    words = "".join(word[:1].upper() + word[1:] for word in name.split("_"))
    for candidate in (words[:1].lower() + words[1:], "add" + words):
        if candidate in _ORDER:
            return candidate
    return None
