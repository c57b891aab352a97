"""Headers and lists that deliberately disagree: each mistake has a message with the place and the cure."""

import copy
import json
import os
import subprocess
import unittest

from generator import agreement, lists, model
from support import SpoiledHeaders

DESCRIPTION = json.loads(subprocess.run([os.environ["BRIMLET_DESCRIBE"]], check=True, stdout=subprocess.PIPE).stdout)


class AgreementTest(SpoiledHeaders):
    def setUp(self):
        super().setUp()
        self.description = copy.deepcopy(DESCRIPTION)

    def findings(self):
        return agreement.findings(model.read(self.folder), lists.parse(self.description))

    def member(self, record, key):
        """A member of the lists, for a test to change."""
        members = next(item for item in self.description["records"] if item["name"] == record)["members"]
        return next(member for member in members if member["key"] == key)

    def function(self, name):
        """A function of the lists, for a test to change."""
        return next(function for function in self.description["functions"] if function["name"] == name)

    def test_headers_and_lists_agree(self):
        self.finds()

    def test_a_finding_names_the_line(self):
        self.spoil("FlatRecords.h", 'Key "iso"', 'Key "ISO"')
        lines = (self.folder / "FlatRecords.h").read_text(encoding="utf-8").splitlines()
        line = next(number for number, text in enumerate(lines, 1) if 'Key "ISO"' in text)
        self.assertTrue(self.findings()[0].startswith(f"FlatRecords.h:{line}: FlatLocale.iso: "))

    # ---- Keys ----

    def test_a_key_that_documents_spell_otherwise(self):
        self.spoil("FlatRecords.h", 'Login name. Key "login"', 'Login name. Key "user_login"')
        self.finds('FlatUser.login: write the key "login" instead of "user_login".')

    def test_a_key_that_the_lists_spell_otherwise(self):
        self.member("Person", "email")["key"] = "mail"
        self.finds('FlatPerson.email: write the key "mail" instead of "email".')

    def test_an_alternative_that_is_left_out(self):
        self.spoil("FlatRecords.h", 'Key "id" or "zone"', 'Key "id"')
        self.finds('FlatZone.id: write the key "id" or "zone" instead of "id".')

    def test_an_alternative_that_the_lists_do_not_have(self):
        del self.member("Zone", "id")["alternative"]
        self.finds('getZonesWithParams: write "key of FlatZone, except "arm"" as the words of key.',
                   'getZonesForSectionWithParams: write "key of FlatZone, except "arm"" as the words of key.',
                   'FlatZone.id: write the key "id" instead of "id" or "zone".')

    def test_a_field_that_says_it_has_no_key(self):
        self.spoil("FlatRecords.h", 'Postal address. Key "postal".', "Postal address. No key: it is unknown.")
        self.finds('FlatPerson.postal: write the key "postal".')

    def test_a_field_whose_key_documents_do_not_have(self):
        self.spoil("FlatRecords.h", "Name of the zone. No key: it comes from the stored zone.",
                   'Name of the zone. Key "zone_name".')
        self.finds('FlatEvent.zoneName: take out the key "zone_name", since documents do not have it.')

    def test_a_field_that_takes_the_key_of_another_one(self):
        self.spoil("FlatRecords.h", "Name of the zone. No key: it comes from the stored zone.",
                   'Name of the zone. Key "zone".')
        self.finds('FlatEvent.zoneName: take out the key "zone", since it is that of zoneId.')

    def test_a_record_that_no_document_shows(self):
        self.spoil("FlatRecords.h", "/** A domain", "/** A key. */\ntypedef struct FlatKey\n{\n"
                   '    uint32_t id; /**< Id. Key "id", required. */\n} FlatKey;\n\n/** A domain')
        self.finds("FlatKey: take the record out, since no document has one that it shows.")

    # ---- Required, kinds and references ----

    def test_a_key_that_is_required(self):
        self.spoil("FlatRecords.h", 'Key "user_index", required.', 'Key "user_index".')
        self.finds('FlatDeviceUser.id: write ", required" behind the key.')

    def test_a_key_that_is_not_required(self):
        self.member("DeviceUser", "user_index")["required"] = False
        self.finds('FlatDeviceUser.id: take out ", required".')

    def test_a_flag_that_the_header_does_not_name(self):
        self.spoil("FlatRecords.h", 'Key "parted", a flag.', 'Key "parted".')
        self.finds('FlatDevice.isParted: write ", a flag" behind the key.')

    def test_a_byte_that_the_header_calls_a_flag(self):
        self.spoil("FlatRecords.h", 'Key "active".', 'Key "active", a flag.')
        self.finds('FlatEvent.active: take out ", a flag", since documents have the low 8 bits of a whole number.')

    def test_a_field_of_another_type(self):
        self.member("User", "phone")["kind"] = "text"
        self.finds("FlatUser.phone: declare the field as a text, as documents have it.")

    def test_a_count_that_is_not_behind_its_array(self):
        self.member("Section", "zones")["count"] = "numberOfZones"
        self.finds("FlatSection.zones: put its count numberOfZones behind it.")

    def test_a_reference_that_the_header_does_not_name(self):
        self.spoil("FlatRecords.h", 'Key "operator_id", the id of a user', 'Key "operator_id", a number')
        self.finds('FlatContract.user: write ", the id of a user" behind the key.')

    def test_a_record_beside_its_number_that_the_header_does_not_name(self):
        self.spoil("FlatRecords.h", 'Key "contract_id", the id of a contract', 'Key "contract_id"')
        self.finds('FlatSite.contract: write ", the id of a contract" behind the key.')

    def test_an_object_that_the_header_does_not_name(self):
        self.spoil("FlatRecords.h", "an object with the keys of FlatPerson", "an object")
        self.finds('FlatOrganization.contact: write ", an object with the keys of FlatPerson" behind the key.')

    # ---- Functions ----

    def test_a_document_that_the_lists_do_not_have(self):
        self.description["functions"].remove(self.function("addUsers"))
        self.finds("addUsers: name its document in src/api/DocumentFunctions.h.")

    def test_a_document_by_another_name(self):
        self.spoil("brimlet.h", "[in] json    batch of users", "[in] text    batch of users")
        self.spoil("brimlet.h", "addUsers(const uint16_t *json,", "addUsers(const uint16_t *text,")
        self.finds("addUsers: give the parameter of its document the name json.")

    def test_a_key_by_another_name(self):
        self.spoil("brimlet.h", "[in]  key          key of FlatUser", "[in]  word         key of FlatUser")
        self.spoil("brimlet.h", "const uint16_t *key", "const uint16_t *word", inside="getUsersWithParams(")
        self.finds("getUsersWithParams: give the parameter of its search the name key.")

    def test_a_document_of_another_form(self):
        self.function("addUsers")["form"] = "record"
        self.finds('addUsers: begin the words of json with "document of one user".')

    def test_a_document_of_another_record(self):
        self.spoil("brimlet.h", "batch of users", "batch of people")
        self.finds('addUsers: begin the words of json with "batch of user".')

    def test_an_id_under_another_key(self):
        self.spoil("brimlet.h", 'id-only document with "op_id"', 'id-only document with "id"')
        self.finds('deleteUser: name "op_id" in the words of json, and no other key.')

    def test_ids_in_another_order(self):
        self.function("deleteSection")["ids"].reverse()
        self.finds('deleteSection: name "section" and "device" in the words of json, and no other key.')

    def test_an_id_beside_a_record(self):
        self.function("updateSection")["ids"] = []
        self.finds("updateSection: name no key in the words of json.")

    def test_an_exception_that_a_search_does_not_make(self):
        self.spoil("brimlet.h", "key of FlatDomain\n", 'key of FlatDomain, except "name"\n')
        self.finds('getDomainsWithParams: write "key of FlatDomain" as the words of key.')

    def test_an_exception_that_is_left_out(self):
        self.function("getDomainsWithParams")["keys"].remove("name")
        self.finds('getDomainsWithParams: write "key of FlatDomain, except "name"" as the words of key.')


if __name__ == "__main__":
    unittest.main()
