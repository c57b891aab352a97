using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Runtime.InteropServices;
using System.Text.RegularExpressions;
using Brimlet;

// What becomes of a file that a launch replaces. Runs twice: as it is, and where no hard links can be made.
internal static class KeepingTest
{
    private const string damage = "no database";
    private const int nobody = 65534;

    [DllImport("libc")]
    private static extern int setuid(int user);

    [DllImport("libc")]
    private static extern int chmod(string path, int mode);

    [DllImport("libc")]
    private static extern int symlink(string target, string path);

    [DllImport("libc")]
    private static extern int link(string file, string name);

    [DllImport("libc")]
    private static extern int mkfifo(string path, int mode);

    [DllImport("brimlet")]
    private static extern LaunchResult getLaunchCacheResult();

    internal static void Run() => Run(true);

    internal static void RunWithoutLinks() => Run(false);

    private static void Run(bool isLinking)
    {
        Keep(true);
        Keep(false);
        LeaveNoTrace();
        KeepTheJournals();
        KeepTheNewest();
        KeepNothing();
        KeepUnderFreeName();
        SettleForgotten();
        TakeForgottenForDamaged();
        DropRolledBackFile();
        LeaveUnderLongName();
        LeaveSpecialFiles();
        RefuseNegative();
        setuid(nobody); // for good: nothing is closed to the superuser. Others fail here, and stay who they are.
        LaunchInClosedDirectory();
        LaunchInClosingDirectory();
        LaunchUnreadableFile(isLinking);
        LaunchUnreadableJournal(isLinking);
    }

