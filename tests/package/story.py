"""A small client in Python. It uses only the installed package and the sample data.

argument: the folder of the sample data
"""

import sys
from pathlib import Path

import brimlet


def expect(holds: bool, what: str) -> None:
    if not holds:
        sys.exit(f"failed: {what}")


def tell(data: Path) -> None:
    with brimlet.Session() as session:
        expect(session.report.first is brimlet.LaunchResult.CREATED, "the file is created")
        for name, add in {"locales": session.addLocales, "domains": session.addDomains,
                          "users": session.addUsers}.items():
            add((data / f"{name}.json").read_text(encoding="utf-8"))
        expect(len(session.getUsers()) == 300, "the sample's users are loaded")

        anna = session.updateUser({"id": 7, "name": "Anna", "domain": 10})
        session.deleteUser(1002)
        found = session.getUsersWithParams("name", "Anna")
        expect(found == [anna], "a user that was written is found")
        try:
            session.getUser(1002)
            expect(False, "a user that was removed is found")
        except brimlet.NotFound as error:
            expect(error.code == brimlet.Code.NOT_FOUND, "an exception carries the code")
    expect(anna.domain is not None and anna.domain.locale is not None, "a user outlives the session")


tell(Path(sys.argv[1]))
print("the client in Python has succeeded")
