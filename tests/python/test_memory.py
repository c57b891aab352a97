"""What the library hands out goes back, also when its copying fails."""

import ctypes
import unittest
from collections import Counter
from unittest import mock

from brimlet import layout, library
from brimlet.functions import FUNCTIONS, Gives, Role
from support import DATA, DirectoryTest, is_sanitized


class Usage(ctypes.Structure):
    """The answer of mallinfo2."""

    _fields_ = [(name, ctypes.c_size_t) for name in (
        "arena", "ordblks", "smblks", "hblks", "hblkhd", "usmblks", "fsmblks", "uordblks", "fordblks", "keepcost")]


def bytes_in_use():
    mallinfo = ctypes.CDLL(None).mallinfo2
    mallinfo.restype = Usage
    usage = mallinfo()
    return usage.uordblks + usage.hblkhd


class MemoryTest(DirectoryTest):
    def setUp(self):
        super().setUp()
        self.open = self.session()
        for name in ("locales", "domains", "organizations", "users", "contractors", "contracts", "devices", "sites"):
            document = (DATA / f"{name}.json").read_text(encoding="utf-8")
            self.open.call("add" + name.capitalize(), document)
        self.open.addEvents((DATA / "events" / "hour_00.json").read_text(encoding="utf-8"))
        self.open.setServerIp("monitoring.example.net")

    def reads(self):
        """A call that succeeds for each function that hands something out of the store as it is."""
        arguments = {
            "getLocale": (1,), "getDomain": (1,), "getUser": (1001,), "getOrganization": (1,), "getContractor": (701,),
            "getContract": (2001,), "getDevice": (101,), "getSite": (301,), "getSection": (1, 101),
            "getZone": (1, 101, 1), "getSections": (101,), "getZones": (101,), "getZonesForSection": (101, 1),
            "getSectionsWithParams": ("name", "Offices", 101), "getZonesWithParams": ("name", "Front door", 101),
            "getZonesForSectionWithParams": ("name", "Front door", 101, 1), "getEvents": (0, 2**32 - 1),
            "getOrganizationsWithParams": ("org_id", "1"), "getContractorsWithParams": ("id", "701"),
            "getContractsWithParams": ("id", "2001"), "getDevicesWithParams": ("id", "101"),
            "getSitesWithParams": ("id", "301"), "getUsersWithParams": ("id", "1001"),
            "getSiteNameAndAddress": (301,),
        }
        for name, entry in FUNCTIONS.items():
            if entry.role is Role.CALL and entry.gives is not Gives.NOTHING and name.startswith("get"):
                yield name, arguments.get(name, ("id", "1") if name.endswith("WithParams") else ())

    def released(self, action):
        """Which families a call gave back, and how many texts."""
        counts = Counter()

        def counted(key, release):
            def call(*arguments):
                counts[key] += 1
                return release(*arguments)
            return call

        lib = self.open._library
        releases = {key: counted(key[0], release) for key, release in lib.releases.items()}
        with mock.patch.object(lib, "releases", releases), \
                mock.patch.object(lib, "release_text", counted("text", lib.release_text)):
            action()
        return counts

    def test_every_read_gives_back_once_what_it_was_given(self):
        for name, arguments in self.reads():
            with self.subTest(name):
                entry = FUNCTIONS[name]
                expected = {"text": entry.texts} if entry.gives is Gives.TEXTS else {entry.family: 1}
                self.assertEqual(self.released(lambda: self.assertTrue(self.open.call(name, *arguments))), expected)

    def test_a_copying_that_fails_gives_back_too(self):
        class Broken(Exception):
            pass

        for name, arguments in self.reads():
            with self.subTest(name):
                entry = FUNCTIONS[name]

                def fail():
                    with mock.patch.object(layout.Layout, "read", side_effect=Broken), \
                            mock.patch.object(library, "read_text", side_effect=Broken), \
                            self.assertRaises(Broken):
                        self.open.call(name, *arguments)

                expected = {"text": entry.texts} if entry.gives is Gives.TEXTS else {entry.family: 1}
                self.assertEqual(self.released(fail), expected)

    def test_what_was_not_given_is_not_given_back(self):
        self.assertEqual(self.released(lambda: self.open.answer("getUser", 5)), {})
        self.assertEqual(self.released(lambda: self.open.getUsersWithParams("id", "5")), {})

    @unittest.skipIf(is_sanitized(), "the sanitizer's allocator does not tell what is in use")
    def test_blocks_in_use_stay_few_over_thousands_of_calls(self):
        calls = list(self.reads())

        def round():
            for name, arguments in calls:
                self.open.call(name, *arguments)
            self.open.updateUser({"id": 1001, "name": "Ottilie Lindqvist"})

        def growth(rounds):
            before = bytes_in_use()
            for _ in range(rounds):
                round()
            return bytes_in_use() - before

        growth(5)  # caches fill
        # One round hands out about a megabyte, so forty that lost a thousandth of it would show.
        self.assertLess(growth(40), 40_000)
        with mock.patch.object(library, "layout_of", return_value=mock.Mock(read=mock.Mock(side_effect=KeyError))):
            before = bytes_in_use()
            for _ in range(50):
                self.assertRaises(KeyError, self.open.getDevices)
            self.assertLess(bytes_in_use() - before, 40_000)

    @unittest.skipIf(is_sanitized(), "the sanitizer's allocator does not tell what is in use")
    def test_a_lost_list_would_show(self):
        lib = self.open._library
        with mock.patch.dict(lib.releases, {key: lambda *arguments: 0 for key in lib.releases}):
            self.open.getDevices()
            before = bytes_in_use()
            for _ in range(20):
                self.open.getDevices()
            self.assertGreater(bytes_in_use() - before, 1_000_000)


if __name__ == "__main__":
    unittest.main()
