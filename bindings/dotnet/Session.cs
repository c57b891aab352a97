using System;
using System.Collections.Generic;
using System.IO;
using System.Runtime.CompilerServices;
using System.Threading;

namespace Brimlet
{
    /// <summary>How the launches of a session went.</summary>
    public sealed class LaunchReport
    {
        internal LaunchReport(LaunchResult first, LaunchResult? second, string kept)
        {
            First = first;
            Second = second;
            Kept = kept;
        }

        /// <summary>The first launch.</summary>
        public LaunchResult First { get; }

        /// <summary>The second launch, where recovery took one.</summary>
        public LaunchResult? Second { get; }

        /// <summary>The launch that the session runs on.</summary>
        public LaunchResult Last => Second ?? First;

        /// <summary>Where the replaced file is now, or null where none was kept. It may come from an earlier launch
        /// that was cut short.</summary>
        public string Kept { get; }
    }

    /// <summary>What getSiteNameAndAddress gives.</summary>
    public sealed class SiteLabel
    {
        internal SiteLabel(string name, string address)
        {
            Name = name;
            Address = address;
        }

        /// <summary>The name, or null where the site has none.</summary>
        public string Name { get; }

        /// <summary>The address, or null where the site has none.</summary>
        public string Address { get; }
    }

    /// <summary>
    /// The library, from its launch to its exit. One at a time in a process; several threads may use it at once, its
    /// calls wait for each other.
    ///
    /// Every function of brimlet.h that needs a launched library is a method of the same name with a capital. What it
    /// does, and the codes that it answers, stands in brimlet.h. A read of one record gives null, and a list is empty,
    /// where the store holds nothing that fits. Every other code but Done is a BrimletException, and a call after
    /// Dispose an ObjectDisposedException.
    ///
    /// The library keeps its file in the working directory at launch, so a session makes its directory the working
    /// directory of the whole process while it launches, and goes back as soon as the library runs. Other threads
    /// should not depend on the working directory meanwhile.
    /// </summary>
    public sealed unsafe partial class Session : IDisposable
    {
        private static readonly TimeSpan defaultTimeout = TimeSpan.FromSeconds(10);

        private readonly object gate = new object();
        private readonly FileKeeper keeper;
        private bool isDisposed;

        /// <summary>
        /// Launches the library on a thread of its own and waits until it runs.
        ///
        /// A file that fails its checks is replaced at launch by one that cannot be used. So a session recovers unless
        /// it is told not to: it exits, removes that file and its journal, and launches again. Both results stand in
        /// Report. What was replaced is kept in the directory as CacheDb.damaged- with the time, and with the -journal
        /// and -wal that it had.
        /// </summary>
        /// <param name="directory">Where the file is. It has to exist.</param>
        /// <param name="timeout">How long each launch may take: 10 seconds where nothing is said, without end for
        /// Timeout.InfiniteTimeSpan.</param>
        /// <param name="recover">Whether to launch a second time, without the file, where the first replaced it.
        /// </param>
        /// <param name="keepDamaged">How many replaced files to keep: the newest ones, or none for 0.</param>
        /// <exception cref="ArgumentOutOfRangeException">keepDamaged is negative.</exception>
        /// <exception cref="InvalidOperationException">Another session lives, another part of the process has launched
        /// the library, or the launch came back by itself.</exception>
        /// <exception cref="TimeoutException">A launch takes too long. It goes on behind the scenes, and the working
        /// directory stays where it is until the next session, or the end of the process, has waited for it and ended
        /// it.</exception>
        /// <exception cref="IOException">The directory cannot be entered, or its file not be kept or removed. A file
        /// that cannot be kept is not launched.</exception>
        public Session(string directory = ".", TimeSpan? timeout = null, bool recover = true, int keepDamaged = 3)
        {
            if (keepDamaged < 0)
            {
                throw new ArgumentOutOfRangeException(nameof(keepDamaged));
            }
            TimeSpan patience = timeout ?? defaultTimeout;
            Library.Claim();
            try
            {
                Library.EndForgotten(patience); // it may hold the working directory
                Library.ExpectNone();
                string path = Path.GetFullPath(directory);
                keeper = new FileKeeper(path, keepDamaged);
                Report = Launch(path, patience, recover);
            }
            catch
            {
                Library.Disclaim();
                throw;
            }
            AppDomain.CurrentDomain.ProcessExit += DisposeAtExit;
        }

        /// <summary>How the launches went.</summary>
        public LaunchReport Report { get; }

        /// <summary>Whether the store can be read and written.</summary>
        public bool IsUsable => Report.Last.IsUsable();

        /// <summary>What getState answers; it may be asked at any time.</summary>
        public State State => Native.getState();

        /// <summary>What getLaunchCacheResult answers; it may be asked at any time.</summary>
        public LaunchResult LaunchResult => Native.getLaunchCacheResult();

        /// <summary>Exits, after a call that another thread is in, and waits for the launch thread. A session that
        /// nobody disposes of is so at the end of the process.</summary>
        /// <exception cref="InvalidOperationException">A callback disposes of the session whose call it interrupts.
        /// </exception>
        public void Dispose()
        {
            ExpectNoCall();
            End();
        }

