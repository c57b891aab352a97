"""The model of the public headers, on samples of each shape."""

import unittest

from generator import model
from generator.model import Direction, Form, Gives, Input, Kind, Parameter, Result, Role, Takes


class ModelTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.api = model.read()

    def field(self, record, name):
        return next(field for field in self.api.record(record).fields if field.name == name)

    def test_it_holds_all_that_the_headers_declare(self):
        self.assertEqual(len(self.api.functions), 96)
        self.assertEqual(len({function.name for function in self.api.functions}), 96)
        self.assertEqual(len(self.api.records), 14)
        self.assertEqual(sum(len(record.fields) for record in self.api.records), 132)
        self.assertEqual([(enumeration.name, len(enumeration.values)) for enumeration in self.api.enumerations],
                         [("BrimletResult", 9), ("BrimletLaunchResult", 7), ("BrimletState", 3)])

    def test_everything_is_in_the_order_of_the_headers(self):
        lines = [int(function.place.partition(":")[2]) for function in self.api.functions]
        self.assertEqual(lines, sorted(lines))
        self.assertEqual([family.title for family in self.api.families],
                         ["Lifecycle", "Server address", "Locales", "Domains", "Users", "Organizations", "Contractors",
                          "Contracts", "Devices", "Sections", "Zones", "Sites", "Events", "Clearing"])
        self.assertEqual([record.name for record in self.api.records][:3], ["FlatLocale", "FlatDomain", "FlatUser"])

    def test_a_function_that_gets_a_record(self):
        function = self.api.function("getUser")
        self.assertEqual((function.family, function.type, function.role), ("Users", "uint32_t", Role.CALL))
        self.assertEqual((function.summary, function.notes), ("Gets one user.", []))
        self.assertEqual((function.gives, function.record, function.release), (Gives.RECORD, "FlatUser", "freeUser"))
        self.assertEqual(function.parameters, [Parameter("user", "FlatUser **", Direction.OUT, "receives the user"),
                                               Parameter("id", "uint32_t", Direction.IN, "id of the user")])
        self.assertEqual(function.inputs, [Input(Takes.NUMBER, "id", "id of the user")])
        self.assertEqual(function.results[2], Result("BRIMLET_NOT_FOUND", "the store has no user with this id"))

    def test_a_function_that_searches(self):
        function = self.api.function("getZonesForSectionWithParams")
        self.assertEqual((function.gives, function.release), (Gives.ARRAY, "freeZonesArray"))
        self.assertEqual([(put.takes, put.name) for put in function.inputs],
                         [(Takes.TEXT, "key"), (Takes.TEXT, "value"), (Takes.NUMBER, "deviceId"),
                          (Takes.NUMBER, "sectionId")])

    def test_a_function_that_takes_a_document(self):
        function = self.api.function("updateOrganization")
        self.assertEqual(function.inputs, [Input(Takes.DOCUMENT, "json", "document of one organization")])
        self.assertEqual(function.notes, ['A "contact" replaces the stored person as a whole.'])

    def test_documents_have_a_form(self):
        forms = {(function.name, put.form, put.keys) for function in self.api.functions for put in function.inputs
                 if put.takes is Takes.DOCUMENT}
        self.assertEqual(len(forms), 30)
        self.assertNotIn(None, {form for _, form, _ in forms})
        for sample in (("addUsers", Form.BATCH, ()), ("addDevice", Form.RECORD, ()), ("updateSection", Form.RECORD, ()),
                       ("deleteUser", Form.IDS, ("op_id",)), ("deleteZone", Form.IDS, ("device", "section", "zone"))):
            self.assertIn(sample, forms)
        self.assertIsNone(self.api.function("setServerIp").inputs[0].form)

    def test_out_parameters_receive_something(self):
        samples = {"getUser": ["the user"], "getEvents": ["the array of events"], "removeAffectFlag": ["the event as stored"],
                   "addEvents": ["the array of events"], "getSiteNameAndAddress": ["the name", "the address"]}
        for name, received in samples.items():
            self.assertEqual([output.received for output in self.api.function(name).outputs], received)

    def test_outcomes_are_those_that_a_binding_leaves_to_its_client(self):
        def outcomes(name):
            return {outcome.name: outcome.condition for outcome in self.api.function(name).outcomes}

        self.assertNotIn("BRIMLET_REFUSED", outcomes("getUser"))
        self.assertEqual(outcomes("updateUser")["BRIMLET_REFUSED"], "`json` is not a JSON object")
        self.assertEqual(outcomes("addUsers")["BRIMLET_REFUSED"],
                         '`json` is not a JSON object, or its "items" is empty')
        self.assertNotIn("BRIMLET_REFUSED", outcomes("getSiteNameAndAddress"))

    def test_reads_of_arrays(self):
        reads = [function.name for function in self.api.functions if function.is_array_read]
        self.assertEqual(len(reads), 24)
        for name in ("getUsers", "getZonesForSectionWithParams", "getAffectEvents"):
            self.assertIn(name, reads)
        for name in ("addEvents", "getUser", "getSiteNameAndAddress", "freeUsersArray"):
            self.assertNotIn(name, reads)

    def test_a_function_is_about_the_record_of_its_group(self):
        for name, record in (("deleteUser", "FlatUser"), ("clearEventsBeforeDateExceptAffects", "FlatEvent"),
                             ("getZone", "FlatZone"), ("setServerIp", ""), ("clearAll", "")):
            self.assertEqual(self.api.subject(self.api.function(name)), record)

    def test_functions_that_hand_out_texts(self):
        for name, outputs in (("getServerIp", ["address"]), ("getSiteNameAndAddress", ["name", "address"])):
            function = self.api.function(name)
            self.assertEqual((function.gives, function.release, function.record), (Gives.TEXTS, "free", ""))
            self.assertEqual([output.name for output in function.outputs], outputs)

    def test_functions_that_release(self):
        for name, released in (("freeUser", Gives.RECORD), ("freeUsersArray", Gives.ARRAY)):
            function = self.api.function(name)
            self.assertEqual((function.role, function.released, function.record), (Role.RELEASE, released, "FlatUser"))
            self.assertEqual((function.gives, function.release), (Gives.NOTHING, ""))

    def test_the_lifecycle(self):
        names = [function.name for function in self.api.functions if function.role is Role.LIFECYCLE]
        self.assertEqual(names, ["launchCache", "exitCache", "getState", "getLaunchCacheResult"])
        self.assertEqual(self.api.function("getState").returned, "a value of BrimletState")

    def test_irregular_functions_are_there(self):
        for name in model.IRREGULAR:
            self.assertTrue(self.api.function(name).outputs)

    def test_kinds_of_fields(self):
        samples = {
            ("FlatUser", "id"): Kind.ID, ("FlatUser", "roles"): Kind.NUMBER, ("FlatUser", "phone"): Kind.BIG,
            ("FlatUser", "isActive"): Kind.FLAG, ("FlatUser", "name"): Kind.TEXT, ("FlatUser", "domain"): Kind.RECORD,
            ("FlatEvent", "active"): Kind.BYTE, ("FlatEvent", "channel"): Kind.WHOLE,
            ("FlatLocation", "latitude"): Kind.REAL, ("FlatSection", "zones"): Kind.ARRAY,
            ("FlatSection", "zonesCount"): Kind.COUNT, ("FlatDeviceUser", "sections"): Kind.ARRAY,
        }
        for (record, name), kind in samples.items():
            self.assertIs(self.field(record, name).kind, kind, name)

    def test_keys_of_fields(self):
        zone = self.field("FlatZone", "id")
        self.assertEqual((zone.keys, zone.is_required, zone.is_keyless), (["id", "zone"], True, False))
        phone = self.field("FlatUser", "phone")
        self.assertEqual((phone.keys, phone.is_required), (["phone"], False))
        self.assertTrue(phone.words.startswith("Telephone number. "), phone.words)
        account = self.field("FlatEvent", "account")
        self.assertEqual((account.keys, account.is_keyless), ([], True))

    def test_arrays_know_their_element_and_count(self):
        zones = self.field("FlatSection", "zones")
        self.assertEqual((zones.record, zones.count), ("FlatZone", "zonesCount"))
        sections = self.field("FlatDeviceUser", "sections")
        self.assertEqual((sections.record, sections.count), ("", "sectionsCount"))
        self.assertEqual(self.field("FlatEvent", "time").count, "")

    def test_values_share_a_prefix(self):
        self.assertEqual([enumeration.prefix for enumeration in self.api.enumerations],
                         ["BRIMLET_", "BRIMLET_LAUNCH_", "BRIMLET_STATE_"])

    def test_values_have_meaning_cause_and_cure(self):
        values = {value.name: value for value in self.api.enumeration("BrimletResult").values}
        failed = values["BRIMLET_WRITE_FAILED"]
        self.assertEqual((failed.number, failed.meaning), (9, "The store could not be written."))
        self.assertEqual(failed.notes, ["It is as it was before the call."])
        self.assertTrue(failed.cause.startswith("the launch left a file without tables, "), failed.cause)
        self.assertTrue(failed.cure.startswith("look at getLaunchCacheResult, "), failed.cure)
        for name, value in values.items():
            self.assertEqual(bool(value.cause and value.cure), name != "BRIMLET_DONE", name)

    def test_outcomes_are_the_results_without_the_out_parameters(self):
        samples = {
            ("getUser", "BRIMLET_DONE"): "the value is the user",
            ("getUser", "BRIMLET_REFUSED"): None,
            ("updateUser", "BRIMLET_REFUSED"): "`json` is not a JSON object",
            ("getUsersWithParams", "BRIMLET_REFUSED"): "`key` is not a key to search by",
            ("addEvents", "BRIMLET_REFUSED"): '`json` is not a JSON object, or its "items" is empty',
            ("removeAffectFlag", "BRIMLET_DONE"): "the flag is cleared, and the value is the event as stored",
            ("getSiteNameAndAddress", "BRIMLET_DONE"): "`name` and `address` are the texts, each absent if the site "
                                                       "has none",
            ("getSiteNameAndAddress", "BRIMLET_REFUSED"): None,
        }
        for (name, result), condition in samples.items():
            outcomes = {outcome.name: outcome.condition for outcome in self.api.function(name).outcomes}
            self.assertEqual(outcomes.get(result), condition, name)
        self.assertEqual([outcome for function in self.api.functions for outcome in function.outcomes
                          if "`*" in outcome.condition], [])

    def test_meanings_of_fields_have_no_key(self):
        samples = {
            ("FlatUser", "login"): "Login name.",
            ("FlatUser", "phone"): "Telephone number. Exact up to 2^52; from there to 2^63 a neighbouring number may "
                                   "come back.",
            ("FlatOrganization", "contact"): "Contact person.",
            ("FlatEvent", "account"): "Account number of the device. It comes from the stored device.",
        }
        for (record, name), meaning in samples.items():
            self.assertEqual(self.field(record, name).meaning, meaning)

    def test_prefixes_of_values(self):
        self.assertEqual([enumeration.prefix for enumeration in self.api.enumerations],
                         ["BRIMLET_", "BRIMLET_LAUNCH_", "BRIMLET_STATE_"])


if __name__ == "__main__":
    unittest.main()
