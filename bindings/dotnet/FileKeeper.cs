using System;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Runtime.InteropServices;
using System.Text.RegularExpressions;

namespace Brimlet
{
    // Keeps a file that a launch replaces. During the launch CacheDb has a second name, CacheDb.before-launch. Under it
    // the file outlives its removal, and is renamed to CacheDb.damaged- with the time. The newest few of these stay.
    internal sealed class FileKeeper
    {
        // What SQLite may have left beside the file, then the file. Whatever removes or renames them does so in this
        // order, so that the next session can finish what was cut short.
        private static readonly string[] suffixes = { "-journal", "-wal", "" };

        private readonly string file;
        private readonly string before;
        private readonly int count;
        private bool isHeld;

        internal FileKeeper(string directory, int count)
        {
            file = Path.Combine(directory, "CacheDb");
            before = file + ".before-launch";
            this.count = count;
        }

        // Where the file is that was kept, or null.
        internal string Kept { get; private set; }

        // Before the launch.
        internal void Hold()
        {
            if (count == 0)
            {
                return;
            }
            try
            {
                SettleForgotten();
                isHeld = isHeld || TryHold("");
                if (isHeld)
                {
                    TryHold("-journal");
                    TryHold("-wal");
                }
            }
            catch (Exception failure) when (IsOfFiles(failure))
            {
                Drop();
                throw new IOException(file + " cannot be kept before its launch: " + failure.Message
                    + " Remove the cause, or launch with keepDamaged: 0, which keeps nothing.", failure);
            }
        }

        // After the launch.
        internal void Settle(bool isUsable)
        {
            if (!isHeld || isUsable || IsUntouched())
            {
                Drop();
                return;
            }
            isHeld = false;
            try
            {
                Keep();
            }
            catch (Exception failure) when (IsOfFiles(failure))
            {
                Kept = File.Exists(before) ? before : Kept; // what cannot be renamed is left to the next session
            }
        }

        // Windows removes no name of an open file. What is left over goes at the end of the session.
        internal void Drop()
        {
            isHeld = isHeld && !TryRemove(before);
        }

        // What is left of a process that died in a launch, or of a launch that took too long.
        private void SettleForgotten()
        {
            if (IsUntouched())
            {
                isHeld = !TryRemove(before);
            }
            else if (File.Exists(before))
            {
                Keep();
            }
        }

        // Not what is empty, a FIFO for instance, and no symbolic link: a launch replaces the link and not its target.
        private static bool IsWorthKeeping(string name)
        {
            var info = new FileInfo(name);
            return info.Exists && (info.Attributes & FileAttributes.ReparsePoint) == 0 && info.Length > 0;
        }

        // Whether both names are of one file. .NET does not tell; but another file has another length or was written at
        // another time. Neither is opened: to close it would take away the locks that SQLite has on it in this process.
        private bool IsUntouched()
        {
            var now = new FileInfo(file);
            var then = new FileInfo(before);
            return now.Exists && then.Exists && now.Length == then.Length
                && now.LastWriteTimeUtc == then.LastWriteTimeUtc;
        }

        // Gives a file a second name, or makes a copy where the file system has no hard links. False where nothing
        // can be created in the directory: then the library cannot replace the file either.
        private bool TryHold(string suffix)
        {
            if (!IsWorthKeeping(file + suffix))
            {
                return false;
            }
            if (HardLink.TryCreate(file + suffix, before + suffix, out bool isReadOnly))
            {
                return true;
            }
            try
            {
                new FileStream(before + suffix, FileMode.CreateNew).Dispose();
            }
            catch (Exception failure) when (isReadOnly || failure is UnauthorizedAccessException)
            {
                return false;
            }
            try
            {
                File.Copy(file + suffix, before + suffix, true);
                return true;
            }
            catch
            {
                File.Delete(before + suffix);
                throw;
            }
        }

        private void Keep()
        {
            string name = FreeName();
            foreach (string suffix in suffixes.Where(suffix => File.Exists(before + suffix)))
            {
                File.Move(before + suffix, name + suffix);
            }
            Kept = name;
            foreach (string old in Directory.GetFiles(Path.GetDirectoryName(file)).Where(IsDamaged)
                .Where(old => old != name).OrderByDescending(old => old, StringComparer.Ordinal).Skip(count - 1))
            {
                TryRemove(old);
            }
        }

        private string FreeName()
        {
            for (DateTime time = DateTime.UtcNow;; time = time.AddMilliseconds(1))
            {
                string name = file + time.ToString("'.damaged-'yyyyMMdd'T'HHmmss.fff'Z'", CultureInfo.InvariantCulture);
                if (!suffixes.Any(suffix => File.Exists(name + suffix)))
                {
                    return name;
                }
            }
        }

        private static bool IsDamaged(string name)
        {
            return Regex.IsMatch(Path.GetFileName(name), @"\ACacheDb\.damaged-[0-9]{8}T[0-9]{6}\.[0-9]{3}Z\z");
        }

        private static bool TryRemove(string name)
        {
            try
            {
                Array.ForEach(suffixes, suffix => File.Delete(name + suffix));
                return true;
            }
            catch (Exception failure) when (IsOfFiles(failure))
            {
                return false;
            }
        }

        private static bool IsOfFiles(Exception failure)
        {
            return failure is IOException || failure is UnauthorizedAccessException;
        }
    }

    // A second name for a file, which .NET has no function for.
    internal static class HardLink
    {
        private const int readOnlyUnix = 30; // EROFS
        private const int readOnlyWindows = 19; // ERROR_WRITE_PROTECT

        internal static bool TryCreate(string file, string name, out bool isReadOnly)
        {
            bool isWindows = RuntimeInformation.IsOSPlatform(OSPlatform.Windows);
            bool isCreated = isWindows ? CreateHardLinkW(name, file, IntPtr.Zero) : link(file, name) == 0;
            isReadOnly = !isCreated && Marshal.GetLastWin32Error() == (isWindows ? readOnlyWindows : readOnlyUnix);
            return isCreated;
        }

        [DllImport("libc", SetLastError = true)]
        private static extern int link(string file, string name);

        [DllImport("kernel32", CharSet = CharSet.Unicode, SetLastError = true)]
        private static extern bool CreateHardLinkW(string name, string file, IntPtr security);
    }
}
