"""Compares docs/file.md with a new file, in both directions."""

import sqlite3
import tempfile
import unittest
from pathlib import Path

import brimlet
from pages import code, rows, sections


class FileTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory()
        cls.addClassCleanup(directory.cleanup)
        path = Path(directory.name) / "CacheDb"
        with brimlet.Session(directory.name) as session:
            before = cls.names(path, "index")
            session.addEvent({"id": 1})
        cls.connection = sqlite3.connect(path)
        cls.addClassCleanup(cls.connection.close)
        cls.indexes = cls.names(path, "index") - before
        cls.tables = cls.names(path, "table")
        cls.page = sections("docs/file.md")

    @staticmethod
    def names(path, kind):
        connection = sqlite3.connect(path)
        try:
            return {name for (name,) in connection.execute("SELECT name FROM sqlite_master WHERE type = ?", [kind])}
        finally:
            connection.close()

    def test_every_table_has_a_section_and_every_section_a_table(self):
        self.assertEqual(set(self.page), self.tables | {"Indexes"})

    def test_the_page_lists_the_columns_of_the_file(self):
        for table in self.tables:
            with self.subTest(table):
                columns = self.connection.execute(f"PRAGMA table_info({table})").fetchall()
                self.assertEqual([cells[:3] for cells in rows(self.page[table])],
                                 [[f"`{name}`", type, "yes" if key else ""] for _, name, type, _, _, key in columns])

    def test_the_page_says_what_each_column_holds(self):
        for table in self.tables:
            text = self.page[table].partition("<!--")[0]
            for column, _, _, holds in rows(self.page[table]):
                self.assertNotEqual(bool(holds), column in text, column)

    def test_the_page_lists_the_indexes_that_an_event_creates(self):
        self.assertEqual({code(name)[0] for name, _, _ in rows(self.page["Indexes"])}, self.indexes)
        for name, table, column in rows(self.page["Indexes"]):
            sql, = self.connection.execute("SELECT sql FROM sqlite_master WHERE name = ?", code(name)).fetchone()
            self.assertTrue(sql.endswith(f"ON {code(table)[0]} ({code(column)[0]})"), sql)

    def test_the_page_has_the_version_of_the_schema(self):
        version, = self.connection.execute("SELECT VersionNumber FROM Version").fetchone()
        self.assertIn(f"`{version}`", self.page["Version"])

    def test_texts_are_stored_as_utf_8(self):
        self.assertEqual(self.connection.execute("PRAGMA encoding").fetchone(), ("UTF-8",))


if __name__ == "__main__":
    unittest.main()
