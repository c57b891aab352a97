"""Compares the package with the public headers, the list of exports and the layout table: fails if the package misses
an addition."""

import ctypes
import dataclasses
import pydoc
import re
import unittest

import brimlet
from brimlet import codes, folder
from brimlet.functions import FUNCTIONS, DocumentInput, Gives, Role
from brimlet.records import TextPointer, all_records, layout_of
from brimlet.session import Session
from generator import model
from support import source

NUMBERS = {
    "uint8_t": ctypes.c_uint8, "uint16_t": ctypes.c_uint16, "int32_t": ctypes.c_int32, "uint32_t": ctypes.c_uint32,
    "uint64_t": ctypes.c_uint64, "double": ctypes.c_double,
}
STRUCTURES = {layout_of(record).structure.__name__: layout_of(record).structure for record in all_records()}


def type_of(words):
    """The ctypes type of a C type such as "const uint16_t *"."""
    name, stars = re.fullmatch(r"(?:const )?(\w+) ?(\**)", words.strip()).groups()
    if name == "void":
        return None
    kind = {**NUMBERS, **STRUCTURES}[name]
    for _ in stars:
        kind = ctypes.POINTER(kind)
    return kind


def declarations():
    """(result, name, [(type, name)]) for each function of the header."""
    text = re.sub(r"\s+", " ", source("include/brimlet/brimlet.h"))
    for result, name, arguments in re.findall(r"BRIMLET_API (\w+) (\w+)\(([^)]*)\);", text):
        pairs = [] if arguments == "void" else [re.fullmatch(r"(.*?)(\w+)", part.strip()).groups()
                                                 for part in arguments.split(",")]
        yield result, name, [(type_of(kind), argument) for kind, argument in pairs]


def enumerators(enum):
    """{name: number} of an enum of ResultCodes.h."""
    body = re.search(r"enum " + enum + r" \{(.*?)\};", source("include/brimlet/ResultCodes.h"), re.DOTALL).group(1)
    body = re.sub(r"/\*.*?\*/", "", body, flags=re.DOTALL)
    return {name: int(number) for name, number in re.findall(r"(\w+) =\s*(\d+)", body)}


class FunctionsTest(unittest.TestCase):
    def test_table_and_header_name_the_same_functions_in_the_same_order(self):
        names = [name for _, name, _ in declarations()]
        self.assertEqual(len(names), 96)
        self.assertEqual(list(FUNCTIONS), names)

    def test_table_and_list_of_exports_name_the_same_functions(self):
        lines = source("src/api/exports.txt").splitlines()
        self.assertEqual(list(FUNCTIONS), [line for line in lines if line and not line.startswith("#")])

    def test_prototypes_are_those_of_the_header(self):
        for result, name, arguments in declarations():
            with self.subTest(name):
                self.assertEqual(FUNCTIONS[name].result, type_of(result))
                self.assertEqual(FUNCTIONS[name].arguments, [kind for kind, _ in arguments])

    def test_inputs_bear_the_names_of_the_header(self):
        for _, name, arguments in declarations():
            entry = FUNCTIONS[name]
            if entry.role is Role.RELEASE:
                continue
            with self.subTest(name):
                names = [argument for kind, argument in arguments
                         if kind is TextPointer or (kind is ctypes.c_uint32 and "ength" not in argument)]
                self.assertEqual([put.name for put in entry.takes], names)

    def test_records_of_a_family_have_two_free_functions(self):
        for entry in FUNCTIONS.values():
            if entry.gives in (Gives.RECORD, Gives.LIST):
                frees = [other.name for other in FUNCTIONS.values()
                         if other.role is Role.RELEASE and other.family is entry.family]
                self.assertEqual(len(frees), 2, entry.name)

    def test_id_only_documents_have_the_keys_of_the_header(self):
        found = [(put.words, function.name) for function in model.read().functions for put in function.inputs
                 if put.words.startswith("id-only document with ")]
        self.assertEqual(len(found), 10)
        for words, name in found:
            with self.subTest(name):
                self.assertEqual(list(FUNCTIONS[name].takes[0].form.keys), re.findall(r'"(\w+)"', words))

    def test_a_folder_may_hold_documents_for_every_function_that_takes_one(self):
        takers = [name for name, entry in FUNCTIONS.items()
                  if any(isinstance(put, DocumentInput) for put in entry.takes)]
        self.assertCountEqual(folder._ORDER, takers)

    def test_a_session_has_a_method_for_what_a_client_calls(self):
        session = object.__new__(Session)
        for name, entry in FUNCTIONS.items():
            with self.subTest(name):
                self.assertEqual(hasattr(session, name), entry.role is Role.CALL)
        self.assertEqual(session.getZone.__doc__, "getZone(zoneId, deviceId, sectionId) -> Zone")
        self.assertEqual(session.deleteUser.__doc__, "deleteUser(json: {op_id})")
        self.assertIn("getZone(zoneId, deviceId, sectionId) -> Zone", pydoc.render_doc(Session))


