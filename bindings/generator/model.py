"""The public headers as data: functions, records and enumerations, with the words of their comments.

Doxygen parses the headers; read() makes an Api of its XML. Texts are Markdown, one paragraph each. What a comment lacks
is empty here, and check.py says what to write.
"""

import os
import re
import subprocess
import tempfile
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass
from enum import Enum
from pathlib import Path
from typing import Dict, Iterator, List, Optional, Sequence, Tuple
from xml.etree.ElementTree import Element

ROOT = Path(__file__).resolve().parents[2]
HEADERS = ROOT / "include" / "brimlet"

IRREGULAR = {
    "addEvents": "ignores what its out-parameter points to on entry",
    "removeAffectFlag": "takes an out-parameter that points to a block, and releases that block",
}
"""The functions that do not return BRIMLET_REFUSED for an out-parameter that does not point to null, with what they do
instead. Everything else about a function follows from its declaration, its comment and its group."""


# ---- Functions ----


class Direction(Enum):
    """Which way the value of a parameter goes."""

    IN = "in"
    OUT = "out"
    IN_OUT = "inout"


class Role(Enum):
    """Who calls a function."""

    LIFECYCLE = "the launch and the exit of a session"
    CALL = "the client of a session"
    RELEASE = "the owner of a record or an array"


class Takes(Enum):
    """What an input is."""

    DOCUMENT = "a JSON document"
    TEXT = "a text"
    NUMBER = "an unsigned number of 32 bits"


class Form(Enum):
    """The form of a document, with what the words of its parameter begin with."""

    BATCH = "batch of "
    RECORD = "document of one "
    IDS = "id-only document with "


class Gives(Enum):
    """What a function hands out beside its result."""

    NOTHING = "nothing"
    RECORD = "a record"
    ARRAY = "an array of records"
    TEXTS = "texts"


@dataclass(frozen=True)
class Parameter:
    name: str
    type: str
    """The C type, such as "FlatUser **"."""
    direction: Optional[Direction]
    words: str

    @property
    def received(self) -> str:
        """What an out-parameter receives, as a phrase such as "the user"."""
        return self.words.partition(";")[0].replace("receives ", "", 1)


@dataclass(frozen=True)
class Input:
    """One argument of a client: a number, or a text or document with its length."""

    takes: Takes
    name: str
    words: str

    @property
    def form(self) -> Optional[Form]:
        """The form of a document. None for a number or a text."""
        if self.takes is not Takes.DOCUMENT:
            return None
        return next((form for form in Form if self.words.startswith(form.value)), None)

    @property
    def keys(self) -> Tuple[str, ...]:
        """The keys of an id-only document. None for everything else."""
        return tuple(re.findall(r'"(\w+)"', self.words)) if self.form is Form.IDS else ()


@dataclass(frozen=True)
class Result:
    """A result that a function can return."""

    name: str
    condition: str


