"""What `describe` prints: its shape against literals, its functions against the header, and each statement that it makes
of documents, columns, flat fields and searches against the library, which is sent documents made of nothing else."""

import json
import os
import re
import sqlite3
import subprocess
import tempfile
import unittest
from contextlib import closing
from pathlib import Path

import brimlet

ROOT = Path(__file__).resolve().parents[2]
DESCRIPTION = json.loads(subprocess.run([os.environ["BRIMLET_DESCRIBE"]], check=True, stdout=subprocess.PIPE).stdout)
FUNCTIONS = {function["name"]: function for function in DESCRIPTION["functions"]}
RECORDS = {record["name"]: record for record in DESCRIPTION["records"]}
TABLES = {table["name"]: table for table in DESCRIPTION["tables"]}


def declared(parameter):
    """The functions of the header that have the parameter."""
    header = (ROOT / "include/brimlet/brimlet.h").read_text(encoding="utf-8")
    functions = re.findall(r"BRIMLET_API \w+ (\w+)\(([^)]*)\);", header)
    return {name for name, parameters in functions if parameter in parameters}


class ShapeTest(unittest.TestCase):
    def test_every_function_with_a_document_is_there_and_no_other(self):
        described = {name for name, function in FUNCTIONS.items() if function["form"] != "search"}
        self.assertEqual(described, declared("const uint16_t *json"))
        self.assertEqual(len(described), 30)

    def test_every_search_is_there_and_no_other(self):
        described = {name for name, function in FUNCTIONS.items() if function["form"] == "search"}
        self.assertEqual(described, declared("const uint16_t *key"))
        self.assertEqual(len(described), 11)

    def test_functions_stand_in_the_order_of_the_exports(self):
        exports = (ROOT / "src/api/exports.txt").read_text(encoding="utf-8").splitlines()
        self.assertEqual(list(FUNCTIONS), [name for name in exports if name in FUNCTIONS])

    def test_functions_of_organizations(self):
        self.assertEqual(
            [function for name, function in FUNCTIONS.items() if "Organization" in name],
            [{"name": "addOrganizations", "form": "batch", "record": "Organization"},
             {"name": "updateOrganization", "form": "record", "record": "Organization"},
             {"name": "deleteOrganization", "form": "ids", "ids": [{"key": "org_id", "column": "OrganizationsId"}]},
             {"name": "getOrganizationsWithParams", "form": "search", "record": "Organization",
              "keys": ["org_id", "inn", "off_name", "short_name", "kpp", "ogrn", "locale_id", "address_text"]}])

    def test_functions_of_zones(self):
        device = {"key": "device", "column": "ZonesDeviceId"}
        section = {"key": "section", "column": "ZonesSectionId"}
        keys = ["id", "name", "detector", "physic", "form", "flags", "delay", "schedule_id", "tracert", "uid_type"]
        self.assertEqual(
            [function for name, function in FUNCTIONS.items() if "Zone" in name],
            [{"name": "updateZone", "form": "record", "record": "Zone", "ids": [device, section]},
             {"name": "deleteZone", "form": "ids",
              "ids": [device, section, {"key": "zone", "column": "ZonesZoneId"}]},
             {"name": "getZonesWithParams", "form": "search", "record": "Zone", "keys": keys},
             {"name": "getZonesForSectionWithParams", "form": "search", "record": "Zone", "keys": keys}])

    def test_record_of_an_organization(self):
        text = {"kind": "text", "required": False, "searchable": True}
        self.assertEqual(RECORDS["Organization"], {
            "name": "Organization", "flat": "FlatOrganization", "table": "Organizations",
            "members": [
                {"key": "org_id", "kind": "uint32", "required": True, "searchable": True, "field": "id",
                 "column": "OrganizationsId"},
                {"key": "inn", "field": "inn", "column": "OrganizationsInn", **text},
                {"key": "off_name", "field": "officialName", "column": "OrganizationsOfficialName", **text},
                {"key": "short_name", "field": "shortName", "column": "OrganizationsShortName", **text},
                {"key": "kpp", "field": "kpp", "column": "OrganizationsKpp", **text},
                {"key": "ogrn", "field": "ogrn", "column": "OrganizationsOgrn", **text},
                {"key": "address_text", "field": "address", "column": "OrganizationsAddress", **text},
                {"key": "locale_id", "kind": "reference", "record": "Locale", "required": False, "searchable": True,
                 "field": "locale", "column": "OrganizationsLocaleId"},
                {"key": "contact", "kind": "object", "record": "Person", "required": False, "searchable": False,
                 "field": "contact", "column": "OrganizationsContactId"},
            ]})

    def test_record_of_a_section(self):
        number = {"kind": "uint32", "required": False}
        self.assertEqual(RECORDS["Section"], {
            "name": "Section", "flat": "FlatSection", "table": "Sections",
            "members": [
                {"key": "id", "alternative": "section", "kind": "uint32", "required": True, "searchable": True,
                 "field": "id", "column": "SectionsSectionId"},
                {"key": "name", "kind": "text", "required": False, "searchable": True, "field": "name",
                 "column": "SectionsName"},
                {"key": "schedule_id", "searchable": True, "field": "scheduleId", "column": "SectionsScheduleId",
                 **number},
                {"key": "tracert", "searchable": True, "field": "tracert", "column": "SectionsTracert", **number},
                {"key": "flags", "searchable": True, "field": "flags", "column": "SectionsFlags", **number},
                {"key": "detector", "searchable": True, "field": "detector", "column": "SectionsDetector", **number},
                {"key": "arm", "searchable": True, "field": "arm", "column": "SectionsArm", **number},
                {"key": "physic", "searchable": False, "field": "physic", "column": "SectionsPhysic", **number},
                {"key": "form", "searchable": False, "field": "form", "column": "SectionsForm", **number},
                {"key": "delay", "searchable": False, "field": "delay", "column": "SectionsDelay", **number},
                {"key": "uid_type", "searchable": False, "field": "uidType", "column": "SectionsUidType", **number},
                {"key": "zones", "kind": "objects", "record": "Zone", "required": False, "searchable": False,
                 "field": "zones", "count": "zonesCount"},
            ]})

    def test_sections_and_zones_have_an_alternative_key_and_no_other_record_has_one(self):
        self.assertEqual({name: member["alternative"] for name, record in RECORDS.items()
                          for member in record["members"] if "alternative" in member},
                         {"Section": "section", "Zone": "zone"})

    def test_tables_stand_in_the_order_of_their_creation(self):
        self.assertEqual(list(TABLES), [
            "Users", "Domains", "Organizations", "Locales", "Persons", "Contractors", "Contracts", "Zones", "Sections",
            "Devices", "Locations", "Sites", "DeviceUsers", "Events", "DeviceUserSectionLinks", "Session", "Version"])

    def test_version_of_the_schema(self):
        self.assertEqual(DESCRIPTION["schemaVersion"], "0.1")

    def test_tables_of_users_and_device_users(self):
        self.assertEqual(TABLES["Users"], {
            "name": "Users", "primaryKey": ["UsersId"],
            "columns": [{"name": "UsersId", "type": "UNSIGNED BIG INT"}, {"name": "UsersName", "type": "VARCHAR(255)"},
                        {"name": "UsersLogin", "type": "VARCHAR(255)"},
                        {"name": "UsersContacts", "type": "VARCHAR(255)"},
                        {"name": "UsersIsActive", "type": "BOOLEAN"},
                        {"name": "UsersDomainId", "type": "UNSIGNED BIG INT"},
                        {"name": "UsersOrgId", "type": "UNSIGNED BIG INT"},
                        {"name": "UsersRoles", "type": "UNSIGNED BIG INT"}, {"name": "UsersPhone", "type": "DOUBLE"}]})
        self.assertEqual(TABLES["DeviceUsers"], {
            "name": "DeviceUsers", "primaryKey": ["DeviceUsersDeviceId", "DeviceUsersDeviceUserId"],
            "columns": [{"name": "DeviceUsersDeviceId", "type": "UNSIGNED BIG INT"},
                        {"name": "DeviceUsersDeviceUserId", "type": "UNSIGNED BIG INT"},
                        {"name": "DeviceUsersName", "type": "VARCHAR(255)"},
                        {"name": "DeviceUsersComment", "type": "VARCHAR(255)"},
                        {"name": "DeviceUsersPhone", "type": "VARCHAR(255)"}]})


