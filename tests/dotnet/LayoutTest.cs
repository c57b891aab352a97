using System;
using System.Collections.Generic;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using Brimlet;

// Compares the structs behind the records with the library's layout table and with its header.
internal static class LayoutTest
{
    internal static void Run()
    {
        IEnumerable<string> lines = Headers.Read("tests/abi/layout.txt").Split('\n')
            .Where(line => line != "" && line[0] != '#');
        Check.SameList("sizes and offsets are those of layout.txt", lines, Layout());
        Check.SameList("the fields are those of FlatRecords.h", Headers.Fields(),
            Structs().SelectMany(record => Fields(record).Select(
                field => record.Name + "." + field.Name + " " + field.FieldType.Name)));
    }

    // The structs and their fields, in the order of their declaration.
    internal static IEnumerable<Type> Structs()
    {
        return typeof(Session).Assembly.GetTypes().Where(type => type.Name.StartsWith("Flat"))
            .OrderBy(type => type.MetadataToken);
    }

    internal static IEnumerable<FieldInfo> Fields(Type record)
    {
        return record.GetFields().OrderBy(field => field.MetadataToken);
    }

    // As layout.txt writes it: size and alignment of each record, offset and size of each field.
    private static IEnumerable<string> Layout()
    {
        foreach (Type record in Structs())
        {
            yield return record.Name + " " + Marshal.SizeOf(record) + " " + Fields(record).Max(SizeOf);
            foreach (FieldInfo field in Fields(record))
            {
                yield return record.Name + "." + field.Name + " " + Marshal.OffsetOf(record, field.Name) + " "
                    + SizeOf(field);
            }
        }
    }

    private static int SizeOf(FieldInfo field)
    {
        return field.FieldType.IsPointer ? IntPtr.Size : Marshal.SizeOf(field.FieldType);
    }
}