class RecordsTest(unittest.TestCase):
    def declared(self):
        text = re.sub(r"/\*.*?\*/", "", source("include/brimlet/FlatRecords.h"), flags=re.DOTALL)
        for name, body in re.findall(r"typedef struct (\w+)\s*\{(.*?)\}", text, re.DOTALL):
            yield name, [(field, type_of(kind)) for kind, field in re.findall(r"(\w+ \**)(\w+);", body)]

    def test_structures_are_those_of_the_header(self):
        declared = dict(self.declared())
        self.assertEqual(set(STRUCTURES), set(declared))
        for name, members in declared.items():
            with self.subTest(name):
                self.assertEqual(STRUCTURES[name]._fields_, members)

    def test_dataclasses_have_the_fields_of_the_header_without_the_counts(self):
        for name, members in self.declared():
            record = getattr(brimlet, name[len("Flat"):])
            names = [field for field, _ in members if not field.endswith("Count")]
            self.assertEqual([field.name for field in dataclasses.fields(record)], names)

    def test_sizes_and_offsets_are_those_of_the_table(self):
        listed = {}
        for line in source("tests/abi/layout.txt").splitlines():
            subject, first, second = line.split()
            listed[subject] = (int(first), int(second))
        made = {}
        for name, structure in STRUCTURES.items():
            made[name] = (ctypes.sizeof(structure), ctypes.alignment(structure))
            for field, _ in structure._fields_:
                place = getattr(structure, field)
                made[f"{name}.{field}"] = (place.offset, place.size)
        self.assertEqual(made, listed)

    def test_records_are_frozen(self):
        locale = brimlet.Locale(1, "en", None)
        with self.assertRaises(dataclasses.FrozenInstanceError):
            locale.iso = "de"


class CodesTest(unittest.TestCase):
    def test_enums_are_those_of_the_header(self):
        for enum, prefix, mine in (("BrimletResult", "BRIMLET_", brimlet.Code),
                                   ("BrimletLaunchResult", "BRIMLET_LAUNCH_", brimlet.LaunchResult),
                                   ("BrimletState", "BRIMLET_STATE_", brimlet.State)):
            with self.subTest(enum):
                listed = {name[len(prefix):]: number for name, number in enumerators(enum).items()}
                self.assertEqual({value.name: int(value) for value in mine}, listed)

    def test_every_code_but_0_has_an_exception_of_its_name(self):
        for code in brimlet.Code:
            if code is not brimlet.Code.DONE:
                with self.subTest(code):
                    name = "".join(word.capitalize() for word in code.name.split("_"))
                    self.assertIs(type(codes.error_for("getUser", int(code))), getattr(brimlet, name))
                    self.assertTrue(code.meaning)


class PackageTest(unittest.TestCase):
    def test_version_is_that_of_the_library(self):
        self.assertEqual(brimlet.__version__, model.read().version)

    def test_project_names_the_command_and_ships_the_types(self):
        project = source("bindings/python/pyproject.toml")
        self.assertIn('brimlet = "brimlet.command:main"', project)
        self.assertIn('brimlet = ["py.typed"]', project)
        self.assertEqual(source("bindings/python/brimlet/py.typed"), "")
        from brimlet.command import main
        self.assertTrue(callable(main))
