"""Tests blocks.py: that it fails when it must, and which pages it leaves to other tests."""

import re
import tempfile
import unittest
from pathlib import Path

import blocks


def tags(page):
    return [tag for tag, _, _ in blocks.blocks(page)]


class BlocksTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = Path(directory.name)

    def run_page(self, text):
        page = self.directory / "page.md"
        page.write_text(text, encoding="utf-8")
        return blocks.Page(str(page), self.directory).run_blocks()

    def fails(self, text, message):
        with self.assertRaisesRegex(AssertionError, re.escape(message)):
            self.run_page(text)

    def test_a_block_runs_and_prints_the_expected_output(self):
        self.assertEqual(self.run_page('```c\nputs("done");\n```\n\n```text\ndone\n```\n'), 1)

    def test_a_fragment_may_bring_its_includes(self):
        self.assertEqual(self.run_page("```cpp\n#include <bitset>\n\nstd::bitset<3> bits;\nbits.set();\n```\n"), 1)

    @unittest.skipUnless(blocks.ENVIRONMENT["BRIMLET_MINGW"], "needs MinGW's compiler")
    def test_a_block_for_windows_is_checked_by_its_compiler(self):
        self.assertEqual(self.run_page("```cpp windows\n#include <windows.h>\n\nSleep(1);\n```\n"), 1)
        self.fails("```cpp windows\n#include <windows.h>\n\nSlep(1);\n```\n", "Slep")

    def test_an_unexpected_output_fails(self):
        self.fails('```c\nputs("done");\n```\n\n```text\nnone\n```\n', "instead of")

    def test_a_block_that_does_not_compile_fails(self):
        self.fails("```cpp\nbrimlet::Session session(1, 2, 3);\n```\n", "block.cpp")

    def test_a_program_with_another_exit_status_fails(self):
        self.fails("```c\nint main(void)\n{\n    return 3;\n}\n```\n", "exited with 3")

    def test_a_document_that_is_refused_fails(self):
        self.fails('```json addUsers\n{"D": {"items": []}}\n```\n', "exited with 10")

    def test_a_tag_that_nothing_runs_fails(self):
        self.fails("```rust\nfn main() {}\n```\n", "nothing runs a block")
        self.fails("```\nplain\n```\n", "nothing runs a block")

    def test_a_fence_that_is_not_closed_fails(self):
        self.fails("```c\nputs();\n", "not closed")

    def test_the_pages_with_other_tests_contain_only_what_those_run(self):
        self.assertLessEqual(set(tags("docs/python.md")), {"python", "sh", "text"})  # Python.guide
        self.assertEqual(tags("docs/dotnet.md"), ["csharp", "sh", "text"])  # Dotnet.Documentation, the first of each


if __name__ == "__main__":
    unittest.main()
