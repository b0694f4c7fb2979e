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

/// A piece of a text, from lBegin to before lEnd.
struct Span {
    std::size_t lBegin;
    std::size_t lEnd;
};

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::size_t skipBlanks(std::string_view sText, std::size_t lAt) {
    while (lAt < sText.size() && isBlank(sText[lAt]))
        ++lAt;
    return lAt;
}

bool continuesWith(std::string_view sText, std::size_t lAt, std::string_view sLower) {
    const auto sPiece = sText.substr(lAt, sLower.size());
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
    const std::size_t lLast = sText.substr(0, upToBlank.lEnd).find_last_not_of(":;,.)]");
    const bool bMark = lLast >= upToBlank.lBegin && (sText[lLast] == '"' || sText[lLast] == '\'') &&
                       around.isOpen(sText[lLast]);
    return bMark ? lLast : upToBlank.lEnd;
}

/// Where a value ends: at its closing quote, else at a blank. A backslash takes the next character with it.
std::size_t endOfValue(std::string_view sText, std::size_t lBegin, const Quotations& around) {
    const bool bQuoted = lBegin < sText.size() && (sText[lBegin] == '\'' || sText[lBegin] == '"');
    std::size_t lAt = bQuoted ? lBegin + 1 : lBegin;
    for (; lAt < sText.size() && (bQuoted || !isBlank(sText[lAt])); ++lAt)
        if (sText[lAt] == '\\')
            ++lAt;
        else if (bQuoted && sText[lAt] == sText[lBegin])
            return lAt + 1;
    lAt = std::min(lAt, sText.size());
    return bQuoted ? lAt : endInQuotation(sText, {lBegin, lAt}, around);
}

/// The value after the keyword that begins at a place, quotes included.
std::optional<Span> valueOfKeyword(std::string_view sText, std::size_t lAt, const Quotations& around) {
    constexpr std::array<std::string_view, 3> keywords{"password", "passwd", "pwd"};
    const auto* pKeyword = std::find_if(keywords.begin(), keywords.end(), [&](std::string_view sKeyword) {
        return continuesWith(sText, lAt, sKeyword);
    });
    if (pKeyword == keywords.end())
        return std::nullopt;
    const std::size_t lEquals = skipBlanks(sText, lAt + pKeyword->size());
    if (lEquals >= sText.size() || sText[lEquals] != '=')
        return std::nullopt;
    const std::size_t lBegin = skipBlanks(sText, lEquals + 1);
    return Span{lBegin, endOfValue(sText, lBegin, around)};
}

/// Finds the last "@" before the next blank. A piece without blanks may hold very many addresses: it is
/// looked through once.
class Signs {
public:
    /// @param lAt never less than before. @returns where it stands, which may be before the place; npos for
    ///        none.
    std::size_t lastBeforeBlank(std::string_view sText, std::size_t lAt) {
        if (lAt >= lEnd_) {
            lEnd_ = std::min(sText.find_first_of(" \t\r\n", lAt), sText.size());
            const auto lInPiece = sText.substr(lAt, lEnd_ - lAt).rfind('@');
            lSign_ = lInPiece == std::string_view::npos ? lInPiece : lAt + lInPiece;
        }
        return lSign_;
    }

private:
    std::size_t lEnd_ = 0;
    std::size_t lSign_ = std::string_view::npos;
};

/// What stands between the colon and the last "@" of the address whose "://" is at a place.
std::optional<Span> passwordOfAddress(std::string_view sText, std::size_t lAt, Signs& signs) {
    if (!continuesWith(sText, lAt, "://"))
        return std::nullopt;
    const auto lSign = signs.lastBeforeBlank(sText, lAt);
    const auto lColon = sText.find_first_of(":/@", lAt + 3);
    if (lSign == std::string_view::npos || lColon == std::string_view::npos || lColon >= lSign ||
        sText[lColon] != ':')
        return std::nullopt;
    return Span{lColon + 1, lSign};
}

} // namespace

std::string withoutPasswords(std::string_view sText) {
    std::string sMasked;
    std::size_t lAt = 0;
    Quotations around;
    Signs signs;
    while (lAt < sText.size()) {
        auto secret = valueOfKeyword(sText, lAt, around);
        if (!secret)
            secret = passwordOfAddress(sText, lAt, signs);
        if (!secret) {
            around.pass(sText[lAt]);
            sMasked += sText[lAt++];
            continue;
        }
        sMasked.append(sText, lAt, secret->lBegin - lAt).append(sMask);
        lAt = secret->lEnd;
    }
    return sMasked;
}

} // namespace halvane
