"""The companion command, each of its subcommands in a process of its own."""

import contextlib
import io
import json
import os
import pty
import sqlite3
import subprocess
import sys
import unittest
from unittest import mock

import brimlet
from brimlet import command, output, schema
from brimlet.functions import FUNCTIONS
from support import COMMAND, DATA, ROOT, DirectoryTest

WRITE = ("--write", "--create")


class CommandTest(DirectoryTest):
    def succeeds(self, *arguments, put=None):
        done = self.run_command(*arguments, put=put)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def fails(self, status, words, *arguments, put=None):
        done = self.run_command(*arguments, put=put)
        self.assertEqual(done.returncode, status, done.stderr)
        self.assertIn(words, done.stderr)
        return done.stdout

    def change(self, *statements):
        connection = sqlite3.connect(self.file)
        for statement in statements:
            connection.execute(statement)
        connection.commit()
        connection.close()

    def on_terminal(self, *arguments, before="pass"):
        """What the command shows on a terminal, and its exit status."""
        text = f"import sys; {before}; from brimlet.command import main; main()"
        screen, terminal = pty.openpty()
        process = subprocess.Popen([sys.executable, "-c", text, "--dir", str(self.directory), *arguments],
                                   stdin=terminal, stdout=terminal, stderr=terminal,
                                   env={**os.environ, "TERM": "xterm", "COLUMNS": "100"})
        os.close(terminal)
        parts = []
        while True:
            try:
                part = os.read(screen, 65536)
            except OSError:  # the other end is closed
                break
            if not part:
                break
            parts.append(part)
        os.close(screen)
        return process.wait(120), b"".join(parts).decode("utf-8")


