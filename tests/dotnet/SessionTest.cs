using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Text;
using System.Threading;
using Brimlet;

// The lifecycle of a session: its order, its directory, its lock, and what happens when a client forgets something.
internal static class SessionTest
{
    private const int attempts = 50;
    private const int milliseconds = 120000; // before a process counts as hanging

    [DllImport("libc")]
    private static extern int mkdir(byte[] path, int mode);

    [DllImport("libc")]
    private static extern int rmdir(byte[] path);

    [DllImport("brimlet")]
    private static extern int launchCache();

    [DllImport("brimlet")]
    private static extern void exitCache();

    [DllImport("brimlet")]
    private static extern State getState();

    internal static void Run()
    {
        using (var workplace = new Workplace())
        {
            LiveOnce(workplace.Directory);
            ComeBack(workplace.Directory);
            RefuseDirectories(workplace);
            LeaveForeignLaunchAlone(workplace);
            RunOutOfTime(workplace.Directory);
            UseThreads(workplace.Directory);
            DisposeUnderCalls(workplace.Directory);
            Forget("SessionLeftOpen", workplace.Directory, "at the end the library is None");
            Forget("LaunchLeftAlone", workplace.Directory, "the launch is not finished in time");
            Forget("ExitInCallback", workplace.Directory, "at the end the library is None");
        }
    }

    private static void LiveOnce(string directory)
    {
        string before = Directory.GetCurrentDirectory();
        var session = new Session(directory);
        Check.Equal("a session runs", State.Running, session.State);
        Check.Equal("its launch has a result", LaunchResult.Created, session.LaunchResult);
        Check.Equal("its report has the same", LaunchResult.Created, session.Report.First);
        Check.Equal("and no second launch", null, session.Report.Second);
        Check.That("its store is usable", session.IsUsable);
        Check.That("its file is in its directory", File.Exists(Path.Combine(directory, "CacheDb")));
        Check.Equal("the working directory is what it was", before, Directory.GetCurrentDirectory());
        Check.Throws<InvalidOperationException>("a second one beside it is refused", () => new Session(directory));

        session.AddUsers(RecordsTest.Items("{'id':7,'name':'Anna'}"));
        User user = session.GetUser(7);
        session.Dispose();
        session.Dispose();
        Check.Equal("a disposed session does not run", State.None, session.State);
        Check.Equal("nothing is launched then", LaunchResult.None, session.LaunchResult);
        Check.Equal("a record outlives its session", "Anna", user.Name);
        foreach (MethodInfo method in NamesTest.Methods())
        {
            Check.That(method.Name + " after the end is refused", IsRefused(method, session));
        }
    }

    private static bool IsRefused(MethodInfo method, Session session)
    {
        object[] arguments = method.GetParameters().Select(
            parameter => parameter.ParameterType == typeof(string) ? (object)"x" : 1u).ToArray();
        try
        {
            method.Invoke(session, arguments);
            return false;
        }
        catch (TargetInvocationException exception)
        {
            return exception.InnerException is ObjectDisposedException;
        }
    }

    private static void ComeBack(string directory)
    {
        for (int i = 0; i < 5; ++i)
        {
            using (var session = new Session(directory))
            {
                Check.Equal("a session after the other has its data", "Anna", session.GetUser(7).Name);
            }
        }
    }

    private static void RefuseDirectories(Workplace workplace)
    {
        Check.Throws<DirectoryNotFoundException>("a missing directory is refused",
            () => new Session(workplace.File("missing")));
        Check.Throws<ArgumentNullException>("and no directory", () => new Session(null));
        byte[] path = Encoding.GetEncoding("iso-8859-1").GetBytes(workplace.File("K\u00e4fer") + '\0');
        Check.Equal("a directory is made whose name is not UTF-8", 0, mkdir(path, 511)); // 0777
        string name = Directory.GetDirectories(workplace.Directory).Single();
        Check.Throws<DirectoryNotFoundException>("it is refused too", () => new Session(name));
        Check.Equal("and stays empty", 0, rmdir(path));
        using (var session = new Session(workplace.Directory))
        {
            Check.That("none is in the way of the next session", session.IsUsable);
        }
    }

