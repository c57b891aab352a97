"""The page of the result codes against the headers and the list of exports."""

import re
import unittest

from generator import model
from pages import code, rows, sections, source


class ResultCodesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.api = model.read()

    def setUp(self):
        self.page = sections("docs/result-codes.md", level=3)

    def test_every_code_stands_on_the_page_under_its_name(self):
        values = [value for enumeration in self.api.enumerations for value in enumeration.values]
        self.assertEqual([title for title in self.page if ", BRIMLET_" in title],
                         [f"{value.number}, {value.name}" for value in values])

    def test_every_function_stands_once_with_the_codes_that_the_header_lists(self):
        listed = {}
        for title, text in self.page.items():
            if ", BRIMLET_" in title or title == "Lifecycle":
                continue
            codes = {cells[0] for cells in rows(text)}
            for name in code(text.partition("\n|")[0]):
                self.assertNotIn(name, listed, title)
                listed[name] = codes
        lifecycle = {"launchCache", "exitCache", "getState", "getLaunchCacheResult"}
        self.assertLessEqual(lifecycle, set(code(self.page["Lifecycle"])))
        numbers = {value.name: str(value.number) for value in self.api.enumeration("BrimletResult").values}
        self.assertEqual(listed, {function.name: {numbers[result.name] for result in function.results}
                                  for function in self.api.functions if function.name not in lifecycle})

    def test_no_export_is_left_out(self):
        exports = {line for line in source("src/api/exports.txt").split("\n") if line and not line.startswith("#")}
        self.assertEqual({function.name for function in self.api.functions}, exports)

    def test_every_reason_is_given(self):
        for title, text in self.page.items():
            for cells in rows(text):
                self.assertEqual(len(cells), 2, title)
                self.assertTrue(cells[1], title)


if __name__ == "__main__":
    unittest.main()