class CallTest(CommandTest):
    def test_documents_come_as_arguments_from_files_and_from_standard_input(self):
        self.assertEqual(self.succeeds("call", *WRITE, "addUsers", '{"D":{"items":[{"id":1}]}}'), "")
        self.succeeds("call", *WRITE, "addUsers", '[{"id": 2}]')
        self.succeeds("call", *WRITE, "addUsers", "-", put='{"id": 3, "name": "Żurawska"}')
        file = self.directory / "users.json"
        file.write_text('\ufeff{"D":{"items":[{"id":4}]}}', encoding="utf-8")
        self.succeeds("call", *WRITE, "addUsers", f"@{file}")
        self.succeeds("call", *WRITE, "deleteUser", "1")
        users = json.loads(self.succeeds("call", "getUsers"))
        self.assertEqual({user["id"]: user["name"] for user in users}, {2: None, 3: "Żurawska", 4: None})

    def test_texts_may_begin_with_an_at_sign(self):
        self.succeeds("call", *WRITE, "setServerIp", "@@here")
        self.assertEqual(json.loads(self.succeeds("call", "getServerIp")), "@here")

    def test_a_record_is_json_with_all_its_fields(self):
        done = self.succeeds("call", *WRITE, "updateDomain", '{"id": 3, "name": "Vale"}')
        self.assertEqual(json.loads(done), {"id": 3, "name": "Vale", "orgId": None, "locale": None})

    def test_a_flag_is_the_documents_own(self):
        done = self.succeeds("call", *WRITE, "updateUser", '{"id": 3, "active": true}')
        self.assertIs(json.loads(done)["isActive"], False)

    def test_a_list_as_a_table_leaves_out_what_is_absent(self):
        self.succeeds("call", *WRITE, "addUsers", '[{"id": 10, "name": "Anna", "active": 1}, {"id": 9, "domain": 2}]')
        lines = self.succeeds("call", "getUsers", "--table").splitlines()
        self.assertEqual(lines[0].split(), ["id", "name", "isActive", "domainId"])
        self.assertEqual(sorted(line.split() for line in lines[2:]), [["10", "Anna", "yes"], ["9", "2"]])

    def test_a_record_as_a_table_is_field_by_field(self):
        done = self.succeeds("call", *WRITE, "updateDomain", '{"id": 3, "name": "Vale"}', "--table")
        self.assertEqual(done, "field  value\n-----  -----\nid     3\nname   Vale\n")

    def test_the_exit_status_is_the_code(self):
        self.session().close()
        self.assertEqual(self.fails(8, "getUser: 8, the store holds nothing that fits", "call", "getUser", "5"), "")
        self.assertEqual(self.fails(8, "getUsers: 8", "call", "getUsers"), "[]\n")
        self.assertEqual(self.fails(8, "getUsers: 8", "call", "getUsers", "--table"), "")
        self.fails(5, "addUsers: 5", "call", *WRITE, "addUsers", '[{"name": "nobody"}]')
        self.fails(10, "addUsers: 10", "call", *WRITE, "addUsers", "nonsense")
        self.fails(11, "updateSection: 11", "call", *WRITE, "updateSection", '{"device": 1, "section": 2}')

    def test_what_cannot_be_called_is_said(self):
        self.session().close()
        self.fails(2, "there is no function getUsr, did you mean getUser", "call", "getUsr")
        self.fails(2, "getUser(id) -> User takes 1 arguments, not 0", "call", "getUser")
        self.fails(2, "x is not a number", "call", "getUser", "x")
        for time in ("nan", "0", "soon"):
            self.fails(2, f"{time} is not a time in seconds", "--timeout", time, "call", "getUser", "7")
        self.fails(2, "has to be a number of 32 bits", "call", "getUser", "4294967296")
        self.fails(1, "nowhere.json", "call", *WRITE, "addUsers", "@nowhere.json")
        self.fails(1, "the shared library cannot be loaded", "--library", "/nowhere.so", "call", *WRITE, "clearAll")

    def test_the_functions_of_the_lifecycle_are_called_by_the_launch(self):
        self.assertEqual(self.succeeds("call", *WRITE, "launchCache"), "")
        self.assertTrue(self.file.exists())
        self.assertEqual(self.succeeds("call", "getLaunchCacheResult"), "0\n")
        self.assertEqual(self.succeeds("call", "getState"), "2\n")
        self.assertEqual(self.succeeds("call", *WRITE, "exitCache"), "")

    def test_a_free_function_gets_no_record(self):
        self.fails(10, "freeUser: 10, an argument is refused", "call", "freeUser")
        self.fails(10, "freeUsersArray: 10", "call", "freeUsersArray")
        self.assertFalse(self.file.exists())

    def test_every_function_is_listed_and_can_be_called(self):
        self.session().close()
        listed = [line.split("(")[0] for line in self.succeeds("functions").splitlines()]
        self.assertEqual(listed, list(FUNCTIONS))
        for name in listed:
            takes = FUNCTIONS[name].takes
            with mock.patch.dict(os.environ), contextlib.redirect_stdout(io.StringIO()), \
                    contextlib.redirect_stderr(io.StringIO()) as errors:
                status = command.run(["--dir", str(self.directory), "call", *WRITE, name, *["7"] * len(takes)])
            self.assertIn(status, (0, 5, 8, 10), name)
            self.assertEqual(errors.getvalue().startswith(f"brimlet: {name}: {status}, "), status != 0)

    def test_verbose_lets_the_library_speak(self):
        self.fails(10, "", "call", *WRITE, "addUsers", "x")
        self.change("CREATE TRIGGER t BEFORE INSERT ON Locales BEGIN SELECT RAISE(ABORT, 'refused'); END")
        quiet = self.run_command("call", *WRITE, "addLocales", '{"id": 1}')
        self.assertEqual((quiet.returncode, len(quiet.stderr.splitlines())), (9, 1))
        self.fails(9, "add locales error", "--verbose", "call", *WRITE, "addLocales", '{"id": 1}')


