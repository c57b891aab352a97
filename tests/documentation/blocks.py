"""Compiles and runs the fenced code blocks of a page in order, as a reader would.

usage: blocks.py PAGE

The tag of a block selects what happens to it:

c, cpp         A block with a main function is a program. Other blocks are inserted into the frame of their language,
               with their includes before the frame's. The test compiles the program and runs it in an empty directory;
               it must exit with 0.
cpp windows    As cpp, but only compiled by MinGW's compiler, if there is one.
json FUNCTION  A document. The function must accept it and return 0. All documents of a page share a store.
sh, cmake      Commands and projects that use the installed library, all of a page in one directory, which also contains
               the programs that begin with a file name. Not run under sanitizers, because a plain compiler lacks them.
python         A program, run in the directory of the page.
text           Not run. Directly after another block, it is the expected output of that block.

Any other tag fails. The pages of Python and C# have tests of their own, see CMakeLists.txt.
"""

import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FRAMES = Path(__file__).resolve().parent
PROJECT = "cmake_minimum_required(VERSION 3.16)\nproject(Page LANGUAGES C CXX)\n"
INCLUDES = [f"-I{ROOT / folder}" for folder in ("include/brimlet", "bindings/cpp")]
COMPILERS = {"c": ("BRIMLET_CC", "-std=c11 -D_POSIX_C_SOURCE=200809L"), "cpp": ("BRIMLET_CXX", "-std=c++17")}

# The interpreter may run with the sanitizer's runtime preloaded; its child processes have their own.
ENVIRONMENT = {name: value for name, value in os.environ.items() if name not in ("LD_PRELOAD", "ASAN_OPTIONS")}
IS_SANITIZED = "-fsanitize" in ENVIRONMENT["BRIMLET_FLAGS"]


def blocks(page):
    """(tag, text, expected output or None) for each block of a page."""
    text = (ROOT / page).read_text(encoding="utf-8")
    found = re.findall(r"^```([^\n]*)\n(.*?)^```$", text, re.DOTALL | re.MULTILINE)
    assert text.count("```") == 2 * len(found), "a fence is not closed, or does not start a line"
    for (tag, body), (following, printed) in zip(found, found[1:] + [("", "")]):
        yield tag, body, printed if following == "text" else None


def run(command, directory, environment=ENVIRONMENT, **options):
    done = subprocess.run(command, cwd=directory, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          text=True, encoding="utf-8", timeout=120, **options)
    if done.returncode != 0:
        raise AssertionError(f"{command} exited with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


class Page:
    def __init__(self, name, directory):
        self.name = name
        self.directory = directory
        self.count = 0
        self.prefix = None
        self.runners = {"c": self.run_program, "cpp": self.run_program, "python": self.run_python,
                        "json": self.send_document, "sh": self.run_commands, "cmake": self.build_project}

    def run_blocks(self):
        for tag, text, printed in blocks(self.name):
            if tag == "text":
                continue
            language, *words = tag.split() or [""]
            if language not in self.runners:
                raise AssertionError(f'{self.name}: nothing runs a block with the tag "{tag}":\n{text}')
            self.count += 1
            try:
                given = self.runners[language](language, text, *words)
                if None not in (given, printed) and given != printed:
                    raise AssertionError(f"it printed\n{given}instead of\n{printed}")
            except Exception as error:
                raise AssertionError(f"{self.name}, block {self.count}:\n{text}\n{error}") from error
        return self.count

    def empty_directory(self):
        return Path(tempfile.mkdtemp(dir=self.directory))

    def run_program(self, language, text, system=None):
        named = re.match(r"(?:/\*|//) (\w+\.\w+)", text)
        if named:
            (self.directory / named[1]).write_text(text, encoding="utf-8")
        if not re.search(r"^int main\(", text, re.MULTILINE):
            includes, text = re.fullmatch(r"((?:#include [^\n]*\n)*)(.*)", text, re.DOTALL).groups()
            frame = (FRAMES / f"frame.{language}").read_text(encoding="utf-8")
            text = includes + frame.replace("FRAGMENT", text)
        directory = self.empty_directory()
        source = directory / f"block.{language}"
        source.write_text(text, encoding="utf-8")
        if system == "windows":
            return self.check_for_windows(directory)
        compiler, standard = COMPILERS[language]
        run(shlex.split(f"{ENVIRONMENT[compiler]} {standard} {ENVIRONMENT['BRIMLET_FLAGS']}")
            + [*INCLUDES, "block." + language, "-o", "block", *shlex.split(ENVIRONMENT["BRIMLET_LINK"])], directory)
        return run(["./block"], directory)

    def check_for_windows(self, directory):
        if ENVIRONMENT["BRIMLET_MINGW"]:
            run([ENVIRONMENT["BRIMLET_MINGW"], "-std=c++17", "-fsyntax-only", *INCLUDES, "block.cpp"], directory)

    def run_python(self, language, text):
        return run([sys.executable, "-c", text], self.directory, os.environ)

    def send_document(self, language, text, function):
        json.loads(text)
        run([sys.executable, "-m", "brimlet", "--dir", str(self.directory), "call", "--write", "--create", function, "-"],
            self.directory, os.environ, input=text)

    def run_commands(self, language, text):
        if not IS_SANITIZED:
            return run(["sh", "-e", "-c", text], self.directory, self.installed())

    def build_project(self, language, text):
        if IS_SANITIZED:
            return
        if not list(self.directory.glob("client.*")): # a page about building uses the program of the C page
            (self.directory / "client.c").write_text(next(blocks("docs/start-c.md"))[1], encoding="utf-8")
        (self.directory / "CMakeLists.txt").write_text(PROJECT + text, encoding="utf-8")
        run(["cmake", "-S", ".", "-B", "build"], self.directory, self.installed())
        run(["cmake", "--build", "build"], self.directory)

    def installed(self):
        """The environment of a reader who installed the library under a prefix."""
        if not self.prefix:
            self.prefix = self.empty_directory()
            run(["cmake", "--install", ENVIRONMENT["BRIMLET_BUILD"], "--prefix", str(self.prefix)], self.directory)
        library = next(self.prefix.glob("lib*/**/libbrimlet.so")).parent
        return {**ENVIRONMENT, "CMAKE_PREFIX_PATH": str(self.prefix), "LD_LIBRARY_PATH": str(library),
                "PKG_CONFIG_PATH": str(library / "pkgconfig")}


def main():
    with tempfile.TemporaryDirectory() as directory:
        count = Page(sys.argv[1], Path(directory)).run_blocks()
    print(f"{sys.argv[1]}: {count} blocks")


if __name__ == "__main__":
    main()
