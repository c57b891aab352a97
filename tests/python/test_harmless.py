"""Looking never destroys: the companion command on folders of every kind, sound, damaged and hostile."""

import contextlib
import io
import json
import os
import socket
import sqlite3
import stat
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

import brimlet
from brimlet import command
from brimlet.schema import TABLES
from support import DirectoryTest

MAGIC = bytes.fromhex("d9d505f920a163d7")
ENDLESS = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i"
SLOW = "instr(hex(zeroblob(400000000)), hex(zeroblob(200000000)) || '1')"
CONTROLS = "\x1b[2J\x07\r\x7f\x9b31m\u2028\u2029\u202e\u2066"

READING = (["show", "user", "7"], ["events"], ["call", "getUsers"], ["inspect"])
DOCUMENT = '[{"id": 8}]'


# ---- Folders ----


def change(store, *statements):
    connection = sqlite3.connect(store / "CacheDb", isolation_level=None)
    for statement in statements:
        connection.execute(statement)
    connection.close()


def rewrite(store, table, old, new):
    change(store, "PRAGMA writable_schema = ON",
           f"UPDATE sqlite_master SET sql = replace(sql, '{old}', '{new}') WHERE name = '{table}'")


def put(content):
    return lambda store: (store / "CacheDb").write_bytes(content)


def overwrite(place, content):
    def do(store):
        with open(store / "CacheDb", "r+b") as file:
            file.seek(place)
            file.write(content)
    return do


def changed(*statements):
    return lambda store: change(store, *statements)


def together(*steps):
    def do(store):
        for step in steps:
            step(store)
    return do


def remove(store):
    (store / "CacheDb").unlink()


def damage_page(store):
    connection = sqlite3.connect(store / "CacheDb")
    root, = connection.execute("SELECT rootpage FROM sqlite_master WHERE name = 'Events'").fetchone()
    connection.close()
    overwrite((root - 1) * 4096, b"\xff" * 4096)(store)


def lead_in_circles(store):
    """Gives Users a tree of 15 levels, each page of which is 400 times the next."""
    connection = sqlite3.connect(store / "CacheDb")
    root, = connection.execute("SELECT rootpage FROM sqlite_master WHERE name = 'Users'").fetchone()
    count, = connection.execute("PRAGMA page_count").fetchone()
    connection.close()
    levels = [root, *range(count + 1, count + 16)]
    for page, below in zip(levels, levels[1:]):
        cells = b"".join(struct.pack(">IB", below, number % 100) for number in range(400))
        places = struct.pack(">400H", *range(4096 - len(cells), 4096, 5))
        head = struct.pack(">BHHHBI", 5, 0, 400, 4096 - len(cells), 0, below)
        overwrite((page - 1) * 4096, (head + places).ljust(4096 - len(cells), b"\0") + cells)(store)
    overwrite((levels[-1] - 1) * 4096, struct.pack(">BHHHB", 13, 0, 0, 4096, 0).ljust(4096, b"\0"))(store)
    overwrite(28, struct.pack(">I", count + 15))(store)


def interrupt(store, setting="cache_size = 1", rows=100):
    """Leaves a store as a process does that dies in the middle of a change."""
    work = store.parent / "work"
    work.mkdir()
    (store / "CacheDb").rename(work / "CacheDb")
    connection = sqlite3.connect(work / "CacheDb", isolation_level=None)
    connection.execute("PRAGMA " + setting)
    connection.execute("BEGIN")
    connection.executemany("INSERT INTO Users (UsersId, UsersName) VALUES (?, ?)",
                           ((id, "x" * 4000) for id in range(100, 100 + rows)))
    if "WAL" in setting:
        connection.execute("COMMIT")
    for name in ("CacheDb", "CacheDb-journal", "CacheDb-wal"):
        if (work / name).exists():
            (store / name).write_bytes((work / name).read_bytes())
    connection.close()
    for file in work.iterdir():
        file.unlink()
    work.rmdir()


def name_super_journal(path):
    """Lets the journal name a super-journal at its end, as a change of several files does."""
    def do(store):
        name = os.fsencode(path(store))
        with open(store / "CacheDb-journal", "ab") as journal:
            journal.write(struct.pack(">I", 1) + name + struct.pack(">II", len(name), sum(name)) + MAGIC)
    return do


