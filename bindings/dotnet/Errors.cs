using System;

namespace Brimlet
{
    /// <summary>Result codes and launch results in words, and what a launch result means for the store.</summary>
    public static partial class Meanings
    {
        /// <summary>Whether the store can be read and written after a launch with this result.</summary>
        public static bool IsUsable(this LaunchResult result)
        {
            return result == LaunchResult.Opened || result == LaunchResult.Created;
        }

        /// <summary>Whether the launch replaced the file by one without tables, which must be removed before the store
        /// can be used.</summary>
        public static bool IsReplaced(this LaunchResult result)
        {
            return result == LaunchResult.ReplacedSchema || result == LaunchResult.ReplacedUnreadable
                || result == LaunchResult.ReplacedVersion;
        }
    }

    /// <summary>A call returned another code than <see cref="Brimlet.Code.Done"/>.</summary>
    public sealed class BrimletException : Exception
    {
        internal BrimletException(string call, Code code)
            : base(call + " returned " + (uint)code + ", " + code.Meaning())
        {
            Code = code;
        }

        /// <summary>The result code of the call.</summary>
        public Code Code { get; }
    }
}
