"""The filters of the templates, on samples of each shape."""

import unittest

from generator import __main__ as generator


class FiltersTest(unittest.TestCase):
    def test_a_paragraph_is_wrapped_behind_its_prefix(self):
        self.assertEqual(generator.wrap("one two three", " * ", width=11), " * one two\n * three")

    def test_the_first_line_may_have_a_prefix_of_its_own(self):
        self.assertEqual(generator.wrap("one two three", " *     ", first=" * @a  ", width=14),
                         " * @a  one two\n *     three")

    def test_names_of_values_in_camel_case(self):
        self.assertEqual(generator.camel("BRIMLET_DONE", "BRIMLET_"), "Done")
        self.assertEqual(generator.camel("BRIMLET_LAUNCH_REPLACED_SCHEMA", "BRIMLET_LAUNCH_"), "ReplacedSchema")

    def test_a_sentence_as_a_phrase(self):
        self.assertEqual(generator.phrase("The file was opened."), "the file was opened")

    def test_names_of_views(self):
        self.assertEqual(generator.view("FlatUser"), "UserView")
        self.assertEqual(generator.view(""), "")

    def test_a_member_function_that_fits_has_one_line(self):
        self.assertEqual(generator.member("    Text name", "", " const", "text"),
                         "    Text name() const { return text; }")

    def test_a_member_function_that_does_not_fit_is_broken_behind_commas(self):
        self.assertEqual(generator.member("    Code call", "uint32_t id, const Text &key, Text b", "", "one", width=41),
                         "    Code call(uint32_t id,\n              const Text &key, Text b)\n"
                         "    {\n        return one;\n    }")


if __name__ == "__main__":
    unittest.main()
