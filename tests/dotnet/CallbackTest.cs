using System;
using System.IO;
using System.Runtime.InteropServices;
using System.Threading;
using Brimlet;

// A callback that Qt calls for each logged line, until it is disposed.
internal sealed class Callback : IDisposable
{
    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    private delegate void MessageHandler(int type, IntPtr context, IntPtr message);

    // Qt's qInstallMessageHandler, under its mangled C++ name.
    [DllImport("libQt5Core.so.5",
        EntryPoint = "_Z22qInstallMessageHandlerPFv9QtMsgTypeRK18QMessageLogContextRK7QStringE")]
    private static extern IntPtr install(MessageHandler handler);

    private readonly MessageHandler handler;

    internal Callback(Action action)
    {
        handler = (type, context, message) => action();
        install(handler);
    }

    public void Dispose()
    {
        install(null);
        GC.KeepAlive(handler);
    }
}

// A callback runs in the middle of a call, on its thread, and holds it up.
internal static class CallbackTest
{
    internal static void Run()
    {
        using (var workplace = new Workplace())
        {
            File.WriteAllText(workplace.File("CacheDb"), "no database");
            RefuseNestedUse(workplace.Directory);
            DisposeDuringCall(workplace.Directory);
        }
    }

    // A store without tables, of which every read logs.
    private static Session Open(string directory) => new Session(directory, recover: false);

    private static void RefuseNestedUse(string directory)
    {
        using (var session = Open(directory))
        {
            bool isCalled = false;
            Action callback = () =>
            {
                isCalled = true;
                Check.Throws<InvalidOperationException>("a callback cannot call", () => session.GetUser(7));
                Check.Throws<InvalidOperationException>("nor dispose", session.Dispose);
            };
            using (new Callback(callback))
            {
                Check.Answers("a call that logs is answered", Code.ReadFailed, () => session.GetUsers());
            }
            Check.That("with a callback", isCalled);
            Check.Answers("the session goes on", Code.ReadFailed, () => session.GetUsers());
        }
    }

    private static void DisposeDuringCall(string directory)
    {
        using (var isInCall = new ManualResetEventSlim())
        using (var mayEnd = new ManualResetEventSlim())
        {
            Session session = Open(directory);
            Action callback = () =>
            {
                isInCall.Set();
                mayEnd.Wait();
            };
            Code code = Code.Done;
            var call = new Thread(() =>
            {
                try
                {
                    session.GetUsers();
                }
                catch (BrimletException exception)
                {
                    code = exception.Code;
                }
            });
            var end = new Thread(session.Dispose);
            using (new Callback(callback))
            {
                call.Start();
                isInCall.Wait();
                end.Start();
                while ((end.ThreadState & (ThreadState.WaitSleepJoin | ThreadState.Stopped)) == 0)
                {
                    Thread.Yield();
                }
                Check.Equal("an end waits for the call of another thread", State.Running, session.State);
                mayEnd.Set();
                call.Join();
                end.Join();
            }
            Check.Equal("which is answered", Code.ReadFailed, code);
            Check.Equal("then the session ends", State.None, session.State);
        }
    }

    // Ends the process in the middle of a call.
    internal static void ExitInCallback()
    {
        File.WriteAllText("CacheDb", "no database");
        Session session = Open(".");
        AppDomain.CurrentDomain.ProcessExit += (sender, arguments) =>
            Console.WriteLine("at the end the library is " + session.State);
        bool isExiting = false;
        Action callback = () =>
        {
            if (!isExiting)
            {
                isExiting = true;
                Environment.Exit(0);
            }
        };
        using (new Callback(callback))
        {
            session.GetUsers();
        }
    }
}
