using System;
using System.Collections.Generic;

namespace Brimlet
{
    internal delegate T ReadRecord<T>(IntPtr record);

    // A kind of record: how it is read out of its block, how long that is, and how the blocks go back. What hangs on
    // another record goes back with it.
    internal sealed class Kind<T>
    {
        internal readonly ReadRecord<T> Read;
        internal readonly int Size;
        internal readonly FreeRecord Free;
        internal readonly FreeArray FreeAll;

        internal Kind(ReadRecord<T> read, int size, FreeRecord free = null, FreeArray freeAll = null)
        {
            Read = read;
            Size = size;
            Free = free;
            FreeAll = freeAll;
        }
    }

    // Copies what lies in the blocks of a flat record.
    internal static unsafe class Blocks
    {
        internal static string Text(char* block) => block == null ? null : new string(block);

        internal static uint? Value(uint* block) => block == null ? (uint?)null : *block;

        internal static int? Value(int* block) => block == null ? (int?)null : *block;

        internal static ulong? Value(ulong* block) => block == null ? (ulong?)null : *block;

        internal static double? Value(double* block) => block == null ? (double?)null : *block;

        internal static byte? Value(byte* block) => block == null ? (byte?)null : *block;

        internal static bool? Flag(byte* block) => block == null ? (bool?)null : *block != 0;

        internal static T Record<T>(Kind<T> kind, void* block) where T : class
        {
            return block == null ? null : kind.Read((IntPtr)block);
        }

        internal static IReadOnlyList<uint> Numbers(uint* block, uint count)
        {
            var numbers = new uint[count];
            for (uint i = 0; i < count; ++i)
            {
                numbers[i] = block[i];
            }
            return Array.AsReadOnly(numbers);
        }

        internal static IReadOnlyList<T> List<T>(Kind<T> kind, void* block, uint count)
        {
            var records = new T[count];
            for (uint i = 0; i < count; ++i)
            {
                records[i] = kind.Read((IntPtr)((byte*)block + (long)i * kind.Size));
            }
            return Array.AsReadOnly(records);
        }
    }
}