@dataclass(frozen=True)
class Function:
    name: str
    family: str
    """The title of its group, or empty."""
    type: str
    """The C type of what it returns."""
    summary: str
    notes: List[str]
    """What a caller must know beyond the summary."""
    release: str
    """What releases that which it hands out: a free function, "free" for plain texts, empty for nothing."""
    parameters: List[Parameter]
    results: List[Result]
    returned: str
    """What it returns if that is not a result."""
    place: str
    """File and line, such as "brimlet.h:120"."""

    @property
    def role(self) -> Role:
        if self.family == "Lifecycle":
            return Role.LIFECYCLE
        return Role.CALL if self.released is Gives.NOTHING else Role.RELEASE

    @property
    def outputs(self) -> List[Parameter]:
        """The out-parameters but the count: pointers to a record, an array or a text."""
        return [parameter for parameter in self.parameters if parameter.type.endswith("**")]

    @property
    def gives(self) -> Gives:
        if not self.outputs:
            return Gives.NOTHING
        if not self.record:
            return Gives.TEXTS
        return Gives.ARRAY if any(parameter.name == "count" for parameter in self.parameters) else Gives.RECORD

    @property
    def record(self) -> str:
        """The flat record that it hands out or releases, or empty."""
        return next((name for name in map(_record_of, self.parameters) if name), "")

    @property
    def released(self) -> Gives:
        """What it releases."""
        if not self.parameters or self.outputs or not self.record:
            return Gives.NOTHING
        return Gives.ARRAY if len(self.parameters) == 2 else Gives.RECORD

    @property
    def inputs(self) -> List[Input]:
        """What a client passes to a call, each text as one."""
        inputs = []
        for parameter in self.parameters:
            if parameter.type == "const uint16_t *":
                takes = Takes.DOCUMENT if parameter.name == "json" else Takes.TEXT
                inputs.append(Input(takes, parameter.name, parameter.words))
            elif parameter.type == "uint32_t" and not parameter.name.lower().endswith("length"):
                inputs.append(Input(Takes.NUMBER, parameter.name, parameter.words))
        return inputs

    @property
    def outcomes(self) -> List[Result]:
        """The results for the client of a binding, who passes no out-parameters but receives a value or several."""
        pointed = r"`\*\w+`"
        value = "the value" if len(self.outputs) == 1 else r"`\1`"
        outcomes = []
        for result in self.results:
            condition = re.sub(rf"{pointed}(?: or {pointed})* is not null(?:, or )?", "", result.condition)
            if condition:
                outcomes.append(Result(result.name, re.sub(r"`\*(\w+)`", value, condition)))
        return outcomes

    @property
    def is_array_read(self) -> bool:
        """Whether it reads an array, which may be empty for the client of a binding. Adding events is no read."""
        return self.gives is Gives.ARRAY and not any(put.takes is Takes.DOCUMENT for put in self.inputs)

    @property
    def nothing(self) -> str:
        """When a read finds no record or an array has none, so that BRIMLET_NOT_FOUND is no failure. Empty if never."""
        is_read = not any(result.name == "BRIMLET_WRITE_FAILED" for result in self.results)
        return next((result.condition for result in self.results
                     if result.name == "BRIMLET_NOT_FOUND" and (is_read or self.gives is Gives.ARRAY)), "")

    @property
    def failures(self) -> List[Result]:
        """The outcomes that are errors, if a binding returns nothing where there is nothing to return."""
        return [result for result in self.outcomes if result.name != "BRIMLET_DONE"
                and not (result.name == "BRIMLET_NOT_FOUND" and self.nothing)]

    @property
    def enumeration(self) -> str:
        """The enumeration that its result is a value of, or empty."""
        found = re.search(r"\bBrimlet\w+", self.returned)
        return found[0] if found else "BrimletResult" if self.results else ""


def _record_of(parameter: Parameter) -> str:
    found = re.fullmatch(r"(Flat\w+) \*+", parameter.type)
    return found[1] if found else ""


# ---- Records ----


class Kind(Enum):
    """What a field holds, and what a document holds under its key."""

    ID = "an id or a number that identifies the record"
    COUNT = "the count of an array"
    NUMBER = "a number of 32 bits"
    WHOLE = "a signed whole number of 32 bits"
    BIG = "a number of 64 bits"
    REAL = "a real number"
    FLAG = "a flag"
    BYTE = "the low 8 bits of a whole number"
    TEXT = "a text"
    RECORD = "a record"
    ARRAY = "an array of records or numbers"


_KINDS = {
    "uint32_t *": Kind.NUMBER, "int32_t *": Kind.WHOLE, "uint64_t *": Kind.BIG, "double *": Kind.REAL,
    "uint8_t *": Kind.BYTE, "uint16_t *": Kind.TEXT,
}


@dataclass(frozen=True)
class Field:
    name: str
    type: str
    kind: Kind
    record: str
    """The flat record that it points to, or empty."""
    keys: List[str]
    """The keys that a document may use, the first one first. None for a count, and where `is_keyless`."""
    is_keyless: bool
    """Whether the comment says that the field has no key."""
    is_required: bool
    count: str
    """The field that counts this array, or empty."""
    words: str
    place: str

    @property
    def meaning(self) -> str:
        """The words for those who read a record, without the key that documents have for the field."""
        words = re.sub(r' ?\bKey "[^.]*\.', "", self.words)
        return re.sub(r"No key: (\w)", lambda begin: begin[1].upper(), words)


@dataclass(frozen=True)
class Record:
    name: str
    words: str
    fields: List[Field]
    place: str


# ---- Enumerations ----


@dataclass(frozen=True)
class Value:
    name: str
    number: int
    meaning: str
    """A sentence that every language shows."""
    notes: List[str]
    cause: str
    cure: str
    place: str


