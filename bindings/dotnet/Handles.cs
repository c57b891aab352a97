using System;
using System.Runtime.InteropServices;

namespace Brimlet
{
    internal delegate Code FreeRecord(IntPtr record);
    internal delegate Code FreeArray(IntPtr records, uint count);

    // A block that came out of the library, or none. Blocks go back at any time and on any thread, so the finalizer
    // may do it too.
    internal abstract class BlockHandle : SafeHandle
    {
        protected BlockHandle() : base(IntPtr.Zero, true)
        {
        }

        public override bool IsInvalid => handle == IntPtr.Zero;

        internal void Take(IntPtr block) => SetHandle(block);

        // To be read while the handle is not disposed of.
        internal IntPtr Block => handle;
    }

    // A record with all that hangs on it.
    internal sealed class RecordHandle : BlockHandle
    {
        private readonly FreeRecord free;

        internal RecordHandle(FreeRecord free)
        {
            this.free = free;
        }

        protected override bool ReleaseHandle() => free(handle) == Code.Done;
    }

    // An array of records, which goes back with the count it came with.
    internal sealed class ArrayHandle : BlockHandle
    {
        private readonly FreeArray free;

        internal ArrayHandle(FreeArray free)
        {
            this.free = free;
        }

        internal uint Count { get; private set; }

        internal void Take(IntPtr records, uint count)
        {
            Count = count;
            Take(records);
        }

        protected override bool ReleaseHandle() => free(handle, Count) == Code.Done;
    }

    // A plain text. The library's allocator is what FreeCoTaskMem gives back to: CoTaskMemFree, or free.
    internal sealed class TextHandle : BlockHandle
    {
        protected override bool ReleaseHandle()
        {
            Marshal.FreeCoTaskMem(handle);
            return true;
        }
    }

    // A text on its way into the library: its own units, held in place and not copied.
    internal sealed unsafe class PinnedText : IDisposable
    {
        private GCHandle pin;

        internal PinnedText(string text)
        {
            if (text == null)
            {
                throw new ArgumentNullException(nameof(text));
            }
            pin = GCHandle.Alloc(text, GCHandleType.Pinned);
            Length = (uint)text.Length;
        }

        internal char* Units => (char*)pin.AddrOfPinnedObject();

        internal uint Length { get; }

        public void Dispose() => pin.Free();
    }
}
