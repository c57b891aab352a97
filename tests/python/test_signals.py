"""A signal handler or a finalizer in the middle of a launch, a call or an exit: it never waits for its own thread, and
interrupting does no harm."""

import gc
import os
import signal
import sys
import threading
import unittest
from collections import Counter
from contextlib import suppress
from unittest import mock

import brimlet
from brimlet import library
from support import DirectoryTest


class Interrupt(Exception):
    """What a handler raises."""


def interrupt(*_):
    raise Interrupt


class InterruptedTest(DirectoryTest):
    def during(self, name, action, after=False):
        """Runs an action in the middle of an exported function, before its work or after."""
        exports = library.Library.load().exports
        export = exports[name]

        def call(*arguments):
            if not after:
                action()
            result = export(*arguments)
            if after:
                action()
            return result

        return mock.patch.dict(exports, {name: call})

    def in_a_thread(self, action):
        """The result of an action on another thread, which would wait for a lock that this one has kept."""
        results = []
        thread = threading.Thread(target=lambda: results.append(action()), daemon=True)
        thread.start()
        thread.join(60)
        self.assertTrue(results, "the thread waits for ever")
        return results[0]


@unittest.skipUnless(hasattr(signal, "SIGUSR1"), "there are no such signals here")
class SignalTest(InterruptedTest):
    def on_signal(self, handler):
        self.addCleanup(signal.signal, signal.SIGUSR1, signal.signal(signal.SIGUSR1, handler))

    def signalled(self, name, after=False):
        return self.during(name, lambda: signal.raise_signal(signal.SIGUSR1), after)

    def test_a_call_in_a_call_is_an_exception_that_says_why(self):
        session = self.session()
        session.addUsers([{"id": 7}, {"id": 8}])
        caught = []

        def handler(*_):
            with self.assertRaises(brimlet.CallInProgress) as error:
                session.getUser(8)
            caught.append(str(error.exception))

        self.on_signal(handler)
        with self.signalled("getUser"):
            self.assertEqual(session.getUser(7).id, 7)
        self.assertRegex(caught[0], "getUser was called in the middle of another call .* signal handler")
        self.assertTrue(issubclass(brimlet.CallInProgress, brimlet.SessionError))
        self.assertEqual(session.getUser(8).id, 8)
        self.assertEqual(self.in_a_thread(lambda: session.getUser(8).id), 8)

    def test_close_in_a_call_ends_the_session_with_the_call(self):
        session = self.session()
        session.addUsers({"id": 7})
        states = []

        def handler(*_):
            session.close()
            states.append(session.state)
            with self.assertRaises(brimlet.NotLaunched):
                session.getUser(7)

        self.on_signal(handler)
        with self.signalled("getUser"):
            self.assertEqual(session.getUser(7).id, 7)
        self.assertEqual(states, [brimlet.State.RUNNING])
        self.assertEqual(session.state, brimlet.State.NONE)
        with self.assertRaises(brimlet.NotLaunched):
            session.getUser(7)
        self.assertEqual(self.session().getUser(7).id, 7)

    def test_close_and_exit_in_a_handler_end_the_session_and_the_process(self):
        done = self.run_python(
            "import brimlet, signal, sys\n"
            "session = brimlet.Session()\n"
            "exports = session._library.exports\n"
            "export = exports['addUsers']\n"
            "def add(*arguments):\n"
            "    signal.raise_signal(signal.SIGTERM)\n"
            "    return export(*arguments)\n"
            "exports['addUsers'] = add\n"
            "def leave(*_):\n"
            "    session.close()\n"
            "    sys.exit(3)\n"
            "signal.signal(signal.SIGTERM, leave)\n"
            "try: session.addUsers({'id': 7})\n"
            "finally: print(int(session.state))\n")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (3, "0\n", ""))

    def test_a_handler_that_raises_as_a_call_returns_loses_no_block_and_no_lock(self):
        session = self.session()
        session.addUsers([{"id": 7}, {"id": 8}])
        session.addSites({"id": 1, "name": "Harbour"})
        self.on_signal(interrupt)
        lib = session._library
        released = Counter()

        def counted(key, release):
            def call(*arguments):
                released[key] += 1
                return release(*arguments)
            return call

        releases = {key: counted(key[0].__name__, release) for key, release in lib.releases.items()}
        with mock.patch.object(lib, "releases", releases), \
                mock.patch.object(lib, "release_text", counted("text", lib.release_text)):
            for name, arguments in ("getUser", (7,)), ("getUsers", ()), ("getSiteNameAndAddress", (1,)):
                with self.signalled(name, after=True), self.assertRaises(Interrupt):
                    session.call(name, *arguments)
        self.assertEqual(released, {"User": 2, "text": 2})
        self.assertEqual(self.in_a_thread(lambda: len(session.getUsers())), 2)

    def test_a_handler_that_raises_during_the_exit_leaves_the_library_to_the_next_session(self):
        for after in (False, True):
            with self.subTest(after=after):
                self.on_signal(interrupt)
                session = brimlet.Session(self.directory)
                with self.signalled("exitCache", after), self.assertRaises(Interrupt):
                    session.close()
                session.close()
                with self.assertRaises(brimlet.NotLaunched):
                    session.getUsers()
                with brimlet.Session(self.directory) as session:
                    self.assertEqual(session.getUsers(), [])

    def test_close_during_the_exit_returns_at_once(self):
        session = self.session()
        self.on_signal(lambda *_: session.close())
        with self.signalled("exitCache", after=True):
            session.close()
        self.assertEqual(session.state, brimlet.State.NONE)
        self.assertTrue(self.session().is_usable)

    def test_a_handler_that_raises_during_a_launch_leaves_it_to_the_next_session(self):
        before = os.getcwd()
        self.file.write_bytes(b"nonsense")
        self.on_signal(interrupt)
        with self.signalled("launchCache"):  # not on the main thread, so the handler comes where that thread waits
            with self.assertRaises(Interrupt):
                brimlet.Session(self.directory)
        session = self.session()
        self.assertTrue(session.is_usable)
        self.assertEqual(os.getcwd(), before)
        kept = list(self.directory.glob("CacheDb.damaged-*Z"))
        self.assertIn(b"nonsense", [file.read_bytes() for file in kept])
        self.assertEqual(list(self.directory.glob("*before-launch*")), [])

    def test_a_handler_that_raises_during_a_recovery_leaves_it_to_the_next_session(self):
        for name in ("getLaunchCacheResult", "exitCache"):
            for after in (False, True):
                with self.subTest(name=name, after=after):
                    self.file.write_bytes(b"nonsense")
                    self.on_signal(interrupt)
                    with self.signalled(name, after), self.assertRaises(Interrupt):
                        brimlet.Session(self.directory, keep_damaged=100)
                    with brimlet.Session(self.directory) as session:
                        self.assertTrue(session.is_usable)
                    self.assertTrue(any(file.read_bytes() == b"nonsense"
                                        for file in self.directory.glob("CacheDb.damaged-*Z")))
                    for file in self.directory.glob("CacheDb.*"):
                        file.unlink()

    def test_a_session_in_a_handler_during_a_launch_is_an_exception(self):
        caught = []

        def handler(*_):
            with self.assertRaises(brimlet.AlreadyLaunched) as error:
                brimlet.Session(self.directory)
            caught.append(error.exception)

        self.on_signal(handler)
        with self.signalled("launchCache"):
            self.assertTrue(self.session().is_usable)
        self.assertEqual(len(caught), 1)

    @unittest.skipIf(sys.version_info < (3, 10), "a handler may raise between a lock and its block here")
    def test_signals_at_any_moment(self):
        session = self.session()
        session.addUsers([{"id": id} for id in range(20)])
        seen = Counter()

        package = os.path.dirname(brimlet.__file__)

        def handler(_, frame):
            signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGUSR1])
            try:
                session.getUser(7)
                seen["served"] += 1
            except brimlet.CallInProgress:
                seen["refused"] += 1
            finally:
                signal.pthread_sigmask(signal.SIG_UNBLOCK, [signal.SIGUSR1])
            if sum(seen.values()) % 2 and frame.f_code.co_filename.startswith(package):
                raise Interrupt

        self.on_signal(handler)
        main = threading.main_thread().ident
        is_over = threading.Event()

        def send():
            while not is_over.wait(0.0005):
                signal.pthread_kill(main, signal.SIGUSR1)

        thread = threading.Thread(target=send)
        thread.start()
        try:
            while sum(seen.values()) < 400:
                with suppress(Interrupt):
                    session.getUsers()
        finally:
            is_over.set()
            thread.join()
        self.assertEqual(self.in_a_thread(lambda: len(session.getUsers())), 20)
        self.assertGreater(seen["refused"], 0)


class FinalizerTest(InterruptedTest):
    def test_a_call_of_a_finalizer_in_a_call_is_an_exception(self):
        session = self.session()
        caught = []

        class Circle:
            def __init__(self):
                self.myself = self

            def __del__(self):
                try:
                    session.getUsers()
                except brimlet.CallInProgress as error:
                    caught.append(error)

        def collect():
            Circle()
            gc.collect()

        with self.during("getUsers", collect):
            self.assertEqual(session.getUsers(), [])
        self.assertEqual(len(caught), 1)

    def test_the_finalizer_of_a_session_in_its_call_ends_it_with_the_call(self):
        session = self.session()
        with self.during("getUsers", session._launch.end):
            self.assertEqual(session.getUsers(), [])
        self.assertEqual(session.state, brimlet.State.NONE)
        self.assertTrue(self.session().is_usable)

    def test_a_session_that_is_dropped_in_a_circle_ends_when_it_is_collected(self):
        class Circle:
            def __init__(self, directory):
                self.session = brimlet.Session(directory)
                self.myself = self

        Circle(self.directory)
        gc.collect()
        self.assertTrue(self.session().is_usable)


if __name__ == "__main__":
    unittest.main()
