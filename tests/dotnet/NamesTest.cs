using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Text.RegularExpressions;
using Brimlet;

// Functions, methods, codes and properties against the C headers, so that nothing new there is forgotten here.
internal static class NamesTest
{
    private static readonly Assembly assembly = typeof(Session).Assembly;

    internal static void Run()
    {
        MethodInfo[] functions = assembly.GetType("Brimlet.Native")
            .GetMethods(BindingFlags.Static | BindingFlags.NonPublic | BindingFlags.DeclaredOnly)
            .OrderBy(function => function.MetadataToken).ToArray();
        Check.SameList("the functions are those of brimlet.h", Headers.Functions(), functions.Select(Signature));
        Check.That("each is imported from the library under its own name", functions.All(IsImported));
        Check.SameList("a session has a method for each", Headers.Methods(), Methods().Select(Call));
        Check.SameList("which a test calls", Methods().Select(method => method.Name),
            Methods().Select(method => method.Name).Where(Calls().Contains));
        foreach (Type record in LayoutTest.Structs())
        {
            Check.SameList("the properties are the fields of " + record.Name, Properties(record),
                assembly.GetType("Brimlet." + record.Name.Substring(4)).GetProperties()
                    .OrderBy(property => property.MetadataToken).Select(property => property.Name));
        }
        CheckCodes<Code>("BrimletResult", "BRIMLET_");
        CheckCodes<LaunchResult>("BrimletLaunchResult", "BRIMLET_LAUNCH_");
        CheckCodes<State>("BrimletState", "BRIMLET_STATE_");
        Check.Equal("the package's version is the library's",
            Regex.Match(Headers.Read("include/brimlet/brimlet.h"), @"#define BRIMLET_VERSION ""([\d.]+)""").Groups[1].Value,
            Regex.Match(Headers.Read("bindings/dotnet/Brimlet.csproj"), "<Version>(.*)</Version>").Groups[1].Value);
    }

    // The methods that call the library, in the order of their declaration.
    internal static IEnumerable<MethodInfo> Methods()
    {
        return typeof(Session).GetMethods(BindingFlags.Instance | BindingFlags.Public | BindingFlags.DeclaredOnly)
            .Where(method => !method.IsSpecialName && method.Name != "Dispose")
            .OrderBy(method => method.MetadataToken);
    }

    private static string Signature(MethodInfo function)
    {
        return function.Name + "(" + string.Join(", ", function.GetParameters().Select(
            parameter => parameter.ParameterType.Name + " " + parameter.Name)) + ")";
    }

    private static bool IsImported(MethodInfo function)
    {
        var import = function.GetCustomAttribute<DllImportAttribute>();
        return import != null && import.Value == "brimlet" && import.EntryPoint == function.Name
            && import.CallingConvention == CallingConvention.Cdecl;
    }

    private static string Call(MethodInfo method)
    {
        return method.Name + "(" + string.Join(", ", method.GetParameters().Select(parameter => parameter.Name)) + ")";
    }

    // The methods that the tests' own sources call.
    private static HashSet<string> Calls()
    {
        IEnumerable<string> sources = Directory.GetFiles(Path.Combine(Program.Sources, "tests/dotnet"), "*.cs")
            .Select(File.ReadAllText);
        return new HashSet<string>(sources.SelectMany(source => Regex.Matches(source, @"session\.(\w+)")
            .Cast<Match>()).Select(call => call.Groups[1].Value));
    }

    // What a record shows of its struct: all but the counts of its arrays.
    private static IEnumerable<string> Properties(Type record)
    {
        return LayoutTest.Fields(record).Where(field => !field.Name.EndsWith("Count"))
            .Select(field => char.ToUpperInvariant(field.Name[0]) + field.Name.Substring(1));
    }

    private static void CheckCodes<T>(string enumeration, string prefix)
    {
        Check.SameList("the values are those of " + enumeration, Headers.Codes(enumeration, prefix),
            Enum.GetValues(typeof(T)).Cast<T>().Select(
                value => Convert.ToUInt32(value) + " " + value.ToString().ToUpperInvariant()));
    }
}
