"""A forked child does not use the launch of its parent, and exits like any other process."""

import os
import signal
import sqlite3
import sys
import threading
import unittest
from unittest import mock

import brimlet
from brimlet import library
from support import DirectoryTest, is_sanitized


@unittest.skipUnless(hasattr(os, "fork"), "there is no fork here")
class ForkTest(DirectoryTest):
    def child(self, action):
        """What an action returns in a forked child, as text. A child that hangs is killed, and fails the test."""
        read, write = os.pipe()
        process = os.fork()
        if process == 0:
            signal.alarm(60)
            try:
                os.write(write, str(action()).encode())
            except BaseException as error:
                os.write(write, f"{type(error).__name__}: {error}".encode())
            os._exit(0)
        os.close(write)
        with open(read, encoding="utf-8") as pipe:
            text = pipe.read()
        self.assertEqual(os.waitpid(process, 0)[1], 0)
        return text

    def test_a_call_says_that_the_launch_is_the_parents(self):
        session = self.session()
        self.assertEqual(self.child(lambda: session.getUser(7)),
                         "NotLaunched: getUser was called in a forked child process, and the launch is the parent's")
        session.addUsers({"id": 7})
        self.assertEqual(session.getUser(7).id, 7)

    def test_close_leaves_the_parents_launch_alone(self):
        session = self.session()
        self.assertEqual(self.child(session.close), "None")
        self.assertEqual(session.getUsers(), [])

    def test_a_child_cannot_launch(self):
        self.session()
        refusal = "^AlreadyLaunched: .* parent process, and a forked child cannot launch"
        self.assertRegex(self.child(lambda: brimlet.Session(self.directory)), refusal)
        self.assertRegex(self.child(lambda: self.child(lambda: brimlet.Session(self.directory))), refusal)

    def test_a_child_of_a_parent_whose_session_is_over_can_launch(self):
        with self.session() as session:
            session.addUsers({"id": 7})

        def work():
            with brimlet.Session(self.directory) as session:
                session.addUsers({"id": 8})
                return len(session.getUsers())

        self.assertEqual(self.child(work), "2")
        self.assertEqual(len(self.session().getUsers()), 2)

    def test_a_child_that_is_forked_in_the_middle_of_a_call_gets_its_result_and_no_other(self):
        session = self.session()
        session.addUsers({"id": 7})
        export = session._library.exports["getUser"]
        results = []

        def call(*arguments):
            results.append(self.child(lambda: self.finish(session, export, arguments)))
            return export(*arguments)

        with mock.patch.dict(session._library.exports, getUser=call):
            self.assertEqual(session.getUser(7).id, 7)
        self.assertRegex(results[0], "^NotLaunched: getUsers was called in a forked child")
        self.assertEqual(session.getUser(7).id, 7)

    def finish(self, session, export, arguments):
        session.close()
        return session.getUsers()

    def test_a_child_that_is_forked_during_a_launch_has_none(self):
        exports = library.Library.load().exports
        export = exports["getState"]
        before = os.getcwd()
        read, write = os.pipe()
        parent = os.getpid()
        asked = []

        def state():
            asked.append(True)
            if len(asked) == 2:  # the first time is before the launch
                while export() != brimlet.State.RUNNING:
                    pass
                asked.append(os.fork())
            return export()

        with mock.patch.dict(exports, getState=state):
            try:
                session = brimlet.Session(self.directory)
                if os.getpid() != parent:
                    os.write(write, f"{os.getcwd() == before} ".encode())
                    session.getUsers()
            except BaseException as error:
                if os.getpid() != parent:
                    os.write(write, type(error).__name__.encode())
                else:
                    raise
            finally:
                if os.getpid() != parent:
                    os._exit(0)
        self.addCleanup(session.close)
        os.close(write)
        with open(read, encoding="utf-8") as pipe:
            self.assertEqual(pipe.read(), "True NotLaunched")
        os.waitpid(asked[2], 0)
        self.assertEqual(session.getUsers(), [])

    def test_a_child_that_is_forked_while_another_thread_launches_goes_back(self):
        exports = library.Library.load().exports
        export = exports["getState"]
        before = os.getcwd()
        is_inside, may_go_on = threading.Event(), threading.Event()

        def state():
            if os.getcwd() != before:
                is_inside.set()
                may_go_on.wait(60)
            return export()

        with mock.patch.dict(exports, getState=state):
            thread = threading.Thread(target=self.session)
            thread.start()
            is_inside.wait(60)
            try:
                self.assertEqual(self.child(os.getcwd), before)
                self.assertRegex(self.child(lambda: brimlet.Session(self.directory)), "^AlreadyLaunched")
            finally:
                may_go_on.set()
                thread.join()
        self.assertEqual(os.getcwd(), before)

    def test_a_child_does_not_wait_for_the_call_of_another_thread(self):
        session = self.session()
        export = session._library.exports["getUsers"]
        is_inside, may_return = threading.Event(), threading.Event()

        def call(*arguments):
            is_inside.set()
            may_return.wait(60)
            return export(*arguments)

        with mock.patch.dict(session._library.exports, getUsers=call):
            thread = threading.Thread(target=session.getUsers)
            thread.start()
            is_inside.wait(60)
            try:
                self.assertEqual(self.child(session.close), "None")
                self.assertRegex(self.child(session.getSites), "^NotLaunched")
            finally:
                may_return.set()
                thread.join()