@dataclass(frozen=True)
class Enumeration:
    name: str
    words: str
    values: List[Value]

    @property
    def prefix(self) -> str:
        """What the names of its values begin with."""
        return os.path.commonprefix([value.name for value in self.values])

    @property
    def type(self) -> str:
        """Its name in the bindings."""
        return "Code" if self.name == "BrimletResult" else self.name.replace("Brimlet", "", 1)


# ---- All of it ----


@dataclass(frozen=True)
class Family:
    """A group of functions."""

    title: str
    notes: List[str]


@dataclass(frozen=True)
class Api:
    version: str
    families: List[Family]
    functions: List[Function]
    records: List[Record]
    enumerations: List[Enumeration]

    def function(self, name: str) -> Function:
        return next(function for function in self.functions if function.name == name)

    def record(self, name: str) -> Record:
        return next(record for record in self.records if record.name == name)

    def enumeration(self, name: str) -> Enumeration:
        return next(enumeration for enumeration in self.enumerations if enumeration.name == name)

    def release_of(self, function: Function) -> str:
        """The function that releases what another one hands out, "free" for plain texts."""
        if function.gives is Gives.TEXTS:
            return "free"
        return next((other.name for other in self.functions
                     if other.released is function.gives and other.record == function.record), "")

    def subject(self, function: Function) -> str:
        """The flat record that the group of a function is about, or empty."""
        return next((other.record for other in self.functions if other.family == function.family and other.record), "")


# ---- Words of other modules ----


def noun(record: str) -> str:
    """A record in words: "device user" for FlatDeviceUser or DeviceUser."""
    return re.sub("(?<=[a-z])(?=[A-Z])", " ", re.sub("^Flat", "", record)).lower()


def listed(words: Sequence[str], conjunction: str) -> str:
    """Words as a list in a sentence: "a, b or c"."""
    return f" {conjunction} ".join(filter(None, (", ".join(words[:-1]), *words[-1:])))


class HeaderError(Exception):
    """Doxygen cannot make sense of a comment."""


def read(headers: Path = HEADERS) -> Api:
    """Reads the headers of a folder."""
    with tempfile.TemporaryDirectory() as output:
        environment = {**os.environ, "BRIMLET_HEADERS": str(headers), "BRIMLET_OUTPUT": output}
        doxygen = subprocess.run(["doxygen", "bindings/generator/Doxyfile"], cwd=ROOT, env=environment,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, encoding="utf-8")
        if doxygen.returncode != 0:
            raise HeaderError(f"correct the comments of the headers:\n{doxygen.stderr}")
        return _read_xml(Path(output) / "xml")


def _read_xml(folder: Path) -> Api:
    index = ElementTree.parse(folder / "index.xml").getroot()
    compounds = {entry.findtext("name", ""): _root(folder / f"{entry.get('refid')}.xml") for entry in index}
    main = compounds["brimlet.h"]
    groups = main.findall("sectiondef[@kind='user-defined']")
    sections = [*groups, *main.findall("sectiondef[@kind='func']")]
    return Api(
        version=_member(main, "BRIMLET_VERSION").findtext("initializer", "").strip('"'),
        families=[Family(_title(group), _paragraphs(group.find("description"))) for group in groups],
        functions=[_function(member, _title(section)) for section in sections for member in section.iter("memberdef")],
        records=sorted((_record(compound) for compound in compounds.values() if compound.get("kind") == "struct"),
                       key=lambda record: int(record.place.partition(":")[2])),
        enumerations=[_enumeration(member) for member in compounds["ResultCodes.h"].iter("memberdef")],
    )


def _root(path: Path) -> Element:
    compound = ElementTree.parse(path).getroot().find("compounddef")
    assert compound is not None
    return compound


def _member(compound: Element, name: str) -> Element:
    return next(member for member in compound.iter("memberdef") if member.findtext("name") == name)


def _title(group: Element) -> str:
    return group.findtext("header", "")


def _place(item: Element) -> str:
    location = item.find("location")
    assert location is not None
    return f"{Path(location.get('file', '')).name}:{location.get('line')}"


# ---- Words ----


def _markdown(element: Element) -> Iterator[str]:
    """The text of an element, without the lists that have tags of their own."""
    marks = {"computeroutput": "`", "bold": "**", "emphasis": "*"}.get(element.tag, "")
    yield marks + (element.text or "")
    for child in element:
        if child.tag not in ("parameterlist", "simplesect"):
            yield from _markdown(child)
        yield child.tail or ""
    yield marks


