"""Runs the blocks of docs/python.md and of the package's introduction in order, as a reader would, and checks their
output."""

import os
import re
import shlex
import subprocess
import sys
import unittest

from support import COMMAND, ROOT, DirectoryTest, source


def blocks(guide):
    """(language, text, output) for each block that runs. Its expected output is the text block after it."""
    found = re.findall(r"^```(\w+)\n(.*?)^```$", source(guide), re.DOTALL | re.MULTILINE)
    for (language, text), (further, printed) in zip(found, found[1:] + [("", "")]):
        if language != "text":
            yield language, text, printed if further == "text" else ""


class GuideTest(DirectoryTest):
    def test_the_guide(self):
        self.assertEqual(self.run_blocks("docs/python.md"), 7)

    def test_the_introduction(self):
        self.assertEqual(self.run_blocks("bindings/python/README.md"), 1)

    def run_blocks(self, guide):
        """Runs the blocks of a guide, checks their output, and returns their number."""
        script = self.directory / "brimlet"
        script.write_text("#!/bin/sh\nexec " + shlex.join(COMMAND) + ' "$@"\n')
        script.chmod(0o755)
        path = f"{self.directory}{os.pathsep}{os.environ['PATH']}"
        before = ""
        count = 0
        for language, text, printed in blocks(guide):
            with self.subTest(text=text):
                if language == "python":
                    # Imports of earlier blocks stay valid.
                    command = [sys.executable, "-c", before + text]
                    before = before or "import os, brimlet\n"
                else:
                    self.assertEqual(language, "sh")
                    command = ["sh", "-c", text]
                done = subprocess.run(command, cwd=self.directory, capture_output=True, text=True, encoding="utf-8",
                                      timeout=120, env={**os.environ, "PATH": path, "BRIMLET": str(ROOT)})
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertEqual(done.stdout, printed)
                count += 1
        return count


if __name__ == "__main__":
    unittest.main()
