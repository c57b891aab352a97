/**
 * @file ResultCodes.h
 * The values that Brimlet's functions return. Plain C99; included by brimlet.h.
 */
#ifndef BRIMLET_RESULT_CODES_H
#define BRIMLET_RESULT_CODES_H

/** The result of every function except launchCache, exitCache, getState and getLaunchCacheResult. */
enum BrimletResult {
    /** Done. */
    BRIMLET_DONE = 0,

    /**
     * Out of memory for an array.
     *
     * Cause: none in practice, because the process aborts before it.
     *
     * Cure: treat it as BRIMLET_READ_FAILED.
     */
    BRIMLET_NO_BLOCK = 3,

    /**
     * A required member of the document is missing, or a member has a wrong type.
     *
     * Nothing was written.
     *
     * Cause: the text is a JSON object, but it lacks "D", the "items" of a batch or a required key, or a value has a
     * wrong type, for example null. One bad record refuses a whole batch.
     *
     * Cure: compare the document with the keys in FlatRecords.h.
     */
    BRIMLET_INCOMPLETE = 5,

    /**
     * The store could not be read.
     *
     * Cause: the launch left a file without tables, another process holds the file locked, or the disk fails.
     *
     * Cure: look at getLaunchCacheResult, otherwise try again.
     */
    BRIMLET_READ_FAILED = 7,

    /**
     * The store holds nothing that fits.
     *
     * Cause: no record has this id or this value. For an array this is often no error: it would be empty.
     *
     * Cure: none, or add the record first.
     */
    BRIMLET_NOT_FOUND = 8,

    /**
     * The store could not be written.
     *
     * It is as it was before the call.
     *
     * Cause: the launch left a file without tables, another process holds the file locked, or the file or its folder
     * is not writable.
     *
     * Cure: look at getLaunchCacheResult, otherwise remove the cause and try again.
     */
    BRIMLET_WRITE_FAILED = 9,

    /**
     * An argument is refused.
     *
     * Nothing was read or written.
     *
     * Cause: a mistake of the client, such as an out-parameter that does not point to null, a text that is not a JSON
     * object, an empty "items", a key that cannot be searched by, nothing to release, or an array that disagrees with
     * its count.
     *
     * Cure: correct the call. The out-parameter is checked first, so an old record in it hides every other mistake.
     */
    BRIMLET_REFUSED = 10,

    /**
     * Written, but the device or the section is not in the store.
     *
     * The record stays written, but is not returned.
     *
     * Cause: the document names a device or a section that the store does not hold.
     *
     * Cure: add the device. Until then getSection and getZone return the record.
     */
    BRIMLET_NO_PARENT = 11,

    /**
     * Internal error: no record.
     *
     * Cause: none in practice, no input leads to it.
     *
     * Cure: treat it as BRIMLET_NOT_FOUND.
     */
    BRIMLET_NO_RECORD = 255
};

/**
 * The result of getLaunchCacheResult.
 *
 * A file that is replaced becomes an empty one without tables. After such a launch, and after BRIMLET_LAUNCH_FAILED,
 * every read returns BRIMLET_READ_FAILED, and so do the delete functions and removeAffectFlag, which read first. Every
 * other write returns BRIMLET_WRITE_FAILED. The following launches do not change that, until the client removes the
 * file while the library is not running, and launches again.
 */
enum BrimletLaunchResult {
    /**
     * The file was opened.
     *
     * It was there and passed its checks.
     */
    BRIMLET_LAUNCH_OPENED = 0,

    /**
     * The file could not be created or replaced.
     *
     * Cause: the working directory is not writable, the disk is full, or Qt's SQLite driver is not installed.
     *
     * Cure: exit, remove the cause and the file, and launch again.
     */
    BRIMLET_LAUNCH_FAILED = 6,

    /**
     * The file was created.
     *
     * There was none. It has all its tables.
     */
    BRIMLET_LAUNCH_CREATED = 100,

    /**
     * The file lacked a table or a column and was replaced by an empty one.
     *
     * Cause: its version was right, but its tables are not those of this library.
     *
     * Cure: exit, remove the file, and launch again.
     */
    BRIMLET_LAUNCH_REPLACED_SCHEMA = 101,

    /**
     * The file could not be opened and was replaced by an empty one.
     *
     * Cause: for example, the process has no right to read it.
     *
     * Cure: exit, remove the file, and launch again.
     */
    BRIMLET_LAUNCH_REPLACED_UNREADABLE = 102,

    /**
     * The file is not a database or has another version, and was replaced by an empty one.
     *
     * Cause: another program or another version of the library wrote the file, it was damaged, or an earlier launch
     * replaced it and nobody removed it.
     *
     * Cure: exit, remove the file, and launch again.
     */
    BRIMLET_LAUNCH_REPLACED_VERSION = 103,

    /**
     * Nothing is launched, or the launch is not finished.
     *
     * Cure: wait until getState returns BRIMLET_STATE_RUNNING.
     */
    BRIMLET_LAUNCH_NONE = 255
};

/** The result of getState. */
enum BrimletState {
    /**
     * Not launched.
     *
     * Nothing is launched, the launch is not finished, or exitCache has run.
     */
    BRIMLET_STATE_NONE = 0,

    /**
     * The launch is finished, and the event loop is about to start.
     *
     * All functions may be called except exitCache.
     */
    BRIMLET_STATE_LAUNCHED = 1,

    /**
     * The event loop runs.
     *
     * All functions may be called.
     */
    BRIMLET_STATE_RUNNING = 2
};

#endif
