#include "base/CaseFolding.h"

#include <array>
#include <utf8proc.h>

namespace halvane {

namespace {

constexpr std::int32_t lInvalidBytes = 0x110000;
constexpr std::int32_t lSharpS = 0xDF;

} // namespace

Character characterAt(std::string_view sText, std::size_t nOffset) noexcept {
    const char cFirst = sText[nOffset];
    if (isAscii(cFirst))
        return {cFirst, 1};
    const std::string_view sRest = sText.substr(nOffset, 4);
    utf8proc_int32_t lCode = 0;
    const utf8proc_ssize_t nRead = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(sRest.data()),
                                                    static_cast<utf8proc_ssize_t>(sRest.size()), &lCode);
    if (nRead <= 0)
        return {lInvalidBytes + static_cast<unsigned char>(cFirst), 1};
    return {lCode, static_cast<std::size_t>(nRead)};
}

void appendCode(std::string& out, std::int32_t lCode) {
    std::array<utf8proc_uint8_t, 4> aEncoded{};
    const auto nEncoded = utf8proc_encode_char(lCode, aEncoded.data());
    out.append(aEncoded.data(), aEncoded.data() + nEncoded);
}

std::int32_t upperCode(std::int32_t lCode) noexcept {
    // The library maps sharp s to its capital form, which is no simple case mapping of Unicode.
    return lCode == lSharpS ? lCode : utf8proc_toupper(lCode);
}

std::int32_t lowerCode(std::int32_t lCode) noexcept {
    return utf8proc_tolower(lCode);
}

} // namespace halvane
