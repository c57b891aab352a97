"""What the tests share that spoil the headers."""

import shutil
import tempfile
import unittest
from pathlib import Path

from generator import model

HEADERS = ("brimlet.h", "FlatRecords.h", "ResultCodes.h")


class SpoiledHeaders(unittest.TestCase):
    """A copy of the headers, in which a test makes its mistake."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.folder = Path(directory.name)
        for header in HEADERS:
            shutil.copy(model.HEADERS / header, self.folder)

    def findings(self):
        raise NotImplementedError

    def spoil(self, header, right, wrong, *, inside=""):
        """Replaces a text that stands once, in the header or behind the text `inside` of it."""
        path = self.folder / header
        before, mark, text = path.read_text(encoding="utf-8").partition(inside) if inside else (
            "", "", path.read_text(encoding="utf-8"))
        self.assertTrue(mark or not inside, inside)
        self.assertIn(right, text)
        if not inside:
            self.assertEqual(text.count(right), 1, right)
        path.write_text(before + mark + text.replace(right, wrong, 1), encoding="utf-8")

    def finds(self, *expected):
        """Holds the findings against places and sentences, the line numbers left out."""
        found = [finding.split(": ", 1) for finding in self.findings()]
        for place, _ in found:
            self.assertRegex(place, r"^(brimlet|FlatRecords|ResultCodes)\.h:\d+$")
        self.assertEqual([sentence for _, sentence in found], list(expected))
