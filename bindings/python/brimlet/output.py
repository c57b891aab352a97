"""What the companion command prints. Tables, trees and progress are drawn by rich on a terminal where it is installed,
and are plain text everywhere else, so that what goes into a pipe or a file is always the same.

Texts come from files that nobody vouches for. Characters that a terminal obeys instead of showing them are escaped.
"""

import json
import re
import sys
from dataclasses import asdict, dataclass, fields, is_dataclass
from typing import Any, Iterable, Iterator, List, Optional, Sequence, TextIO, TypeVar

T = TypeVar("T")

# What JSON leaves unescaped: DEL and C1, line and paragraph separators, bidirectional controls, halves of pairs.
_UNSEEN = "\x7f-\x9f\u2028\u2029\u202a-\u202e\u2066-\u2069\ud800-\udfff"
_CONTROLS = re.compile(f"[\x00-\x1f{_UNSEEN}]")
_CONTROLS_IN_JSON = re.compile(f"[{_UNSEEN}]")

try:
    import rich.box
    import rich.console
    import rich.progress
    import rich.table
    import rich.text
    import rich.tree

    HAS_RICH = True
except ImportError:
    HAS_RICH = False


@dataclass(frozen=True)
class Table:
    """A table of texts. A column whose texts are all numbers stands to the right."""

    heads: Sequence[str]
    rows: Sequence[Sequence[str]]


@dataclass(frozen=True)
class Tree:
    """A line with lines below it."""

    label: str
    branches: Sequence["Tree"] = ()


# ---- Records into tables and trees ----


def shown(value: Any) -> str:
    """A value on one line."""
    if value is None:
        return ""
    if isinstance(value, bool):
        return "yes" if value else "no"
    if isinstance(value, tuple):
        if value and is_dataclass(value[0]):
            return f"{len(value)}"
        return ", ".join(map(str, value))
    if is_dataclass(value):
        name = getattr(value, "name", None)
        return f"{value.id}" if name is None else f"{value.id} {name}"
    return str(value)


def table_of(value: Any) -> Table:
    """A list of records row by row, a record field by field, anything else as it is."""
    if isinstance(value, list):
        return _table_of_records(value)
    if is_dataclass(value):
        rows = [[field.name, shown(getattr(value, field.name))] for field in fields(value)]
        return Table(["field", "value"], [row for row in rows if row[1]])
    return Table(["value"], [[shown(text)] for text in (value if isinstance(value, tuple) else [value])])


def _table_of_records(records: List[Any]) -> Table:
    """Columns that are empty in all rows are left out."""
    names = [field.name for field in fields(records[0])] if records else []
    columns = {name: [shown(getattr(record, name)) for record in records] for name in names}
    filled = [name for name in names if any(columns[name])]
    return Table(filled, list(zip(*(columns[name] for name in filled))))


def tree_of(record: Any) -> Tree:
    """A record with all that it holds: its own fields line by line, what is below it on a line each."""
    leaves, branches = [], []
    for field in fields(record):
        value = getattr(record, field.name)
        if _is_inner(value):
            branches.append(_branch(field.name, value))
        elif shown(value) and field.name != "id":
            leaves.append(Tree(f"{field.name}: {shown(value)}"))
    return Tree(f"{type(record).__name__} {record.id}", leaves + branches)


def _is_inner(value: Any) -> bool:
    return is_dataclass(value) or (isinstance(value, tuple) and bool(value) and is_dataclass(value[0]))


def _branch(name: str, value: Any) -> Tree:
    if isinstance(value, tuple):
        return Tree(f"{name} ({len(value)})", [_branch(name[:-1], record) for record in value])
    facts, branches = [], []
    for field in fields(value):
        inner = getattr(value, field.name)
        if _is_inner(inner):
            branches.append(_branch(field.name, inner))
        elif shown(inner) and field.name != "id":
            facts.append(f"{field.name} {shown(inner)}")
    return Tree(f"{name} {value.id}" + (": " + ", ".join(facts) if facts else ""), branches)


# ---- Out ----


def escaped(text: str) -> str:
    """A text that a terminal shows as it is, on one line."""
    return _CONTROLS.sub(lambda found: found[0].encode("unicode_escape").decode("ascii"), text)


