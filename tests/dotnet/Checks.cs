using System;
using System.Collections;
using System.Collections.Generic;
using System.Globalization;
using System.Linq;
using System.Reflection;
using Brimlet;

// The checks of the tests: each prints a line, and a failed check fails the program.
internal static class Check
{
    internal static int Passed { get; private set; }
    internal static int Failed { get; private set; }

    internal static void That(string what, bool holds, string otherwise = "it is not so")
    {
        Console.WriteLine(holds ? "ok      " + what : "FAILED  " + what + ": " + otherwise);
        Passed += holds ? 1 : 0;
        Failed += holds ? 0 : 1;
    }

    internal static void Equal<T>(string what, T expected, T actual)
    {
        That(what, Equals(expected, actual), "\n    expected " + Show.Value(expected) + "\n    and got  "
            + Show.Value(actual));
    }

    // Two lists, of which a difference shows the elements that only one of them has.
    internal static void SameList(string what, IEnumerable<string> expected, IEnumerable<string> actual)
    {
        string[] left = expected.ToArray();
        string[] right = actual.ToArray();
        That(what + " (" + left.Length + ")", left.Length > 0 && left.SequenceEqual(right), "\n    only expected: "
            + string.Join("; ", left.Except(right)) + "\n    only there: " + string.Join("; ", right.Except(left))
            + "\n    or in another order, or none at all");
    }

    internal static T Throws<T>(string what, Action action) where T : Exception
    {
        Exception thrown = null;
        try
        {
            action();
        }
        catch (Exception exception)
        {
            thrown = exception;
        }
        That(what, thrown != null && thrown.GetType() == typeof(T), thrown == null ? "nothing was thrown"
            : thrown.ToString());
        return thrown as T;
    }

    internal static void Answers(string what, Code code, Action action)
    {
        var thrown = Throws<BrimletException>(what, action);
        if (thrown != null)
        {
            Equal(what + ", its code", code, thrown.Code);
        }
    }
}

// Values and records as text, with all their fields: an absent value is "-", a text is in quotes.
internal static class Show
{
    internal static string Value(object value)
    {
        if (value == null)
        {
            return "-";
        }
        if (value is string text)
        {
            return '"' + text + '"';
        }
        if (value is IFormattable number)
        {
            return number.ToString(null, CultureInfo.InvariantCulture);
        }
        if (value is IEnumerable list)
        {
            return "[" + string.Join(" ", list.Cast<object>().Select(Value)) + "]";
        }
        return value.GetType().Namespace == "Brimlet" ? Record(value) : value.ToString();
    }

    private static string Record(object record)
    {
        IEnumerable<string> properties = record.GetType().GetProperties().OrderBy(property => property.MetadataToken)
            .Select(property => property.Name + "=" + Value(property.GetValue(record)));
        return "{" + string.Join(" ", properties) + "}";
    }
}