class LoadTest(CommandTest):
    def test_a_folder_is_loaded_in_the_order_of_its_references(self):
        lines = self.succeeds("load", *WRITE, str(DATA)).splitlines()
        self.assertEqual(lines[0].split(), ["document", "function", "answer"])
        self.assertEqual([line.split()[0] for line in lines[2:11]], [
            "locales.json", "domains.json", "organizations.json", "users.json", "contractors.json", "contracts.json",
            "devices.json", "add_device.json", "sites.json"])
        self.assertEqual([line.split()[0] for line in lines[11:35]],
                         [f"events/hour_{hour:02}.json" for hour in range(24)])
        self.assertEqual([line.split()[1] for line in lines[35:]],
                         ["addEvent", "updateOrganization", "updateContract", "updateSite", "deleteDevice"])
        self.assertTrue(all(line.endswith("0, done") for line in lines[2:]))
        self.assertEqual(len(json.loads(self.succeeds("call", "getUsers"))), 300)
        self.fails(8, "getDevice: 8", "show", "device", "104")

    def test_a_document_that_is_refused_gives_the_status_and_does_not_stop_the_others(self):
        folder = self.directory / "documents"
        folder.mkdir()
        (folder / "users.json").write_text("nonsense")
        (folder / "locales.json").write_text('{"D":{"items":[{"iso":"en"}]}}')
        (folder / "sites.json").write_text('{"D":{"items":[{"id":7}]}}')
        done = self.fails(5, "", "load", *WRITE, str(folder))
        self.assertEqual([line.split()[2] for line in done.splitlines()[2:]], ["5,", "10,", "0,"])
        self.succeeds("show", "site", "7")

    def test_a_document_of_an_unknown_name_is_refused_before_anything_is_loaded(self):
        folder = self.directory / "documents"
        folder.mkdir()
        (folder / "users.json").write_text('{"D":{"items":[{"id":7}]}}')
        (folder / "people.json").write_text("{}")
        self.fails(2, "no function takes a document of the name people.json", "load", *WRITE, str(folder))
        self.assertFalse(self.file.exists())
        self.fails(1, "there is no folder", "load", *WRITE, str(self.directory / "nowhere"))
        self.fails(1, "there is no folder nowhere", "--dir", "nowhere", "load", *WRITE, str(DATA))

    def test_a_terminal_shows_the_progress(self):
        status, screen = self.on_terminal("load", *WRITE, str(DATA), before="sys.modules['rich'] = None")
        self.assertEqual(status, 0)
        self.assertIn("loading [##############################] 38/38", screen)
        self.assertIn("loading [", screen.split("38/38")[0])

    @unittest.skipUnless(output.HAS_RICH, "python3-rich is not installed")
    def test_a_terminal_shows_the_progress_by_rich_where_it_is_installed(self):
        status, screen = self.on_terminal("load", *WRITE, str(DATA))
        self.assertEqual(status, 0)
        self.assertIn("loading", screen)
        self.assertIn("100%", screen)
        self.assertIn("users.json", screen)


