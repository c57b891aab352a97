/**
 * @file ResultCodes.h
 * What the exported functions answer. Plain C99; included by brimlet.h.
 */
#ifndef BRIMLET_RESULT_CODES_H
#define BRIMLET_RESULT_CODES_H

/** The answer of every function but launchCache, exitCache, getState and getLaunchCacheResult. */
enum BrimletResult {
    BRIMLET_DONE = 0,         /**< Done. */
    BRIMLET_NO_BLOCK = 3,     /**< A list was read, but no block for it could be had. */
    BRIMLET_INCOMPLETE = 5,   /**< The text is a JSON object, but a required member or the envelope is missing, or some
                                   member has a wrong type. */
    BRIMLET_READ_FAILED = 7,  /**< The store could not be read. */
    BRIMLET_NOT_FOUND = 8,    /**< The store was read and holds nothing that fits. */
    BRIMLET_WRITE_FAILED = 9, /**< The store could not be written; it is as it was before the call. */
    BRIMLET_REFUSED = 10,     /**< An argument is refused: a non-null target, a text that is no JSON object, an empty
                                   "items", an unknown key, nothing to free, a pointer and a count that disagree. */
    BRIMLET_NO_PARENT = 11,   /**< The row was written, but its device or section is not in the store. */
    BRIMLET_NO_RECORD = 255   /**< A record was promised and is not there. A safeguard that no input reaches. */
};

/** The answer of getLaunchCacheResult. Replaced means: by a file without tables. After 6, 101, 102 and 103 every read
    answers 7, so do the delete functions and removeAffectFlag, which read first, and every other write answers 9, in
    this launch and in the next ones, until the client removes the file while the library is not running, and launches
    again. */
enum BrimletLaunchResult {
    BRIMLET_LAUNCH_OPENED = 0,                /**< The file was there and passed its checks. */
    BRIMLET_LAUNCH_FAILED = 6,                /**< The file could not be created or replaced. */
    BRIMLET_LAUNCH_CREATED = 100,             /**< There was no file; it was created with all its tables. */
    BRIMLET_LAUNCH_REPLACED_SCHEMA = 101,     /**< The version was right, a table or column was missing: replaced. */
    BRIMLET_LAUNCH_REPLACED_UNREADABLE = 102, /**< The file would not open: replaced. */
    BRIMLET_LAUNCH_REPLACED_VERSION =
        103,                  /**< The version was wrong or missing, or the file is no database: replaced. */
    BRIMLET_LAUNCH_NONE = 255 /**< Nothing is launched, or its launch is not finished. */
};

/** The answer of getState. */
enum BrimletState {
    BRIMLET_STATE_NONE = 0,     /**< Nothing is launched, its launch is not finished, or exitCache has run. */
    BRIMLET_STATE_LAUNCHED = 1, /**< The launch is finished, the event loop is about to start. Calls are served. */
    BRIMLET_STATE_RUNNING = 2   /**< The event loop runs. Calls are served. */
};

#endif
