"""The file that a launch replaces is kept, and a launch that replaces nothing leaves no trace."""

import errno
import os
import re
import shutil
import sqlite3
import stat
import unittest
from datetime import datetime, timezone
from pathlib import Path
from unittest import mock

import brimlet
from brimlet import kept, library
from support import DirectoryTest

DAMAGED = b"this is no database" * 100
KEPT = r"CacheDb\.damaged-\d{8}T\d{6}\.\d{3}Z"


class KeptTest(DirectoryTest):
    def damage(self):
        self.file.write_bytes(DAMAGED)

    def launch(self, **options):
        """The report of a finished session."""
        with brimlet.Session(self.directory, **options) as session:
            return session.report

    def names(self):
        return sorted(path.name for path in self.directory.iterdir())

    def kept_names(self):
        return [name for name in self.names() if re.fullmatch(KEPT, name)]

    def no_links(self, number=errno.EOPNOTSUPP):
        return mock.patch("os.link", side_effect=OSError(number, os.strerror(number)))

    def clock(self, *moment):
        """Stops the clock from which kept files get their names."""
        clock = mock.Mock(now=mock.Mock(return_value=datetime(*moment, tzinfo=timezone.utc)))
        return mock.patch.object(kept, "datetime", clock)


class ReplacedTest(KeptTest):
    def test_a_file_that_was_recovered_from_is_kept(self):
        self.damage()
        report = self.launch()
        self.assertEqual((report.first, report.second), (103, 100))
        self.assertEqual(report.kept.parent, self.directory)
        self.assertRegex(report.kept.name, f"^{KEPT}$")
        self.assertEqual(report.kept.read_bytes(), DAMAGED)
        self.assertEqual(self.names(), ["CacheDb", report.kept.name])

    def test_without_recovery_it_is_kept_too(self):
        self.damage()
        report = self.launch(recover=False)
        self.assertEqual((report.first, report.second), (103, None))
        self.assertEqual(report.kept.read_bytes(), DAMAGED)
        self.assertEqual(self.names(), ["CacheDb", report.kept.name])

    def test_a_store_that_lacks_a_column_is_kept_with_its_rows(self):
        with brimlet.Session(self.directory) as session:
            session.addUsers({"id": 7, "name": "Anna"})
        connection = sqlite3.connect(self.file)
        connection.execute("ALTER TABLE Sites RENAME COLUMN SitesName TO SitesTitle")
        connection.close()
        report = self.launch()
        self.assertEqual(report.first, 101)
        connection = sqlite3.connect(report.kept)
        self.assertEqual(connection.execute("SELECT UsersName FROM Users").fetchall(), [("Anna",)])
        connection.close()

    def test_journal_and_log_are_kept_beside_it(self):
        self.damage()
        (self.directory / "CacheDb-journal").write_bytes(b"the journal")
        (self.directory / "CacheDb-wal").write_bytes(b"the log")
        report = self.launch()
        beside = {name[len(report.kept.name):]: (self.directory / name).read_bytes()
                  for name in self.names() if name.startswith(report.kept.name)}
        self.assertEqual(beside, {"": DAMAGED, "-journal": b"the journal", "-wal": b"the log"})
        self.assertFalse([name for name in self.names() if "before-launch" in name])

    def test_what_is_not_a_regular_file_is_left_out(self):
        self.damage()
        (self.directory / "CacheDb-journal").symlink_to("elsewhere")
        report = self.launch()
        self.assertEqual(report.kept.read_bytes(), DAMAGED)
        self.assertFalse(os.path.lexists(f"{report.kept}-journal"))

    def test_a_link_is_not_followed(self):
        elsewhere = self.directory / "elsewhere"
        elsewhere.write_bytes(DAMAGED)
        self.file.symlink_to(elsewhere)
        self.assertIsNone(self.launch().kept)
        self.assertEqual(elsewhere.read_bytes(), DAMAGED)
        self.assertEqual(self.names(), ["CacheDb", "elsewhere"])

    def test_0_keeps_nothing_and_touches_nothing(self):
        self.damage()
        others = ["CacheDb.before-launch", "CacheDb.damaged-20260101T000000.000Z"]
        for name in others:
            (self.directory / name).write_bytes(b"kept before")
        self.assertIsNone(self.launch(keep_damaged=0).kept)
        self.assertEqual(self.names(), ["CacheDb", *others])

    def test_less_than_0_is_refused(self):
        with self.assertRaisesRegex(ValueError, "keep_damaged"):
            self.launch(keep_damaged=-1)

    def test_a_file_that_is_not_replaced_stays_where_it_is(self):
        self.damage()
        exports = library.Library.load().exports
        real = exports["launchCache"]

        def launch_elsewhere():
            os.chdir("elsewhere")
            return real()

        # The result of the library if it cannot remove the file.
        (self.directory / "elsewhere").mkdir()
        with mock.patch.dict(exports, launchCache=launch_elsewhere, getLaunchCacheResult=lambda: 103):
            self.assertIsNone(self.launch(recover=False).kept)
        self.assertEqual(self.names(), ["CacheDb", "elsewhere"])
        self.assertEqual(self.file.read_bytes(), DAMAGED)