def small_journal(store):
    """A journal of one segment without a page."""
    pages = os.path.getsize(store / "CacheDb") // 4096
    (store / "CacheDb-journal").write_bytes((MAGIC + struct.pack(">5I", 0, 7, pages, 512, 4096)).ljust(512, b"\0"))


def victim(store):
    return store.parent / "victim"


def itself(store):
    return store / "CacheDb"


def journal(make):
    return lambda store: make(store / "CacheDb-journal")


def fifo(store):
    remove(store)
    os.mkfifo(store / "CacheDb")


def listen(store):
    remove(store)
    here = os.getcwd()
    os.chdir(store)  # the name of a socket is short
    with socket.socket(socket.AF_UNIX) as listener:
        listener.bind("CacheDb")
    os.chdir(here)


def folder(store):
    remove(store)
    (store / "CacheDb").mkdir()


def link(store):
    (store / "CacheDb").rename(store.parent / "elsewhere")
    (store / "CacheDb").symlink_to(store.parent / "elsewhere")


def link_to_nothing(store):
    remove(store)
    (store / "CacheDb").symlink_to(store.parent / "nowhere")


def leave(store):
    pass


view_of_users = changed(
    "DROP TABLE Users",
    "CREATE VIEW Users AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
    f"SELECT {', '.join(f'i AS {column.name}' for column in TABLES['Users'])} FROM n",
)

# What a reading command makes of a folder: 0, or the reason for refusing.
SOUND = {
    "good": leave,
    "with a hot journal": interrupt,
    "with an empty journal": journal(Path.touch),
    "with a journal that is over": together(
        journal(lambda path: path.write_bytes(bytes(512))), name_super_journal(victim)),
    "in WAL mode": changed("PRAGMA journal_mode = WAL"),
    "in WAL mode with frames": lambda store: interrupt(store, "journal_mode = WAL", 3),
    "with an empty WAL": lambda store: (store / "CacheDb-wal").touch(),
    "behind a link": link,
    "behind a link, with a hot journal": together(
        interrupt, link, lambda store: (store / "CacheDb-journal").rename(store.parent / "elsewhere-journal")),
    "in a folder that cannot be written": lambda store: store.chmod(0o555),
    "with an endless trigger": changed(
        f"CREATE TRIGGER t AFTER INSERT ON Users BEGIN INSERT INTO Locales (LocalesId) {ENDLESS} FROM n; END"),
    "with an endless view": changed(f"CREATE VIEW v AS {ENDLESS} FROM n"),
    "with an index of an endless expression": together(
        changed("CREATE INDEX i ON Users (length(UsersName))"),
        lambda store: rewrite(store, "i", "length(UsersName)", SLOW.replace("'", "''"))),
    "with an endless condition": lambda store: rewrite(
        store, "Users", "UsersName VARCHAR(255)", f"UsersName VARCHAR(255) CHECK ({SLOW})".replace("'", "''")),
    "with a table of the client's own": changed("CREATE TABLE Notes (Id)"),
}
ADDED_TO = ("with an endless trigger", "with an endless view", "with an index of an endless expression",
            "with a table of the client's own")
