#pragma once

#include "base/com/Windows.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace halvane::host::com {

/// A GUID from its text "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx", while compiling.
[[nodiscard]] consteval GUID guidOf(std::string_view sText) {
    std::size_t nPosition = 0;
    const auto read = [&](int nDigits) {
        std::uint32_t nValue = 0;
        for (; nDigits > 0; ++nPosition) {
            const char c = sText[nPosition];
            if (c == '-')
                continue;
            if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f')))
                throw "a GUID is written in lower-case hexadecimal digits";
            nValue = nValue * 16 + static_cast<std::uint32_t>(c <= '9' ? c - '0' : c - 'a' + 10);
            --nDigits;
        }
        return nValue;
    };
    GUID guid{};
    guid.Data1 = read(8);
    guid.Data2 = static_cast<unsigned short>(read(4));
    guid.Data3 = static_cast<unsigned short>(read(4));
    for (unsigned char& nByte : guid.Data4)
        nByte = static_cast<unsigned char>(read(2));
    return guid;
}

} // namespace halvane::host::com

#define HALVANE_GUID_TEXT(id) #id
/// The GUID that a macro of InterfaceIds.h names.
#define HALVANE_GUID(id) ::halvane::host::com::guidOf(HALVANE_GUID_TEXT(id))