class NamesTest(KeptTest):
    def test_the_name_says_when_to_the_millisecond(self):
        self.damage()
        with self.clock(2026, 11, 22, 6, 45, 0, 123999):
            self.assertEqual(self.launch().kept.name, "CacheDb.damaged-20261122T064500.123Z")

    def test_a_name_that_is_taken_is_left_for_the_next_millisecond(self):
        for name in ("CacheDb.damaged-20261231T235959.998Z", "CacheDb.damaged-20261231T235959.999Z-wal"):
            (self.directory / name).write_bytes(b"another")
        self.damage()
        with self.clock(2026, 12, 31, 23, 59, 59, 998000):
            self.assertEqual(self.launch().kept.name, "CacheDb.damaged-20270101T000000.000Z")
        self.assertEqual((self.directory / "CacheDb.damaged-20261231T235959.998Z").read_bytes(), b"another")

    def test_the_newest_three_are_kept(self):
        for day in (1, 2, 3, 4, 5):
            self.damage()
            (self.directory / "CacheDb-journal").write_bytes(b"the journal")
            with self.clock(2026, 1, day):
                self.launch()
        self.assertEqual(self.names(), ["CacheDb"] + [
            f"CacheDb.damaged-2026010{day}T000000.000Z{suffix}" for day in (3, 4, 5) for suffix in ("", "-journal")])

    def test_the_number_is_an_option(self):
        for day in (1, 2):
            self.damage()
            with self.clock(2026, 1, day):
                self.launch(keep_damaged=1)
        self.assertEqual(self.kept_names(), ["CacheDb.damaged-20260102T000000.000Z"])

    def test_a_clock_that_was_set_back_does_not_remove_what_was_just_kept(self):
        later = ["CacheDb.damaged-20300101T000000.00" + number + "Z" for number in "012"]
        for name in later:
            (self.directory / name).write_bytes(b"later")
        self.damage()
        report = self.launch()
        self.assertEqual(report.kept.read_bytes(), DAMAGED)
        self.assertEqual(self.kept_names(), [report.kept.name, *later[1:]])

    def test_other_names_are_neither_counted_nor_removed(self):
        others = sorted([
            "CacheDb.damaged", "CacheDb.damaged-", "CacheDb.damaged-20200101T000000Z",
            "CacheDb.damaged-20200101T000000.000", "CacheDb.damaged-20200101T000000.000Z.bak",
            "CacheDb.damaged-20200101T000000.000Z-journal", "CacheDb.damaged-\u0662\u0660200101T000000.000Z",
            "OtherDb.damaged-20200101T000000.000Z", "xCacheDb.damaged-20200101T000000.000Z",
        ])
        for name in others:
            (self.directory / name).write_bytes(b"not ours")
        for day in (1, 2):
            self.damage()
            with self.clock(2026, 1, day):
                self.launch(keep_damaged=1)
        self.assertEqual([name for name in self.names() if name in others], others)
        self.assertIn("CacheDb.damaged-20260102T000000.000Z", self.names())
        self.assertNotIn("CacheDb.damaged-20260101T000000.000Z", self.names())

    def test_the_empty_file_of_an_unusable_launch_pushes_nothing_out(self):
        self.damage()
        first = self.launch(recover=False).kept
        for _ in range(4):
            self.assertEqual(self.launch(recover=False), brimlet.LaunchReport(brimlet.LaunchResult.REPLACED_VERSION))
        self.assertEqual(self.names(), ["CacheDb", first.name])

    def test_an_empty_file_whose_journal_holds_something_is_kept(self):
        self.file.write_bytes(b"")
        (self.directory / "CacheDb-journal").write_bytes(b"the journal")
        report = self.launch()
        self.assertEqual(Path(f"{report.kept}-journal").read_bytes(), b"the journal")


