"""Compares the package with the public headers, the list of exports and the layout table: fails if the package misses
an addition."""

import ctypes
import dataclasses
import inspect
import pydoc
import re
import typing
import unittest

import brimlet
from brimlet import codes, folder, functions
from brimlet.functions import FUNCTIONS, DocumentInput, Functions, Gives, Role
from brimlet.layout import TextPointer, all_records, layout_of
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
                self.assertIs(getattr(Functions, name), entry)


class Recorder(functions.Calls):
    """Returns what each method asks for."""

    def _call(self, function, *arguments):
        return function, arguments


class MethodsTest(unittest.TestCase):
    def methods(self):
        """(entry, names of the parameters) for each function that a client calls."""
        for entry in FUNCTIONS.values():
            if entry.role is Role.CALL:
                yield entry, [put.name + ("_" if put.name == "from" else "") for put in entry.takes]

    def test_a_method_takes_the_inputs_of_its_function_by_place_and_by_name(self):
        for entry, names in self.methods():
            with self.subTest(entry.name):
                arguments = tuple(range(len(names)))
                method = getattr(functions.Calls, entry.name)
                self.assertEqual(list(inspect.signature(method).parameters), ["self", *names])
                if entry.gives is Gives.NOTHING:
                    continue
                self.assertEqual(method(Recorder(), *arguments), (entry, arguments))
                by_name = dict(reversed(list(zip(names, arguments))))
                self.assertEqual(method(Recorder(), **by_name), (entry, arguments))

    def test_a_method_that_returns_nothing_calls_its_function(self):
        calls = []
        recorder = Recorder()
        recorder._call = lambda function, *arguments: calls.append((function, arguments))
        for entry, names in self.methods():
            if entry.gives is Gives.NOTHING:
                with self.subTest(entry.name):
                    self.assertIsNone(getattr(recorder, entry.name)(*names))
                    self.assertEqual(calls.pop(), (entry, tuple(names)))

    def test_annotations_are_the_types_that_go_in_and_come_out(self):
        annotations = {
            "getZone": {"zoneId": int, "deviceId": int, "sectionId": int, "return": brimlet.Zone},
            "getUsersWithParams": {"key": str, "value": str, "return": typing.List[brimlet.User]},
            "addUsers": {"json": brimlet.Document, "return": type(None)},
            "deleteUser": {"json": brimlet.BareId, "return": type(None)},
            "removeAffectFlag": {"json": brimlet.BareId, "return": brimlet.Event},
            "getEvents": {"from_": int, "to": int, "return": typing.List[brimlet.Event]},
            "getServerIp": {"return": typing.Optional[str]},
            "getSiteNameAndAddress": {"id": int, "return": typing.Tuple[typing.Optional[str], typing.Optional[str]]},
        }
        for name, expected in annotations.items():
            with self.subTest(name):
                self.assertEqual(typing.get_type_hints(getattr(Session, name)), expected)

    def test_help_says_what_a_method_does_takes_returns_and_raises(self):
        self.assertEqual(inspect.getdoc(Session.getZone), """\
Gets one zone of a section.

:param zoneId: number of the zone
:param deviceId: id of the device
:param sectionId: number of the section
:returns: the zone
:raises ReadFailed: the store could not be read
:raises NotFound: the section has no zone with this number
:raises NoRecord: internal error: no record""")
        self.assertIn(":returns: the list of zones, empty if the device has no zones\n", Session.getZones.__doc__)
        self.assertIn(":returns: the name and the address, None if absent\n", Session.getSiteNameAndAddress.__doc__)
        self.assertIn("getZone(self, zoneId: int, deviceId: int, sectionId: int) -> brimlet.records.Zone\n",
                      pydoc.plain(pydoc.render_doc(Session)))

    def test_words_are_those_of_the_header_for_what_python_shows(self):
        for function in model.read().functions:
            if function.role is not model.Role.CALL:
                continue
            with self.subTest(function.name):
                text = " ".join(inspect.getdoc(getattr(Session, function.name)).split())
                self.assertTrue(text.startswith(function.summary.replace("an array", "a list") + " "), text)
                for words in [*function.notes, *(put.words for put in function.inputs)]:
                    self.assertIn(words.replace("Flat", ""), text)
                raised = re.findall(r":raises (\w+): ", text)
                listed = [result.name for result in function.results if result.name != "BRIMLET_DONE"
                          and re.sub(r"`\*\w+`( or `\*\w+`)* is not null", "", result.condition)
                          and not (result.name == "BRIMLET_NOT_FOUND" and FUNCTIONS[function.name].is_list_read)]
                self.assertEqual([getattr(brimlet, name) for name in raised],
                                 [type(codes.error_for("", brimlet.Code[name[len("BRIMLET_"):]])) for name in listed])
                self.assertNotRegex(text, r"Flat|BRIMLET_|\barray\b|is not null")


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
            if not line or line.startswith("#"):
                continue
            subject, first, second = line.split()
            listed[subject] = (int(first), int(second))
        made = {}
        for name, structure in STRUCTURES.items():
            made[name] = (ctypes.sizeof(structure), ctypes.alignment(structure))
            for field, _ in structure._fields_:
                place = getattr(structure, field)
                made[f"{name}.{field}"] = (place.offset, place.size)
        self.assertEqual(made, listed)

    def test_help_says_what_each_field_means_and_its_key(self):
        for record in model.read().records:
            name = record.name[len("Flat"):]
            with self.subTest(name):
                text = " ".join(inspect.getdoc(getattr(brimlet, name)).split())
                self.assertTrue(text.startswith(record.words), text)
                for field in record.fields:
                    shown = f":ivar {field.name}: {field.words.replace('Flat', '')}"
                    self.assertEqual(shown in text, field.kind is not model.Kind.COUNT, shown)
        self.assertIn(':ivar isActive: Whether the user is active. Key "active", a flag.\n', brimlet.User.__doc__)

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

    def test_meanings_are_those_of_the_header(self):
        for enumeration in model.read().enumerations:
            mine = {"BrimletResult": brimlet.Code, "BrimletLaunchResult": brimlet.LaunchResult,
                    "BrimletState": brimlet.State}[enumeration.name]
            for value in enumeration.values:
                with self.subTest(value.name):
                    self.assertEqual(mine(value.number).meaning.lower() + ".", value.meaning.lower())
                    self.assertFalse(mine(value.number).meaning[0].isupper())
        self.assertEqual(brimlet.NotFound.__doc__, "8: the store holds nothing that fits.")

    def test_a_launch_result_says_what_became_of_the_store(self):
        usable = {result.name for result in brimlet.LaunchResult if result.is_usable}
        replaced = {result.name for result in brimlet.LaunchResult if result.is_replaced}
        self.assertEqual(usable, {"OPENED", "CREATED"})
        self.assertEqual(replaced, {"REPLACED_SCHEMA", "REPLACED_UNREADABLE", "REPLACED_VERSION"})

    def test_every_code_but_0_has_an_exception_of_its_name(self):
        for code in brimlet.Code:
            if code is not brimlet.Code.DONE:
                with self.subTest(code):
                    name = "".join(word.capitalize() for word in code.name.split("_"))
                    self.assertIs(type(codes.error_for("getUser", int(code))), getattr(brimlet, name))
                    self.assertTrue(code.meaning)


