using System;
using System.Collections.Generic;
using System.IO;

// usage: BrimletTests AREA SOURCES
// Runs the checks of one area; SOURCES is the top folder of the library's sources.
internal static class Program
{
    private static readonly Dictionary<string, Action> areas = new Dictionary<string, Action>
    {
        { "Layout", LayoutTest.Run },
        { "Names", NamesTest.Run },
        { "Comments", CommentsTest.Run },
        { "Story", StoryTest.Run },
        { "Records", RecordsTest.Run },
        { "Errors", ErrorsTest.Run },
        { "Memory", MemoryTest.Run },
        { "Session", SessionTest.Run },
        { "SessionLeftOpen", SessionTest.LeaveOpen },
        { "LaunchLeftAlone", SessionTest.LeaveLaunchAlone },
        { "Recovery", RecoveryTest.Run },
        { "Callback", CallbackTest.Run },
        { "ExitInCallback", CallbackTest.ExitInCallback },
        { "Keeping", KeepingTest.Run },
        { "KeepingWithoutLinks", KeepingTest.RunWithoutLinks }
    };

    internal static string Sources { get; private set; }

    private static int Main(string[] arguments)
    {
        if (arguments.Length != 2 || !areas.ContainsKey(arguments[0]))
        {
            Console.Error.WriteLine("usage: BrimletTests " + string.Join("|", areas.Keys) + " SOURCES");
            return 2;
        }
        Sources = Path.GetFullPath(arguments[1]);
        areas[arguments[0]]();
        Console.WriteLine(Check.Passed + " passed, " + Check.Failed + " failed");
        return Check.Failed == 0 && Check.Passed > 0 ? 0 : 1;
    }
}

// A fresh directory for the library, removed in the end.
internal sealed class Workplace : IDisposable
{
    internal string Directory { get; } = Path.Combine(Path.GetTempPath(), "brimlet-" + Guid.NewGuid().ToString("N"));

    internal Workplace()
    {
        System.IO.Directory.CreateDirectory(Directory);
    }

    internal string File(string name) => Path.Combine(Directory, name);

    public void Dispose() => System.IO.Directory.Delete(Directory, true);
}
