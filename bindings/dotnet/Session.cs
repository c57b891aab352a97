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

    /// <summary>The name and the address of a site.</summary>
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

    /// <summary>The library, from its launch to its exit. One at a time in a process; several threads may use it at
    /// once, its calls wait for each other.</summary>
    /// <remarks>
    /// <para>Every function of brimlet.h that needs a launched library is a method of the same name with a capital. If
    /// the store holds nothing that fits, a read of one record returns null, and a list is empty. Every other result
    /// code but Done is a BrimletException, and a call after Dispose an ObjectDisposedException.</para>
    /// <para>The texts named json are JSON objects whose member "D" is the payload. A batch is
    /// {"D":{"items":[{...},{...}]}}, a document of one record {"D":{...}}, an id-only document {"D":{"op_id":7}} with
    /// the keys that the method names. The properties of the records name the other keys. A flag is 1 or 0; true is
    /// stored as 0. Adding replaces a stored record as a whole, updating keeps what the document leaves out.</para>
    /// <para>The library keeps its file in the working directory at launch, so a session makes its directory the
    /// working directory of the whole process while it launches, and goes back as soon as the library runs. Other
    /// threads should not depend on the working directory meanwhile.</para>
    /// </remarks>
    public sealed unsafe partial class Session : IDisposable
    {
        private static readonly TimeSpan defaultTimeout = TimeSpan.FromSeconds(10);

        private readonly object gate = new object();
        private readonly FileKeeper keeper;
        private bool isDisposed;

        /// <summary>Launches the library on a thread of its own and waits until it runs.</summary>
        /// <remarks>A file that fails its checks is replaced at launch by one that cannot be used. So a session
        /// recovers unless it is told not to: it exits, removes that file and its journal, and launches again. Both
        /// results stand in <see cref="Report"/>. What was replaced is kept in the directory as CacheDb.damaged- with
        /// the time, and with the -journal and -wal that it had.</remarks>
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

        /// <summary>The state of the library, at any time.</summary>
        public State State => Native.getState();

        /// <summary>The result of the launch, at any time.</summary>
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

        private delegate Code BlockOut(ref IntPtr block);
        private delegate Code BlocksOut(ref IntPtr first, ref IntPtr second);
        private delegate Code ArrayOut(ref IntPtr records, ref uint count);

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

        // A record that has to come back.
        private T Exchange<T>(Kind<T> kind, BlockOut function, [CallerMemberName] string call = null)
        {
            using (var handle = new RecordHandle(kind.Free))
            {
                Expect(Take(handle, function), call);
                return kind.Read(handle.Block);
            }
        }

        private T Get<T>(Kind<T> kind, BlockOut function, [CallerMemberName] string call = null) where T : class
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

        private string Text(BlockOut function, [CallerMemberName] string call = null)
        {
            using (var text = new TextHandle())
            {
                Expect(Take(text, function), call);
                return Blocks.Text((char*)text.Block);
            }
        }

        private SiteLabel Label(BlocksOut function, [CallerMemberName] string call = null)
        {
            using (var name = new TextHandle())
            using (var address = new TextHandle())
            {
                Code code = Take(name, (ref IntPtr nameBlock) =>
                {
                    IntPtr addressBlock = IntPtr.Zero;
                    Code answer = function(ref nameBlock, ref addressBlock);
                    address.Take(addressBlock);
                    return answer;
                });
                return IsFound(code, call)
                    ? new SiteLabel(Blocks.Text((char*)name.Block), Blocks.Text((char*)address.Block))
                    : null;
            }
        }

        private Code Take(BlockHandle handle, BlockOut function)
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