class PackageTest(unittest.TestCase):
    def test_generated_modules_say_so_and_keep_to_the_width_of_a_line(self):
        for name in ("codes", "functions", "records", "version"):
            with self.subTest(name):
                first, *lines = source(f"bindings/python/brimlet/{name}.py").splitlines()
                self.assertRegex(first, r"^# Generated by scripts/generate from include/brimlet/\w+\.h\. Do not edit\.")
                self.assertLessEqual(max(map(len, lines)), 120)

    def test_the_names_that_a_client_uses(self):
        self.assertEqual({name for name, value in vars(brimlet).items()
                          if not name.startswith("_") and not inspect.ismodule(value)}, set("""
            Session Answer LaunchReport Document BareId Code LaunchResult State
            Error LibraryNotFound SessionError AlreadyLaunched NotLaunched CallInProgress LaunchTimedOut LaunchEnded
            BackupFailed CallError NoBlock Incomplete ReadFailed NotFound WriteFailed Refused NoParent NoRecord
            Locale Domain User Person Organization Contractor Contract Zone Section DeviceUser Device Location Site
            Event""".split()))

    def test_version_is_that_of_the_library(self):
        self.assertEqual(brimlet.__version__, model.read().version)

    def test_project_names_the_command_and_ships_the_types(self):
        project = source("bindings/python/pyproject.toml")
        self.assertIn('brimlet = "brimlet.command:main"', project)
        self.assertIn('brimlet = ["py.typed"]', project)
        self.assertEqual(source("bindings/python/brimlet/py.typed"), "")
        from brimlet.command import main
        self.assertTrue(callable(main))