class NoTraceTest(KeptTest):
    def trace(self):
        return {name: ((self.directory / name).read_bytes(), (self.directory / name).stat().st_mtime_ns,
                       (self.directory / name).stat().st_ino) for name in self.names()}

    def test_a_good_file_is_unchanged(self):
        self.launch()
        before = self.trace()
        self.assertEqual(list(before), ["CacheDb"])
        self.assertEqual(self.launch(), brimlet.LaunchReport(brimlet.LaunchResult.OPENED))
        self.assertEqual(self.trace(), before)
        self.assertEqual(self.file.stat().st_nlink, 1)

    def test_a_good_file_is_unchanged_without_hard_links(self):
        self.launch()
        before = self.trace()
        with self.no_links():
            self.assertEqual(self.launch(), brimlet.LaunchReport(brimlet.LaunchResult.OPENED))
        self.assertEqual(self.trace(), before)

    def test_a_journal_that_is_rolled_back_leaves_no_name(self):
        self.roll_back()

    def test_a_rolled_back_journal_leaves_no_name_without_hard_links(self):
        with self.no_links():
            self.roll_back()

    def roll_back(self):
        with brimlet.Session(self.directory) as session:
            session.addUsers({"id": 7, "name": "Anna"})
        connection = sqlite3.connect(self.file, isolation_level=None)
        connection.execute("PRAGMA cache_size = 1")
        connection.execute("BEGIN")
        connection.execute("UPDATE Users SET UsersName = 'Ben'")
        for number in range(100):
            connection.execute("INSERT INTO Users (UsersId, UsersName) VALUES (?, ?)", (100 + number, "x" * 1000))
        for name in ("CacheDb", "CacheDb-journal"):  # what a crash leaves
            shutil.copy(self.directory / name, self.directory / (name + ".crash"))
        connection.close()
        for name in ("CacheDb", "CacheDb-journal"):
            os.replace(self.directory / (name + ".crash"), self.directory / name)
        with brimlet.Session(self.directory) as session:
            self.assertEqual(session.report, brimlet.LaunchReport(brimlet.LaunchResult.OPENED))
            self.assertEqual([user.name for user in session.getUsers()], ["Anna"])
        self.assertEqual(self.names(), ["CacheDb"])

    def test_a_new_file_is_alone(self):
        self.assertEqual(self.launch(), brimlet.LaunchReport(brimlet.LaunchResult.CREATED))
        self.assertEqual(self.names(), ["CacheDb"])

    def test_a_link_that_cannot_be_removed_yet_is_removed_at_the_end(self):
        self.launch()
        with mock.patch("os.remove", side_effect=PermissionError(errno.EACCES, "in use")):
            session = self.session()
        self.assertEqual(self.names(), ["CacheDb", "CacheDb.before-launch"])
        session.close()
        self.assertEqual(self.names(), ["CacheDb"])

    def test_a_directory_that_cannot_be_entered_gets_nothing(self):
        self.damage()
        with mock.patch("os.chdir", side_effect=PermissionError(errno.EACCES, "no")):
            self.assertRaises(PermissionError, self.launch)
        self.assertEqual(self.names(), ["CacheDb"])


