using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Text.RegularExpressions;

// The C headers as lists of lines, in their order, with the C# type of each C type.
internal static class Headers
{
    private static readonly Dictionary<string, string> fieldTypes = new Dictionary<string, string>
    {
        { "uint32_t", "UInt32" }, { "uint32_t*", "UInt32*" }, { "int32_t*", "Int32*" }, { "uint64_t*", "UInt64*" },
        { "double*", "Double*" }, { "uint8_t*", "Byte*" }, { "uint16_t*", "Char*" }
    };

    private static readonly Dictionary<string, string> parameterTypes = new Dictionary<string, string>
    {
        { "uint32_t", "UInt32" }, { "uint32_t*", "UInt32&" }, { "const uint16_t*", "Char*" },
        { "uint16_t**", "IntPtr&" }
    };

    // "FlatUser.name Char*" for each field of FlatRecords.h.
    internal static IEnumerable<string> Fields()
    {
        foreach (Match record in Regex.Matches(Declared("include/brimlet/FlatRecords.h"),
            @"typedef struct (\w+)\s*\{(.*?)\}", RegexOptions.Singleline))
        {
            foreach (Match field in Regex.Matches(record.Groups[2].Value, @"(\w+) (\*?)(\w+);"))
            {
                string type = field.Groups[1].Value + field.Groups[2].Value;
                yield return record.Groups[1].Value + "." + field.Groups[3].Value + " "
                    + (type.StartsWith("Flat") ? type : fieldTypes[type]);
            }
        }
    }

    // "getLocale(IntPtr& locale, UInt32 id)" for each function of brimlet.h.
    internal static IEnumerable<string> Functions()
    {
        return Declarations().Select(declaration => declaration.Groups[1].Value + "("
            + string.Join(", ", Parameters(declaration).Select(Parameter)) + ")");
    }

    // "GetLocale(id)" for each function that needs a launched library: without what a method gives back or counts by
    // itself.
    internal static IEnumerable<string> Methods()
    {
        foreach (Match declaration in Declarations())
        {
            string name = declaration.Groups[1].Value;
            if (!Regex.IsMatch(name, "^(launchCache|exitCache|getState|getLaunchCacheResult|free.*)$"))
            {
                IEnumerable<string> parameters = Parameters(declaration)
                    .Where(parameter => !Regex.IsMatch(parameter, @"\*\*|\*count|[lL]ength"))
                    .Select(parameter => Regex.Match(parameter, @"\w+$").Value);
                yield return char.ToUpperInvariant(name[0]) + name.Substring(1) + "("
                    + string.Join(", ", parameters) + ")";
            }
        }
    }

    // The results of a function with their conditions, such as NOTFOUND with "the store has no user with this id".
    internal static IEnumerable<KeyValuePair<string, string>> Results(string function)
    {
        string before = Regex.Split(Read("include/brimlet/brimlet.h"), @"BRIMLET_API \w+ " + function + @"\(")[0];
        string comment = before.Substring(before.LastIndexOf("/**"));
        return Regex.Matches(comment, @"@retval BRIMLET_(\w+)\s+(.*?)\s+\*(?= @retval|/)", RegexOptions.Singleline)
            .Cast<Match>().Select(result => new KeyValuePair<string, string>(
                result.Groups[1].Value.Replace("_", ""), result.Groups[2].Value));
    }

    // "7 READFAILED" for each value of an enumeration of ResultCodes.h, without the enumeration's prefix.
    internal static IEnumerable<string> Codes(string enumeration, string prefix)
    {
        string body = Regex.Match(Declared("include/brimlet/ResultCodes.h"), "enum " + enumeration + @" \{(.*?)\};",
            RegexOptions.Singleline).Groups[1].Value;
        return Regex.Matches(body, prefix + @"(\w+)\s*=\s*(\d+)").Cast<Match>()
            .Select(value => value.Groups[2].Value + " " + value.Groups[1].Value.Replace("_", ""));
    }

    internal static string Read(string name) => File.ReadAllText(Path.Combine(Program.Sources, name));

    // A header without its comments.
    private static string Declared(string name)
    {
        return Regex.Replace(Read(name), @"/\*.*?\*/", "", RegexOptions.Singleline);
    }

    private static IEnumerable<Match> Declarations()
    {
        return Regex.Matches(Declared("include/brimlet/brimlet.h"), @"BRIMLET_API \w+ (\w+)\(([^)]*)\);").Cast<Match>();
    }

    private static IEnumerable<string> Parameters(Match declaration)
    {
        return Regex.Split(declaration.Groups[2].Value, @",\s*").Where(parameter => parameter != "void");
    }

    private static string Parameter(string parameter)
    {
        Match parts = Regex.Match(parameter, @"^([\w ]+?) (\**)(\w+)$");
        string type = parts.Groups[1].Value + parts.Groups[2].Value;
        bool isRecord = type.StartsWith("Flat");
        return (isRecord ? (type.EndsWith("**") ? "IntPtr&" : "IntPtr") : parameterTypes[type]) + " "
            + parts.Groups[3].Value;
    }
}
