"""Checks docs/documents.md against the library, which is sent documents that each row of its tables says it takes."""

import dataclasses
import functools
import json
import re
import sqlite3
import tempfile
import unittest
from pathlib import Path

import brimlet
from brimlet import records
from brimlet.documents import Batch, Ids, OneRecord
from brimlet.functions import FUNCTIONS
from brimlet.prototypes import DocumentInput
from pages import code, rows, sections, source

KEY = 1  # id of the tested record
KNOWN = 7  # id of the rows that references point to
PARENT = 8  # id of the device and the section that sections and zones belong to


def one(record):
    return json.dumps({"D": record})  # a text, because the package would convert true to 1


def batch(record):
    return one({"items": [record]})


@dataclasses.dataclass
class Entity:
    """How a test writes the record, reads it back, and searches for it by a key."""

    record: type
    put: object
    get: object
    find: object = None
    key: str = "Id"  # the column that holds KEY, without the name of its table


ENTITIES = {
    "Locales": Entity(records.Locale, lambda s, o: s.addLocales(batch(o)), lambda s: s.getLocale(KEY),
                      lambda s, key: s.getLocalesWithParams(key, "7")),
    "Domains": Entity(records.Domain, lambda s, o: s.addDomains(batch(o)), lambda s: s.getDomain(KEY),
                      lambda s, key: s.getDomainsWithParams(key, "7")),
    "Users": Entity(records.User, lambda s, o: s.addUsers(batch(o)), lambda s: s.getUser(KEY),
                    lambda s, key: s.getUsersWithParams(key, "7")),
    "Organizations": Entity(records.Organization, lambda s, o: s.addOrganizations(batch(o)),
                            lambda s: s.getOrganization(KEY), lambda s, key: s.getOrganizationsWithParams(key, "7")),
    "Persons": Entity(records.Person, lambda s, o: s.addOrganizations(batch({"org_id": KEY, "contact": o})),
                      lambda s: s.getOrganization(KEY).contact),
    "Contractors": Entity(records.Contractor, lambda s, o: s.addContractors(batch(o)), lambda s: s.getContractor(KEY),
                          lambda s, key: s.getContractorsWithParams(key, "7")),
    "Contracts": Entity(records.Contract, lambda s, o: s.addContracts(batch(o)), lambda s: s.getContract(KEY),
                        lambda s, key: s.getContractsWithParams(key, "7")),
    "Devices": Entity(records.Device, lambda s, o: s.addDevice(one(o)), lambda s: s.getDevice(KEY),
                      lambda s, key: s.getDevicesWithParams(key, "7")),
    # As part of a device, which replaces the whole row, while updateSection and updateZone keep absent members.
    "Sections": Entity(records.Section, lambda s, o: s.addDevice(one({"id": PARENT, "sections": [o]})),
                       lambda s: s.getSection(KEY, PARENT), lambda s, key: s.getSectionsWithParams(key, "7", PARENT),
                       "SectionId"),
    "Zones": Entity(records.Zone,
                    lambda s, o: s.addDevice(one({"id": PARENT, "sections": [{"id": PARENT, "zones": [o]}]})),
                    lambda s: s.getZone(KEY, PARENT, PARENT), lambda s, key: s.getZonesWithParams(key, "7", PARENT),
                    "ZoneId"),
    "Device users": Entity(records.DeviceUser, lambda s, o: s.addDevice(one({"id": KEY, "users": [o]})),
                           lambda s: s.getDevice(KEY).users[0], key="DeviceUserId"),
    "Sites": Entity(records.Site, lambda s, o: s.addSites(batch(o)), lambda s: s.getSite(KEY),
                    lambda s, key: s.getSitesWithParams(key, "7")),
    # Never empty, because an empty object counts as absent.
    "Locations": Entity(records.Location, lambda s, o: s.addSites(batch({"id": KEY, "location": {"unknown": 0, **o}})),
                        lambda s: s.getSite(KEY).location),
    # No function lists an event without its device, so read it by adding it again.
    "Events": Entity(records.Event, lambda s, o: setattr(s, "event", s.addEvent(one(o))), lambda s: s.event),
}

