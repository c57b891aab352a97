"""Launch, recovery, order of calls, threads, and the end of a process."""

import gc
import os
import sqlite3
import sys
import threading
import unittest
from pathlib import Path
from unittest import mock

import brimlet
from brimlet import library
from support import DirectoryTest


class LaunchTest(DirectoryTest):
    def test_the_file_is_in_the_directory_and_the_working_directory_stays(self):
        before = os.getcwd()
        self.session()
        self.assertEqual(os.getcwd(), before)
        self.assertTrue(self.file.exists())

    def test_a_missing_directory_changes_nothing(self):
        before = os.getcwd()
        with self.assertRaises(FileNotFoundError):
            brimlet.Session(self.directory / "nowhere")
        self.assertEqual(os.getcwd(), before)
        self.assertTrue(self.session().is_usable)

    @unittest.skipUnless(sys.platform.startswith("linux"), "names are text here")
    def test_a_directory_whose_name_is_not_utf_8(self):
        name = os.path.join(os.fsencode(self.directory), b"caf\xe9")
        os.mkdir(name)
        self.addCleanup(os.chdir, os.getcwd())
        for directory in (name, os.fsdecode(name), Path(os.fsdecode(name))):
            with self.subTest(directory=directory):
                with open(os.path.join(name, b"CacheDb"), "wb") as file:
                    file.write(b"nonsense" * 1000)
                with brimlet.Session(directory) as session:
                    self.assertEqual((session.report.first, session.report.second), (103, 100))
                    session.addUsers({"id": 7})
                self.assertEqual(os.path.dirname(os.fsencode(session.report.kept)), name)
                self.assertEqual(session.report.kept.read_bytes(), b"nonsense" * 1000)
                os.chdir(name)
                with brimlet.Session() as session:
                    self.assertEqual(session.getUser(7).id, 7)
                self.assertEqual(os.getcwdb(), name)

    def test_one_session_at_a_time(self):
        self.session()
        with self.assertRaises(brimlet.AlreadyLaunched):
            brimlet.Session(self.directory)

    def test_a_launch_by_another_part_of_the_process_is_left_alone(self):
        exports = library.Library.load().exports
        with mock.patch.dict(exports, getState=lambda: 2), self.assertRaises(brimlet.AlreadyLaunched):
            brimlet.Session(self.directory)
        self.assertTrue(self.session().is_usable)

    def test_a_session_that_is_dropped_ends(self):
        brimlet.Session(self.directory)
        gc.collect()
        self.assertTrue(self.session().is_usable)

    def test_twenty_sessions_one_after_the_other(self):
        for id in range(1, 21):
            with brimlet.Session(self.directory) as session:
                session.addUsers({"id": id})
                self.assertEqual(len(session.getUsers()), id)

    def test_a_launch_that_takes_too_long_is_ended_by_the_next_session(self):
        before = os.getcwd()
        exports = library.Library.load().exports
        with mock.patch.dict(exports, getState=lambda: 0), self.assertRaises(brimlet.LaunchTimedOut):
            brimlet.Session(self.directory, timeout=0)
        session = self.session()
        self.assertEqual(session.report.first, brimlet.LaunchResult.OPENED)
        self.assertEqual(os.getcwd(), before)

    def test_a_launch_that_returns_early_is_an_error(self):
        before = os.getcwd()
        exports = library.Library.load().exports
        with mock.patch.dict(exports, launchCache=lambda: 0), self.assertRaises(brimlet.LaunchEnded):
            brimlet.Session(self.directory)
        self.assertEqual(os.getcwd(), before)
        self.assertTrue(self.session().is_usable)