UNSOUND = {
    "empty": (put(b""), "table Users is missing, and 16 more"),
    "foreign": (put(b"this is no database\n" * 100), "file is not a database"),
    "with a damaged header": (overwrite(0, b"\0" * 40), "file is not a database"),
    "with a damaged page": (damage_page, "malformed"),
    "with pages that lead in circles": (lead_in_circles, "2nd reference to page"),
    "cut": (lambda store: os.truncate(store / "CacheDb", 9000), "malformed"),
    "without a table": (changed("DROP TABLE Zones"), "table Zones is missing"),
    "without a column": (changed("ALTER TABLE Users DROP COLUMN UsersName"), "column Users.UsersName is missing"),
    "of another version": (changed("UPDATE Version SET VersionNumber = '0.2'"), "the version is 0.2, not 0.1"),
    "without a version": (changed("DELETE FROM Version"), "the version is missing"),
    "with a view for a table": (view_of_users, "table Users is missing"),
    "with a hidden view for a table": (together(view_of_users, changed(
        "CREATE TABLE Other (UsersId)", "PRAGMA writable_schema = ON",
        "UPDATE sqlite_master SET name = 'Users', tbl_name = 'Users', "
        "sql = 'CREATE TABLE IF NOT EXISTS Users (UsersId)' WHERE name = 'Other'")), "table Users is missing"),
    "with a virtual table for a table": (
        changed("DROP TABLE Users", "CREATE VIRTUAL TABLE Users USING fts5(UsersId)"), "table Users is missing"),
    "with an endless generated column": (
        changed("ALTER TABLE Users ADD COLUMN UsersMore AS (" + SLOW + ")"), "column Users.UsersMore is generated"),
    "with an endless generated column elsewhere": (
        changed("CREATE TABLE Notes (Id, More AS (" + SLOW + ") NOT NULL)", "CREATE INDEX i ON Notes (Id)"),
        "column Notes.More is generated"),
    "with a virtual table in disguise": (together(
        changed("CREATE VIRTUAL TABLE Notes USING fts5(Text)"),
        lambda store: rewrite(store, "Notes", "CREATE VIRTUAL", "CREATE /* */ VIRTUAL")),
        "Notes is not an ordinary table"),
    "with an endless generated column in disguise": (together(
        changed("CREATE TABLE Notes (Id)", "INSERT INTO Notes VALUES (1)"),
        lambda store: rewrite(store, "Notes", "Notes (Id)", f"sqlite_notes (Id, More AS ({SLOW}) NOT NULL)"
                              .replace("'", "''")),
        changed("PRAGMA writable_schema = ON",
                "UPDATE sqlite_master SET name = 'sqlite_notes', tbl_name = 'sqlite_notes' WHERE name = 'Notes'")), "column sqlite_notes.More is generated"),
    "with an unknown collation": (together(
        changed("CREATE INDEX i ON Users (UsersName COLLATE NOCASE)"),
        lambda store: rewrite(store, "i", "NOCASE", "OTHER")), "no such collation sequence: OTHER"),
    "with a journal that names a file outside": (
        together(interrupt, name_super_journal(victim)), "CacheDb-journal names a super-journal"),
    "with a journal that names the store": (
        together(interrupt, name_super_journal(itself)), "CacheDb-journal names a super-journal"),
    "with a small journal that names a file outside": (
        together(small_journal, name_super_journal(victim)), "CacheDb-journal names a super-journal"),
    "with a FIFO for a journal": (journal(os.mkfifo), "CacheDb-journal is a FIFO"),
    "with a link for a journal": (
        journal(lambda path: path.symlink_to("../victim")), "CacheDb-journal is a symbolic link"),
    "with a folder for a journal": (journal(Path.mkdir), "CacheDb-journal is a folder"),
    "with a FIFO for a WAL": (lambda store: os.mkfifo(store / "CacheDb-wal"), "CacheDb-wal is a FIFO"),
    "a FIFO": (fifo, "it is a FIFO, not a regular file"),
    "a socket": (listen, "it is a socket, not a regular file"),
    "a folder": (folder, "it is a folder, not a regular file"),
    "a link to nothing": (link_to_nothing, "it is a symbolic link to nothing"),
    "a journal without its file": (together(interrupt, remove), "CacheDb-journal is there without it"),
}
NOTHING_TO_INSPECT = ("foreign", "with a damaged header", "cut", "a FIFO", "a socket", "a folder", "a link to nothing",
                      "a journal without its file")


