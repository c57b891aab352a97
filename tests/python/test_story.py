"""A client on the sample data."""

import json
import unittest

import brimlet
from support import DATA, DirectoryTest

REFERENCE = ("Locales", "Domains", "Organizations", "Users", "Contractors", "Contracts", "Devices", "Sites")


def document(name):
    return (DATA / name).read_text(encoding="utf-8")


def items(name):
    return json.loads(document(name))["D"]["items"]


class StoryTest(DirectoryTest):
    def test_client_from_first_launch_to_second(self):
        with brimlet.Session(self.directory) as session:
            self.assertEqual(session.report, brimlet.LaunchReport(brimlet.LaunchResult.CREATED))
            self.assertEqual(session.state, brimlet.State.RUNNING)
            self.assertEqual(session.getUsers(), [])
            self.load_reference_data(session)
            self.read(session)
            self.look_up(session)
            self.keep_a_journal(session)
            self.update(session)
            self.remove(session)
            session.setServerIp("monitoring.example.net:7443")
        with brimlet.Session(self.directory) as session:
            self.assertEqual(session.launch_result, brimlet.LaunchResult.OPENED)
            self.assertEqual(session.getServerIp(), "monitoring.example.net:7443")
            self.assertEqual(len(session.getUsers()), 300)
            session.clearAllExceptEvents()
            self.assertEqual(session.getUsers(), [])
            session.clearAll()
            self.assertEqual(session.getServerIp(), "monitoring.example.net:7443")
            session.setServerIp("")
            self.assertIsNone(session.getServerIp())

    def load_reference_data(self, session):
        for kind in REFERENCE:
            file = kind.lower() + ".json"
            session.call("add" + kind, document(file))
            ids = {item.get("org_id" if kind == "Organizations" else "id") for item in items(file)}
            self.assertLessEqual(ids, {record.id for record in session.call("get" + kind)})

    def read(self, session):
        user = session.getUser(1002)
        self.assertEqual((user.name, user.login, user.isActive, user.phone),
                         ("Alice O’Hara", "a.ohara", True, 441632960153))
        self.assertEqual(user.domain.name, "Brackwater Harbour")
        self.assertEqual(user.domain.locale, brimlet.Locale(1, "en-GB", "English (United Kingdom)"))
        device = session.getDevice(101)
        self.assertEqual([section.name for section in device.sections][0], "Offices")
        self.assertEqual(device.sections[0].zones[0].name, "Front door")
        self.assertIsNone(device.sections[0].zones[1].delay)
        self.assertEqual(session.getSection(1, 101), device.sections[0])
        self.assertEqual(session.getZone(2, 101, 1), device.sections[0].zones[1])
        self.assertEqual(session.getZone(sectionId=1, deviceId=101, zoneId=2), device.sections[0].zones[1])
        self.assertEqual(len(session.getZonesForSection(101, 1)), 5)
        self.assertEqual(session.getSite(301).location, brimlet.Location(301, 52.63595, 0.38416))
        self.assertEqual(session.getSiteNameAndAddress(301), ("Chandlery, Halvermoor", "12 Tanner’s Row, Halvermoor"))
        self.assertEqual(session.getSite(301).extra, "")
        self.assertEqual(session.getOrganization(1).contact.name, "Grace Lindqvist")
        self.assertEqual(session.getContract(2001).contractor.name, "Curlew")
        with self.assertRaises(brimlet.NotFound):
            session.getSite(999)

    def look_up(self, session):
        self.assertEqual([user.id for user in session.getUsersWithParams("login", "a.ohara")], [1002])
        self.assertEqual(session.getUsersWithParams("login", "A.OHara"), [])
        self.assertEqual(len(session.getUsersWithParams("name", "𠮷田 葵")), 1)
        zones = session.getZonesForSectionWithParams("name", "Front door", 101, 1)
        self.assertEqual([zone.id for zone in zones], [1])
        with self.assertRaises(brimlet.Refused):
            session.getUsersWithParams("Login", "a.ohara")

    def keep_a_journal(self, session):
        for hour in range(24):
            batch = items(f"events/hour_{hour:02}.json")
            self.assertLessEqual(len(session.addEvents(batch)), len(batch))
        event = session.addEvent(document("event.json"))
        self.assertEqual((event.id, event.data, event.affect, event.sectionName, event.zoneName, event.account),
                         (501501, "second sensor agrees", True, "Büros", "Besprechung, Glas", 4104))
        marked = session.getAffectEvents()
        self.assertIn(event, marked)
        self.assertEqual(session.removeAffectFlag(event.id).affect, False)
        self.assertEqual(len(session.getAffectEvents()), len(marked) - 1)
        before = len(session.getEvents(from_=0, to=1710396000))
        session.clearEventsBeforeDateExceptAffects(1710396000)
        left = session.getEvents(0, 1710396000)
        self.assertLess(len(left), before)
        self.assertTrue(all(event.affect is not False for event in left))

    def update(self, session):
        contract = session.updateContract(document("update_contract.json"))
        self.assertEqual((contract.id, contract.status, contract.description), (2012, 3, "Розірвано замовником."))
        user = session.updateUser({"id": 1002, "active": False})
        self.assertEqual((user.isActive, user.login), (False, "a.ohara"))
        self.assertEqual(session.updateUser({"id": 1002, "active": True}).isActive, True)
        self.assertEqual(session.updateDeviceFw({"id": 101, "config_version": 77}).configVersion, 77)
        self.assertEqual(session.updateSection({"device": 101, "section": 1, "name": "Halls"}).name, "Halls")

    def remove(self, session):
        session.addDevice(document("add_device.json"))
        self.assertEqual(session.getDevice(199).account, 4199)
        session.deleteZone({"device": 199, "section": 1, "zone": 2})
        self.assertNotIn(2, [zone.id for zone in session.getZonesForSection(199, 1)])
        session.deleteSection({"device": 199, "section": 1})
        self.assertNotIn(1, [section.id for section in session.getSections(199)])
        session.deleteDevice(199)
        with self.assertRaises(brimlet.NotFound):
            session.getDevice(199)
        session.deleteSite(301)
        self.assertEqual(len(session.getSites()), 39)


