#include "oracle/OutputTree.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>
#include <cstdint>
#include <utility>

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

/// What ends a section inside of it is split.
std::string sectionOf(std::string_view sText) {
    std::string sClean;
    while (!sText.empty()) {
        const Piece piece = frontOf(sText);
        if (!piece.bValid)
            sClean += "\xEF\xBF\xBD";
        else if (isXmlCharacter(piece.nCode))
            sClean += sText.substr(0, piece.nBytes);
        sText.remove_prefix(piece.nBytes);
    }
    return "<![CDATA[" + replaceAll(sClean, "]]>", "]]]]>&gt;<![CDATA[") + "]]>";
}

// ---- The text ----

/// A tag or a text, and where it stands.
struct Token {
    std::string sText;
    bool bTag = false;
    std::size_t nDepth = 0;
    bool bInline = false; ///< no line break before it
};

/// @param sBinding what the prefix "p" stands for around the node.
void addTokens(const OutputNode& node, std::size_t nDepth, bool bInline, std::string sBinding,
               std::vector<Token>& aTokens) {
    if (node.bText) {
        const std::string sText = node.bCData ? sectionOf(node.sText) : escaped(node.sText, false);
        if (!sText.empty())
            aTokens.push_back({sText, false, nDepth, bInline});
        return;
    }
    std::string sTag = "<" + node.sName;
    if (!node.sBinding.empty() && node.sBinding != std::exchange(sBinding, node.sBinding))
        sTag += " xmlns:p=\"" + node.sBinding + "\"";
    for (const auto& [sName, sValue] : node.aAttributes)
        sTag += " " + sName + "=\"" + escaped(sValue, true) + "\"";
    for (const auto& [sName, sValue] : node.aAttributes)
        if (sName == "xmlns:p")
            sBinding = sValue;
    const std::size_t nStart = aTokens.size();
    aTokens.push_back({sTag + ">", true, nDepth, bInline});
    for (const OutputNode* pChild : node.aChildren)
        if (!pChild->bHeld)
            addTokens(*pChild, nDepth + 1, bInline || node.bInline, sBinding, aTokens);
    if (aTokens.size() == nStart + 1)
        aTokens.back().sText = sTag + "/>";
    else
        aTokens.push_back({"</" + node.sName + ">", true, nDepth, bInline || node.bInline});
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
    if (!pChild->bHeld)
        reveal(pParent);
    return pChild;
}

/// An element that was held back comes behind what was written meanwhile.
void OutputTree::reveal(OutputNode* pElement) {
    if (pElement == nullptr)
        return;
    reveal(pElement->pParent);
    if (std::exchange(pElement->bHeld, false) && pElement->pParent != nullptr) {
        std::vector<OutputNode*>& aSiblings = pElement->pParent->aChildren;
        std::erase(aSiblings, pElement);
        aSiblings.push_back(pElement);
    }
}

void OutputTree::setText(OutputNode* pElement, std::string_view sText) {
    if (pElement == nullptr)
        failWithoutNode();
    for (OutputNode* pChild : pElement->aChildren)
        pChild->pParent = nullptr;
    pElement->aChildren.clear();
    appendText(pElement, sText);
}

void OutputTree::appendText(OutputNode* pElement, std::string_view sText, bool bCData) {
    if (pElement == nullptr)
        failWithoutNode();
    if (sText.empty())
        return;
    reveal(pElement);
    OutputNode& text = aNodes_.emplace_back();
    text.bText = true;
    text.bCData = bCData;
    text.sText = sText;
    text.pParent = pElement;
    pElement->aChildren.push_back(&text);
}

void OutputTree::setAttribute(OutputNode* pElement, std::string_view sName, std::string_view sValue) {
    setConstantAttribute(pElement, sName, sValue);
    if (!sValue.empty())
        reveal(pElement);
}

std::optional<std::string> OutputTree::attribute(const OutputNode* pElement, std::string_view sName) {
    if (pElement == nullptr)
        return std::nullopt;
    const auto found = std::find_if(pElement->aAttributes.begin(), pElement->aAttributes.end(),
                                    [sName](const auto& attribute) { return attribute.first == sName; });
    return found == pElement->aAttributes.end() ? std::nullopt : std::optional(found->second);
}

void OutputTree::removeAttribute(OutputNode* pElement, std::string_view sName) {
    std::erase_if(pElement->aAttributes, [sName](const auto& attribute) { return attribute.first == sName; });
}

void OutputTree::setConstantAttribute(OutputNode* pElement, std::string_view sName, std::string_view sValue) {
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
    if (!attribute(pElement, sName))
        failWithoutNode();
    setAttribute(pElement, sName, sValue);
}

std::string OutputTree::fileText(const OutputForm& form) const {
    std::vector<Token> aTokens;
    for (const std::string& sHead : form.aHead)
        aTokens.push_back({sHead, true});
    for (const OutputNode* pChild : document_.aChildren)
        addTokens(*pChild, 0, false, "", aTokens);
    std::string sFile;
    for (std::size_t n = 0; n < aTokens.size(); ++n) {
        const Token& token = aTokens[n];
        if (n > 0 && token.bTag && aTokens[n - 1].bTag && !token.bInline && !form.sBreak.empty())
            sFile += form.sBreak + std::string(form.nIndent * token.nDepth, ' ');
        sFile += token.sText;
    }
    return sFile;
}

} // namespace halvane::oracle