class ShowTest(CommandTest):
    def setUp(self):
        super().setUp()
        with brimlet.Session(self.directory) as session:
            session.addLocales({"id": 1, "iso": "en-GB"})
            session.addDomains({"id": 2, "name": "Harbour", "locale_id": 1})
            session.addDevices({"id": 10, "account": 4110, "domain": 2, "parted": True, "sections": [
                {"id": 1, "name": "Halls", "zones": [{"id": 1, "name": "Door", "delay": 30}, {"id": 2}]}, {"id": 2},
            ], "users": [{"user_index": 1, "name": "Eve", "sections": [1, 2]}]})
            session.addSites({"id": 20, "name": "Mill", "contract_id": 30, "location": {"lat": 1.5, "lon": -2}})
            session.addOrganizations({"org_id": 40, "contact": {"id": 41, "name": "Grace"}})
            session.addUsers({"id": 50, "name": "Alice", "domain": 2})
            session.addContractors({"id": 60, "name": "Curlew"})
            session.addContracts({"id": 30, "number": "A/1", "contractor_id": 60, "operator_id": 50})

    def test_a_device(self):
        self.assertEqual(self.succeeds("show", "device", "10"), """\
Device 10
|-- account: 4110
|-- isParted: yes
|-- domainId: 2
|-- domain 2: name Harbour
|   `-- locale 1: iso en-GB
|-- sections (2)
|   |-- section 1: name Halls
|   |   `-- zones (2)
|   |       |-- zone 1: name Door, delay 30
|   |       `-- zone 2
|   `-- section 2
`-- users (1)
    `-- user 1: name Eve, sections 1, 2
""")

    def test_the_others(self):
        site = self.succeeds("show", "site", "20")
        self.assertIn("`-- location 20: latitude 1.5, longitude -2.0\n", site)
        self.assertIn("|-- contract 30: number A/1\n|   |-- contractor 60: name Curlew\n", site)
        self.assertIn("user 50: name Alice", self.succeeds("show", "contract", "30"))
        self.assertIn("contact 41: name Grace", self.succeeds("show", "organization", "40"))
        self.assertIn("domain 2: name Harbour", self.succeeds("show", "user", "50"))
        self.assertEqual(self.succeeds("show", "locale", "1"), "Locale 1\n`-- iso: en-GB\n")
        self.assertEqual(self.succeeds("show", "contractor", "60"), "Contractor 60\n`-- name: Curlew\n")
        self.assertIn("name: Harbour", self.succeeds("show", "domain", "2"))

    def test_what_is_not_there(self):
        self.fails(8, "getDevice: 8", "show", "device", "11")
        self.fails(2, "invalid choice", "show", "zone", "1")
        self.file.unlink()
        self.fails(6, "there is no CacheDb", "show", "device", "10")
        self.assertFalse(self.file.exists())

    @unittest.skipUnless(output.HAS_RICH, "python3-rich is not installed")
    def test_a_terminal_shows_it_by_rich_where_it_is_installed(self):
        status, screen = self.on_terminal("show", "device", "10")
        self.assertEqual(status, 0)
        self.assertIn("├── account: 4110", screen)
        status, screen = self.on_terminal("call", "getUsers", "--table")
        self.assertIn("─", screen)
        self.assertIn("Alice", screen)

    def test_a_terminal_obeys_no_text_of_the_store(self):
        with brimlet.Session(self.directory) as session:
            session.addUsers({"id": 51, "name": "a\x1b[2J\u202eb"})
        for before in ("pass", "sys.modules['rich'] = None"):
            for arguments in (["show", "user", "51"], ["call", "getUser", "51", "--table"]):
                status, screen = self.on_terminal(*arguments, before=before)
                self.assertEqual(status, 0)
                self.assertIn("a\\x1b[2J\\u202eb", screen)
                self.assertNotIn("\x1b[2J", screen)


class EventsTest(CommandTest):
    def setUp(self):
        super().setUp()
        with brimlet.Session(self.directory) as session:
            session.addDevices({"id": 1})
            session.addEvents([{"id": id, "time": time, "device": 1} for id, time in ((3, 300), (1, 100), (2, 200))])

    def times(self, *arguments):
        return [event["time"] for event in json.loads(self.succeeds("events", *arguments))]

    def test_events_come_by_time_between_two_times(self):
        self.assertEqual(self.times(), [100, 200, 300])
        self.assertEqual(self.times("--from", "200"), [200, 300])
        self.assertEqual(self.times("--to", "200"), [100, 200])
        self.assertEqual(self.times("--from", "101", "--to", "299"), [200])
        self.assertEqual(self.fails(8, "getEvents: 8", "events", "--from", "400"), "[]\n")

    def test_a_table(self):
        self.assertEqual(self.succeeds("events", "--to", "200", "--table"),
                         "id  time  deviceId\n--  ----  --------\n 1   100         1\n 2   200         1\n")


    @unittest.skipUnless(output.HAS_RICH, "python3-rich is not installed")
    def test_a_table_that_is_too_wide_for_the_terminal_keeps_its_numbers_whole(self):
        numbers = [4000000000 + index for index in range(7)]
        with brimlet.Session(self.directory) as session:
            session.addEvents({"id": numbers[0], "time": numbers[1], "device": 1, "section": numbers[2],
                               "zone": numbers[3], "localtime": numbers[4], "review_id": numbers[5],
                               "operator_id": numbers[6], "data": "a long text " * 9})
        status, screen = self.on_terminal("events", "--from", "4000000000", "--table")
        self.assertEqual(status, 0)
        for number in numbers:
            self.assertIn(str(number), screen)


