"""Writes what is made from the public headers and from the library's own lists: one template for each file.

usage: python3 -m generator [DESCRIBE] [--check]     DESCRIBE is the program that prints the library's lists

Without DESCRIBE it writes only what the headers alone decide. That comes first, since DESCRIBE is built with the list
of exports.
"""

import argparse
import difflib
import functools
import html
import keyword
import re
import sys
import textwrap
from pathlib import Path
from typing import Dict, List, Optional, Tuple

import jinja2

from . import agreement, check, lists, model, pages

OUTPUTS = {
    "bindings/cpp/brimlet/calls.hpp": "calls.hpp",
    "bindings/cpp/brimlet/codes.hpp": "codes.hpp",
    "bindings/cpp/brimlet/records.hpp": "records.hpp",
    "bindings/dotnet/Generated/FlatRecords.cs": "FlatRecords.cs",
    "bindings/dotnet/Generated/Native.cs": "Native.cs",
    "bindings/dotnet/Generated/Records.cs": "Records.cs",
    "bindings/dotnet/Generated/ResultCodes.cs": "ResultCodes.cs",
    "bindings/dotnet/Generated/SessionCalls.cs": "SessionCalls.cs",
    "bindings/python/brimlet/codes.py": "codes.py.jinja",
    "bindings/python/brimlet/functions.py": "functions.py.jinja",
    "bindings/python/brimlet/records.py": "records.py.jinja",
    "bindings/python/brimlet/version.py": "version.py.jinja",
    "docs/result-codes.md": "result-codes.md",
    "src/api/exports.txt": "exports.txt",
    "tests/abi/layout.txt": "layout.txt",
}
"""Each file with its template. Of a page in docs the template writes the regions that are marked as generated."""

OUTPUTS_WITH_LISTS = {
    "bindings/python/brimlet/schema.py": "schema.py.jinja",
    "docs/documents.md": "documents.md",
    "docs/file.md": "file.md",
}
"""Those that the library's lists decide as well."""


def render(describe: Optional[str]) -> Dict[Path, str]:
    """The text of each file, without the program only of those that the headers alone decide."""
    api = model.read()
    refuse(check.findings(api))
    library = lists.read(describe) if describe else None
    if library:
        refuse(agreement.findings(api, library))
    environment = jinja2.Environment(
        loader=jinja2.FileSystemLoader(Path(__file__).parent / "templates"), undefined=jinja2.StrictUndefined,
        trim_blocks=True, lstrip_blocks=True, keep_trailing_newline=True,
    )
    environment.filters.update(wrap=wrap, layout=layout, camel=camel, phrase=phrase, view=view, member=member)
    environment.filters.update(python=python, identifier=identifier)
    environment.filters.update(pascal=pascal, verbatim=verbatim, fold=fold, element=element,
                               xml=functools.partial(xml, references(api)))
    environment.filters.update(row=pages.row, cell=pages.cell, code=functools.partial(pages.code, api))
    texts = {}
    for name, template in {**OUTPUTS, **(OUTPUTS_WITH_LISTS if library else {})}.items():
        path = model.ROOT / name
        text = environment.get_template(template).render(api=api, lists=library, model=model, pages=pages)
        if path.parent.name == "docs":
            try:
                text = pages.splice(path.read_text(encoding="utf-8"), text)
            except pages.RegionError as error:
                refuse([f"{name}: {error}"])
        texts[path] = text
    return texts


def refuse(findings: List[str]) -> None:
    """Ends the program if there are findings."""
    if findings:
        raise SystemExit("\n".join(findings))


def main() -> None:
    parser = argparse.ArgumentParser(prog="generator", description=__doc__)
    parser.add_argument("describe", nargs="?", help="the program that prints the library's lists")
    parser.add_argument("--check", action="store_true", help="write nothing, and fail if a file is not up to date")
    options = parser.parse_args()
    differences = ""
    for path, text in render(options.describe).items():
        old = path.read_text(encoding="utf-8") if path.exists() else ""
        if text != old and options.check:
            name = str(path.relative_to(model.ROOT))
            differences += "".join(difflib.unified_diff(old.splitlines(True), text.splitlines(True), name, name))
        elif text != old:
            path.parent.mkdir(exist_ok=True)
            path.write_text(text, encoding="utf-8")
    if differences:
        sys.exit(f"{differences}\nThese files are not up to date: run scripts/generate and commit what it writes.")


# ---- What templates use ----


def wrap(text: str, prefix: str, width: int = 120, first: str = "") -> str:
    """A paragraph as lines that all begin with the prefix, unless the first one has its own."""
    return textwrap.fill(text, width, initial_indent=first or prefix, subsequent_indent=prefix,
                         break_long_words=False, break_on_hyphens=False)


