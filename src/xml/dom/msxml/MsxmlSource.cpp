#include "xml/dom/msxml/MsxmlSource.h"

#include "base/com/Windows.h"
#include "xml/dom/Backend.h"
#include "xml/dom/Characters.h"
#include "xml/dom/Depth.h"
#include "xml/dom/MarkupScanner.h"
#include "xml/dom/Width.h"
#include "xml/dom/msxml/MsxmlDecoding.h"
#include "xml/dom/msxml/MsxmlEntities.h"

#include <algorithm>
#include <vector>

namespace halvane::dom::msxml {

namespace {

ParseError errorAt(std::int32_t lCode, std::string sReason, std::uint32_t nLine) {
    return {lCode, std::move(sReason), nLine, 0, {}};
}

/// How many namespaces a start tag declares.
std::size_t declarationsIn(std::string_view sTag) noexcept {
    if (sTag.find("xmlns") == std::string_view::npos)
        return 0;
    sTag.remove_prefix(std::min(sTag.find_first_of(" \t\r\n"), sTag.size()));
    std::size_t nCount = 0;
    for (WrittenAttribute attribute; takeAttribute(sTag, attribute);)
        nCount += attribute.sName == "xmlns" || attribute.sName.starts_with("xmlns:") ? 1U : 0U;
    return nCount;
}

} // namespace

Source::Source(std::string_view sBytes, bool bUtf8) {
    Decoded decoded = bUtf8 ? decodeUtf8(sBytes) : decode(sBytes);
    sText_ = std::move(decoded.sText);
    if (!decoded.sRefusal.empty()) {
        refusal_ = errorAt(E_FAIL, std::move(decoded.sRefusal), decoded.nLine);
        return;
    }
    findProlog();
    replaceEntities();
    refuseNul();
    checkDepth();
    checkWidth();
}

void Source::findProlog() {
    MarkupScanner scanner(sText_);
    for (Markup markup; scanner.next(markup);) {
        if (markup.what == Markup::What::Start || markup.what == Markup::What::Empty)
            return;
        if (markup.what == Markup::What::DocumentType)
            sDocumentType_ = markup.sText;
        else if (markup.sText.data() == sText_.data() && markup.sText.starts_with("<?xml") &&
                 isXmlWhiteSpace(markup.sText.substr(5, 1)))
            sDeclaration_ = markup.sText;
    }
}

void Source::replaceEntities() {
    if (sText_.find('&') == std::string::npos && sDocumentType_.empty())
        return;
    Entities entities(sDocumentType_);
    std::string sExpanded = entities.expand(sText_);
    refusal_ = entities.error();
    if (refusal_.errorCode == 0 && entities.haveReplaced())
        sText_ = std::move(sExpanded);
}

/// Not every version takes a NUL for what XML does not allow.
void Source::refuseNul() {
    const std::size_t nNul = refusal_.errorCode == 0 ? sText_.find('\0') : std::string::npos;
    if (nNul == std::string::npos)
        return;
    const auto nLines = std::count(sText_.begin(), sText_.begin() + static_cast<std::ptrdiff_t>(nNul), '\n');
    refusal_ = errorAt(static_cast<std::int32_t>(LoadError::NulCharacter), std::string(nulReason),
                       static_cast<std::uint32_t>(nLines) + 1);
}

void Source::checkWidth() {
    if (refusal_.errorCode != 0)
        return;
    if (const auto nLine = lineOfTooManyAttributes(sText_))
        refusal_ = tooManyAttributes(*nLine);
    else
        checkDeclarations();
}

void Source::checkDeclarations() {
    std::vector<std::size_t> aInForce; // in each open element
    MarkupScanner scanner(sText_);
    for (Markup markup; refusal_.errorCode == 0 && scanner.next(markup);) {
        if (markup.what != Markup::What::Start && markup.what != Markup::What::Empty)
            continue;
        aInForce.resize(markup.nDepth);
        aInForce.push_back((aInForce.empty() ? 0 : aInForce.back()) + declarationsIn(markup.sText));
        if (aInForce.back() > mostDeclarations)
            refusal_ = errorAt(
                static_cast<std::int32_t>(LoadError::TooWide),
                std::string(declarationsReason).append(std::to_string(mostDeclarations)).append(widthRemedy),
                markup.nLine);
    }
}

void Source::checkDepth() {
    const bool bEntities = sDocumentType_.find("<!ENTITY") != std::string::npos;
    const std::uint32_t nDeepest = bEntities ? deepestElementWithEntities : deepestElement;
    MarkupScanner scanner(sText_);
    for (Markup markup; refusal_.errorCode == 0 && scanner.next(markup);)
        if (markup.nDepth >= nDeepest &&
            (markup.what == Markup::What::Start || markup.what == Markup::What::Empty))
            refusal_ = tooDeep(nDeepest, markup.nLine);
}

std::string Source::withoutEncoding() const {
    std::string sResult = sText_;
    const std::size_t nBegin = sDeclaration_.find("encoding");
    const std::string_view sEncoding = declaredValue(sDeclaration_, "encoding");
    if (sEncoding.empty())
        return sResult;
    const auto nValue = static_cast<std::size_t>(sEncoding.data() - sDeclaration_.data());
    std::fill_n(sResult.begin() + static_cast<std::ptrdiff_t>(nBegin), nValue + sEncoding.size() + 1 - nBegin,
                ' ');
    return sResult;
}

std::string Source::declaration() const {
    if (sDeclaration_.empty())
        return {};
    std::string sData = "version=\"1.0\"";
    for (const std::string_view sName : {"encoding", "standalone"})
        if (const std::string_view sValue = declaredValue(sDeclaration_, sName); !sValue.empty())
            sData.append(" ").append(sName).append("=\"").append(sValue).append("\"");
    return sData;
}

std::string_view Source::externalId() const noexcept {
    const std::string_view sHead = std::string_view(sDocumentType_).substr(0, sDocumentType_.find('['));
    for (const std::string_view sKeyword : {"SYSTEM", "PUBLIC"})
        if (const std::size_t nAt = sHead.find(sKeyword); nAt != std::string_view::npos)
            return declaredValue(sHead.substr(nAt), sKeyword);
    return {};
}

} // namespace halvane::dom::msxml
