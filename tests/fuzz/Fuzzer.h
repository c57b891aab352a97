// What libFuzzer, or the standalone driver in its place, asks of a fuzzer.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argumentCount, char ***arguments);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