@unittest.skipUnless(hasattr(os, "fork"), "there is no fork here")
class EndOfAChildTest(DirectoryTest):
    CHILDREN = (
        "import brimlet, multiprocessing, os, signal, sys, threading, warnings\n"
        "warnings.simplefilter('ignore', DeprecationWarning)  # newer Pythons warn of a fork beside threads\n"
        "session = brimlet.Session()\n"
        "session.addUsers([{'id': id, 'name': 'x' * 100} for id in range(2000)])\n"
        "is_over = False\n"
        "written = 0\n"
        "def work():\n"
        "    global written\n"
        "    while not is_over:\n"
        "        session.addUsers([{'id': id, 'name': 'y' * 100} for id in range(written, written + 200)])\n"
        "        written += 200\n"
        "        session.getUsers()\n"
        "thread = threading.Thread(target=work)\n"
        "thread.start()\n"
        "def in_a_call():\n"
        "    while not session._launch._is_busy: pass\n"
    )

    @unittest.skipIf(is_sanitized(), "a fork beside a thread may leave the sanitizer's allocator locked")
    def test_a_child_ends_normally_while_a_thread_of_the_parent_is_in_a_call(self):
        done = self.run_python(self.CHILDREN + (
            "results = []\n"
            "for _ in range(10):\n"
            "    in_a_call()\n"
            "    process = os.fork()\n"
            "    if process == 0:\n"
            "        signal.alarm(60)\n"
            "        sys.exit(5)\n"
            "    results.append(os.waitpid(process, 0)[1])\n"
            "is_over = True\n"
            "thread.join()\n"
            "print(results == [5 << 8] * 10, written)\n"))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        ended, written = done.stdout.split()
        self.assertEqual(ended, "True")
        connection = sqlite3.connect(self.file)
        self.assertEqual(connection.execute("PRAGMA integrity_check").fetchall(), [("ok",)])
        self.assertEqual(connection.execute("SELECT count(*) FROM Users").fetchone()[0], max(2000, int(written)))
        connection.close()

    @unittest.skipIf(is_sanitized(), "a fork beside a thread may leave the sanitizer's allocator locked")
    def test_a_child_of_multiprocessing_ends_normally(self):
        done = self.run_python(self.CHILDREN + (
            "def child():\n"
            "    signal.alarm(60)\n"
            "    try: session.getUsers()\n"
            "    except brimlet.NotLaunched: sys.exit(7)\n"
            "context = multiprocessing.get_context('fork')\n"
            "codes = []\n"
            "for _ in range(5):\n"
            "    in_a_call()\n"
            "    process = context.Process(target=child)\n"
            "    process.start()\n"
            "    process.join()\n"
            "    codes.append(process.exitcode)\n"
            "is_over = True\n"
            "thread.join()\n"
            "print(codes)\n"))
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "[7, 7, 7, 7, 7]\n", ""))

    def test_a_child_that_drops_the_session_ends_normally(self):
        done = self.run_python(
            "import brimlet, os, signal, sys, warnings\n"
            "warnings.simplefilter('ignore', DeprecationWarning)\n"
            "session = brimlet.Session()\n"
            "process = os.fork()\n"
            "if process == 0:\n"
            "    signal.alarm(60)\n"
            "    del session\n"
            "    sys.exit(5)\n"
            "print(os.waitpid(process, 0)[1] >> 8, session.getUsers())\n")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "5 []\n", ""))


if __name__ == "__main__":
    unittest.main()
