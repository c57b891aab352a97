/**
 * @file AllocationShim.h
 * Stands before the C library's allocator and refuses chosen blocks, to everything in the process that asks for one.
 */
#ifndef BRIMLET_ALLOCATION_SHIM_H
#define BRIMLET_ALLOCATION_SHIM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Refuses the n-th block that the calling thread asks for, from 1, and with `forEver` all after it. 0 refuses none
   and only counts. */
void armAllocationFailure(uint64_t nth, int forEver);
void disarmAllocationFailure(void);
/* How many blocks were asked for, and how many were refused, since the arming. */
uint64_t countedBlocks(void);
uint64_t refusedBlocks(void);

#ifdef __cplusplus
}
#endif

#endif
