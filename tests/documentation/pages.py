"""Helpers for the tests of the pages: sections, and the rows of their tables."""

import os
import re
from pathlib import Path

# The checkout, or the installed documentation.
ROOT = Path(os.environ.get("BRIMLET_ROOT", Path(__file__).resolve().parents[2]))


def source(path):
    """The text of a file of the source tree."""
    return (ROOT / path).read_text(encoding="utf-8")


def without_blocks(text):
    """A page without its code blocks."""
    return re.sub(r"^```.*?^```$", "", text, flags=re.DOTALL | re.MULTILINE)


def sections(path, level=2):
    """{title: text} of a page's sections."""
    parts = re.split(rf"^{'#' * level} (.*)$", without_blocks(source(path)), flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def rows(text):
    """The rows of the tables in a text, each a list of its cells, without the header rows."""
    lines = [line for line in text.splitlines() if line.startswith("|")]
    tables = [[cell.strip() for cell in line.strip("|").split("|")] for line in lines]
    heads = {index - 1 for index, line in enumerate(lines) if line.startswith("|---")}
    return [cells for index, cells in enumerate(tables) if index not in heads and not lines[index].startswith("|---")]


def code(cell):
    """The words in backquotes in a cell."""
    return re.findall(r"`([^`]*)`", cell)
