#include "xml/dom/MsxmlSource.h"

#include "collection/com/Bstr.h"
#include "xml/dom/Backend.h"
#include "xml/dom/Characters.h"
#include "xml/dom/Depth.h"
#include "xml/dom/MarkupScanner.h"
#include "xml/dom/MsxmlDecoding.h"
#include "xml/dom/MsxmlEntities.h"
#include "xml/dom/Width.h"

#include <algorithm>
#include <vector>

namespace halvane::dom::msxml {

namespace {

enum class Utf16 : std::uint8_t { No, LittleEndian, BigEndian };

Utf16 utf16Of(std::string_view sBytes) noexcept {
    const auto begins = [sBytes](unsigned char cFirst, unsigned char cSecond) {
        return sBytes.size() >= 2 && static_cast<unsigned char>(sBytes[0]) == cFirst &&
               static_cast<unsigned char>(sBytes[1]) == cSecond;
    };
    if (begins(0xFF, 0xFE) || begins('<', 0))
        return Utf16::LittleEndian;
    return begins(0xFE, 0xFF) || begins(0, '<') ? Utf16::BigEndian : Utf16::No;
}

std::string fromUtf16(std::string_view sBytes, Utf16 order) {
    std::wstring sWide;
    sWide.reserve(sBytes.size() / 2);
    const std::size_t nHigh = order == Utf16::BigEndian ? 0 : 1;
    for (std::size_t n = 0; n + 1 < sBytes.size(); n += 2)
        sWide.push_back(static_cast<wchar_t>((static_cast<unsigned char>(sBytes[n + nHigh]) << 8) |
                                             static_cast<unsigned char>(sBytes[n + 1 - nHigh])));
    return com::utf8Of(sWide.starts_with(L'\xFEFF') ? std::wstring_view(sWide).substr(1) : sWide);
}

std::string textOf(std::string_view sBytes, bool bUtf8) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (const Utf16 order = utf16Of(sBytes); !bUtf8 && order != Utf16::No)
        return fromUtf16(sBytes, order);
    if (sBytes.starts_with(byteOrderMark))
        sBytes.remove_prefix(byteOrderMark.size());
    return std::string(sBytes);
}

ParseError errorAt(std::int32_t lCode, std::string sReason, std::uint32_t nLine) {
    return {lCode, std::move(sReason), nLine, 0, {}};
}

bool isUtf8(std::string_view sText) noexcept {
    for (std::size_t n = 0; n < sText.size();) {
        const DataCharacter character = characterOfData(sText.data() + n, sText.data() + sText.size());
        if (character.kind == DataCharacter::Kind::Invalid)
            return false;
        n += character.nBytes;
    }
    return true;
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

Source::Source(std::string_view sBytes, bool bUtf8)
    : sText_(textOf(sBytes, bUtf8)), bText_(bUtf8 || utf16Of(sBytes) != Utf16::No) {
    if (bUtf8 && !isUtf8(sText_)) {
        refusal_ = errorAt(E_FAIL, "the text is not UTF-8", 0);
        return;
    }
    if (!bText_)
        decodeHiddenMarkup();
    findProlog();
    replaceEntities();
    refuseNul();
    checkDepth();
    checkWidth();
}

void Source::decodeHiddenMarkup() {
    auto hidden = hiddenMarkupOf(sText_);
    if (!hidden)
        return;
    bText_ = true;
    if (hidden->sText)
        sText_ = std::move(*hidden->sText);
    else
        refusal_ = errorAt(E_FAIL, "the encoding \"" + hidden->sEncoding + "\" is not known here", 1);
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
    if (refusal_.errorCode != 0)
        return;
    if (sText_.find('&') == std::string::npos && sDocumentType_.empty())
        return;
    Entities entities(sDocumentType_);
    std::string sExpanded = entities.expand(sText_);
    refusal_ = entities.error();
    if (refusal_.errorCode != 0 || !entities.haveReplaced())
        return;
    if (!bText_ && !isUtf8(sText_))
        refusal_ = errorAt(E_FAIL, "the document refers to an entity and is neither UTF-8 nor UTF-16", 0);
    bText_ = true;
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
