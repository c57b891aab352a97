// The interface of a fuzzer for libFuzzer, or the standalone driver in its place.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argumentCount, char ***arguments);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
