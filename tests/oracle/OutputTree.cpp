#include "oracle/OutputTree.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>
#include <cstdint>

namespace halvane::oracle {

namespace {

[[noreturn]] void failWithoutNode() {
    throw Failure::of(FailureNumber::ObjectVariableNotSet);
}

bool isLetter(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80;
}

bool isPlainName(std::string_view sName) {
    if (sName.empty() || !isLetter(static_cast<unsigned char>(sName.front())))
        return false;
    return std::all_of(sName.begin(), sName.end(), [](char c) {
        return isLetter(static_cast<unsigned char>(c)) || (c >= '0' && c <= '9') || c == '-' || c == '.';
    });
}

// ---- Characters ----

struct Piece {
    std::size_t nBytes;
    bool bValid;
    std::uint32_t nCode;
};

/// The code point at the front, or the longest beginning of one that is cut short.
Piece frontOf(std::string_view sText) {
    const auto byteAt = [&](std::size_t n) -> unsigned { return static_cast<unsigned char>(sText[n]); };
    const unsigned first = byteAt(0);
    if (first < 0x80)
        return {1, true, first};
    const std::size_t nLength = first >= 0xC2 && first <= 0xDF   ? 2
                                : first >= 0xE0 && first <= 0xEF ? 3
                                : first >= 0xF0 && first <= 0xF4 ? 4
                                                                 : 0;
    if (nLength == 0)
        return {1, false, 0};
    std::uint32_t nCode = first & (0xFFU >> (nLength + 1));
    for (std::size_t n = 1; n < nLength; ++n) {
        if (n >= sText.size() || (byteAt(n) & 0xC0U) != 0x80)
            return {n, false, 0};
        nCode = nCode << 6U | (byteAt(n) & 0x3FU);
        const bool bTooShort =
            n == 1 && ((first == 0xE0 && byteAt(1) < 0xA0) || (first == 0xF0 && byteAt(1) < 0x90));
        const bool bTooLarge =
            n == 1 && ((first == 0xED && byteAt(1) > 0x9F) || (first == 0xF4 && byteAt(1) > 0x8F));
        if (bTooShort || bTooLarge)
            return {1, false, 0};
    }
    return {nLength, true, nCode};
}

bool isXmlCharacter(std::uint32_t nCode) {
    return nCode == 9 || nCode == 10 || nCode == 13 || (nCode >= 32 && nCode != 0xFFFE && nCode != 0xFFFF);
}

std::string_view escapeOf(std::uint32_t nCode, bool bInAttribute) {
    switch (nCode) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case 13:
        return "&#13;";
    case '"':
        return bInAttribute ? "&quot;" : "";
    case 9:
        return bInAttribute ? "&#9;" : "";
    case 10:
        return bInAttribute ? "&#10;" : "";
    default:
        return "";
    }
}

std::string escaped(std::string_view sText, bool bInAttribute) {
    std::string sEscaped;
    while (!sText.empty()) {
        const Piece piece = frontOf(sText);
        if (!piece.bValid)
            sEscaped += "\xEF\xBF\xBD";
        else if (const auto sEscape = escapeOf(piece.nCode, bInAttribute); !sEscape.empty())
            sEscaped += sEscape;
        else if (isXmlCharacter(piece.nCode))
            sEscaped += sText.substr(0, piece.nBytes);
        sText.remove_prefix(piece.nBytes);
    }
    return sEscaped;
}

// ---- The text ----

std::string textOf(const OutputNode& node) {
    if (node.bText)
        return escaped(node.sText, false);
    std::string sContent;
    for (const OutputNode* pChild : node.aChildren)
        sContent += textOf(*pChild);
    if (node.sName.empty())
        return sContent;
    std::string sTag = "<" + node.sName;
    for (const auto& [sName, sValue] : node.aAttributes)
        sTag += " " + sName + "=\"" + escaped(sValue, true) + "\"";
    return sContent.empty() ? sTag + "/>" : sTag + ">" + sContent + "</" + node.sName + ">";
}

} // namespace

bool isAllowedName(std::string_view sName) {
    const auto colon = sName.find(':');
    if (colon == std::string_view::npos)
        return isPlainName(sName);
    return isPlainName(sName.substr(0, colon)) && isPlainName(sName.substr(colon + 1));
}

OutputNode* OutputTree::newElement(std::string_view sName) {
    if (!isAllowedName(sName))
        return nullptr;
    ++nMade_;
    OutputNode& node = aNodes_.emplace_back();
    node.sName = sName;
    return &node;
}

OutputNode* OutputTree::append(OutputNode* pParent, OutputNode* pChild) {
    if (pParent == nullptr || pChild == nullptr)
        failWithoutNode();
    if (pParent == &document_ && !document_.aChildren.empty())
        throw Failure(FailureNumber::DocumentFailure, "a document has only one root element");
    pParent->aChildren.push_back(pChild);
    pChild->pParent = pParent;
    return pChild;
}

void OutputTree::setText(OutputNode* pElement, std::string_view sText) {
    if (pElement == nullptr)
        failWithoutNode();
    for (OutputNode* pChild : pElement->aChildren)
        pChild->pParent = nullptr;
    pElement->aChildren.clear();
    if (sText.empty())
        return;
    OutputNode& text = aNodes_.emplace_back();
    text.bText = true;
    text.sText = sText;
    text.pParent = pElement;
    pElement->aChildren.push_back(&text);
}

void OutputTree::setAttribute(OutputNode* pElement, std::string_view sName, std::string_view sValue) {
    if (pElement == nullptr)
        failWithoutNode();
    for (auto& [sKnown, sKnownValue] : pElement->aAttributes) {
        if (sKnown == sName) {
            sKnownValue = sValue;
            return;
        }
    }
    if (!isAllowedName(sName))
        throw Failure(FailureNumber::DocumentFailure,
                      "\"" + std::string(sName) + "\" is not a name that XML allows");
    ++nMade_;
    pElement->aAttributes.emplace_back(sName, sValue);
}

void OutputTree::fillAttribute(OutputNode* pElement, std::string_view sName, std::string_view sValue) {
    const bool bThere = pElement != nullptr &&
                        std::any_of(pElement->aAttributes.begin(), pElement->aAttributes.end(),
                                    [sName](const auto& attribute) { return attribute.first == sName; });
    if (!bThere)
        failWithoutNode();
    setAttribute(pElement, sName, sValue);
}

std::string OutputTree::fileText() const {
    return replaceAll(textOf(document_), "><", ">\r\n<");
}

} // namespace halvane::oracle
