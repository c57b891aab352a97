"""Helpers for the tests: the source tree or its installed part, a directory for each test, and the companion
command."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import brimlet

ROOT = Path(os.environ.get("BRIMLET_ROOT", Path(__file__).resolve().parents[2]))
DATA = ROOT / "examples" / "data"
COMMAND = [sys.executable, "-m", "brimlet"]


def source(path):
    """The text of a file of the source tree."""
    return (ROOT / path).read_text(encoding="utf-8")


class DirectoryTest(unittest.TestCase):
    """A test with its own directory, which is not the working directory."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = Path(directory.name)
        self.file = self.directory / "CacheDb"

    def session(self, **options):
        """A session that is closed at the end of the test."""
        session = brimlet.Session(self.directory, **options)
        self.addCleanup(session.close)
        return session

    def run_python(self, text, *arguments):
        """Runs a program text in another interpreter, in the test's directory."""
        return subprocess.run([sys.executable, "-c", text, *arguments], cwd=self.directory, capture_output=True,
                              text=True, timeout=120)

    def run_command(self, *arguments, put=None):
        """Runs the companion command on the test's directory."""
        return subprocess.run([*COMMAND, "--dir", str(self.directory), *arguments], input=put, capture_output=True,
                              text=True, encoding="utf-8", timeout=120)


def is_sanitized():
    """Whether this process runs under AddressSanitizer, which has its own allocator."""
    return "asan" in os.environ.get("LD_PRELOAD", "")