class HarmlessTest(DirectoryTest):
    def setUp(self):
        super().setUp()
        self.file.parent.chmod(0o755)
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.temporary = Path(temporary.name)

    def make(self, make=leave):
        """A store that holds a user and an event, changed."""
        root = tempfile.TemporaryDirectory(dir=self.directory)
        self.addCleanup(root.cleanup)
        store = Path(root.name) / "store"
        store.mkdir()
        victim(store).write_text("a file of somebody's own")
        if not self.file.exists():
            with brimlet.Session(self.directory) as session:
                session.addUsers({"id": 7, "name": "Anna"})
                session.addDevices({"id": 1})
                session.addEvents({"id": 1, "device": 1, "time": 5})
        (store / "CacheDb").write_bytes(self.file.read_bytes())
        make(store)
        return store

    def run_on(self, store, *arguments):
        """The command, in this process for the sake of time. Its folder for temporary files is empty at its end."""
        out, errors = (io.TextIOWrapper(io.BytesIO(), encoding="utf-8", newline="\n") for _ in range(2))
        with mock.patch.dict(os.environ), mock.patch("tempfile.tempdir", str(self.temporary)), \
                contextlib.redirect_stdout(out), contextlib.redirect_stderr(errors):
            try:
                status = command.run(["--dir", str(store), *arguments])
            except SystemExit as end:  # a wrong line
                status = end.code
        texts = [(stream.flush(), stream.buffer.getvalue().decode("utf-8"))[1] for stream in (out, errors)]
        self.assertEqual(list(self.temporary.iterdir()), [])
        return subprocess.CompletedProcess(arguments, status, *texts)

    def locked(self, store, *statements):
        """Another process in the middle of a transaction, which it commits when it is told to."""
        text = ("import sqlite3, sys\n"
                "connection = sqlite3.connect('CacheDb', isolation_level=None)\n"
                "for statement in sys.argv[1:]: connection.execute(statement)\n"
                "print('locked', flush=True)\n"
                "input()\n"
                "connection.execute('COMMIT')\n")
        process = subprocess.Popen([sys.executable, "-c", text, *statements], cwd=store, text=True,
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(process.kill)
        self.assertEqual(process.stdout.readline(), "locked\n")
        return process

    def leaves_all(self, store, status, words, *arguments):
        """Runs the command, which leaves every byte, name, mode and time of the folder and beside it as it was."""
        before = everything_in(store.parent)
        done = self.run_on(store, *arguments)
        self.assertEqual(done.returncode, status, done.stderr)
        self.assertIn(words, done.stderr)
        self.assertEqual(everything_in(store.parent), before)
        return done.stdout


def everything_in(root):
    def one(path):
        status = path.lstat()
        content = path.read_bytes() if stat.S_ISREG(status.st_mode) else None
        return status.st_mode, status.st_ino, status.st_size, status.st_mtime_ns, status.st_nlink, content
    return {path: one(path) for path in [root, *root.rglob("*")]}


class ReadingTest(HarmlessTest):
    def test_a_sound_store_is_read_and_left_as_it_is(self):
        for name, make in SOUND.items():
            with self.subTest(name):
                store = self.make(make)
                users = json.loads(self.leaves_all(store, 0, "", "call", "getUsers"))
                ids = [7, 100, 101, 102] if name == "in WAL mode with frames" else [7]
                self.assertEqual([user["id"] for user in users], ids)
                self.assertIn("name: Anna", self.leaves_all(store, 0, "", "show", "user", "7"))
                self.assertEqual(len(json.loads(self.leaves_all(store, 0, "", "events"))), 1)
                self.assertEqual(self.leaves_all(store, 0, "", "call", "getLaunchCacheResult"), "0\n")
                status = 1 if name in ADDED_TO else 0
                found = json.loads(self.leaves_all(store, status, "", "inspect", "--json"))
                self.assertEqual([found[list] for list in ("leftOut", "missing", "pages")], [[], [], []])
                self.assertEqual(len(found["different"]), status)
                store.chmod(0o755)

    def test_what_is_no_sound_store_is_refused_and_left_as_it_is(self):
        for name, (make, reason) in UNSOUND.items():
            with self.subTest(name):
                store = self.make(make)
                for arguments in (["show", "user", "7"], ["events"], ["call", "getUsers"]):
                    self.assertEqual(self.leaves_all(store, 6, reason, *arguments), "")
                    self.leaves_all(store, 6, "`brimlet inspect` shows the details, a writing command with --recover "
                                              "starts a new one", *arguments)

    def test_an_inspection_tells_the_reason(self):
        for name, (make, reason) in UNSOUND.items():
            with self.subTest(name):
                store = self.make(make)
                if name in NOTHING_TO_INSPECT:
                    self.leaves_all(store, 6, reason, "inspect")
                    continue
                words = self.leaves_all(store, 1, "", "--timeout", "2", "inspect")
                self.assertIn(reason.split(",")[0], words)

    def test_where_nothing_is_nothing_is_made(self):
        store = self.make(remove)
        for arguments in READING:
            self.leaves_all(store, 6, f"there is no CacheDb in {store}; check --dir, or create one", *arguments)
            self.leaves_all(store, 6, "by a writing command with --create", *arguments)
        for directory in (store / "nowhere", victim(store)):
            for arguments in (*READING, ["call", "--write", "--create", "addUsers", DOCUMENT]):
                before = everything_in(store.parent)
                done = self.run_on(directory, *arguments)
                self.assertEqual((done.returncode, done.stderr), (1, f"brimlet: there is no folder {directory}\n"))
                self.assertEqual(everything_in(store.parent), before)

    def test_a_store_that_another_process_has_locked_is_read_without_waiting_for_it(self):
        for statements in (["BEGIN EXCLUSIVE"], ["BEGIN IMMEDIATE", "DELETE FROM Users"]):
            store = self.make()
            other = self.locked(store, *statements)
            users = json.loads(self.leaves_all(store, 0, "", "call", "getUsers"))
            self.assertEqual([user["id"] for user in users], [7])
            self.leaves_all(store, 0, "", "inspect")
            self.assertEqual(other.communicate("\n", 60), ("", ""))  # what holds the lock can commit

    def test_a_store_that_changes_while_it_is_copied_is_copied_again(self):
        copies = []

        def copy(source, target, length):
            target.write(source.read())
            copies.append(target.name)
            if len(copies) <= changes:
                change(store, f"INSERT INTO Users (UsersId) VALUES ({1000 + len(copies)})")

        for changes, status in ((2, 0), (100, 6)):
            copies.clear()
            store = self.make()
            with mock.patch.dict(os.environ), mock.patch("brimlet.snapshot.shutil.copyfileobj", copy), \
                    mock.patch("brimlet.snapshot._PAUSE", 0), mock.patch("brimlet.command.print_json") as printed, \
                    mock.patch("brimlet.command.complain") as complained:
                self.assertEqual(command.run(["--dir", str(store), "call", "getUsers"]), status)
            if status == 0:
                self.assertEqual(sorted(user.id for user in printed.call_args[0][0]), [7, 1001, 1002])
            else:
                self.assertIn("another process keeps changing", complained.call_args[0][0])

    def test_a_copy_that_has_no_room_is_not_begun(self):
        store = self.make()
        with mock.patch("brimlet.snapshot.shutil.disk_usage", return_value=mock.Mock(free=1000)), \
                mock.patch("brimlet.snapshot.shutil.copyfileobj") as copied, \
                mock.patch("brimlet.command.complain") as complained:
            self.assertEqual(command.run(["--dir", str(store), "inspect"]), 1)
        copied.assert_not_called()
        self.assertIn("TMPDIR", complained.call_args[0][0])

    def test_a_check_that_takes_too_long_is_given_up(self):
        store = self.make(changed(
            "WITH RECURSIVE n(i) AS (SELECT 1000 UNION ALL SELECT i + 1 FROM n LIMIT 300000) "
            "INSERT INTO Events (EventsId, EventsData) SELECT i, 'some text' FROM n"))
        for arguments in READING:
            self.leaves_all(store, 1, "the check takes longer than 0.001 seconds; --timeout allows more",
                            "--timeout", "0.001", *arguments)

    @unittest.skipIf(sys.platform == "win32", "there is no SIGTERM")
    def test_an_end_by_a_signal_leaves_no_copy(self):
        store = self.make()
        for name in ("SIGINT", "SIGTERM", "SIGHUP"):
            done = subprocess.run(
                [sys.executable, "-c", "import os, signal; from brimlet import command\n"
                 f"command.inspect = lambda copy, timeout: os.kill(os.getpid(), signal.{name})\ncommand.main()",
                 "--dir", str(store), "inspect"],
                capture_output=True, text=True, timeout=60, env={**os.environ, "TMPDIR": str(self.temporary)})
            self.assertEqual((done.returncode > 128, done.stderr), (True, ""))
            self.assertEqual(list(self.temporary.iterdir()), [])


class WritingTest(HarmlessTest):
    def setUp(self):
        super().setUp()
        self.documents = self.directory / "documents"
        self.documents.mkdir()
        (self.documents / "users.json").write_text(f'{{"D":{{"items":{DOCUMENT}}}}}')
        self.writing = (["load", str(self.documents)], ["call", "addUsers", DOCUMENT], ["call", "launchCache"],
                        ["call", "clearAll"])

    def users(self, store):
        return [user["id"] for user in json.loads(self.leaves_all(store, 0, "", "call", "getUsers"))]

    def test_what_writes_needs_the_option(self):
        for make in (leave, remove):
            store = self.make(make)
            for arguments in self.writing:
                for options in ([], ["--create"], ["--recover"]):
                    self.leaves_all(store, 2, "writes; --write allows it", *arguments, *options)

    def test_a_file_is_made_by_the_option_only(self):
        for arguments in self.writing:
            store = self.make(remove)
            for options in ([], ["--recover"]):
                self.leaves_all(store, 6, "there is no CacheDb", *arguments, "--write", *options)
                self.leaves_all(store, 6, "--create creates one", *arguments, "--write", *options)
            done = self.run_on(store, *arguments, "--write", "--create")
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual([file.name for file in store.iterdir()], ["CacheDb"])

    def test_a_sound_store_is_written(self):
        for name, make in SOUND.items():
            if name in ("with an endless trigger", "with an endless condition",
                        "with an index of an endless expression", "in a folder that cannot be written"):
                continue
            with self.subTest(name):
                store = self.make(make)
                before = self.users(store)
                done = self.run_on(store, "load", "--write", str(self.documents))
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                self.assertEqual(sorted(self.users(store)), sorted([*before, 8]))

    def test_what_is_no_sound_store_is_put_aside_by_the_option_only(self):
        for name, (make, reason) in UNSOUND.items():
            with self.subTest(name):
                store = self.make(make)
                self.leaves_all(store, 6, reason, "load", "--write", "--create", str(self.documents))
                self.leaves_all(store, 6, "--recover renames it and starts a new one", "call", "--write", "addUsers",
                                DOCUMENT)
                self.leaves_all(store, 1, "cannot be loaded", "--library", "/nowhere.so", "load", "--write", "--recover",
                                str(self.documents))
                before = {path.name[len("CacheDb"):]: kind_and_content(path) for path in store.iterdir()}
                done = self.run_on(store, "load", "--write", "--recover", str(self.documents))
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertRegex(done.stderr, r"it is kept as CacheDb\.damaged-\d{8}T\d{6}\.\d{3}Z\n$")
                kept = store / done.stderr.split()[-1]
                after = {path.name[len(kept.name):]: kind_and_content(path) for path in store.glob("*.damaged-*")}
                self.assertEqual(after, before)
                self.assertEqual(self.users(store), [8])
                self.assertEqual(victim(store).read_text(), "a file of somebody's own")

    def test_names_of_what_is_put_aside_do_not_meet(self):
        store = self.make(put(b""))
        with mock.patch("brimlet.kept.datetime") as clock:
            import datetime
            clock.now.return_value = datetime.datetime(2026, 11, 22, 6, 45, 0, 123456, datetime.timezone.utc)
            for content in (b"1", b"2", b"3"):
                (store / "CacheDb").write_bytes(content)
                with mock.patch.dict(os.environ), mock.patch("brimlet.command.complain"):
                    status = command.run(["--dir", str(store), "call", "--write", "--recover", "launchCache"])
                self.assertEqual(status, 0)
        kept = {path.name: path.read_bytes() for path in store.glob("*.damaged-*")}
        self.assertEqual(kept, {f"CacheDb.damaged-20261122T064500.{number}Z": content
                                for number, content in ((123, b"1"), (124, b"2"), (125, b"3"))})

    def test_a_store_that_another_process_has_locked_is_left_to_it(self):
        for statements in (["BEGIN EXCLUSIVE"], ["BEGIN IMMEDIATE", "DELETE FROM Users"]):
            store = self.make()
            other = self.locked(store, *statements)
            self.leaves_all(store, 6, "database is locked; try again when no other process is using it",
                            "call", "--write", "--recover", "addUsers", DOCUMENT)
            self.assertEqual(other.communicate("\n", 60), ("", ""))

    def test_a_store_that_is_damaged_after_the_check_is_kept_and_not_begun_anew(self):
        store = self.make()
        with mock.patch("brimlet.command.require_idle", lambda file: file.write_bytes(b"nonsense" * 1000)):
            done = self.run_on(store, "call", "--write", "--create", "--recover", "addUsers", DOCUMENT)
        self.assertEqual(done.returncode, 6)
        self.assertIn(f"the launch on {store / 'CacheDb'} returned 103", done.stderr)
        self.assertEqual([file.read_bytes() for file in store.glob("*.damaged-*")], [b"nonsense" * 1000])

    def test_free_functions_and_the_list_need_no_file(self):
        store = self.make(fifo)
        self.leaves_all(store, 10, "freeUser: 10", "call", "freeUser")
        self.leaves_all(store, 0, "", "functions")


def kind_and_content(path):
    status = path.lstat()
    return stat.S_IFMT(status.st_mode), path.read_bytes() if stat.S_ISREG(status.st_mode) else None


class TerminalTest(HarmlessTest):
    """Nothing that a file or a name holds reaches a terminal as anything but a character."""

    def shows_no_control(self, status, *arguments, store):
        done = self.run_on(store, *arguments)
        self.assertEqual(done.returncode, status, done.stderr)
        self.assertNotRegex(done.stdout + done.stderr, r"[\x00-\x09\x0b-\x1f\x7f-\x9f\u2028-\u202e\u2066-\u2069]")
        self.assertIn("\\x1b[2J", (done.stdout + done.stderr).replace("\\u001b", "\\x1b"))
        return done.stdout

    def test_controls_are_escaped(self):
        store = self.make()
        with brimlet.Session(store) as session:
            session.addUsers({"id": 7, "name": CONTROLS})
            session.addEvents({"id": 2, "device": 1, "time": 6, "data": CONTROLS})
        change(store, f'CREATE TABLE "{CONTROLS}" (Id)')
        (store / CONTROLS.replace("\n", "")).mkdir()
        documents = store / (CONTROLS + ".json")
        documents.write_text("{}")
        look = {"store": store}
        self.assertIn("name: \\x1b[2J\\x07\\r\\x7f\\x9b31m\\u2028\\u2029\\u202e\\u2066\n",
                      self.shows_no_control(0, "show", "user", "7", **look))
        self.assertEqual(json.loads(self.shows_no_control(0, "call", "getUser", "7", **look))["name"], CONTROLS)
        self.shows_no_control(0, "call", "getUsers", "--table", **look)
        self.shows_no_control(0, "events", "--table", **look)
        self.assertEqual(json.loads(self.shows_no_control(0, "events", **look))[1]["data"], CONTROLS)
        self.shows_no_control(1, "inspect", **look)
        self.assertEqual(json.loads(self.shows_no_control(1, "inspect", "--json", **look))["different"],
                         [f"table {CONTROLS} is unknown"])
        self.shows_no_control(2, "call", "get" + CONTROLS, **look)
        self.shows_no_control(2, "call", "getUser", CONTROLS, **look)
        self.shows_no_control(2, "show", CONTROLS, "7", **look)
        self.shows_no_control(2, "functions", CONTROLS, **look)
        self.shows_no_control(2, "load", "--write", str(store), **look)
        self.shows_no_control(1, "load", "--write", CONTROLS, **look)
        self.shows_no_control(6, "inspect", store=store / CONTROLS)
        self.shows_no_control(1, "call", "--write", "addUsers", "@" + CONTROLS, **look)
        change(store, f"UPDATE Version SET VersionNumber = '{CONTROLS}'")
        self.shows_no_control(6, "show", "user", "7", **look)


if __name__ == "__main__":
    unittest.main()
