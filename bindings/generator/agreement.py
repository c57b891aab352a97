"""Where the words of the headers and the library's own lists disagree: a sentence for each finding, with the place and
what to write there. Pages and bindings are written from both."""

import re
from typing import Iterator, List

from . import lists, model
from .model import Api, Form, Kind, listed, noun

_FORMS = {"batch": Form.BATCH, "record": Form.RECORD, "ids": Form.IDS}
_KINDS = {
    "uint32": Kind.NUMBER, "int32": Kind.WHOLE, "uint8": Kind.BYTE, "uint64": Kind.BIG, "double": Kind.REAL,
    "flag": Kind.FLAG, "text": Kind.TEXT, "reference": Kind.RECORD, "object": Kind.RECORD, "objects": Kind.ARRAY,
    "numbers": Kind.ARRAY,
}


def findings(api: Api, library: lists.Lists) -> List[str]:
    """All disagreements, in the order of the headers. Empty if the headers say what the library does."""
    found: List[str] = []
    for function in api.functions:
        found += (f"{function.place}: {function.name}: {text}" for text in _of_function(function, library))
    records = {record.flat: record for record in library.records}
    for flat in api.records:
        if flat.name not in records:
            found.append(f"{flat.place}: {flat.name}: take the record out, since no document has one that it shows.")
            continue
        for field in flat.fields:
            found += (f"{field.place}: {flat.name}.{field.name}: {text}"
                      for text in _of_field(records[flat.name], field))
    return found


def _quoted(keys: List[str], conjunction: str) -> str:
    return listed([f'"{key}"' for key in keys], conjunction)


# ---- Functions ----


def _of_function(function: model.Function, library: lists.Lists) -> Iterator[str]:
    puts = {put.name: put for put in function.inputs}
    known = next((known for known in library.functions if known.name == function.name), None)
    if known is None:
        if "json" in puts:
            yield "name its document in src/api/DocumentFunctions.h."
        return
    name = "key" if known.form == "search" else "json"
    if name not in puts:
        yield f"give the parameter of its {'search' if name == 'key' else 'document'} the name {name}."
    elif known.form == "search":
        yield from _of_search(puts[name].words, known, library.record(known.record))
    else:
        yield from _of_document(puts[name].words, known)


def _of_search(words: str, known: lists.Function, record: lists.Record) -> Iterator[str]:
    others = [key for member in record.members for key in member.keys if key not in known.searches]
    if not words.startswith(f"key of {record.flat}") or set(re.findall(r'"(\w+)"', words)) != set(others):
        exceptions = f", except {_quoted(others, 'and')}" if others else ""
        yield f"write \"key of {record.flat}{exceptions}\" as the words of key."


def _of_document(words: str, known: lists.Function) -> Iterator[str]:
    beginning = _FORMS[known.form].value + noun(known.record)
    if not words.startswith(beginning):
        yield f"begin the words of json with \"{beginning.strip()}\"."
    keys = [one.key for one in known.ids]
    if re.findall(r'"(\w+)"', words) != keys:
        yield f"name {_quoted(keys, 'and') or 'no key'} in the words of json{', and no other key' if keys else ''}."


# ---- Fields ----


def _of_field(record: lists.Record, field: model.Field) -> Iterator[str]:
    member = next((member for member in record.members if member.field == field.name), None)
    if member:
        yield from _of_member(member, field)
    elif field.keys:
        shared = next((member for member in record.members if member.keys == field.keys), None)
        if shared is None:
            yield f"take out the key {_quoted(field.keys, 'or')}, since documents do not have it."
        elif field.kind is not Kind.RECORD:
            yield f"take out the key {_quoted(field.keys, 'or')}, since it is that of {shared.field}."
        else:
            yield from _of_phrase(field, f"the id of a {noun(field.record)}")


def _of_member(member: lists.Member, field: model.Field) -> Iterator[str]:
    if field.keys != member.keys:
        instead = f" instead of {_quoted(field.keys, 'or')}" if field.keys else ""
        yield f"write the key {_quoted(member.keys, 'or')}{instead}."
    if field.is_required != member.is_required:
        yield "write \", required\" behind the key." if member.is_required else "take out \", required\"."
    kind = _KINDS[member.kind]
    if field.kind is Kind.BYTE and kind is Kind.FLAG:
        yield "write \", a flag\" behind the key."
    elif field.kind is Kind.FLAG and kind is not Kind.FLAG:
        yield f"take out \", a flag\", since documents have {kind.value}."
    elif field.kind is not kind and not (field.kind is Kind.ID and kind is Kind.NUMBER):
        yield f"declare the field as {kind.value}, as documents have it."
    if field.count != member.count:
        yield f"put its count {member.count} behind it."
    if field.keys == member.keys and member.kind == "reference":
        yield from _of_phrase(field, f"the id of a {noun(member.record)}")
    if field.keys == member.keys and member.kind == "object":
        yield from _of_phrase(field, f"an object with the keys of {field.record}")


def _of_phrase(field: model.Field, phrase: str) -> Iterator[str]:
    if f"Key {_quoted(field.keys, 'or')}, {phrase}" not in field.words:
        yield f"write \", {phrase}\" behind the key."
