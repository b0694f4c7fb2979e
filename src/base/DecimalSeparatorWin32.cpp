#include "base/DecimalSeparator.h"

#include <array>

#include <windows.h>

namespace halvane {

std::string_view decimalSeparator() {
    thread_local std::array<char, 16> aSeparator{};
    std::array<wchar_t, 8> aWide{};
    const int nWide =
        ::GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, aWide.data(), static_cast<int>(aWide.size()));
    if (nWide <= 1)
        return ".";
    const int nBytes = ::WideCharToMultiByte(CP_UTF8, 0, aWide.data(), nWide - 1, aSeparator.data(),
                                             static_cast<int>(aSeparator.size()), nullptr, nullptr);
    return {aSeparator.data(), static_cast<std::size_t>(nBytes)};
}

} // namespace halvane
