using System;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;
using Brimlet;

// Files that fail their checks at launch, and the way back to a store that can be used.
internal static class RecoveryTest
{
    [DllImport("libc", SetLastError = true)]
    private static extern int symlink(string target, string path);

    internal static void Run()
    {
        Recover(LaunchResult.ReplacedVersion, file => File.WriteAllText(file, "no database"));
        Recover(LaunchResult.ReplacedSchema, WriteFileWithoutColumn);
        Recover(LaunchResult.ReplacedUnreadable, file =>
            Check.Equal("a link into nowhere is made", 0, symlink("missing/CacheDb", file)));
        DoWithout();
        FailForGood();
    }

    private static void Recover(LaunchResult result, Action<string> spoil)
    {
        using (var workplace = new Workplace())
        {
            spoil(workplace.File("CacheDb"));
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("a spoilt file is replaced", result, session.Report.First);
                Check.Equal(result + ": a second launch makes a new one", LaunchResult.Created, session.Report.Second);
                Check.Equal(result + ": which is what the session runs on", LaunchResult.Created, session.Report.Last);
                Check.That(result + ": its store is usable", session.IsUsable);
                session.AddUsers(RecordsTest.Items("{'id':7}"));
                Check.Equal(result + ": and takes a user", 7u, session.GetUser(7)?.Id);
            }
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal(result + ": the next session opens it", LaunchResult.Opened, session.Report.First);
                Check.Equal(result + ": and needs no second launch", null, session.Report.Second);
            }
        }
    }

    // A column of another name than the library asks for.
    private static void WriteFileWithoutColumn(string file)
    {
        new Session(Path.GetDirectoryName(file)).Dispose();
        Encoding bytes = Encoding.GetEncoding("iso-8859-1");
        File.WriteAllText(file, File.ReadAllText(file, bytes).Replace("LocalesIso", "LocalesOsi"), bytes);
    }

    private static void DoWithout()
    {
        using (var workplace = new Workplace())
        {
            File.WriteAllText(workplace.File("CacheDb"), "no database");
            using (var session = new Session(workplace.Directory, recover: false))
            {
                Check.Equal("without recovery the file is replaced", LaunchResult.ReplacedVersion,
                    session.Report.Last);
                Check.Equal("and launched once", null, session.Report.Second);
                Check.That("its store is not usable", !session.IsUsable);
                Check.Answers("a read answers so", Code.ReadFailed, () => session.GetUsers());
                Check.Answers("and a write", Code.WriteFailed,
                    () => session.AddUsers(RecordsTest.Items("{'id':7}")));
            }
            // A journal that cannot be opened would be in the way of every write.
            Check.Equal("a journal is left over", 0, symlink("missing/journal", workplace.File("CacheDb-journal")));
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("a later session finds it so", LaunchResult.ReplacedVersion, session.Report.First);
                Check.Equal("and recovers", LaunchResult.Created, session.Report.Last);
                session.AddUsers(RecordsTest.Items("{'id':7}"));
                Check.Equal("without the journal", 7u, session.GetUser(7)?.Id);
            }
        }
    }

    private static void FailForGood()
    {
        using (var workplace = new Workplace())
        {
            Directory.CreateDirectory(workplace.File("CacheDb"));
            using (var session = new Session(workplace.Directory))
            {
                Check.Equal("a directory of the file's name fails", LaunchResult.Failed, session.Report.First);
                Check.Equal("which no second launch could mend", null, session.Report.Second);
                Check.That("the store is not usable then", !session.IsUsable);
            }
        }
    }
}
