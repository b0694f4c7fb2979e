#pragma once

#include "base/Failure.h"
#include "base/Value.h"

#include <cstdint>
#include <string>

namespace halvane::test {

constexpr std::int32_t lInvalidProcedureCall = 5;
constexpr std::int32_t lOverflow = 6;
constexpr std::int32_t lSubscriptOutOfRange = 9;
constexpr std::int32_t lTypeMismatch = 13;
constexpr std::int32_t lDuplicateKey = 457;

inline Value text(std::string sText) {
    return sText;
}

/// 0 for a call that succeeds.
template<class Call>
std::int32_t failureNumberOf(Call call) {
    try {
        call();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

} // namespace halvane::test
