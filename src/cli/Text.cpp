#include "cli/Text.h"

#include <fmt/format.h>

#include <regex>

namespace halvane::cli {

namespace {

constexpr std::size_t lLongest = 2000;

bool isControlCharacter(char c) {
    const auto lByte = static_cast<unsigned char>(c);
    return lByte < 0x20 || lByte == 0x7F;
}

/// A cut that leaves no UTF-8 sequence half.
std::string_view cut(std::string_view sText) {
    if (sText.size() <= lLongest)
        return sText;
    std::size_t lEnd = lLongest;
    while (lEnd > 0 && (static_cast<unsigned char>(sText[lEnd]) & 0xC0U) == 0x80U)
        --lEnd;
    return sText.substr(0, lEnd);
}

} // namespace

std::string withoutPasswords(std::string_view sText) {
    static const std::regex keyword(R"re((passw(or)?d|pwd)\s*=\s*('[^']*'|"[^"]*"|[^\s;&,'"]*))re",
                                    std::regex::icase | std::regex::optimize);
    static const std::regex address(R"re((://[^/\s:@]*):[^/\s]*@)re", std::regex::optimize);
    return std::regex_replace(std::regex_replace(std::string(sText), keyword, "$1=***"), address, "$1:***@");
}

std::string printable(std::string_view sText) {
    const std::string_view sKept = cut(sText);
    std::string sLine = withoutPasswords(sKept);
    for (char& c : sLine) {
        if (isControlCharacter(c))
            c = ' ';
    }
    sLine.erase(sLine.find_last_not_of(' ') + 1);
    if (sKept.size() < sText.size())
        sLine += "…";
    return sLine;
}

std::string counted(std::uint64_t lCount, std::string_view sSingular) {
    return fmt::format("{} {}{}", lCount, sSingular, lCount == 1 ? "" : "s");
}

} // namespace halvane::cli
