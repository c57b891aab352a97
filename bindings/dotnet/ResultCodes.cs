using System;

namespace Brimlet
{
    /// <summary>What a call answers: BrimletResult of ResultCodes.h.</summary>
    public enum Code : uint
    {
        Done = 0,
        NoBlock = 3,
        Incomplete = 5,
        ReadFailed = 7,
        NotFound = 8,
        WriteFailed = 9,
        Refused = 10,
        NoParent = 11,
        NoRecord = 255
    }

    /// <summary>How a launch went: BrimletLaunchResult of ResultCodes.h.</summary>
    public enum LaunchResult : uint
    {
        Opened = 0,
        Failed = 6,
        Created = 100,
        ReplacedSchema = 101,
        ReplacedUnreadable = 102,
        ReplacedVersion = 103,
        None = 255
    }

    /// <summary>How far a launch is: BrimletState of ResultCodes.h.</summary>
    public enum State : uint
    {
        None = 0,
        Launched = 1,
        Running = 2
    }

    /// <summary>The codes in words, and what a launch result means for the store.</summary>
    public static class Meanings
    {
        /// <summary>The meaning of a code in words, "unknown" for a number that is none.</summary>
        public static string Meaning(this Code code)
        {
            switch (code)
            {
                case Code.Done: return "done";
                case Code.NoBlock: return "no block for the list could be had";
                case Code.Incomplete:
                    return "a required member of the document is missing, or a member has a wrong type";
                case Code.ReadFailed: return "the store could not be read";
                case Code.NotFound: return "the store holds nothing that fits";
                case Code.WriteFailed: return "the store could not be written";
                case Code.Refused: return "an argument is refused";
                case Code.NoParent: return "written, but the device or section is not in the store";
                case Code.NoRecord: return "a record was promised and is not there";
                default: return "unknown";
            }
        }

        /// <summary>The meaning of a launch result in words, "unknown" for a number that is none.</summary>
        public static string Meaning(this LaunchResult result)
        {
            switch (result)
            {
                case LaunchResult.Opened: return "the file was opened";
                case LaunchResult.Failed: return "the file could not be created or replaced";
                case LaunchResult.Created: return "the file was created";
                case LaunchResult.ReplacedSchema:
                    return "a table or column was missing, the file was replaced by an empty one";
                case LaunchResult.ReplacedUnreadable:
                    return "the file would not open, it was replaced by an empty one";
                case LaunchResult.ReplacedVersion:
                    return "the file is no database or of another version, it was replaced by an empty one";
                case LaunchResult.None: return "nothing is launched";
                default: return "unknown";
            }
        }

        /// <summary>Whether the store can be read and written after a launch that went so.</summary>
        public static bool IsUsable(this LaunchResult result)
        {
            return result == LaunchResult.Opened || result == LaunchResult.Created;
        }

        /// <summary>Whether the file was replaced by one without tables, which has to be removed before the store can
        /// be used.</summary>
        public static bool IsReplaced(this LaunchResult result)
        {
            return result == LaunchResult.ReplacedSchema || result == LaunchResult.ReplacedUnreadable
                || result == LaunchResult.ReplacedVersion;
        }
    }

    /// <summary>A call answered another code than Done.</summary>
    public sealed class BrimletException : Exception
    {
        internal BrimletException(string call, Code code)
            : base(call + " answered " + (uint)code + ", " + code.Meaning())
        {
            Code = code;
        }

        /// <summary>What the call answered.</summary>
        public Code Code { get; }
    }
}