class DocumentsTest(DirectoryTest):
    def setUp(self):
        super().setUp()
        self.open = self.session()

    def test_a_document_is_a_text_a_record_or_records_with_or_without_an_envelope(self):
        for id, put in enumerate((
            '{"D":{"items":[{"id":1}]}}',
            {"id": 2},
            [{"id": 3}],
            ({"id": 4},),
            {"D": {"items": [{"id": 5}]}},
        ), 1):
            self.open.addLocales(put)
            self.assertEqual(self.open.getLocale(id), brimlet.Locale(id, None, None))

    def test_an_id_is_a_number_or_ids_by_their_keys(self):
        for put in ('{"D":{"op_id":7}}', 7, {"op_id": 7}, {"D": {"op_id": 7}}):
            self.open.addUsers({"id": 7})
            self.open.deleteUser(put)
            self.assertEqual(self.open.getUsers(), [])

    def test_true_in_a_record_is_stored_as_true_and_in_a_text_as_the_library_reads_it(self):
        self.assertIs(self.open.updateUser({"id": 7, "active": True}).isActive, True)
        self.assertIs(self.open.updateUser('{"D":{"id":7,"active":true}}').isActive, False)

    def test_other_documents_are_refused_before_the_call(self):
        for name, put in (("addUsers", 7), ("addUsers", b"{}"), ("updateUser", [{"id": 7}]), ("deleteUser", [7]),
                          ("deleteZone", 7), ("setServerIp", 7), ("getUser", "7"), ("getUser", None)):
            with self.subTest(name), self.assertRaises(TypeError):
                self.open.call(name, put)
        for name, put in (("getUser", -1), ("getUser", 2**32), ("addUsers", [{"id": float("nan")}])):
            with self.subTest(name), self.assertRaises(ValueError):
                self.open.call(name, put)
        with self.assertRaises(TypeError):
            self.open.call("getUser")
        self.assertEqual(self.open.getUsers(), [])

    def test_texts_of_every_kind_are_returned_unchanged(self):
        for text in ("", "plain", "Żurawicka", "𠮷田 葵", "line\nend", "x" * 100_000):
            self.assertEqual(self.open.updateUser({"id": 7, "name": text}).name, text)

    def test_absent_is_none_and_empty_is_empty(self):
        self.open.addDevices([{"id": 1, "users": [{"user_index": 2, "name": "", "sections": [3, 1]}]}])
        user = self.open.getDevice(1).users[0]
        self.assertEqual(user, brimlet.DeviceUser(2, "", None, None, user.sections))
        self.assertEqual(sorted(user.sections), [1, 3])
        self.assertEqual(self.open.getDevice(1).sections, ())

    def test_numbers_keep_their_width_and_sign(self):
        self.open.addUsers({"id": 2**32 - 1, "phone": 2**53})
        self.assertEqual(self.open.getUser(2**32 - 1).phone, 2**53)
        site = self.open.updateSite({"id": 1, "contract_id": -5, "location": {"lat": -0.5, "lon": 179.25}})
        self.assertEqual((site.contractId, site.location), (-5, brimlet.Location(1, -0.5, 179.25)))


if __name__ == "__main__":
    unittest.main()
