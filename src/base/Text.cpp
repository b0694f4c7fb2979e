#include "base/Text.h"

#include "base/CaseFolding.h"

#include <algorithm>

namespace halvane {

namespace {

using CodeMap = std::int32_t (*)(std::int32_t) noexcept;
using AsciiMap = char (*)(char) noexcept;

void appendMapped(std::string& out, std::string_view sCharacter, std::int32_t lCode, CodeMap map) {
    const std::int32_t lMapped = map(lCode);
    if (lMapped == lCode) {
        out.append(sCharacter);
        return;
    }
    appendCode(out, lMapped);
}

std::string mapped(std::string_view sText, AsciiMap asciiMap, CodeMap codeMap) {
    std::string sResult;
    sResult.reserve(sText.size());
    for (std::size_t i = 0; i < sText.size();) {
        if (isAscii(sText[i])) {
            sResult.push_back(asciiMap(sText[i++]));
            continue;
        }
        const Character character = characterAt(sText, i);
        appendMapped(sResult, sText.substr(i, character.nBytes), character.lCode, codeMap);
        i += character.nBytes;
    }
    return sResult;
}

bool isAllAscii(std::string_view sText) noexcept {
    return std::all_of(sText.begin(), sText.end(), isAscii);
}

bool beginsWithUpper(std::string_view sAsciiText, std::string_view sUpperStart) noexcept {
    for (std::size_t i = 0; i < sUpperStart.size(); ++i)
        if (asciiUpper(sAsciiText[i]) != sUpperStart[i])
            return false;
    return true;
}

} // namespace

std::string upperCase(std::string_view sText) {
    return mapped(sText, asciiUpper, upperCode);
}

std::string lowerCase(std::string_view sText) {
    return mapped(sText, asciiLower, lowerCode);
}

bool equalIgnoringCase(std::string_view sLeft, std::string_view sRight) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < sLeft.size() && j < sRight.size()) {
        if (isAscii(sLeft[i]) && isAscii(sRight[j])) {
            if (asciiUpper(sLeft[i++]) != asciiUpper(sRight[j++]))
                return false;
            continue;
        }
        // A letter outside ASCII can have its capital inside (dotless i), so lengths say nothing.
        const Character left = characterAt(sLeft, i);
        const Character right = characterAt(sRight, j);
        if (upperCode(left.lCode) != upperCode(right.lCode))
            return false;
        i += left.nBytes;
        j += right.nBytes;
    }
    return i == sLeft.size() && j == sRight.size();
}

bool containsIgnoringCase(std::string_view sText, std::string_view sUpperNeedle) {
    if (!isAllAscii(sText))
        return upperCase(sText).find(sUpperNeedle) != std::string::npos;
    for (std::size_t i = 0; i + sUpperNeedle.size() <= sText.size(); ++i)
        if (beginsWithUpper(sText.substr(i), sUpperNeedle))
            return true;
    return false;
}

std::size_t hashIgnoringCase(std::string_view sText) {
    // FNV-1a over the upper-cased characters.
    std::uint64_t nHash = 14695981039346656037U;
    for (std::size_t i = 0; i < sText.size();) {
        std::uint64_t nCode = 0;
        if (isAscii(sText[i])) {
            nCode = static_cast<unsigned char>(asciiUpper(sText[i++]));
        } else {
            const Character character = characterAt(sText, i);
            nCode = static_cast<std::uint64_t>(upperCode(character.lCode));
            i += character.nBytes;
        }
        nHash = (nHash ^ nCode) * 1099511628211U;
    }
    return static_cast<std::size_t>(nHash);
}

std::string_view trimBlanks(std::string_view sText) {
    const std::size_t nFirst = sText.find_first_not_of(' ');
    if (nFirst == std::string_view::npos)
        return {};
    return sText.substr(nFirst, sText.find_last_not_of(' ') - nFirst + 1);
}

std::string replaceAll(std::string_view sText, std::string_view sOld, std::string_view sNew) {
    std::string sResult;
    sResult.reserve(sText.size());
    std::size_t nFrom = 0;
    for (std::size_t nAt = sText.find(sOld); nAt != std::string_view::npos; nAt = sText.find(sOld, nFrom)) {
        sResult.append(sText, nFrom, nAt - nFrom).append(sNew);
        nFrom = nAt + sOld.size();
    }
    return sResult.append(sText.substr(nFrom));
}

} // namespace halvane