    // A launch takes a moment, so no time at all is too little, but for a thread that is slow to look.
    private static void RunOutOfTime(string directory)
    {
        string before = Directory.GetCurrentDirectory();
        string name = "brimlet-next-" + Guid.NewGuid().ToString("N");
        string next = Path.Combine(before, name);
        Check.That("a launch without time runs out of it", HasRunOut(directory));
        Directory.CreateDirectory(next);
        using (var session = new Session(name, Timeout.InfiniteTimeSpan))
        {
            Check.Equal("the next session ends that launch and makes its own", LaunchResult.Created,
                session.Report.Last);
            Check.Equal("the working directory is what it was before both", before, Directory.GetCurrentDirectory());
            Check.That("and a relative one counts from there", File.Exists(Path.Combine(next, "CacheDb")));
        }
        Directory.Delete(next, true);
    }

    // Another part of the process has the library.
    private static void LeaveForeignLaunchAlone(Workplace workplace)
    {
        string before = Directory.GetCurrentDirectory();
        Directory.SetCurrentDirectory(workplace.Directory);
        var launch = new Thread(() => launchCache());
        launch.Start();
        while (getState() != State.Running)
        {
            Thread.Yield();
        }
        Check.Throws<InvalidOperationException>("a launch that is none of a session's is not taken over",
            () => new Session(workplace.Directory));
        Check.Equal("but left alone", State.Running, getState());
        Check.That("its file too", !File.Exists(workplace.File("CacheDb.before-launch")));
        exitCache();
        launch.Join();
        Directory.SetCurrentDirectory(before);
    }

    private static bool HasRunOut(string directory)
    {
        for (int i = 0; i < attempts; ++i)
        {
            try
            {
                new Session(directory, TimeSpan.Zero).Dispose();
            }
            catch (TimeoutException)
            {
                return true;
            }
        }
        return false;
    }

    private static void UseThreads(string directory)
    {
        using (var session = new Session(directory))
        {
            int wrong = 0;
            Thread[] threads = Enumerable.Range(100, 4).Select(id => new Thread(() =>
            {
                for (int i = 0; i < 50; ++i)
                {
                    string name = id + "-" + i;
                    session.AddUsers(RecordsTest.Items("{'id':" + id + ",'name':'" + name + "'}"));
                    if (session.GetUser((uint)id).Name != name || session.GetUsers().Count == 0)
                    {
                        Interlocked.Increment(ref wrong);
                    }
                }
            })).ToArray();
            Array.ForEach(threads, thread => thread.Start());
            Array.ForEach(threads, thread => thread.Join());
            Check.Equal("four threads at once get their own answers", 0, wrong);
            Check.Equal("and all of them write", 5, session.GetUsers().Count);
        }
    }

    private static void DisposeUnderCalls(string directory)
    {
        Exception end = null;
        using (var called = new ManualResetEventSlim())
        {
            var session = new Session(directory);
            var thread = new Thread(() =>
            {
                try
                {
                    while (true)
                    {
                        session.GetUsers();
                        called.Set();
                    }
                }
                catch (Exception exception)
                {
                    end = exception;
                }
            });
            thread.Start();
            called.Wait();
            session.Dispose();
            thread.Join();
        }
        Check.That("an end among calls refuses the next one", end is ObjectDisposedException, end?.ToString());
    }

    // Runs this program's other areas, which end without having tidied up.
    private static void Forget(string area, string directory, string line)
    {
        var start = new ProcessStartInfo(Process.GetCurrentProcess().MainModule.FileName,
            "\"" + Assembly.GetExecutingAssembly().Location + "\" " + area + " \"" + Program.Sources + "\"")
        {
            RedirectStandardOutput = true, UseShellExecute = false, WorkingDirectory = directory
        };
        using (Process process = Process.Start(start))
        {
            bool hasExited = process.WaitForExit(milliseconds);
            if (!hasExited)
            {
                process.Kill();
            }
            string output = process.StandardOutput.ReadToEnd(); // so little that the pipe holds it
            Check.That(area + " exits as if nothing were", hasExited && process.ExitCode == 0);
            Check.That(area + " says: " + line, output.Contains(line), output);
        }
    }

    internal static void LeaveOpen()
    {
        var session = new Session();
        Check.That("a session is left open", session.IsUsable);
        AppDomain.CurrentDomain.ProcessExit += (sender, arguments) =>
            Console.WriteLine("at the end the library is " + session.State);
    }

    internal static void LeaveLaunchAlone()
    {
        for (int i = 0; i < attempts && Check.Passed == 0; ++i)
        {
            try
            {
                new Session(".", TimeSpan.Zero).Dispose();
            }
            catch (TimeoutException exception)
            {
                Check.That(exception.Message, true);
            }
        }
    }
}