# ---- Documents made of the description ----

DEVICE, SECTION = 7, 3  # the parents of a section and a zone
IDS = {"device": DEVICE, "section": SECTION}


def value_of(member, number):
    """A value of the member that differs from that of every other member, as far as its kind allows."""
    kind = member["kind"]
    if kind == "text":
        return f"text {number}"
    if kind == "flag":
        return 1
    if kind == "double":
        return number + 0.5
    if kind == "object":
        return object_of(member["record"])
    if kind in ("objects", "numbers"):
        return []
    return number


def object_of(record):
    """An object with all members; the first, the id, is the number 1."""
    return {member["key"]: value_of(member, number) for number, member in enumerate(RECORDS[record]["members"], 1)}


def document(function, content):
    if function["form"] == "batch":
        content = {"items": [content]}
    return json.dumps({"D": content})


def parents_of(function):
    return {one["key"]: IDS[one["key"]] for one in function.get("ids", [])}


class BehaviourTest(unittest.TestCase):
    """Sends to the library what the description says, and looks at the file and at the records."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.file = Path(directory.name) / "CacheDb"
        self.session = brimlet.Session(directory.name)
        self.addCleanup(self.session.close)
        self.code("addDevice", json.dumps({"D": {"id": DEVICE, "sections": [{"id": SECTION}]}}))

    def code(self, name, *arguments):
        return self.session.answer(name, *arguments).code

    def row(self, table, where):
        with closing(sqlite3.connect(self.file)) as connection:
            connection.row_factory = sqlite3.Row
            condition = " AND ".join(f"{column} = {value}" for column, value in where.items())
            rows = connection.execute(f"SELECT * FROM {table} WHERE {condition}").fetchall()
        self.assertEqual(len(rows), 1, f"rows of {table} where {condition}")
        return rows[0]

    def expect_columns(self, record, content, where):
        """The columns of a record hold the members of its object."""
        row = self.row(RECORDS[record]["table"], where)
        for member in RECORDS[record]["members"]:
            value = content[member["key"]]
            if member["kind"] == "object":
                part = RECORDS[member["record"]]
                key = TABLES[part["table"]]["primaryKey"][0]
                self.expect_columns(member["record"], value, {key: 1})
                value = 1
            if "column" in member:
                self.assertEqual(row[member["column"]], value, member["key"])

    def expect_fields(self, record, content, flat):
        """The fields of a record show the members of its object; a reference shows the record if the store has it."""
        for member in RECORDS[record]["members"]:
            shown = getattr(flat, member["field"])
            value = content[member["key"]]
            if member["kind"] == "object":
                self.expect_fields(member["record"], value, shown)
            elif member["kind"] in ("objects", "numbers"):
                self.assertEqual(shown, (), member["key"])
            elif member["kind"] == "reference":
                self.assertIsNone(shown, member["key"])
            else:
                self.assertEqual(shown, value, member["key"])

    def test_a_document_reaches_the_columns_and_the_fields(self):
        for name, function in FUNCTIONS.items():
            if function["form"] not in ("batch", "record") or name == "updateDeviceFw":
                continue
            with self.subTest(name):
                self.assertEqual(self.code("clearAll"), 0)
                self.code("addDevice", json.dumps({"D": {"id": DEVICE, "sections": [{"id": SECTION}]}}))
                record = function["record"]
                content = object_of(record)
                if record == "Event":
                    content["device"] = DEVICE  # lists show the events of known devices
                answer = self.session.answer(name, document(function, {**content, **parents_of(function)}))
                self.assertEqual(answer.code, 0)
                where = {one["column"]: IDS[one["key"]] for one in function.get("ids", [])}
                where[RECORDS[record]["members"][0]["column"]] = 1
                self.expect_columns(record, content, where)
                if answer.value is not None:
                    flat = answer.value[0] if function["form"] == "batch" else answer.value
                    self.expect_fields(record, content, flat)

    def test_a_required_member_has_to_be_there_and_its_alternative_will_do(self):
        for name, function in FUNCTIONS.items():
            if function["form"] not in ("batch", "record"):
                continue
            for member in RECORDS[function["record"]]["members"]:
                with self.subTest(name, member=member["key"]):
                    content = {**object_of(function["record"]), **parents_of(function)}
                    value = content.pop(member["key"])
                    if member["required"] and member.get("alternative") not in content:
                        self.assertEqual(self.code(name, document(function, content)), 5)
                    if "alternative" in member:
                        content[member["alternative"]] = value
                        self.assertEqual(self.code(name, document(function, content)), 0)

    def test_an_id_has_to_be_there(self):
        for name, function in FUNCTIONS.items():
            for one in function.get("ids", []):
                with self.subTest(name, key=one["key"]):
                    content = object_of(function["record"]) if "record" in function else {}
                    content.update({other["key"]: 1 for other in function["ids"]})
                    self.assertNotIn(self.code(name, document(function, content)), (5, 10))
                    del content[one["key"]]
                    self.assertEqual(self.code(name, document(function, content)), 5)

    def test_a_search_takes_its_keys_and_no_other(self):
        for name, function in FUNCTIONS.items():
            if function["form"] != "search":
                continue
            parents = {"getSectionsWithParams": (DEVICE,), "getZonesWithParams": (DEVICE,),
                       "getZonesForSectionWithParams": (DEVICE, SECTION)}.get(name, ())
            for member in RECORDS[function["record"]]["members"]:
                with self.subTest(name, key=member["key"]):
                    code = self.code(name, member["key"], "no such value", *parents)
                    is_searchable = member["key"] in function["keys"]
                    self.assertEqual(code, 8 if is_searchable else 10)
                    self.assertEqual(member["searchable"], is_searchable)
            self.assertLessEqual(set(function["keys"]), {member["key"] for member in
                                                         RECORDS[function["record"]]["members"]})


if __name__ == "__main__":
    unittest.main()