def _words(element: Optional[Element]) -> str:
    return " ".join("".join(_markdown(element)).split()) if element is not None else ""


def _paragraphs(element: Optional[Element]) -> List[str]:
    return [words for words in map(_words, element) if words] if element is not None else []


def _comment(item: Element) -> str:
    return f"{_words(item.find('briefdescription'))} {_words(item.find('detaileddescription'))}".strip()


def _items(member: Element, kind: str) -> Iterator[Tuple[Element, str]]:
    """The name and the words of each @param or @retval."""
    for item in member.findall(f"detaileddescription/para/parameterlist[@kind='{kind}']/parameteritem"):
        for name in item.iter("parametername"):
            yield name, _words(item.find("parameterdescription"))


# ---- Items ----


def _function(member: Element, family: str) -> Function:
    described: Dict[str, Tuple[Element, str]] = {name.text or "": (name, words)
                                                 for name, words in _items(member, "param")}
    parameters = []
    for item in member.findall("param[declname]"):
        name = item.findtext("declname", "")
        tag, words = described.get(name, (Element("parametername"), ""))
        way = tag.get("direction")
        parameters.append(Parameter(name, _words(item.find("type")), Direction(way) if way else None, words))
    notes = _paragraphs(member.find("detaileddescription"))
    release = next((match for match in (re.match(r"Release (?:it|each) with (\w+)(?:, on Windows with \w+)?\. ?", note)
                                        for note in notes) if match), None)
    if release:
        notes = [note for note in (note.replace(release[0], "", 1) for note in notes) if note]
    return Function(
        name=member.findtext("name", ""), family=family, type=_words(member.find("type")),
        summary=_words(member.find("briefdescription")), notes=notes, release=release[1] if release else "",
        parameters=parameters, results=[Result(name.text or "", words) for name, words in _items(member, "retval")],
        returned=_words(member.find("detaileddescription/para/simplesect[@kind='return']/para")), place=_place(member),
    )


def _record(compound: Element) -> Record:
    members = list(compound.iter("memberdef"))
    fields = [_field(member, following, is_first=member is members[0])
              for member, following in zip(members, [*members[1:], None])]
    return Record(compound.findtext("compoundname", ""), _comment(compound), fields, _place(compound))


def _field(member: Element, following: Optional[Element], is_first: bool) -> Field:
    c_type = _words(member.find("type"))
    record = re.match(r"Flat\w+", c_type)
    count = ""  # a number in the record itself, behind the pointer that it counts for
    if c_type.endswith("*") and following is not None and following.findtext("type") == "uint32_t":
        count = following.findtext("name", "")
    words = _comment(member)
    keys = re.search(r'\bKey ("\w+"(?: or "\w+")*)(, required)?(, a flag)?', words)
    if c_type == "uint32_t":
        kind = Kind.ID if is_first else Kind.COUNT
    elif count:
        kind = Kind.ARRAY
    elif record:
        kind = Kind.RECORD
    elif keys and keys[3]:
        kind = Kind.FLAG
    else:
        kind = _KINDS[c_type]
    return Field(
        name=member.findtext("name", ""), type=c_type, kind=kind, record=record[0] if record else "",
        keys=re.findall(r'"(\w+)"', keys[1]) if keys else [], is_keyless="No key:" in words,
        is_required=bool(keys and keys[2]), count=count, words=words, place=_place(member),
    )


def _enumeration(member: Element) -> Enumeration:
    values = [_value(value, _place(member)) for value in member.findall("enumvalue")]
    return Enumeration(member.findtext("name", ""), _comment(member), values)


def _value(value: Element, place: str) -> Value:
    notes = _paragraphs(value.find("detaileddescription"))
    told = {label: note[len(label):] for note in notes for label in ("Cause: ", "Cure: ") if note.startswith(label)}
    return Value(
        name=value.findtext("name", ""), number=int(value.findtext("initializer", "").lstrip("= ")),
        meaning=_words(value.find("briefdescription")),
        notes=[note for note in notes if not note.startswith(("Cause: ", "Cure: "))],
        cause=told.get("Cause: ", ""), cure=told.get("Cure: ", ""), place=place,
    )
