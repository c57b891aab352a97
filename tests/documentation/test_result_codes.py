"""The page of the result codes against the headers and the list of exports."""

import re
import unittest

from pages import code, rows, sections, source

HEADER = "include/brimlet/brimlet.h"
CODES = "include/brimlet/ResultCodes.h"


def promised():
    """{function: the codes behind its @return} of the header, for those that answer a BrimletResult."""
    declarations = re.findall(r"/\*\*((?:[^*]|\*(?!/))*)\*/\s*BRIMLET_API (\w+) (\w+)\(", source(HEADER))
    answers = {}
    for comment, kind, name in declarations:
        said = comment.partition("@return")[2]
        codes = set(re.findall(r"\b\d+\b", said.partition(";")[0]))
        answers[name] = codes
    return answers


class ResultCodesTest(unittest.TestCase):
    def setUp(self):
        self.page = sections("docs/result-codes.md", level=3)

    def test_every_code_stands_on_the_page_under_its_name(self):
        names = re.findall(r"^    (BRIMLET_\w+) =\s+(\d+)", source(CODES), re.MULTILINE)
        self.assertGreater(len(names), 10)
        titles = [title.split(", ") for title in self.page if ", BRIMLET_" in title]
        self.assertEqual([(name, value) for value, name in titles], names)

    def test_every_function_stands_once_with_the_codes_that_the_header_lists(self):
        listed = {}
        for title, text in self.page.items():
            if ", BRIMLET_" in title or title == "Life":
                continue
            codes = {cells[0] for cells in rows(text)}
            for name in code(text.partition("\n|")[0]):
                self.assertNotIn(name, listed, title)
                listed[name] = codes
        life = {"launchCache", "exitCache", "getState", "getLaunchCacheResult"}
        self.assertLessEqual(life, set(code(self.page["Life"])))
        self.assertEqual(listed, {name: codes for name, codes in promised().items() if name not in life})

    def test_no_export_is_left_out(self):
        exports = {line for line in source("src/api/exports.txt").split("\n") if line and not line.startswith("#")}
        self.assertEqual(set(promised()), exports)

    def test_every_value_of_the_headers_has_its_comment(self):
        for path in (CODES, "bindings/cpp/brimlet.hpp"):  # Doxygen does not ask for those of values
            for values in re.findall(r"^enum[^{;]*\{(.*?)^\};", source(path), re.DOTALL | re.MULTILINE):
                self.assertEqual(len(re.findall(r"^    \w+ =", values, re.MULTILINE)), values.count("/**<"), values)

    def test_every_reason_is_given(self):
        for title, text in self.page.items():
            for cells in rows(text):
                self.assertEqual(len(cells), 2, title)
                self.assertTrue(cells[1], title)


if __name__ == "__main__":
    unittest.main()
