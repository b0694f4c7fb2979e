#include "xml/dom/Characters.h"

#include "xml/dom/Dom.h"

#include <algorithm>
#include <array>

namespace halvane::dom {

namespace {

struct CodeRange {
    char32_t first;
    char32_t last;
};

// The productions NameStartChar and NameChar of XML 1.0, fifth edition, above ASCII; the colon is none of
// them where there are namespaces.
constexpr std::array<CodeRange, 12> nameStartRanges{{{0xC0, 0xD6},
                                                     {0xD8, 0xF6},
                                                     {0xF8, 0x2FF},
                                                     {0x370, 0x37D},
                                                     {0x37F, 0x1FFF},
                                                     {0x200C, 0x200D},
                                                     {0x2070, 0x218F},
                                                     {0x2C00, 0x2FEF},
                                                     {0x3001, 0xD7FF},
                                                     {0xF900, 0xFDCF},
                                                     {0xFDF0, 0xFFFD},
                                                     {0x10000, 0xEFFFF}}};
constexpr std::array<CodeRange, 3> furtherNameRanges{{{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}};

template<std::size_t n>
bool isIn(const std::array<CodeRange, n>& aRanges, char32_t code) noexcept {
    return std::any_of(aRanges.begin(), aRanges.end(),
                       [code](const CodeRange& range) { return code >= range.first && code <= range.last; });
}

bool isNameStart(char32_t code) noexcept {
    if (code < 0x80)
        return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') || code == '_';
    return isIn(nameStartRanges, code);
}

bool isNamePart(char32_t code) noexcept {
    if (code < 0x80)
        return isNameStart(code) || (code >= '0' && code <= '9') || code == '-' || code == '.';
    return isIn(nameStartRanges, code) || isIn(furtherNameRanges, code);
}

unsigned byteAt(const char* p) noexcept {
    return static_cast<unsigned char>(*p);
}

bool isContinuation(const char* p, const char* pEnd) noexcept {
    return p != pEnd && (byteAt(p) & 0xC0U) == 0x80U;
}

/// A sequence being read: how many bytes belong together, and the code point when they are complete.
struct Sequence {
    std::uint8_t nBytes = 1;
    bool bValid = false;
    char32_t code = 0;
};

/// The second byte decides about overlong forms, surrogates and the end of the code space.
bool isSecondByte(unsigned lead, const char* p, const char* pEnd) noexcept {
    if (!isContinuation(p, pEnd))
        return false;
    const unsigned second = byteAt(p);
    switch (lead) {
    case 0xE0:
        return second >= 0xA0;
    case 0xED:
        return second <= 0x9F;
    case 0xF0:
        return second >= 0x90;
    case 0xF4:
        return second <= 0x8F;
    default:
        return true;
    }
}

Sequence readSequence(const char* p, const char* pEnd) noexcept {
    const unsigned lead = byteAt(p);
    if (lead < 0x80)
        return {1, true, lead};
    if (lead < 0xC2 || lead > 0xF4)
        return {};
    const std::uint8_t nLength = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (!isSecondByte(lead, p + 1, pEnd))
        return {};
    char32_t code = ((lead & (0x7FU >> nLength)) << 6U) | (byteAt(p + 1) & 0x3FU);
    for (std::uint8_t n = 2; n < nLength; ++n) {
        if (!isContinuation(p + n, pEnd))
            return {n, false, 0};
        code = (code << 6U) | (byteAt(p + n) & 0x3FU);
    }
    return {nLength, true, code};
}

bool isAllowed(char32_t code) noexcept {
    if (code < 0x20)
        return code == '\t' || code == '\n' || code == '\r';
    return code != 0xFFFE && code != 0xFFFF;
}

bool isNameWithoutColon(std::string_view sText) noexcept {
    const char* const pBegin = sText.data();
    const char* const pEnd = pBegin + sText.size();
    for (const char* p = pBegin; p != pEnd;) {
        const Sequence sequence = readSequence(p, pEnd);
        const bool bFits = p == pBegin ? isNameStart(sequence.code) : isNamePart(sequence.code);
        if (!sequence.bValid || !bFits)
            return false;
        p += sequence.nBytes;
    }
    return !sText.empty();
}

} // namespace

bool isXmlName(std::string_view sText) noexcept {
    const auto colon = sText.find(':');
    if (colon == std::string_view::npos)
        return isNameWithoutColon(sText);
    return isNameWithoutColon(sText.substr(0, colon)) && isNameWithoutColon(sText.substr(colon + 1));
}

bool isXmlWhiteSpace(std::string_view sText) noexcept {
    return sText.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

DataCharacter characterOfData(const char* p, const char* pEnd) noexcept {
    const Sequence sequence = readSequence(p, pEnd);
    if (!sequence.bValid)
        return {DataCharacter::Kind::Invalid, sequence.nBytes};
    return {isAllowed(sequence.code) ? DataCharacter::Kind::Allowed : DataCharacter::Kind::Forbidden,
            sequence.nBytes};
}

std::string cleaned(std::string_view sText, CharacterRepairs& repairs) {
    std::string sClean;
    sClean.reserve(sText.size());
    const char* const pEnd = sText.data() + sText.size();
    for (const char* p = sText.data(); p != pEnd;) {
        const DataCharacter character = characterOfData(p, pEnd);
        if (character.kind == DataCharacter::Kind::Allowed) {
            sClean.append(p, character.nBytes);
        } else if (character.kind == DataCharacter::Kind::Forbidden) {
            ++repairs.dropped;
        } else {
            ++repairs.replaced;
            sClean.append(replacementCharacter);
        }
        p += character.nBytes;
    }
    return sClean;
}

bool isNothingOnceCleaned(std::string_view sText) noexcept {
    const char* const pEnd = sText.data() + sText.size();
    for (const char* p = sText.data(); p != pEnd;) {
        const DataCharacter character = characterOfData(p, pEnd);
        if (character.kind != DataCharacter::Kind::Forbidden)
            return false;
        p += character.nBytes;
    }
    return true;
}

} // namespace halvane::dom
