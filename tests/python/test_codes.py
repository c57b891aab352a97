"""Every code as an exception, and when it is raised."""

import ctypes
import sqlite3
import unittest
from unittest import mock

import brimlet
from support import DirectoryTest


class CodesTest(DirectoryTest):
    def setUp(self):
        super().setUp()
        self.open = self.session()

    def fails(self, kind, code, name, *arguments):
        with self.assertRaises(kind) as caught:
            self.open.call(name, *arguments)
        self.assertEqual((caught.exception.code, caught.exception.function), (code, name))
        self.assertIsInstance(caught.exception, brimlet.CallError)
        self.assertEqual(str(caught.exception), f"{name}: {code}, {caught.exception.meaning}")

    def drop(self, table):
        self.open.getLocales()  # lets go of the lock that a read by id may have left
        connection = sqlite3.connect(self.file)
        connection.execute("DROP TABLE " + table)
        connection.commit()
        connection.close()

    def answers(self, name, code):
        """Makes a function return a code that no input causes."""
        entry = self.open._library.exports[name]
        prototype = ctypes.CFUNCTYPE(ctypes.c_uint32, *entry.argtypes)
        return mock.patch.dict(self.open._library.exports, {name: prototype(lambda *arguments: code)})

    def test_incomplete(self):
        self.fails(brimlet.Incomplete, 5, "addUsers", [{"name": "nobody"}])
        self.fails(ValueError, 5, "deleteUser", {"id": 7})

    def test_read_failed(self):
        self.drop("Users")
        self.fails(brimlet.ReadFailed, 7, "getUser", 7)
        self.fails(brimlet.ReadFailed, 7, "getUsers")
        self.fails(brimlet.ReadFailed, 7, "deleteUser", 7)

    def test_not_found(self):
        self.fails(brimlet.NotFound, 8, "getUser", 7)
        self.fails(LookupError, 8, "getSiteNameAndAddress", 7)
        self.fails(brimlet.NotFound, 8, "deleteUser", 7)

    def test_not_found_is_an_empty_list_when_an_array_is_read(self):
        for name, *arguments in (("getUsers",), ("getZones", 1), ("getEvents", 0, 9), ("getAffectEvents",),
                                 ("getSitesWithParams", "name", "x"),
                                 ("getZonesForSectionWithParams", "name", "x", 1, 2)):
            self.assertEqual(self.open.call(name, *arguments), [])
            self.assertEqual(self.open.answer(name, *arguments), (brimlet.Code.NOT_FOUND, None))

    def test_not_found_is_an_exception_when_events_are_added(self):
        self.fails(brimlet.NotFound, 8, "addEvents", [{"id": 1, "device": 1}])

    def test_write_failed(self):
        self.drop("Users")
        self.fails(brimlet.WriteFailed, 9, "addUsers", [{"id": 7}])

    def test_refused(self):
        self.fails(brimlet.Refused, 10, "addUsers", "nonsense")
        self.fails(brimlet.Refused, 10, "addUsers", [])
        self.fails(ValueError, 10, "getUsersWithParams", "unknown", "x")

    def test_no_parent(self):
        self.fails(brimlet.NoParent, 11, "updateSection", {"device": 1, "section": 2})
        self.fails(brimlet.NoParent, 11, "updateZone", {"device": 1, "section": 2, "zone": 3})

    def test_no_block(self):
        with self.answers("getUsers", 3):
            self.fails(brimlet.NoBlock, 3, "getUsers")

    def test_no_record(self):
        with self.answers("getUser", 255):
            self.fails(brimlet.NoRecord, 255, "getUser", 7)

    def test_a_code_that_is_unknown(self):
        with self.answers("clearAll", 42):
            self.fails(brimlet.CallError, 42, "clearAll")

    def test_a_name_that_is_no_function_or_not_for_clients(self):
        for name in ("getNothing", "launchCache", "exitCache", "freeUser", "freeUsersArray"):
            with self.assertRaises(AttributeError):
                self.open.call(name)
            with self.assertRaises(AttributeError):
                getattr(self.open, name)


if __name__ == "__main__":
    unittest.main()
