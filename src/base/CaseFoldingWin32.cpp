// Letters and their encoding with the system's own tables.

#include "base/CaseFolding.h"

#include <algorithm>
#include <array>
#include <vector>

#include <windows.h>

namespace halvane {

namespace {

constexpr std::int32_t lInvalidBytes = 0x110000;
constexpr std::int32_t lFirstSupplementary = 0x10000;

/// A code point as UTF-16.
struct Units {
    std::array<wchar_t, 2> aUnits{};
    int nUnits = 0;

    explicit Units(std::int32_t lCode) noexcept {
        if (lCode < lFirstSupplementary) {
            aUnits[0] = static_cast<wchar_t>(lCode);
            nUnits = 1;
            return;
        }
        aUnits[0] = static_cast<wchar_t>(0xD800 + ((lCode - lFirstSupplementary) >> 10));
        aUnits[1] = static_cast<wchar_t>(0xDC00 + ((lCode - lFirstSupplementary) & 0x3FF));
        nUnits = 2;
    }
};

std::int32_t codeOf(const std::array<wchar_t, 2>& aUnits, int nUnits) noexcept {
    if (nUnits == 1)
        return aUnits[0];
    return lFirstSupplementary + ((aUnits[0] - 0xD800) << 10) + (aUnits[1] - 0xDC00);
}

/// How many bytes a character has that begins with this one, by UTF-8's table; 0 for none.
std::size_t lengthFrom(unsigned char cFirst) noexcept {
    if (cFirst >= 0xC2 && cFirst <= 0xDF)
        return 2;
    if (cFirst >= 0xE0 && cFirst <= 0xEF)
        return 3;
    return cFirst >= 0xF0 && cFirst <= 0xF4 ? 4 : 0;
}

/// The mapping of every character of the Basic Multilingual Plane. One call of the system for each character
/// of a text would make comparisons many times slower.
class CaseTable {
public:
    explicit CaseTable(DWORD nFlag) noexcept : nFlag_(nFlag), aMapped_(lFirstSupplementary) {
        std::vector<wchar_t> aCharacters(lFirstSupplementary);
        for (std::size_t n = 0; n < aCharacters.size(); ++n)
            aCharacters[n] = isSurrogate(n) ? L' ' : static_cast<wchar_t>(n);
        const auto nSize = static_cast<int>(aCharacters.size());
        if (::LCMapStringEx(LOCALE_NAME_INVARIANT, nFlag_, aCharacters.data(), nSize, aMapped_.data(), nSize,
                            nullptr, nullptr, 0) != nSize)
            aMapped_ = aCharacters;
    }

    [[nodiscard]] std::int32_t map(std::int32_t lCode) const noexcept {
        if (lCode < 0 || lCode >= lInvalidBytes || isSurrogate(static_cast<std::size_t>(lCode)))
            return lCode;
        if (lCode < lFirstSupplementary)
            return aMapped_[static_cast<std::size_t>(lCode)];
        const Units from(lCode);
        std::array<wchar_t, 2> aTo{};
        const int nMapped = ::LCMapStringEx(LOCALE_NAME_INVARIANT, nFlag_, from.aUnits.data(), from.nUnits,
                                            aTo.data(), 2, nullptr, nullptr, 0);
        return nMapped == 2 ? codeOf(aTo, nMapped) : lCode;
    }

private:
    static bool isSurrogate(std::size_t nCode) noexcept { return nCode >= 0xD800 && nCode <= 0xDFFF; }

    DWORD nFlag_;
    std::vector<wchar_t> aMapped_;
};

} // namespace

Character characterAt(std::string_view sText, std::size_t nOffset) noexcept {
    const char cFirst = sText[nOffset];
    if (isAscii(cFirst))
        return {cFirst, 1};
    const std::size_t nBytes = lengthFrom(static_cast<unsigned char>(cFirst));
    std::array<wchar_t, 2> aUnits{};
    const int nUnits =
        nBytes == 0 || nBytes > sText.size() - nOffset
            ? 0
            : ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, sText.data() + nOffset,
                                    static_cast<int>(nBytes), aUnits.data(), static_cast<int>(aUnits.size()));
    // Too few units for so many bytes mean that the bytes are more than one character.
    if (nUnits != (nBytes == 4 ? 2 : 1))
        return {lInvalidBytes + static_cast<unsigned char>(cFirst), 1};
    return {codeOf(aUnits, nUnits), nBytes};
}

void appendCode(std::string& out, std::int32_t lCode) {
    const Units units(lCode);
    std::array<char, 4> aEncoded{};
    const int nEncoded = ::WideCharToMultiByte(CP_UTF8, 0, units.aUnits.data(), units.nUnits, aEncoded.data(),
                                               static_cast<int>(aEncoded.size()), nullptr, nullptr);
    out.append(aEncoded.data(), static_cast<std::size_t>(std::max(nEncoded, 0)));
}

std::int32_t upperCode(std::int32_t lCode) noexcept {
    static const CaseTable table(LCMAP_UPPERCASE | LCMAP_LINGUISTIC_CASING);
    return table.map(lCode);
}

std::int32_t lowerCode(std::int32_t lCode) noexcept {
    static const CaseTable table(LCMAP_LOWERCASE | LCMAP_LINGUISTIC_CASING);
    return table.map(lCode);
}

} // namespace halvane