def layout(record: model.Record) -> List[Tuple[str, int, int]]:
    """The record with its size and alignment on a 64-bit platform, then each field with its offset and size."""
    fields = []
    end = 0
    alignment = 1
    for field in record.fields:
        size = 4 if field.type == "uint32_t" else 8
        end += -end % size
        alignment = max(alignment, size)
        fields.append((f"{record.name}.{field.name}", end, size))
        end += size
    return [(record.name, end + -end % alignment, alignment), *fields]


def camel(name: str, prefix: str) -> str:
    """The name of a value without its prefix, in camel case: NotFound for BRIMLET_NOT_FOUND."""
    return name[len(prefix):].title().replace("_", "")


def phrase(sentence: str) -> str:
    """A sentence to be put behind a colon or a comma."""
    return sentence[0].lower() + sentence[1:].rstrip(".")


# ---- C++ ----


def view(record: str) -> str:
    """The view of a flat record, empty for none."""
    return record and record.replace("Flat", "", 1) + "View"


def member(head: str, parameters: str, qualifiers: str, value: str, width: int = 120) -> str:
    """A member function that returns a value: in one line, or broken as clang-format breaks it."""
    line = f"{head}({parameters}){qualifiers} {{ return {value}; }}"
    if len(line) <= width:
        return line
    lines = textwrap.wrap(parameters.replace(" ", "\0").replace(",\0", ", "), width - len(head) - 2)
    signature = f"\n{' ' * (len(head) + 1)}".join(lines).replace("\0", " ")
    indent = " " * (len(head) - len(head.lstrip()))
    return f"{head}({signature}){qualifiers}\n{indent}{{\n{indent}    return {value};\n{indent}}}"


# ---- Python ----


def python(words: str) -> str:
    """Words of the headers for a reader of Python: its names of records and values, and lists instead of arrays."""
    for pattern, replacement in (
        (r"\bFlat(?=[A-Z])", ""),
        (r"\bBRIMLET_LAUNCH_(?=[A-Z])", "LaunchResult."), (r"\bBRIMLET_STATE_(?=[A-Z])", "State."),
        (r"\bBRIMLET_(?=[A-Z])", "Code."),
        (r"\ban array\b", "a list"), (r"\barray\b", "list"),
    ):
        words = re.sub(pattern, replacement, words)
    return words


def identifier(name: str) -> str:
    """A name that is no keyword of Python."""
    return name + "_" if keyword.iskeyword(name) else name


# ---- C# ----


def pascal(name: str) -> str:
    """The name of a public member: GetUser for getUser."""
    return name[0].upper() + name[1:]


def verbatim(name: str) -> str:
    """The name of a parameter, marked if it is a keyword."""
    return f"@{name}" if name == "event" else name


def fold(statement: str, width: int = 120) -> str:
    """A line of code, broken behind the parameters of a lambda and behind commas if it is too long."""
    if len(statement) <= width:
        return statement
    indent = " " * (len(statement) - len(statement.lstrip()) + 4)
    head, arrow, body = statement.partition(") => ")
    if arrow:
        return f"{head}) =>\n{fold(indent + body, width)}"
    kept = statement.replace(" ", "\0").replace(",\0", ", ")
    return textwrap.fill(kept, width, subsequent_indent=indent, break_long_words=False).replace("\0", " ")


def element(text: str, tag: str, indent: int) -> str:
    """An element of a documentation comment, in as many lines as it takes."""
    kept = re.sub("<[^>]*>", lambda mark: mark[0].replace(" ", "\0"), f"<{tag}>{text}</{tag.split()[0]}>")
    return wrap(kept, " " * indent + "/// ").replace("\0", " ")


def xml(references: Dict[str, str], text: str) -> str:
    """A text of the headers in a documentation comment, with references to what C# has for the names in it."""
    text = re.sub(r"`(\w+)`", r'<paramref name="\1"/>', html.escape(text, quote=False))
    return re.sub(r"\b\w+\b", lambda name: f'<see cref="{references[name[0]]}"/>' if name[0] in references else name[0],
                  text)


def references(api: model.Api) -> Dict[str, str]:
    """What C# has for the names of the headers. Records are qualified, because some properties have their names."""
    records = {record.name: record.name.replace("Flat", "Brimlet.", 1) for record in api.records}
    return {**records, **{function.name: f"Session.{pascal(function.name)}" for function in api.functions
                          if function.role is model.Role.CALL}}


if __name__ == "__main__":
    main()