class InspectTest(CommandTest):
    def setUp(self):
        super().setUp()
        with brimlet.Session(self.directory) as session:
            session.addDevices({"id": 1})
            session.addEvents([{"id": 1, "device": 1, "time": 5, "affect": 0}, {"id": 2, "device": 1, "time": 5},
                               {"id": 3, "device": 1, "affect": 0}, {"id": 4, "device": 9, "time": 5, "affect": 1},
                               {"id": 5, "device": 1}])

    def look(self):
        return json.loads(self.succeeds("inspect", "--json"))

    def test_a_file_as_it_should_be(self):
        found = self.look()
        self.assertEqual([found[list] for list in ("leftOut", "missing", "different", "pages")], [[], [], [], []])
        rows = {table["name"]: table["rows"] for table in found["tables"]}
        self.assertEqual(list(rows), list(schema.TABLES))
        self.assertEqual((rows["Events"], rows["Devices"], rows["Version"], rows["Users"]), (5, 1, 1, 0))

    def test_events_that_no_purge_can_take_are_those_that_a_purge_leaves(self):
        self.assertEqual(self.look()["events"], {"all": 5, "marked": 1, "withoutMark": 2, "withoutTime": 2,
                                                 "beyondPurge": 3, "ofUnknownDevices": 1})
        with brimlet.Session(self.directory) as session:
            session.clearEventsBeforeDateExceptAffects(2**32 - 1)
        left = self.look()["events"]
        self.assertEqual((left["all"], left["marked"], left["beyondPurge"]), (4, 1, 3))

    def test_the_bytes_of_all_tables_are_those_of_the_file(self):
        try:
            sqlite3.connect(":memory:").execute("SELECT * FROM dbstat")
        except sqlite3.OperationalError:
            self.assertEqual({table["bytes"] for table in self.look()["tables"]}, {None})
            return
        master = 4096 * sqlite3.connect(self.file).execute(
            "SELECT count(*) FROM dbstat WHERE name = 'sqlite_schema' OR name = 'sqlite_master'").fetchone()[0]
        self.assertEqual(sum(table["bytes"] for table in self.look()["tables"]) + master, self.file.stat().st_size)

    def test_words(self):
        lines = self.succeeds("inspect").splitlines()
        self.assertEqual(lines[:2], ["schema: as expected", "pages: sound"])
        self.assertIn(["that", "no", "purge", "can", "take", "3"], [line.split() for line in lines])

    def test_differences_of_the_schema(self):
        self.change("DROP TABLE Users", "ALTER TABLE Domains DROP COLUMN DomainsName", "CREATE TABLE Notes (Id)",
                    "ALTER TABLE Devices ADD COLUMN DevicesNick TEXT", "UPDATE Version SET VersionNumber = '0.2'",
                    "DROP TABLE Persons", "CREATE TABLE Persons (PersonsId UNSIGNED BIG INT, PersonsName TEXT, "
                    "PersonsPhone VARCHAR(255), PersonsEmail VARCHAR(255), PersonsPostal VARCHAR(255))")
        done = self.run_command("inspect", "--json")
        self.assertEqual(done.returncode, 1)
        found = json.loads(done.stdout)
        self.assertEqual(found["missing"], [
            "table Users is missing", "column Domains.DomainsName is missing", "the version is 0.2, not 0.1"])
        self.assertEqual(found["different"], [
            "column Persons.PersonsId is not part of the key",
            "column Persons.PersonsName is TEXT, not VARCHAR(255)", "column Devices.DevicesNick is unknown",
            "table Notes is unknown"])
        words = self.run_command("inspect").stdout
        self.assertIn("schema:\n  table Users is missing\n", words)
        self.assertIn("different, but accepted:\n  column Persons.PersonsId is not part of the key\n", words)

    def test_broken_pages(self):
        content = bytearray(self.file.read_bytes())
        root = sqlite3.connect(self.file).execute(
            "SELECT rootpage FROM sqlite_master WHERE name = 'Events'").fetchone()[0]
        content[(root - 1) * 4096:root * 4096] = b"\xff" * 4096
        self.file.write_bytes(content)
        done = self.run_command("inspect", "--json")
        self.assertEqual(done.returncode, 1)
        self.assertTrue(json.loads(done.stdout)["pages"])

    def test_a_file_left_in_the_middle_of_a_change_is_seen_as_before_the_change(self):
        left = self.directory / "left"
        left.mkdir()
        connection = sqlite3.connect(self.file, isolation_level=None)
        connection.execute("PRAGMA cache_size = 1")  # so that pages of the change reach the file
        connection.execute("BEGIN")
        connection.executemany("INSERT INTO Users (UsersId, UsersName) VALUES (?, ?)",
                               ((id, "x" * 4000) for id in range(1, 101)))
        contents = {}
        for name in ("CacheDb", "CacheDb-journal"):
            contents[name] = (self.directory / name).read_bytes()
            (left / name).write_bytes(contents[name])
        connection.close()
        done = json.loads(self.succeeds("--dir", str(left), "inspect", "--json"))
        self.assertEqual((done["missing"], done["pages"]), ([], []))
        self.assertEqual({table["name"]: table["rows"] for table in done["tables"]}["Users"], 0)
        self.assertEqual({file.name: file.read_bytes() for file in left.iterdir()}, contents)
        self.assertGreater(len(contents["CacheDb"]), 100 * 4000)

    def test_what_is_no_database_or_not_there(self):
        self.file.write_bytes(b"nonsense" * 1000)
        self.fails(6, "cannot be inspected: file is not a database", "inspect")
        self.assertEqual(self.file.read_bytes(), b"nonsense" * 1000)
        self.file.unlink()
        self.fails(6, "there is no CacheDb", "inspect")
        self.assertFalse(self.file.exists())

    def test_nothing_is_written_and_no_library_is_needed(self):
        before = self.file.read_bytes()
        self.succeeds("--library", "/nowhere.so", "inspect")
        self.assertEqual(self.file.read_bytes(), before)
        self.assertEqual([file.name for file in self.directory.iterdir()], ["CacheDb"])


