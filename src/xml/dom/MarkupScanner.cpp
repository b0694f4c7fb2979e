#include "xml/dom/MarkupScanner.h"

#include "base/CaseFolding.h"
#include "base/FindRow.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace halvane::dom {

namespace {

Markup::What whatBegins(std::string_view sRest) noexcept {
    using What = Markup::What;
    if (!sRest.starts_with('<'))
        return What::Text;
    if (sRest.starts_with("<!--"))
        return What::Comment;
    if (sRest.starts_with("<![CDATA["))
        return What::CData;
    if (sRest.starts_with("<!"))
        return What::DocumentType;
    if (sRest.starts_with("<?"))
        return What::Instruction;
    return sRest.starts_with("</") ? What::End : What::Start;
}

/// Behind the next `sEnd`; the end of the text when there is none.
std::size_t behind(std::string_view sText, std::string_view sEnd, std::size_t nFrom) noexcept {
    const std::size_t nFound = sText.find(sEnd, nFrom);
    return nFound == std::string_view::npos ? sText.size() : nFound + sEnd.size();
}

/// Behind the ">" of a tag, past the values between quotes.
std::size_t behindTag(std::string_view sText, std::size_t nAt) noexcept {
    while (nAt < sText.size()) {
        const char c = sText[nAt];
        if (c == '>')
            return nAt + 1;
        nAt = c == '"' || c == '\'' ? behind(sText, sText.substr(nAt, 1), nAt + 1) : nAt + 1;
    }
    return nAt;
}

/// Behind the ">" of a document type, past its internal subset.
std::size_t behindDocumentType(std::string_view sText, std::size_t nAt) noexcept {
    bool bSubset = false;
    while (nAt < sText.size()) {
        const char c = sText[nAt];
        if (c == '>' && !bSubset)
            return nAt + 1;
        if (c == '[' || c == ']')
            bSubset = c == '[';
        if (c == '"' || c == '\'')
            nAt = behind(sText, sText.substr(nAt, 1), nAt + 1);
        else if (sText.substr(nAt).starts_with("<!--"))
            nAt = behind(sText, "-->", nAt + 4);
        else if (sText.substr(nAt).starts_with("<?"))
            nAt = behind(sText, "?>", nAt + 2);
        else
            ++nAt;
    }
    return nAt;
}

std::uint32_t countLineFeeds(std::string_view sText) noexcept {
    return static_cast<std::uint32_t>(std::count(sText.begin(), sText.end(), '\n'));
}

} // namespace

std::size_t MarkupScanner::endOf(Markup::What what) const noexcept {
    switch (what) {
    case Markup::What::Text:
        return std::min(sText_.find('<', nAt_), sText_.size());
    case Markup::What::Comment:
        return behind(sText_, "-->", nAt_ + 4);
    case Markup::What::CData:
        return behind(sText_, "]]>", nAt_ + 9);
    case Markup::What::Instruction:
        return behind(sText_, "?>", nAt_ + 2);
    case Markup::What::DocumentType:
        return behindDocumentType(sText_, nAt_ + 2);
    default:
        return behindTag(sText_, nAt_ + 1);
    }
}

bool MarkupScanner::next(Markup& markup) noexcept {
    using What = Markup::What;
    if (nAt_ >= sText_.size())
        return false;
    markup.what = whatBegins(sText_.substr(nAt_));
    const std::size_t nEnd = endOf(markup.what);
    markup.sText = sText_.substr(nAt_, nEnd - nAt_);
    if (markup.what == What::Start && markup.sText.ends_with("/>"))
        markup.what = What::Empty;
    if (markup.what == What::End && nDepth_ > 0)
        --nDepth_;
    markup.nDepth = nDepth_;
    markup.nLine = nLine_;
    if (markup.what == What::Start)
        ++nDepth_;
    nLine_ += countLineFeeds(markup.sText);
    nAt_ = nEnd;
    return true;
}

bool takeAttribute(std::string_view& sRest, WrittenAttribute& attribute) noexcept {
    constexpr std::string_view space = " \t\r\n";
    const std::size_t nName = sRest.find_first_not_of(space);
    const std::size_t nEquals = sRest.find('=');
    const std::size_t nQuote = sRest.find_first_of("'\"");
    if (nName == std::string_view::npos || nEquals == std::string_view::npos || nName >= nEquals ||
        nQuote == std::string_view::npos || nQuote < nEquals)
        return false;
    const std::size_t nEnd = sRest.find(sRest[nQuote], nQuote + 1);
    if (nEnd == std::string_view::npos)
        return false;
    attribute.sName = sRest.substr(nName, std::min(sRest.find_first_of(space, nName), nEquals) - nName);
    attribute.sValue = sRest.substr(nQuote + 1, nEnd - nQuote - 1);
    sRest.remove_prefix(nEnd + 1);
    return true;
}

std::size_t endOfReference(std::string_view sText) noexcept {
    // A text full of "&" is not searched to its end at each of them.
    constexpr std::size_t longest = 64;
    return sText.starts_with('&') ? sText.substr(0, longest).find(';') : std::string_view::npos;
}

std::string withoutReferences(std::string_view sWritten) {
    using Entity = std::pair<std::string_view, char>;
    constexpr std::array<Entity, 5> aEntities{
        {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}}};
    std::string sResult;
    while (!sWritten.empty()) {
        const std::size_t nEnd = endOfReference(sWritten);
        if (nEnd == std::string_view::npos) {
            sResult.push_back(sWritten.front());
            sWritten.remove_prefix(1);
            continue;
        }
        const std::string_view sName = sWritten.substr(1, nEnd - 1);
        const auto* const pEntity = findRow(aEntities, sName, &Entity::first);
        if (const auto lCode = referredCode(sName))
            appendCode(sResult, *lCode);
        else if (pEntity != nullptr)
            sResult.push_back(pEntity->second);
        else
            sResult.append(sWritten.substr(0, nEnd + 1));
        sWritten.remove_prefix(nEnd + 1);
    }
    return sResult;
}

std::optional<std::int32_t> referredCode(std::string_view sName) noexcept {
    if (!sName.starts_with('#'))
        return std::nullopt;
    sName.remove_prefix(1);
    const bool bHex = sName.starts_with('x');
    sName.remove_prefix(bHex ? 1 : 0);
    std::int32_t lCode = 0;
    const auto result = std::from_chars(sName.data(), sName.data() + sName.size(), lCode, bHex ? 16 : 10);
    const bool bRead = result.ec == std::errc() && result.ptr == sName.data() + sName.size();
    return bRead && lCode > 0 && lCode < 0x110000 ? std::optional(lCode) : std::nullopt;
}

std::string_view declaredValue(std::string_view sDeclaration, std::string_view sName) noexcept {
    std::size_t nAt = sDeclaration.find(sName);
    if (nAt == std::string_view::npos)
        return {};
    nAt = sDeclaration.find_first_of("'\"", nAt + sName.size());
    if (nAt == std::string_view::npos)
        return {};
    const std::size_t nEnd = sDeclaration.find(sDeclaration[nAt], nAt + 1);
    return nEnd == std::string_view::npos ? std::string_view() : sDeclaration.substr(nAt + 1, nEnd - nAt - 1);
}

} // namespace halvane::dom