class StaleTest(KeptTest):
    """Files of a process that died during a launch."""

    def test_a_second_name_of_the_file_is_removed(self):
        self.launch()
        os.link(self.file, self.directory / "CacheDb.before-launch")
        (self.directory / "CacheDb.before-launch-journal").write_bytes(b"was rolled back")
        self.assertEqual(self.launch(), brimlet.LaunchReport(brimlet.LaunchResult.OPENED))
        self.assertEqual(self.names(), ["CacheDb"])

    def test_another_file_is_kept(self):
        self.launch()
        (self.directory / "CacheDb.before-launch").write_bytes(DAMAGED)
        (self.directory / "CacheDb.before-launch-wal").write_bytes(b"the log")
        self.assertEqual(self.launch(), brimlet.LaunchReport(brimlet.LaunchResult.OPENED))
        name, = self.kept_names()
        self.assertEqual(self.names(), ["CacheDb", name, name + "-wal"])
        self.assertEqual((self.directory / name).read_bytes(), DAMAGED)

    def test_it_is_kept_if_the_file_is_missing(self):
        (self.directory / "CacheDb.before-launch").write_bytes(DAMAGED)
        self.assertEqual(self.launch(), brimlet.LaunchReport(brimlet.LaunchResult.CREATED))
        name, = self.kept_names()
        self.assertEqual((self.directory / name).read_bytes(), DAMAGED)

    def test_it_is_not_removed_if_it_cannot_be_renamed(self):
        stale = self.directory / "CacheDb.before-launch"
        for number in (errno.EACCES, errno.EIO):
            self.damage()
            stale.write_bytes(b"the only copy")
            with self.subTest(number), mock.patch("os.rename", side_effect=OSError(number, os.strerror(number))):
                if number == errno.EACCES:
                    self.launch()
                else:
                    self.assertRaises(brimlet.BackupFailed, self.launch)
            self.assertEqual(stale.read_bytes(), b"the only copy")

    def test_a_directory_of_that_name_is_not_touched(self):
        self.damage()
        (self.directory / "CacheDb.before-launch").mkdir()
        with self.assertRaisesRegex(brimlet.BackupFailed, "CacheDb.before-launch"):
            self.launch()
        self.assertEqual(self.names(), ["CacheDb", "CacheDb.before-launch"])
        self.assertEqual(self.file.read_bytes(), DAMAGED)

    def test_a_launch_that_takes_too_long_is_settled_by_the_next_session(self):
        self.damage()
        exports = library.Library.load().exports
        with mock.patch.dict(exports, getState=lambda: 0), self.assertRaises(brimlet.LaunchTimedOut):
            self.launch(timeout=0)
        self.assertEqual((self.directory / "CacheDb.before-launch").read_bytes(), DAMAGED)
        self.launch()
        name, = self.kept_names()
        self.assertEqual(self.names(), ["CacheDb", name])
        self.assertEqual((self.directory / name).read_bytes(), DAMAGED)

    def test_a_launch_that_takes_too_long_is_settled_by_the_end_of_the_process(self):
        self.damage()
        done = self.run_python(
            "import brimlet\n"
            "from brimlet.library import Library\n"
            "from unittest import mock\n"
            "with mock.patch.dict(Library.load().exports, getState=lambda: 0):\n"
            "    try: brimlet.Session(timeout=0)\n"
            "    except brimlet.LaunchTimedOut: print('late')\n")
        self.assertEqual((done.returncode, done.stdout), (0, "late\n"))
        name, = self.kept_names()
        self.assertEqual(self.names(), ["CacheDb", name])
        self.assertEqual((self.directory / name).read_bytes(), DAMAGED)

    def test_the_next_session_cleans_up_after_a_launch_that_returns_early(self):
        self.damage()
        exports = library.Library.load().exports
        with mock.patch.dict(exports, launchCache=self.file.unlink), self.assertRaises(brimlet.LaunchEnded):
            self.launch()
        self.launch()
        name, = self.kept_names()
        self.assertEqual((self.directory / name).read_bytes(), DAMAGED)