def print_json(value: Any) -> None:
    """Prints records as JSON, absent fields as null."""
    is_unicode = (sys.stdout.encoding or "").lower().replace("-", "") == "utf8"
    text = json.dumps(value, ensure_ascii=not is_unicode, indent=2, default=asdict)
    print(_CONTROLS_IN_JSON.sub(lambda found: f"\\u{ord(found[0]):04x}", text))


def print_line(line: str) -> None:
    """Prints a line."""
    encoding = sys.stdout.encoding or "ascii"
    print(escaped(line).encode(encoding, "backslashreplace").decode(encoding))


def print_table(table: Table) -> None:
    """Prints a table; nothing where it has no columns."""
    if not table.heads:
        return
    table = Table(table.heads, [[escaped(text) for text in row] for row in table.rows])
    if _draws(sys.stdout):
        drawn = rich.table.Table(box=rich.box.SIMPLE_HEAD)
        for index, head in enumerate(table.heads):
            is_number = _is_number_column(table, index)
            drawn.add_column(head, justify="right" if is_number else "left", no_wrap=is_number)
        for row in table.rows:
            drawn.add_row(*map(rich.text.Text, row))
        # Where the terminal is too narrow for whole numbers and words, it wraps the lines, and nothing is cut.
        needed = rich.console.Console(width=sys.maxsize).measure(drawn).minimum
        rich.console.Console(width=max(rich.console.Console().width, needed)).print(drawn)
    else:
        for line in _plain_table(table):
            print_line(line)


def print_tree(tree: Tree) -> None:
    """Prints a tree."""
    if _draws(sys.stdout):
        rich.console.Console().print(_rich_tree(tree))
    else:
        for line in _plain_tree(tree, "", ""):
            print_line(line)


def with_progress(items: Iterable[T], count: int, title: str) -> Iterator[T]:
    """Passes items on, with a progress bar where the errors go to a terminal."""
    if _draws(sys.stderr):
        console = rich.console.Console(stderr=True)
        yield from rich.progress.track(items, title, total=count, console=console)
    elif sys.stderr.isatty():
        yield from _plain_progress(items, count, title)
    else:
        yield from items


def _draws(stream: TextIO) -> bool:
    return HAS_RICH and stream.isatty()


def _is_number_column(table: Table, index: int) -> bool:
    texts = [row[index] for row in table.rows if row[index]]
    return bool(texts) and all(text.lstrip("-").replace(".", "", 1).isdigit() for text in texts)


def _plain_table(table: Table) -> Iterator[str]:
    rows: List[Sequence[str]] = [table.heads, *table.rows]
    widths = [max(len(row[index]) for row in rows) for index in range(len(table.heads))]
    right = [_is_number_column(table, index) for index in range(len(table.heads))]
    for number, row in enumerate(rows):
        cells = [
            text.rjust(width) if is_right else text.ljust(width) for text, width, is_right in zip(row, widths, right)
        ]
        yield "  ".join(cells).rstrip()
        if number == 0:
            yield "  ".join("-" * width for width in widths)


def _rich_tree(tree: Tree) -> Any:
    drawn = rich.tree.Tree(rich.text.Text(escaped(tree.label)))
    for branch in tree.branches:
        drawn.add(_rich_tree(branch))
    return drawn


def _plain_tree(tree: Tree, first: str, further: str) -> Iterator[str]:
    yield first + tree.label
    for branch in tree.branches:
        is_last = branch is tree.branches[-1]
        corner, edge = ("`-- ", "    ") if is_last else ("|-- ", "|   ")
        yield from _plain_tree(branch, further + corner, further + edge)


def _plain_progress(items: Iterable[T], count: int, title: str, width: int = 30) -> Iterator[T]:
    done = 0
    for item in items:
        yield item
        done += 1
        bar = "#" * (width * done // max(count, 1))
        print(f"\r{title} [{bar:<{width}}] {done}/{count}", end="", file=sys.stderr, flush=True)
    if done:
        print(file=sys.stderr)


def complain(words: str) -> None:
    """Prints a line about what went wrong."""
    print(f"brimlet: {escaped(words)}", file=sys.stderr)


def bytes_shown(count: Optional[int]) -> str:
    """A number of bytes, or nothing where it is not known."""
    return "" if count is None else str(count)