    private static void Keep(bool recover)
    {
        string how = recover ? "with recovery: " : "without recovery: ";
        using (var workplace = new Workplace())
        {
            string file = workplace.File("CacheDb");
            File.WriteAllText(file, damage);
            using (var session = new Session(workplace.Directory, recover: recover))
            {
                string kept = session.Report.Kept;
                Check.That(how + "the kept file is named for its time", kept != null && Regex.IsMatch(kept,
                    "^" + Regex.Escape(file) + @"\.damaged-\d{8}T\d{6}\.\d{3}Z$"), kept);
                Check.Equal(how + "and holds what was replaced", damage, File.ReadAllText(kept));
                Check.SameList(how + "there is nothing else", new[] { "CacheDb", Path.GetFileName(kept) },
                    Names(workplace));
            }
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal(how + "the next session keeps none", null, session.Report.Kept);
                Check.Equal(how + "and leaves the kept one", 1, Damaged(workplace).Length);
            }
        }
    }

    private static void LeaveNoTrace()
    {
        using (var workplace = new Workplace())
        {
            foreach (string how in new[] { "a new file", "a good file" })
            {
                using (var session = new Session(workplace.Directory))
                {
                    Check.Equal(how + " is not kept", null, session.Report.Kept);
                    Check.SameList(how + " is by itself", new[] { "CacheDb" }, Names(workplace));
                    session.AddUsers(RecordsTest.Items("{'id':7}"));
                }
            }
        }
    }

    private static void KeepTheJournals()
    {
        using (var workplace = new Workplace())
        {
            File.WriteAllText(workplace.File("CacheDb"), damage);
            File.WriteAllText(workplace.File("CacheDb-journal"), "the journal");
            File.WriteAllText(workplace.File("CacheDb-wal"), "the log");
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("the file is kept", damage, File.ReadAllText(session.Report.Kept));
                Check.Equal("with its journal", "the journal", File.ReadAllText(session.Report.Kept + "-journal"));
                Check.Equal("and its log", "the log", File.ReadAllText(session.Report.Kept + "-wal"));
            }
        }
    }

    private static void KeepTheNewest()
    {
        string[] foreign =
        {
            "CacheDb.damaged-", "CacheDb.damaged-20200101T000000.000Z.bak", "CacheDb.damaged-20200101T000000.0Z",
            "CacheDb.damaged-20200101T000000.000Z\n", "Other.damaged-20200101T000000.000Z", "CacheDb.before"
        };
        string[] old = Enumerable.Range(1, 4).Select(day => "CacheDb.damaged-2020010" + day + "T000000.000Z").ToArray();
        using (var workplace = new Workplace())
        {
            foreach (string name in foreign.Concat(old).Concat(old.Select(name => name + "-journal"))
                .Concat(old.Select(name => name + "-wal")).Concat(new[] { "CacheDb" }))
            {
                File.WriteAllText(workplace.File(name), damage);
            }
            string kept = KeptName(workplace, 3);
            Check.SameList("three are kept, with their journals", new[] { old[2], old[2] + "-journal",
                old[2] + "-wal", old[3], old[3] + "-journal", old[3] + "-wal", kept }, Damaged(workplace));
            Check.That("other names are let alone", foreign.All(name => File.Exists(workplace.File(name))));

            string future = "CacheDb.damaged-99990101T000000.000Z";
            File.WriteAllText(workplace.File(future), damage);
            File.WriteAllText(workplace.File("CacheDb"), damage);
            kept = KeptName(workplace, 1);
            Check.SameList("one is kept, the one of this launch", new[] { kept }, Damaged(workplace));
        }
    }

    private static void KeepNothing()
    {
        using (var workplace = new Workplace())
        {
            File.WriteAllText(workplace.File("CacheDb"), damage);
            File.WriteAllText(workplace.File("CacheDb.before-launch"), "another file");
            Check.Equal("nothing is kept where 0 are to be", null, KeptName(workplace, 0));
            Check.SameList("and nothing touched", new[] { "CacheDb", "CacheDb.before-launch" }, Names(workplace));
        }
    }

    // The names of the next seconds are taken.
    private static void KeepUnderFreeName()
    {
        const int taken = 10000;
        using (var workplace = new Workplace())
        {
            DateTime now = DateTime.UtcNow;
            string[] names = Enumerable.Range(0, taken).Select(millisecond => "CacheDb.damaged-"
                + now.AddMilliseconds(millisecond).ToString("yyyyMMdd'T'HHmmss.fff'Z'")).ToArray();
            File.WriteAllText(workplace.File("CacheDb"), damage);
            File.WriteAllText(workplace.File("taken"), "");
            Check.That("names are taken", names.All(name => link(workplace.File("taken"), workplace.File(name)) == 0));
            string kept = KeptName(workplace, taken + 1);
            Check.That("the next free name is taken", string.CompareOrdinal(kept, names.Last()) > 0, kept);
            Check.Equal("and no other", taken + 1, Damaged(workplace).Length);
        }
    }

    // What a process leaves that dies in a launch.
    private static void SettleForgotten()
    {
        using (var workplace = new Workplace())
        {
            string file = workplace.File("CacheDb");
            string before = file + ".before-launch";
            new Session(workplace.Directory).Dispose();
            File.Copy(file, before); // of the same length and time, as a link is
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("a forgotten name of a good file is not kept", null, session.Report.Kept);
                Check.SameList("it is dropped", new[] { "CacheDb" }, Names(workplace));
            }

            File.WriteAllText(before, damage);
            File.WriteAllText(before + "-journal", "the journal");
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("beside a forgotten file a good one is opened", LaunchResult.Opened, session.Report.Last);
                Check.Equal("the forgotten one is kept", damage, File.ReadAllText(session.Report.Kept));
                Check.Equal("with its journal", "the journal", File.ReadAllText(session.Report.Kept + "-journal"));
                Check.That("and under no other name", !File.Exists(before) && !File.Exists(before + "-journal"));
            }

            File.WriteAllText(before, "forgotten");
            File.WriteAllText(file, damage);
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("what this launch replaced goes into the report", damage,
                    File.ReadAllText(session.Report.Kept));
                Check.SameList("the forgotten one is kept too", new[] { "forgotten", damage, damage },
                    Damaged(workplace).Where(name => !name.EndsWith("-journal"))
                        .Select(name => File.ReadAllText(workplace.File(name))).OrderBy(text => text));
            }
        }
    }

    // Of the same length or of the same time as the file, and yet another one.
    private static void TakeForgottenForDamaged()
    {
        using (var workplace = new Workplace())
        {
            string file = workplace.File("CacheDb");
            string before = file + ".before-launch";
            var time = new DateTime(2026, 1, 1, 0, 0, 0, DateTimeKind.Utc);
            new Session(workplace.Directory).Dispose();
            foreach (string how in new[] { "length", "time" })
            {
                bool isOfLength = how == "length";
                File.WriteAllBytes(before, new byte[isOfLength ? new FileInfo(file).Length : 1]);
                File.SetLastWriteTimeUtc(before, isOfLength ? time.AddSeconds(1) : time);
                File.SetLastWriteTimeUtc(file, time);
                using (var session = new Session(workplace.Directory))
                {
                    Check.That("a forgotten file of the same " + how + " is kept", session.Report.Kept != null);
                }
            }
        }
    }

    // A journal that cuts the file to the size it had: SQLite plays it when it opens the file.
    private static void DropRolledBackFile()
    {
        using (var workplace = new Workplace())
        {
            string file = workplace.File("CacheDb");
            new Session(workplace.Directory).Dispose();
            byte[] content = File.ReadAllBytes(file);
            const int page = 4096;
            var journal = new byte[512];
            new byte[] { 0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd7 }.CopyTo(journal, 0);
            journal[19] = (byte)(content.Length / page); // pages before
            journal[22] = 2; // a sector of 512 bytes
            journal[26] = page >> 8;
            File.WriteAllBytes(file + "-journal", journal);
            File.WriteAllBytes(file, content.Concat(new byte[page]).ToArray());
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("a file with a journal is opened", LaunchResult.Opened, session.Report.Last);
                Check.Equal("and rolled back", (long)content.Length, new FileInfo(file).Length);
                Check.Equal("it is not kept", null, session.Report.Kept);
                Check.SameList("and no trace is left", new[] { "CacheDb" }, Names(workplace));
            }
        }
    }

    // The longest path that the file can be held under leaves no room for the time.
    private static void LeaveUnderLongName()
    {
        const int longest = 4095;
        using (var workplace = new Workplace())
        {
            string before = "/CacheDb.before-launch";
            string directory = workplace.Directory;
            while (directory.Length + before.Length < longest)
            {
                int room = longest - before.Length - directory.Length - 1;
                directory += "/" + new string('d', room > 250 ? 200 : Math.Max(room, 1));
            }
            Directory.CreateDirectory(directory);
            File.WriteAllText(directory + "/CacheDb", damage);
            using (var session = new Session(directory))
            {
                Check.Equal("under such a path a launch fails", LaunchResult.Failed, session.Report.Last);
                Check.That("the file is gone", !File.Exists(directory + "/CacheDb"));
                Check.Equal("the report tells where it is", directory + before, session.Report.Kept);
                Check.Equal("which is so", damage, File.ReadAllText(session.Report.Kept));
            }
            File.WriteAllText(directory + "/CacheDb", "forgotten is the other");
            Check.Throws<IOException>("what cannot be renamed is not launched over", () => new Session(directory));
            Check.Equal("and stays so", damage, File.ReadAllText(directory + before));
        }
    }

    private static void LeaveSpecialFiles()
    {
        Replace("an empty file", LaunchResult.ReplacedVersion, file => File.WriteAllText(file, ""));
        Replace("a link", LaunchResult.ReplacedVersion, file =>
        {
            File.WriteAllText(file + ".target", damage);
            Check.Equal("a link to a damaged file is made", 0, symlink("CacheDb.target", file));
        });
        Replace("a FIFO", LaunchResult.ReplacedUnreadable, file =>
            Check.Equal("a FIFO is made", 0, mkfifo(file, 384)));
        Replace("a directory", LaunchResult.Failed, file => Directory.CreateDirectory(file));
    }

    private static void Replace(string what, LaunchResult result, Action<string> make)
    {
        using (var workplace = new Workplace())
        {
            make(workplace.File("CacheDb"));
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal(what + " is launched on", result, session.Report.First);
                Check.Equal(what + " has nothing to keep", null, session.Report.Kept);
                Check.That("no name is left of it", Damaged(workplace).Length == 0
                    && !File.Exists(workplace.File("CacheDb.before-launch")));
            }
        }
    }

    private static void RefuseNegative()
    {
        using (var workplace = new Workplace())
        {
            Check.Throws<ArgumentOutOfRangeException>("fewer than none are refused",
                () => new Session(workplace.Directory, keepDamaged: -1));
            new Session(workplace.Directory).Dispose();
            Check.That("which is not in the way of the next session", true);
        }
    }

    private static void LaunchInClosedDirectory()
    {
        using (var workplace = new Workplace())
        {
            File.WriteAllText(workplace.File("CacheDb"), damage);
            Check.Equal("a directory is closed", 0, chmod(workplace.Directory, 365)); // 0555
            using (var session = new Session(workplace.Directory, recover: false))
            {
                Check.Equal("there the library replaces nothing", damage, File.ReadAllText(workplace.File("CacheDb")));
                Check.Equal("so that nothing has to be kept", null, session.Report.Kept);
            }
            Check.Equal("it is open again", 0, chmod(workplace.Directory, 493)); // 0755
            Check.SameList("and as it was", new[] { "CacheDb" }, Names(workplace));
        }
    }

    // The library logs what it finds wrong before it replaces the file, and so the test can close the directory then.
    private static void LaunchInClosingDirectory()
    {
        using (var workplace = new Workplace())
        {
            string before = workplace.File("CacheDb.before-launch");
            File.WriteAllText(workplace.File("CacheDb"), damage);
            Session session;
            using (new Callback(() => chmod(workplace.Directory, 365))) // 0555
            {
                session = new Session(workplace.Directory, recover: false);
            }
            Check.Equal("the launch finds the damage", LaunchResult.ReplacedVersion, session.Report.Last);
            Check.Equal("and replaces nothing", damage, File.ReadAllText(workplace.File("CacheDb")));
            Check.Equal("nothing is kept then", null, session.Report.Kept);
            Check.That("the second name cannot be dropped yet", File.Exists(before));
            Check.Equal("the directory is open again", 0, chmod(workplace.Directory, 493)); // 0755
            session.Dispose();
            Check.SameList("it is dropped in the end", new[] { "CacheDb" }, Names(workplace));
        }
    }

    private static void LaunchUnreadableFile(bool isLinking)
    {
        using (var workplace = new Workplace())
        {
            string file = workplace.File("CacheDb");
            File.WriteAllText(file, damage);
            Check.Equal("a file is closed", 0, chmod(file, 0));
            if (isLinking)
            {
                string kept = KeptName(workplace, 3);
                Check.Equal("its link can be kept", 0, chmod(workplace.File(kept), 384)); // 0600
                Check.Equal("unread", damage, File.ReadAllText(workplace.File(kept)));
                return;
            }
            var failure = Check.Throws<IOException>("a file that cannot be copied is not launched",
                () => new Session(workplace.Directory));
            Check.That("the message names the file", failure.Message.StartsWith(file + " "), failure.Message);
            Check.That("and the cure", failure.Message.Contains("keepDamaged: 0"), failure.Message);
            Check.Equal("nothing is launched", LaunchResult.None, getLaunchCacheResult());
            Check.Equal("the file is open again", 0, chmod(file, 384)); // 0600
            Check.Equal("and as it was", damage, File.ReadAllText(file));
            Check.SameList("by itself", new[] { "CacheDb" }, Names(workplace));
            Check.Equal("the cure works", null, KeptName(workplace, 0));
        }
    }

    private static void LaunchUnreadableJournal(bool isLinking)
    {
        using (var workplace = new Workplace())
        {
            string journal = workplace.File("CacheDb-journal");
            File.WriteAllText(workplace.File("CacheDb"), damage);
            File.WriteAllText(journal, "the journal");
            Check.Equal("a journal is closed", 0, chmod(journal, 0));
            if (isLinking)
            {
                string kept = KeptName(workplace, 3);
                Check.That("its link is kept", File.Exists(workplace.File(kept + "-journal")));
                return;
            }
            Check.Throws<IOException>("a journal that cannot be copied is not launched",
                () => new Session(workplace.Directory));
            Check.SameList("and no trace is left", new[] { "CacheDb", "CacheDb-journal" }, Names(workplace));
        }
    }

    private static string KeptName(Workplace workplace, int count)
    {
        using (var session = new Session(workplace.Directory, keepDamaged: count))
        {
            Check.That("the file was replaced", session.Report.First.IsReplaced(), session.Report.First.ToString());
            return Path.GetFileName(session.Report.Kept);
        }
    }

    private static string[] Damaged(Workplace workplace)
    {
        return Names(workplace).Where(name => Regex.IsMatch(name, @"^CacheDb\.damaged-\d+T\d+\.\d{3}Z(-\w+)?\z"))
            .ToArray();
    }

    private static IEnumerable<string> Names(Workplace workplace)
    {
        return Directory.GetFileSystemEntries(workplace.Directory).Select(Path.GetFileName)
            .OrderBy(name => name, StringComparer.Ordinal);
    }
}