class CopyTest(KeptTest):
    """File systems without hard links."""

    def test_a_replaced_file_is_kept_as_a_copy(self):
        for number in (errno.EOPNOTSUPP, errno.EPERM, errno.EMLINK):
            with self.subTest(number), self.no_links(number):
                self.damage()
                (self.directory / "CacheDb-journal").write_bytes(b"the journal")
                report = self.launch()
                self.assertEqual(report.kept.read_bytes(), DAMAGED)
                self.assertEqual(Path(f"{report.kept}-journal").read_bytes(), b"the journal")
                self.assertFalse([name for name in self.names() if "before-launch" in name])

    def test_the_copy_is_as_private_as_the_file(self):
        self.damage()
        self.file.chmod(0o600)
        with self.no_links():
            kept_file = self.launch().kept
        self.assertEqual(stat.S_IMODE(kept_file.stat().st_mode), 0o600)

    def test_a_file_that_is_not_replaced_stays_where_it_is(self):
        self.damage()
        backup = None
        with self.no_links():
            backup = kept.Backup(str(self.file), 3)
        self.assertEqual(self.names(), ["CacheDb", "CacheDb.before-launch"])
        self.assertIsNone(backup.settle(is_usable=False))
        self.assertEqual(self.names(), ["CacheDb"])

    def test_a_full_disk_stops_before_the_launch(self):
        self.damage()
        (self.directory / "CacheDb-wal").write_bytes(b"the log")
        copy = shutil.copyfileobj

        def fill(original, target):
            if target.name.endswith("-wal"):
                target.write(b"the")
                raise OSError(errno.ENOSPC, os.strerror(errno.ENOSPC))
            copy(original, target)

        exports = library.Library.load().exports
        with self.no_links(), mock.patch("shutil.copyfileobj", fill), \
                mock.patch.dict(exports, launchCache=lambda: self.fail("launched")):
            with self.assertRaisesRegex(brimlet.BackupFailed, "CacheDb-wal.*No space left.*keep_damaged=0") as caught:
                self.launch()
        self.assertIn(str(self.file), str(caught.exception))
        self.assertEqual(self.names(), ["CacheDb", "CacheDb-wal"])
        self.assertEqual(self.file.read_bytes(), DAMAGED)
        with self.no_links():
            self.assertTrue(self.launch(keep_damaged=0).last.is_usable)


@unittest.skipUnless(hasattr(os, "setresuid"), "rights are others here")
class RightsTest(KeptTest):
    def as_nobody(self):
        """Runs without permission for the directory. The superuser has every permission, so it runs as another user."""
        library.Library.load()
        if os.geteuid() == 0:
            os.setresuid(65534, 65534, 0)  # Qt ends a process whose real user is another one
            self.addCleanup(os.setresuid, 0, 0, 0)

    def test_in_a_directory_without_write_permission_a_launch_keeps_nothing(self):
        self.damage()
        self.file.chmod(0o644)
        self.directory.chmod(0o555)
        self.addCleanup(self.directory.chmod, 0o700)
        self.as_nobody()
        report = self.launch(recover=False)
        self.assertFalse(report.last.is_usable)
        self.assertIsNone(report.kept)
        with self.assertRaises(PermissionError):
            self.launch()
        self.assertEqual(self.names(), ["CacheDb"])
        self.assertEqual(self.file.read_bytes(), DAMAGED)

    def test_on_a_read_only_file_system_a_launch_keeps_nothing(self):
        self.launch()
        refused = OSError(errno.EROFS, os.strerror(errno.EROFS))
        with self.no_links(errno.EROFS), mock.patch("os.open", side_effect=refused):
            report = self.launch()
        self.assertEqual(report, brimlet.LaunchReport(brimlet.LaunchResult.OPENED))
        self.assertEqual(self.names(), ["CacheDb"])

    def test_a_file_that_cannot_be_read_stops_before_the_launch(self):
        self.damage()
        self.file.chmod(0o000)
        self.directory.chmod(0o777)
        self.as_nobody()
        if os.geteuid() != self.file.stat().st_uid:
            with self.no_links(errno.EPERM), self.assertRaisesRegex(brimlet.BackupFailed, "Permission denied"):
                self.launch()
            self.assertEqual(self.names(), ["CacheDb"])


if __name__ == "__main__":
    unittest.main()
