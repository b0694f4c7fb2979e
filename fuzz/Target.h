#pragma once

#include <cstddef>
#include <cstdint>

/// What a target defines: does with the bytes what the program does with such an input, and checks what holds
/// for every input. The name is the fuzzer's. @returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize);
