#include "telling/Text.h"

#include "base/CaseFolding.h"
#include "base/Redaction.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace halvane {

namespace {

constexpr std::size_t nLongest = 2000;

struct CodeRange {
    std::int32_t lFirst;
    std::int32_t lLast;
};

// Control characters, C1 among them; what changes the direction of reading; separators of lines and
// paragraphs.
constexpr std::array aSteering{CodeRange{0x00, 0x1F},     CodeRange{0x7F, 0x9F},
                               CodeRange{0x61C, 0x61C},   CodeRange{0x200E, 0x200F},
                               CodeRange{0x2028, 0x202E}, CodeRange{0x2066, 0x2069}};

bool isSteering(std::int32_t lCode) {
    return std::any_of(aSteering.begin(), aSteering.end(), [lCode](const CodeRange& range) {
        return range.lFirst <= lCode && lCode <= range.lLast;
    });
}

/// The character as a terminal may have it. @param sBytes what it is made of.
void append(std::string& sShown, const Character& character, std::string_view sBytes) {
    constexpr std::int32_t lLastCode = 0x10FFFF;
    if (character.lCode >= '\t' && character.lCode <= '\r')
        sShown += ' ';
    else if (character.lCode > lLastCode)
        sShown += fmt::format("\\x{:02X}", static_cast<unsigned char>(sBytes.front()));
    else if (isSteering(character.lCode))
        sShown += fmt::format("\\u{:04X}", character.lCode);
    else
        sShown += sBytes;
}

std::string escaped(std::string_view sText) {
    std::string sEscaped;
    sEscaped.reserve(sText.size());
    for (std::size_t nOffset = 0; nOffset < sText.size();) {
        const Character character = characterAt(sText, nOffset);
        append(sEscaped, character, sText.substr(nOffset, character.nBytes));
        nOffset += character.nBytes;
    }
    return sEscaped;
}

} // namespace

std::string shortened(std::string_view sText, std::size_t nMost) {
    if (sText.size() <= nMost)
        return std::string(sText);
    // No UTF-8 sequence is left half.
    while (nMost > 0 && (static_cast<unsigned char>(sText[nMost]) & 0xC0U) == 0x80U)
        --nMost;
    return std::string(sText.substr(0, nMost)) + "…";
}

std::string inQuotes(std::string_view sValue) {
    constexpr std::size_t nMost = 100;
    return "\"" + shortened(withoutPasswords(sValue), nMost) + "\"";
}

std::string printable(std::string_view sText) {
    // Masked before it is cut: half an address does not show that it holds a password.
    std::string sLine = shortened(withoutPasswords(sText), nLongest);
    sLine = escaped(sLine);
    sLine.erase(sLine.find_last_not_of(' ') + 1);
    return sLine;
}

std::string withoutSteering(std::string_view sJson) {
    constexpr std::int32_t lLastOfAscii = 0x7E;
    std::string sShown;
    sShown.reserve(sJson.size());
    for (std::size_t nOffset = 0; nOffset < sJson.size();) {
        const Character character = characterAt(sJson, nOffset);
        if (character.lCode > lLastOfAscii && isSteering(character.lCode))
            sShown += fmt::format("\\u{:04X}", character.lCode);
        else
            sShown += sJson.substr(nOffset, character.nBytes);
        nOffset += character.nBytes;
    }
    return sShown;
}

std::string counted(std::uint64_t lCount, std::string_view sSingular) {
    return fmt::format("{} {}{}", lCount, sSingular, lCount == 1 ? "" : "s");
}

} // namespace halvane
