/**
 * @file FaultShim.h
 * Stands before the C library's calls on files, and lets chosen calls on a store's files fail, or the process die in
 * them. It works on the files whose name begins with "CacheDb", and for syncs on the working directory too. A program
 * that links it before everything else has every call of SQLite pass here.
 */
#ifndef BRIMLET_FAULT_SHIM_H
#define BRIMLET_FAULT_SHIM_H

#ifdef __cplusplus
extern "C" {
#endif

enum FaultCall {
    FAULT_READ = 1,
    FAULT_WRITE = 2,
    FAULT_SYNC = 4,
    FAULT_TRUNCATE = 8,
    FAULT_UNLINK = 16,
    FAULT_CHANGES = FAULT_WRITE | FAULT_SYNC | FAULT_TRUNCATE | FAULT_UNLINK
};

enum FaultKind {
    FAULT_NONE,     /* calls are counted, and nothing more */
    FAULT_ONCE,     /* the n-th call fails: a write for want of space, any other with an I/O error */
    FAULT_FOR_EVER, /* so do all after it */
    FAULT_KILL,     /* the process is killed before the n-th call */
    FAULT_KILL_TORN /* ... or in the middle of it, if it is a write */
};

/* Counts the calls of these sorts from here on, and has the n-th, from 1, meet its fault. */
void armFault(enum FaultKind kind, unsigned calls, unsigned nth);
void disarmFault(void);
/* How many calls were counted, and how many have failed, since the arming. */
unsigned countedCalls(void);
unsigned failedCalls(void);

#ifdef __cplusplus
}
#endif

#endif
