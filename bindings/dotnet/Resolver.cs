#if NET5_0_OR_GREATER
using System;
using System.Reflection;
using System.Runtime.InteropServices;
#endif

namespace Brimlet
{
    // How the library is found.
    internal static partial class Native
    {
        // Mono maps it to the platform's name of the library by Brimlet.dll.config.
        private const string library = "brimlet";

#if NET5_0_OR_GREATER
        static Native() => NativeLibrary.SetDllImportResolver(typeof(Native).Assembly, Resolve);

        // .NET by itself knows no names with a version, and a machine that only runs clients has no other.
        private static IntPtr Resolve(string name, Assembly assembly, DllImportSearchPath? path)
        {
            if (name != library)
            {
                return IntPtr.Zero;
            }
            string file = RuntimeInformation.IsOSPlatform(OSPlatform.Linux) ? "libbrimlet.so.0"
                : RuntimeInformation.IsOSPlatform(OSPlatform.OSX) ? "libbrimlet.0.dylib" : library;
            NativeLibrary.TryLoad(file, assembly, path, out IntPtr found);
            return found; // where it is none, .NET's own search goes on
        }
#endif
    }
}
