using System;
using System.Diagnostics;
using System.IO;
using System.Threading;

namespace Brimlet
{
    // The one launch that a process can have at a time, with its thread and its working directory.
    internal static class Library
    {
        private static int isClaimed;
        private static Thread thread; // of the launch, null where there is none
        private static volatile bool hasEnded;
        private static string before; // the working directory

        static Library()
        {
            AppDomain.CurrentDomain.ProcessExit += (sender, arguments) => EndAtExit();
        }

        internal static void Claim()
        {
            if (Interlocked.Exchange(ref isClaimed, 1) != 0)
            {
                throw AlreadyLaunched();
            }
        }

        internal static void Disclaim() => Volatile.Write(ref isClaimed, 0);

        // Another part of the process may have launched the library.
        internal static void ExpectNone()
        {
            if (Native.getState() != State.None)
            {
                throw AlreadyLaunched();
            }
        }

        internal static LaunchResult Launch(string directory, TimeSpan timeout)
        {
            before = Directory.GetCurrentDirectory();
            Directory.SetCurrentDirectory(directory);
            hasEnded = false;
            var launch = new Thread(Run) { IsBackground = true, Name = "Brimlet" };
            try
            {
                launch.Start();
            }
            catch
            {
                GoBack();
                throw;
            }
            thread = launch;
            WaitUntilRunning(timeout);
            return Native.getLaunchCacheResult();
        }

        internal static void Exit()
        {
            Native.exitCache();
            Join();
        }

        // Ends a launch that took longer than its session waited.
        internal static void EndForgotten(TimeSpan timeout)
        {
            if (thread != null)
            {
                WaitUntilRunning(timeout);
                Exit();
            }
        }

        // At the end of the process a launch that nobody waited for has to be waited for. A session ends its own.
        private static void EndAtExit()
        {
            if (Interlocked.Exchange(ref isClaimed, 1) != 0)
            {
                return;
            }
            try
            {
                EndForgotten(Timeout.InfiniteTimeSpan);
            }
            catch (InvalidOperationException) // it came back by itself
            {
            }
        }

        private static void Run()
        {
            Native.launchCache();
            hasEnded = true;
        }

        // Polls, since the state is the only sign of life. An exit before the event loop runs would be missed.
        private static void WaitUntilRunning(TimeSpan timeout)
        {
            var watch = Stopwatch.StartNew();
            while (Native.getState() != State.Running)
            {
                if (hasEnded)
                {
                    Join();
                    GoBack();
                    throw new InvalidOperationException("the launch came back without having run");
                }
                if (timeout != Timeout.InfiniteTimeSpan && watch.Elapsed >= timeout)
                {
                    throw new TimeoutException("the launch is not finished in time");
                }
                Thread.Sleep(1);
            }
            GoBack();
        }

        private static void Join()
        {
            thread.Join();
            thread = null;
        }

        private static void GoBack()
        {
            try
            {
                Directory.SetCurrentDirectory(before);
            }
            catch (Exception failure) when (failure is IOException || failure is UnauthorizedAccessException)
            {
                // the directory may be gone, and nothing here needs it
            }
        }

        private static Exception AlreadyLaunched()
        {
            return new InvalidOperationException("the library is launched already");
        }
    }
}
