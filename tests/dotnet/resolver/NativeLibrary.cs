using System.Collections.Generic;
using System.Reflection;

// Stands for what .NET has and Mono has not, so that the part of the binding that only .NET compiles is compiled here.
namespace System.Runtime.InteropServices
{
    internal delegate IntPtr DllImportResolver(string name, Assembly assembly, DllImportSearchPath? path);

    internal static class NativeLibrary
    {
        internal static readonly List<string> Asked = new List<string>();
        internal static DllImportResolver Resolver;
        internal static IntPtr Found = (IntPtr)42;

        internal static void SetDllImportResolver(Assembly assembly, DllImportResolver resolver) => Resolver = resolver;

        internal static bool TryLoad(string name, Assembly assembly, DllImportSearchPath? path, out IntPtr handle)
        {
            Asked.Add(name);
            handle = Found;
            return handle != IntPtr.Zero;
        }
    }
}