        private void End()
        {
            lock (gate)
            {
                if (!isDisposed)
                {
                    isDisposed = true;
                    AppDomain.CurrentDomain.ProcessExit -= DisposeAtExit;
                    Library.Exit();
                    keeper.Drop();
                    Library.Disclaim();
                }
            }
        }

        private LaunchReport Launch(string directory, TimeSpan timeout, bool recover)
        {
            keeper.Hold();
            LaunchResult first = Library.Launch(directory, timeout);
            bool isRecovering = recover && first.IsReplaced();
            if (isRecovering)
            {
                Library.Exit();
                File.Delete(Path.Combine(directory, "CacheDb"));
                File.Delete(Path.Combine(directory, "CacheDb-journal"));
            }
            keeper.Settle(first.IsUsable());
            LaunchResult? second = isRecovering ? Library.Launch(directory, timeout) : (LaunchResult?)null;
            return new LaunchReport(first, second, keeper.Kept);
        }

        // Also from a callback, since no thread goes back into the call that it interrupts.
        private void DisposeAtExit(object sender, EventArgs arguments) => End();

        // ---- Shapes of the calls ----

        private delegate Code TextIn(char* text, uint length);
        private delegate Code RecordOut(ref IntPtr record);
        private delegate Code RecordById(ref IntPtr record, uint id);
        private delegate Code RecordForText(ref IntPtr record, char* json, uint length);
        private delegate Code ArrayOut(ref IntPtr records, ref uint count);
        private delegate Code ArrayForField(ref IntPtr records, ref uint count, char* key, uint keyLength, char* value,
            uint valueLength);

        // The lock lets its own thread in again, and so a callback that the client has given to Qt or SQLite. The
        // library must not be entered twice.
        private void ExpectNoCall()
        {
            if (Monitor.IsEntered(gate))
            {
                throw new InvalidOperationException("a callback cannot use the session whose call it interrupts");
            }
        }

        // The one place where the library is called while it runs.
        private Code Call(Func<Code> function)
        {
            ExpectNoCall();
            lock (gate)
            {
                if (isDisposed)
                {
                    throw new ObjectDisposedException(nameof(Session));
                }
                return function();
            }
        }

        private static void Expect(Code code, string call)
        {
            if (code != Code.Done)
            {
                throw new BrimletException(call, code);
            }
        }

        // Whether there is something to read.
        private static bool IsFound(Code code, string call)
        {
            if (code == Code.NotFound)
            {
                return false;
            }
            Expect(code, call);
            return true;
        }

        private void Run(Func<Code> function, [CallerMemberName] string call = null) => Expect(Call(function), call);

        private void Send(TextIn function, string text, [CallerMemberName] string call = null)
        {
            using (var pinned = new PinnedText(text))
            {
                Run(() => function(pinned.Units, pinned.Length), call);
            }
        }

        // A record that has to come back.
        private T Exchange<T>(Kind<T> kind, RecordForText function, string json,
            [CallerMemberName] string call = null)
        {
            using (var pinned = new PinnedText(json))
            using (var handle = new RecordHandle(kind.Free))
            {
                Expect(Take(handle, (ref IntPtr record) => function(ref record, pinned.Units, pinned.Length)), call);
                return kind.Read(handle.Block);
            }
        }

        private T Get<T>(Kind<T> kind, RecordById function, uint id, [CallerMemberName] string call = null)
            where T : class
        {
            return Get(kind, (ref IntPtr record) => function(ref record, id), call);
        }

        private T Get<T>(Kind<T> kind, RecordOut function, [CallerMemberName] string call = null) where T : class
        {
            using (var handle = new RecordHandle(kind.Free))
            {
                return IsFound(Take(handle, function), call) ? kind.Read(handle.Block) : null;
            }
        }

        private IReadOnlyList<T> List<T>(Kind<T> kind, ArrayOut function, [CallerMemberName] string call = null)
        {
            using (var handle = new ArrayHandle(kind.FreeAll))
            {
                Code code = Call(() =>
                {
                    IntPtr records = IntPtr.Zero;
                    uint count = 0;
                    Code answer = function(ref records, ref count);
                    handle.Take(records, count);
                    return answer;
                });
                return IsFound(code, call) ? Blocks.List(kind, (void*)handle.Block, handle.Count) : Array.Empty<T>();
            }
        }

        private IReadOnlyList<T> Find<T>(Kind<T> kind, ArrayForField function, string key, string value,
            [CallerMemberName] string call = null)
        {
            using (var pinnedKey = new PinnedText(key))
            using (var pinnedValue = new PinnedText(value))
            {
                return List(kind, (ref IntPtr records, ref uint count) => function(ref records, ref count,
                    pinnedKey.Units, pinnedKey.Length, pinnedValue.Units, pinnedValue.Length), call);
            }
        }

        private Code Take(BlockHandle handle, RecordOut function)
        {
            return Call(() =>
            {
                IntPtr block = IntPtr.Zero;
                Code answer = function(ref block);
                handle.Take(block);
                return answer;
            });
        }
    }
}
