using System;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using Brimlet;

// The binding as .NET compiles it: it asks for the library by its versioned name, before the first call.
internal static class Program
{
    private static int Main()
    {
        Assembly assembly = typeof(Session).Assembly;
        Native.getState();
        Expect(NativeLibrary.Resolver != null, "the resolver is set before the first call");
        Expect(NativeLibrary.Resolver("brimlet", assembly, null) == NativeLibrary.Found, "the library is resolved");
        Expect(NativeLibrary.Asked.SequenceEqual(new[] { "libbrimlet.so.0" }), "by its versioned name alone");
        Expect(NativeLibrary.Resolver("other", assembly, null) == IntPtr.Zero, "another library is left to .NET");
        Expect(NativeLibrary.Asked.Count == 1, "and not asked for");
        NativeLibrary.Found = IntPtr.Zero;
        Expect(NativeLibrary.Resolver("brimlet", assembly, null) == IntPtr.Zero, "what is not found is left to .NET");
        return 0;
    }

    private static void Expect(bool holds, string what)
    {
        if (!holds)
        {
            throw new InvalidOperationException("failed: " + what);
        }
    }
}