class LineTest(CommandTest):
    def test_help_and_version(self):
        done = self.succeeds("--help")
        for name in ("call", "functions", "load", "show", "events", "inspect"):
            self.assertIn(f"\n    {name} ", done)
        self.assertEqual(self.succeeds("--version"), f"brimlet {brimlet.__version__}\n")
        self.fails(2, "the following arguments are required: COMMAND")

    def test_a_reader_that_goes_away_is_no_traceback(self):
        process = subprocess.Popen([*COMMAND, "--dir", str(self.directory), "functions"], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, cwd=ROOT)
        process.stdout.close()
        errors = process.stderr.read()
        process.stderr.close()
        process.wait(120)
        self.assertNotIn(b"Traceback", errors)

    def test_an_output_that_is_not_unicode_gets_escapes(self):
        with brimlet.Session(self.directory) as session:
            session.addUsers({"id": 7, "name": "𠮷田"})
        environment = {**os.environ, "PYTHONIOENCODING": "ascii"}
        for options in ((), ("--table",)):
            done = subprocess.run([*COMMAND, "--dir", str(self.directory), "call", "getUser", "7", *options],
                                  capture_output=True, env=environment, timeout=120)
            self.assertEqual(done.returncode, 0, done.stderr)
            done.stdout.decode("ascii")
            if not options:
                self.assertEqual(json.loads(done.stdout)["name"], "𠮷田")


if __name__ == "__main__":
    unittest.main()