class RecoveryTest(DirectoryTest):
    def test_a_file_that_is_no_database_is_removed_with_its_journal(self):
        self.file.write_bytes(b"nonsense" * 1000)
        journal = self.directory / "CacheDb-journal"
        journal.write_bytes(b"nonsense")
        with mock.patch("os.remove", wraps=os.remove) as remove:
            session = self.session(keep_damaged=0)
        # SQLite may have removed the journal by then; removing it again does no harm.
        self.assertEqual([Path(call.args[0]) for call in remove.call_args_list], [self.file, journal])
        self.assertEqual(session.report, brimlet.LaunchReport(brimlet.LaunchResult.REPLACED_VERSION,
                                                              brimlet.LaunchResult.CREATED))
        self.assertEqual(session.report.last, brimlet.LaunchResult.CREATED)
        self.assertFalse(journal.exists())
        session.addUsers({"id": 7})
        self.assertEqual(session.getUser(7).id, 7)

    def test_a_file_that_lacks_a_table(self):
        brimlet.Session(self.directory).close()
        connection = sqlite3.connect(self.file)
        connection.execute("DROP TABLE Users")
        connection.commit()
        connection.close()
        self.assertEqual(self.session().report.first, brimlet.LaunchResult.REPLACED_SCHEMA)

    def test_a_file_that_will_not_open(self):
        self.file.symlink_to("nowhere/CacheDb")
        session = self.session()
        self.assertEqual(session.report, brimlet.LaunchReport(brimlet.LaunchResult.REPLACED_UNREADABLE,
                                                              brimlet.LaunchResult.CREATED))
        self.assertFalse(self.file.is_symlink())

    def test_each_result_that_says_replaced_is_recovered_from(self):
        exports = library.Library.load().exports
        for result in (101, 102, 103):
            results = iter((result, 100))
            with mock.patch.dict(exports, getLaunchCacheResult=lambda: next(results)):
                with brimlet.Session(self.directory) as session:
                    self.assertEqual((session.report.first, session.report.second), (result, 100))

    def test_without_recovery_the_store_cannot_be_used(self):
        self.file.write_bytes(b"nonsense" * 1000)
        session = self.session(recover=False, keep_damaged=0)
        self.assertEqual(session.report, brimlet.LaunchReport(brimlet.LaunchResult.REPLACED_VERSION))
        self.assertFalse(session.is_usable)
        with self.assertRaises(brimlet.ReadFailed):
            session.getUsers()
        with self.assertRaises(brimlet.WriteFailed):
            session.addUsers({"id": 7})


class OrderTest(DirectoryTest):
    def test_a_call_after_the_end_is_an_exception_and_no_fault(self):
        session = self.session()
        get_user = session.getUser
        session.close()
        session.close()
        with self.assertRaises(brimlet.NotLaunched):
            get_user(7)
        with self.assertRaises(brimlet.NotLaunched):
            session.clearAll()
        self.assertEqual(session.state, brimlet.State.NONE)

    def test_a_session_that_has_ended_stays_ended_while_the_next_one_runs(self):
        first = self.session()
        first.close()
        self.session()
        with self.assertRaises(brimlet.NotLaunched):
            first.getUsers()

    def test_an_exception_in_the_block_ends_the_session_and_passes(self):
        with self.assertRaises(KeyError), brimlet.Session(self.directory) as session:
            raise KeyError
        with self.assertRaises(brimlet.NotLaunched):
            session.getUsers()


class ThreadsTest(DirectoryTest):
    def test_calls_of_many_threads_wait_for_each_other(self):
        session = self.session()
        inside = []
        most = []
        export = session._library.exports["addUsers"]

        def counted(*arguments):
            inside.append(1)
            most.append(len(inside))
            code = export(*arguments)
            inside.pop()
            return code

        def work(first):
            for id in range(first, first + 25):
                session.addUsers({"id": id})
                session.getUser(id)

        with mock.patch.dict(session._library.exports, addUsers=counted):
            threads = [threading.Thread(target=work, args=(first,)) for first in range(0, 200, 25)]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
        self.assertEqual(len(session.getUsers()), 200)
        self.assertEqual(max(most), 1)

    def test_an_end_while_other_threads_call_is_an_exception_to_them(self):
        session = self.session()
        session.addUsers([{"id": id} for id in range(200)])
        ended = []

        def work():
            try:
                while True:
                    session.getUsers()
            except brimlet.NotLaunched:
                ended.append(True)

        threads = [threading.Thread(target=work) for _ in range(4)]
        for thread in threads:
            thread.start()
        session.close()
        for thread in threads:
            thread.join()
        self.assertEqual(ended, [True] * 4)


