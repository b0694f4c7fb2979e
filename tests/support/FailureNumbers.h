#pragma once

#include "base/Failure.h"

#include <cstdint>
#include <optional>

namespace halvane::test {

/// The number of the failure that a call ends with; nothing when it succeeds.
template<class Call>
std::optional<std::int32_t> failureOf(Call&& call) {
    try {
        call();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.number();
    }
}

constexpr std::int32_t number(FailureNumber failure) {
    return static_cast<std::int32_t>(failure);
}

} // namespace halvane::test
