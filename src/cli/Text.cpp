#include "cli/Text.h"

#include "collection/Redaction.h"

#include <fmt/format.h>

namespace halvane::cli {

namespace {

constexpr std::size_t lLongest = 2000;

bool isControlCharacter(char c) {
    const auto lByte = static_cast<unsigned char>(c);
    return lByte < 0x20 || lByte == 0x7F;
}

} // namespace

std::string shortened(std::string_view sText, std::size_t lMost) {
    if (sText.size() <= lMost)
        return std::string(sText);
    // No UTF-8 sequence is left half.
    while (lMost > 0 && (static_cast<unsigned char>(sText[lMost]) & 0xC0U) == 0x80U)
        --lMost;
    return std::string(sText.substr(0, lMost)) + "…";
}

std::string inQuotes(std::string_view sValue) {
    constexpr std::size_t lMost = 100;
    return "\"" + shortened(withoutPasswords(sValue), lMost) + "\"";
}

std::string printable(std::string_view sText) {
    // Masked before it is cut: half an address does not show that it holds a password.
    std::string sLine = shortened(withoutPasswords(sText), lLongest);
    for (char& c : sLine) {
        if (isControlCharacter(c))
            c = ' ';
    }
    sLine.erase(sLine.find_last_not_of(' ') + 1);
    return sLine;
}

std::string counted(std::uint64_t lCount, std::string_view sSingular) {
    return fmt::format("{} {}{}", lCount, sSingular, lCount == 1 ? "" : "s");
}

} // namespace halvane::cli