# The ids of the parents, which updateSection and updateZone require beside the record.
UPDATES = {"Sections": ("updateSection", {"device": PARENT}),
           "Zones": ("updateZone", {"device": PARENT, "section": PARENT})}

# Sample values of arrays and objects.
SAMPLES = {"array of zones": [{"id": 5}], "array of sections": [{"id": 5}], "array of devices": [{"id": 5}],
           "array of device users": [{"user_index": 5}], "array of numbers": [5, 6],
           "object, a person": {"id": 5}, "object, a location": {"lat": 5}}

# What a value shows beside the fields of its row: names and numbers of the records that it refers to.
FURTHER = {("Events", "device"): {"account"}, ("Events", "operator_id"): {"domainName"}}
NEVER_RETURNED = {("Sites", "devices")}


class Row:
    """A row of the page."""

    def __init__(self, cells):
        key, self.kind, _, fields, columns, *search = cells
        self.keys = code(key)
        self.fields = code(fields)
        self.columns = code(columns)
        self.search = search[0] if search else ""
        self.is_required = self.kind.endswith(", required")
        self.is_parent = self.kind == "id, required"
        # The kind whose rule applies. A reference is a number.
        self.rule = "number" if self.kind.startswith("id of ") else self.kind.split(",")[0]


def for_each_row(test):
    """Makes a test run for all rows that have a key."""
    @functools.wraps(test)
    def run(self):
        for name, table in self.tables.items():
            for row in table:
                if row.keys:
                    with self.subTest(entity=name, key=row.keys[0]):
                        test(self, name, row)
    return run


class DocumentsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page = sections("docs/documents.md")
        cls.tables = {name: [Row(cells) for cells in rows(cls.page[name].rpartition("| key |")[2])]
                      for name in ENTITIES}
        cls.rules = {kind: (cls.examples(takes), [json.loads(value) for value in code(refuses)])
                     for kind, takes, refuses in rows(cls.page["Kinds of values"])}
        directory = tempfile.TemporaryDirectory()
        cls.addClassCleanup(directory.cleanup)
        cls.session = brimlet.Session(directory.name)
        cls.addClassCleanup(cls.session.close)
        cls.connection = sqlite3.connect(Path(directory.name) / "CacheDb")
        cls.addClassCleanup(cls.connection.close)

    def setUp(self):
        self.session.clearAll()
        self.session.addLocales([{"id": KNOWN}])
        self.session.addDomains([{"id": KNOWN, "name": "domain"}])
        self.session.addUsers([{"id": KNOWN, "domain": KNOWN}])
        self.session.addContractors([{"id": KNOWN}])
        self.session.addContracts([{"id": KNOWN}])
        self.session.addDevice({"id": KNOWN, "account": 1})
        self.session.addDevice({"id": PARENT, "sections": [{"id": PARENT}]})

    @staticmethod
    def examples(cell):
        """[(what a document holds, what it becomes)]"""
        pairs = re.findall(r"`([^`]+)` is ([^,]+)", cell)
        return [(json.loads(takes), json.loads(becomes)) for takes, becomes in pairs]

    def least(self, name):
        """The object of an entity with only its required members."""
        return {row.keys[0]: KEY for row in self.tables[name] if row.is_required and not row.is_parent}

    def put(self, name, row=None, value=None):
        """Writes a record with one value beside its id, and returns it as read back."""
        entity = ENTITIES[name]
        entity.put(self.session, {**self.least(name), **({row.keys[0]: value} if row else {})})
        return entity.get(self.session)

    def sample(self, row):
        if row.is_required:
            return KEY
        return SAMPLES[row.kind] if row.kind in SAMPLES else self.rules[row.rule][0][0][0]

    # ---- Each row ----

    @for_each_row
    def test_values_are_converted_as_their_kind_says(self, name, row):
        if row.is_required or row.kind in SAMPLES:
            return
        for value, becomes in self.rules[row.rule][0]:
            shown = getattr(self.put(name, row, value), row.fields[0])
            if dataclasses.is_dataclass(shown):
                shown = shown.id
            elif shown is None and becomes != KNOWN:
                self.assertTrue(row.kind.startswith("id of "))
                continue  # no such row
            self.assertEqual((type(shown), shown), (type(becomes), becomes), value)

    @for_each_row
    def test_wrong_types_are_refused_with_5(self, name, row):
        if row.kind in SAMPLES or row.is_parent:
            return
        for value in self.rules[row.rule][1]:
            with self.assertRaises(brimlet.Incomplete, msg=value):
                self.put(name, row, value)

    @for_each_row
    def test_a_value_sets_its_fields_and_no_other(self, name, row):
        if row.is_required:
            return
        before = self.put(name)
        after = self.put(name, row, self.sample(row))
        changed = {field.name for field in dataclasses.fields(after)
                   if getattr(before, field.name) != getattr(after, field.name)}
        place = (name, row.keys[0])
        self.assertEqual(changed, FURTHER.get(place, set()) | (set() if place in NEVER_RETURNED else set(row.fields)))

    @for_each_row
    def test_a_value_is_stored_in_its_column(self, name, row):
        if row.is_parent or not row.columns:
            return
        self.put(name, row, self.sample(row))
        column, = row.columns
        table = name.title().replace(" ", "")
        values = self.connection.execute(f"SELECT {column} FROM {table} WHERE {table}{ENTITIES[name].key} = {KEY}")
        self.assertNotIn((None,), list(values))
        if not row.is_required and row.kind not in SAMPLES:
            self.put(name)
            values = self.connection.execute(f"SELECT {column} FROM {table} WHERE {table}{ENTITIES[name].key} = {KEY}")
            self.assertEqual(list(values), [(None,)])

    @for_each_row
    def test_required_keys_are_required_and_no_other_is(self, name, row):
        if not row.is_required or row.is_parent:
            return
        put = ENTITIES[name].put
        with self.assertRaises(brimlet.Incomplete):
            put(self.session, {"name": "x"})
        for key in row.keys:
            put(self.session, {key: KEY})

    def test_updates_require_the_ids_of_the_parents(self):
        for name, (function, parents) in UPDATES.items():
            self.assertEqual({row.keys[0] for row in self.tables[name] if row.is_parent}, set(parents))
            document = {**self.least(name), **parents}
            self.session.call(function, document)
            for parent in parents:
                with self.assertRaises(brimlet.Incomplete):
                    self.session.call(function, {key: value for key, value in document.items() if key != parent})

    @for_each_row
    def test_arrays_and_objects_of_another_type_are_absent(self, name, row):
        if row.kind not in SAMPLES:
            return
        for value in (5, "x", None, [], {}):
            shown = self.put(name, row, value)
            self.assertFalse(row.fields and getattr(shown, row.fields[0]), value)
        if row.kind.startswith("array"):
            with self.assertRaises(brimlet.Incomplete):
                self.put(name, row, [None])

    @for_each_row
    def test_searches_accept_the_keys_that_the_page_marks(self, name, row):
        find = ENTITIES[name].find
        self.assertEqual(bool(row.search), find is not None)
        if row.search == "yes":
            find(self.session, row.keys[0])
        elif row.search:
            self.assertEqual(row.search, "no")
            with self.assertRaises(brimlet.Refused):
                find(self.session, row.keys[0])

    # ---- Nothing is missing ----

    def test_every_entity_has_its_section(self):
        self.assertEqual(list(self.page), ["Forms", "Kinds of values", *ENTITIES])

    def test_every_function_that_takes_a_document_has_an_example(self):
        forms = {"a batch": Batch, "a document of one record": OneRecord, "an id-only document": Ids}
        examples = re.findall(r"^`(\w+)` takes ([\w -]+):\n\n```json \1$", source("docs/documents.md"), re.MULTILINE)
        takers = {function.name: type(taken.form) for function in FUNCTIONS.values() for taken in function.takes
                  if isinstance(taken, DocumentInput)}
        self.assertEqual({name: forms[form] for name, form in examples}, takers)


if __name__ == "__main__":
    unittest.main()
