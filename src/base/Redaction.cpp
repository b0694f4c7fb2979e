#include "base/Redaction.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>

// Scanned by hand: the standard library's regular expressions recurse for each character and crash on texts
// of some 50,000 characters (measured), which a control file may well hold.

namespace halvane {

namespace {

constexpr const char* sMask = "***";

/// A piece of a text, from nBegin to before nEnd.
struct Span {
    std::size_t nBegin;
    std::size_t nEnd;
};

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::size_t skipBlanks(std::string_view sText, std::size_t nAt) {
    while (nAt < sText.size() && isBlank(sText[nAt]))
        ++nAt;
    return nAt;
}

bool continuesWith(std::string_view sText, std::size_t nAt, std::string_view sLower) {
    const auto sPiece = sText.substr(nAt, sLower.size());
    return sPiece.size() == sLower.size() &&
           std::equal(sPiece.begin(), sPiece.end(), sLower.begin(), [](char left, char right) {
               return std::tolower(static_cast<unsigned char>(left)) == right;
           });
}

/// Which quotations a place stands in, as far as the marks before it tell.
class Quotations {
public:
    void pass(char c) {
        bSingle_ = bSingle_ != (c == '\'');
        bDouble_ = bDouble_ != (c == '"');
    }
    [[nodiscard]] bool isOpen(char cMark) const { return cMark == '"' ? bDouble_ : bSingle_; }

private:
    bool bSingle_ = false;
    bool bDouble_ = false;
};

/// Where a value without quotes of its own ends, that stands before a blank: where the quotation around it
/// ends with it, before the mark and what may follow that.
std::size_t endInQuotation(std::string_view sText, Span upToBlank, const Quotations& around) {
    // At the latest the equals sign in front is found.
    const std::size_t nLast = sText.substr(0, upToBlank.nEnd).find_last_not_of(":;,.)]");
    const bool bMark = nLast >= upToBlank.nBegin && (sText[nLast] == '"' || sText[nLast] == '\'') &&
                       around.isOpen(sText[nLast]);
    return bMark ? nLast : upToBlank.nEnd;
}

/// Where a value ends: at its closing quote, else at a blank. A backslash takes the next character with it.
std::size_t endOfValue(std::string_view sText, std::size_t nBegin, const Quotations& around) {
    const bool bQuoted = nBegin < sText.size() && (sText[nBegin] == '\'' || sText[nBegin] == '"');
    std::size_t nAt = bQuoted ? nBegin + 1 : nBegin;
    for (; nAt < sText.size() && (bQuoted || !isBlank(sText[nAt])); ++nAt)
        if (sText[nAt] == '\\')
            ++nAt;
        else if (bQuoted && sText[nAt] == sText[nBegin])
            return nAt + 1;
    nAt = std::min(nAt, sText.size());
    return bQuoted ? nAt : endInQuotation(sText, {nBegin, nAt}, around);
}

/// The value after the keyword that begins at a place, quotes included.
std::optional<Span> valueOfKeyword(std::string_view sText, std::size_t nAt, const Quotations& around) {
    constexpr std::array<std::string_view, 3> keywords{"password", "passwd", "pwd"};
    const auto* pKeyword = std::find_if(keywords.begin(), keywords.end(), [&](std::string_view sKeyword) {
        return continuesWith(sText, nAt, sKeyword);
    });
    if (pKeyword == keywords.end())
        return std::nullopt;
    const std::size_t nEquals = skipBlanks(sText, nAt + pKeyword->size());
    if (nEquals >= sText.size() || sText[nEquals] != '=')
        return std::nullopt;
    const std::size_t nBegin = skipBlanks(sText, nEquals + 1);
    return Span{nBegin, endOfValue(sText, nBegin, around)};
}

/// Finds the last "@" before the next blank. A piece without blanks may hold very many addresses: it is
/// looked through once.
class Signs {
public:
    /// @param nAt never less than before. @returns where it stands, which may be before the place; npos for
    ///        none.
    std::size_t lastBeforeBlank(std::string_view sText, std::size_t nAt) {
        if (nAt >= nEnd_) {
            nEnd_ = std::min(sText.find_first_of(" \t\r\n", nAt), sText.size());
            const auto lInPiece = sText.substr(nAt, nEnd_ - nAt).rfind('@');
            nSign_ = lInPiece == std::string_view::npos ? lInPiece : nAt + lInPiece;
        }
        return nSign_;
    }

private:
    std::size_t nEnd_ = 0;
    std::size_t nSign_ = std::string_view::npos;
};

/// What stands between the colon and the last "@" of the address whose "://" is at a place.
std::optional<Span> passwordOfAddress(std::string_view sText, std::size_t nAt, Signs& signs) {
    if (!continuesWith(sText, nAt, "://"))
        return std::nullopt;
    const auto lSign = signs.lastBeforeBlank(sText, nAt);
    const auto lColon = sText.find_first_of(":/@", nAt + 3);
    if (lSign == std::string_view::npos || lColon == std::string_view::npos || lColon >= lSign ||
        sText[lColon] != ':')
        return std::nullopt;
    return Span{lColon + 1, lSign};
}

} // namespace

std::string withoutPasswords(std::string_view sText) {
    std::string sMasked;
    std::size_t nAt = 0;
    Quotations around;
    Signs signs;
    while (nAt < sText.size()) {
        auto secret = valueOfKeyword(sText, nAt, around);
        if (!secret)
            secret = passwordOfAddress(sText, nAt, signs);
        if (!secret) {
            around.pass(sText[nAt]);
            sMasked += sText[nAt++];
            continue;
        }
        sMasked.append(sText, nAt, secret->nBegin - nAt).append(sMask);
        nAt = secret->nEnd;
    }
    return sMasked;
}

} // namespace halvane