class ProcessTest(DirectoryTest):
    def users(self):
        connection = sqlite3.connect(self.file)
        try:
            return connection.execute("SELECT count(*) FROM Users").fetchone()[0]
        finally:
            connection.close()

    def test_a_process_that_forgets_its_session_ends(self):
        done = self.run_python("import brimlet; session = brimlet.Session(); session.addUsers({'id': 7})")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(self.users(), 1)

    def test_a_process_that_ends_while_a_thread_calls_waits_for_the_call(self):
        done = self.run_python(
            "import brimlet, threading\n"
            "session = brimlet.Session()\n"
            "session.addUsers([{'id': id} for id in range(200)])\n"
            "def work():\n"
            "    try:\n"
            "        while True: session.getUsers()\n"
            "    except brimlet.NotLaunched: pass\n"
            "threading.Thread(target=work, daemon=True).start()\n")
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_a_process_ends_its_sessions_before_its_other_finalizers_are_through(self):
        # tempfile registers a finalizer before the package is imported: at the end of the process it comes later.
        done = self.run_python(
            "import tempfile\n"
            "folder = tempfile.TemporaryDirectory()\n"
            "import brimlet, threading\n"
            "session = brimlet.Session(folder.name)\n"
            "session.addUsers([{'id': id} for id in range(200)])\n"
            "def work():\n"
            "    try:\n"
            "        while True: session.getUsers()\n"
            "    except brimlet.NotLaunched: pass\n"
            "threading.Thread(target=work, daemon=True).start()\n")
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_a_process_that_fails_ends(self):
        done = self.run_python("import brimlet; session = brimlet.Session(); session.getUser(7)")
        self.assertEqual(done.returncode, 1)
        self.assertIn("brimlet.codes.NotFound: getUser: 8, the store holds nothing that fits", done.stderr)

    def test_a_process_whose_launch_took_too_long_ends(self):
        done = self.run_python(
            "import brimlet\n"
            "from brimlet.library import Library\n"
            "from unittest import mock\n"
            "with mock.patch.dict(Library.load().exports, getState=lambda: 0):\n"
            "    try: brimlet.Session(timeout=0)\n"
            "    except brimlet.LaunchTimedOut: print('late')\n")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "late\n", ""))


class LibraryTest(DirectoryTest):
    def test_argument_comes_before_the_environment(self):
        path = os.environ["BRIMLET_LIBRARY"]
        with mock.patch.dict(os.environ, BRIMLET_LIBRARY="/nowhere.so"):
            self.assertTrue(self.session(library=Path(path)).is_usable)

    @unittest.skipUnless(sys.platform.startswith("linux"), "names are text here")
    def test_a_path_of_bytes(self):
        path = os.path.join(os.fsencode(self.directory), b"caf\xe9.so")
        os.symlink(os.fsencode(os.environ["BRIMLET_LIBRARY"]), path)
        self.assertTrue(self.session(library=path).is_usable)

    def test_environment_comes_before_the_system(self):
        with mock.patch.dict(os.environ, BRIMLET_LIBRARY="/nowhere.so"):
            with self.assertRaisesRegex(brimlet.LibraryNotFound, "/nowhere.so"):
                brimlet.Session(self.directory)

    @unittest.skipUnless(sys.platform.startswith("linux"), "the path has another name here")
    def test_the_system_is_asked_last(self):
        (self.directory / "libbrimlet.so.0").symlink_to(os.environ["BRIMLET_LIBRARY"])
        environment = {**os.environ, "LD_LIBRARY_PATH": str(self.directory)}
        del environment["BRIMLET_LIBRARY"]
        with mock.patch.object(os, "environ", environment):
            done = self.run_python("import brimlet; print(brimlet.Session().is_usable)")
        self.assertEqual((done.stdout, done.stderr), ("True\n", ""))

    def test_another_library_is_refused_by_its_first_missing_function(self):
        with self.assertRaisesRegex(brimlet.LibraryNotFound, "has no function launchCache"):
            brimlet.Session(self.directory, library="libc.so.6")


if __name__ == "__main__":
    unittest.main()
