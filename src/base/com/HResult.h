#pragma once

#include "base/Failure.h"
#include "base/com/Windows.h"

#include <string>
#include <string_view>

namespace halvane::com {

/// The system's text for a result code or an error number, without its full stop; "" when it has none.
[[nodiscard]] std::string systemText(DWORD nCode);

/// The failure that a result code stands for: the runtime's number where there is one (5 for a bad argument,
/// 7 for lack of memory, 438 for a missing member, the low word of a code 0x800Annnn), else the code itself.
/// @param sOperation what was tried; it begins the description, before the system's text for the code.
[[nodiscard]] Failure failureOf(HRESULT hr, std::string_view sOperation);

/// @throws Failure as failureOf for a code that tells of a failure.
inline void require(HRESULT hr, std::string_view sOperation) {
    if (FAILED(hr))
        throw failureOf(hr, sOperation);
}

/// What a late-bound call filled in when it returned DISP_E_EXCEPTION: the number of the exception, its own
/// text. Frees the texts.
[[nodiscard]] Failure failureOf(EXCEPINFO& exception, std::string_view sOperation);

/// The code for a failure's number, as automation clients know it (0x800Annnn); a number that is itself a
/// failure code stays as it is.
[[nodiscard]] HRESULT resultOf(const Failure& failure) noexcept;

} // namespace halvane::com
