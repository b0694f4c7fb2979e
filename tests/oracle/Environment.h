#pragma once

#include <cstdint>
#include <cstdlib>

namespace halvane::oracle {

/// What a person asks for: HALVANE_ORACLE_CASES, HALVANE_ORACLE_FIRST, HALVANE_ORACLE_SEED, …
[[nodiscard]] inline std::uint64_t numberFromEnvironment(const char* sName, std::uint64_t nDefault) {
    const char* const sValue = std::getenv(sName); // NOLINT(concurrency-mt-unsafe): nobody sets it
    return sValue == nullptr ? nDefault : std::strtoull(sValue, nullptr, 10);
}

} // namespace halvane::oracle
