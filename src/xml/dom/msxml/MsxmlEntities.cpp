#include "xml/dom/msxml/MsxmlEntities.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "xml/dom/Backend.h"
#include "xml/dom/MarkupScanner.h"
#include "xml/dom/Width.h"

#include <algorithm>
#include <array>

namespace halvane::dom::msxml {

namespace {

constexpr std::size_t deepest = 40;             ///< references inside references
constexpr std::size_t mostReplaced = 1'000'000; ///< references: they cost time even if they add nothing
constexpr std::string_view space = " \t\r\n";

bool isPredefined(std::string_view sName) noexcept {
    constexpr std::array aNames = {std::string_view("amp"), std::string_view("lt"), std::string_view("gt"),
                                   std::string_view("quot"), std::string_view("apos")};
    return sName.starts_with('#') || std::find(aNames.begin(), aNames.end(), sName) != aNames.end();
}

/// The next word, cut off the front of a declaration.
std::string_view takeWord(std::string_view& sRest) noexcept {
    sRest.remove_prefix(std::min(sRest.find_first_not_of(space), sRest.size()));
    const std::string_view sWord = sRest.substr(0, sRest.find_first_of(" \t\r\n>'\""));
    sRest.remove_prefix(sWord.size());
    return sWord;
}

/// Behind the ">" of a declaration, past the texts between quotes.
std::size_t endOfDeclaration(std::string_view sText) noexcept {
    std::size_t n = 0;
    while (n < sText.size() && sText[n] != '>') {
        if (sText[n] == '"' || sText[n] == '\'')
            n = std::min(sText.find(sText[n], n + 1), sText.size() - 1);
        ++n;
    }
    return std::min(n + 1, sText.size());
}

/// The value with the character references that it holds replaced, as its declaration has it.
std::string withCharacters(std::string_view sLiteral) {
    std::string sValue;
    for (std::size_t n = 0; n < sLiteral.size();) {
        const std::string_view sRest = sLiteral.substr(n);
        const std::size_t nEnd = sRest.starts_with("&#") ? endOfReference(sRest) : std::string_view::npos;
        if (nEnd == std::string_view::npos) {
            sValue.push_back(sLiteral[n++]);
            continue;
        }
        if (const auto lCode = referredCode(sRest.substr(1, nEnd - 1)))
            appendCode(sValue, *lCode);
        else
            sValue.append(sRest.substr(0, nEnd + 1)); // refused where it is referred to
        n += nEnd + 1;
    }
    return sValue;
}

} // namespace

Entities::Entities(std::string_view sDocumentType) {
    const std::size_t nBegin = sDocumentType.find('[');
    const std::size_t nEnd = sDocumentType.rfind(']');
    if (nBegin != std::string_view::npos && nEnd != std::string_view::npos && nBegin < nEnd)
        readSubset(sDocumentType.substr(nBegin + 1, nEnd - nBegin - 1));
}

void Entities::readSubset(std::string_view sSubset) {
    while (!sSubset.empty() && error_.errorCode == 0) {
        std::size_t nEnd = 1;
        if (sSubset.starts_with("<!--")) {
            nEnd = std::min(sSubset.find("-->", 4), sSubset.size());
        } else if (sSubset.starts_with("<?")) {
            nEnd = std::min(sSubset.find("?>", 2), sSubset.size());
        } else if (sSubset.starts_with("<!")) {
            nEnd = endOfDeclaration(sSubset);
            const std::string_view sDeclaration = sSubset.substr(0, nEnd);
            if (sDeclaration.starts_with("<!ENTITY"))
                readEntity(sDeclaration.substr(8));
            else
                expandPiece(sDeclaration, Place::Tag, deepest); // a default value may hold none
            if (sDeclaration.starts_with("<!ATTLIST"))
                readDefaults(sDeclaration.substr(9));
        } else if (sSubset.starts_with('%')) {
            nEnd = std::min(sSubset.find(';'), sSubset.size() - 1) + 1;
            refuseParameter(sSubset.substr(1, nEnd - 2));
        }
        sSubset.remove_prefix(nEnd);
    }
}

void Entities::readEntity(std::string_view sDeclaration) {
    std::string_view sRest = sDeclaration;
    std::string_view sName = takeWord(sRest);
    const bool bParameter = sName == "%";
    if (bParameter)
        sName = takeWord(sRest);
    const std::string_view sKeyword = takeWord(sRest);
    Entity entity;
    entity.bExternal = !sKeyword.empty();
    const std::size_t nBegin = sRest.find_first_of("'\"");
    if (!entity.bExternal && nBegin != std::string_view::npos)
        entity.sValue =
            withCharacters(sRest.substr(nBegin + 1, sRest.find(sRest[nBegin], nBegin + 1) - nBegin - 1));
    // The first declaration counts.
    (bParameter ? parameters_ : general_).emplace(sName, std::move(entity));
}

/// Only default values stand between quotes there. Each attribute has one, or a keyword in its place.
void Entities::readDefaults(std::string_view sDeclaration) {
    Declared& declared = declared_[std::string(takeWord(sDeclaration))];
    for (;;) {
        const std::size_t nBegin = sDeclaration.find_first_of("'\"#");
        if (nBegin == std::string_view::npos)
            return;
        std::size_t nEnd = nBegin;
        if (sDeclaration[nBegin] != '#') {
            nEnd = sDeclaration.find(sDeclaration[nBegin], nBegin + 1);
            if (nEnd == std::string_view::npos)
                return;
            declared.nSize += bytesOfAddedNode + nEnd - nBegin - 1;
        }
        // A value follows this keyword.
        const bool bFixed = sDeclaration.substr(nBegin).starts_with("#FIXED");
        if (!bFixed && ++declared.nAttributes > mostAttributes && error_.errorCode == 0)
            error_ = tooManyAttributes(nLine_);
        sDeclaration.remove_prefix(nEnd + 1);
    }
}

void Entities::refuseParameter(std::string_view sName) {
    const auto it = parameters_.find(sName);
    if (it != parameters_.end() && it->second.bExternal)
        fail("the external entity \"" + std::string(sName) + "\" is not loaded");
    else
        fail("the parameter entity \"" + std::string(sName) + "\" is not expanded");
}

void Entities::fail(std::string sReason) {
    if (error_.errorCode == 0)
        error_ = {static_cast<std::int32_t>(LoadError::ExternalEntity), std::move(sReason), nLine_, 0, {}};
}

std::string Entities::expand(std::string_view sDocument) {
    sOut_.clear();
    nReplaced_ = 0;
    nLimit_ = sDocument.size() + growthLimit(sDocument.size());
    nDefaults_ = 0;
    expandMarkup(sDocument, 0);
    return std::move(sOut_);
}

void Entities::expandMarkup(std::string_view sText, std::size_t nDepth) {
    using What = Markup::What;
    MarkupScanner scanner(sText);
    for (Markup markup; error_.errorCode == 0 && scanner.next(markup);) {
        if (nDepth == 0)
            nLine_ = markup.nLine;
        const bool bTag = markup.what == What::Start || markup.what == What::Empty;
        if (bTag)
            addDefaults(markup.sText);
        if (bTag || markup.what == What::Text)
            expandPiece(markup.sText, bTag ? Place::Tag : Place::Content, nDepth);
        else
            sOut_.append(markup.sText);
    }
}

void Entities::expandPiece(std::string_view sPiece, Place place, std::size_t nDepth) {
    while (error_.errorCode == 0) {
        const std::size_t nReference = std::min(sPiece.find('&'), sPiece.size());
        append(sPiece.substr(0, nReference), place, nDepth);
        sPiece.remove_prefix(nReference);
        const std::size_t nEnd = sPiece.find(';');
        if (nEnd == std::string_view::npos) {
            sOut_.append(sPiece); // nothing more, or ill-formed
            return;
        }
        const std::string_view sName = sPiece.substr(1, nEnd - 1);
        if (isPredefined(sName))
            sOut_.append(sPiece.substr(0, nEnd + 1));
        else
            replace(sName, place, nDepth);
        sPiece.remove_prefix(nEnd + 1);
    }
}

/// What stands in an entity must not end the value or the line that the reference stands in.
void Entities::append(std::string_view sText, Place place, std::size_t nDepth) {
    if (nDepth == 0 || nDepth == deepest)
        sOut_.append(sText);
    else if (place == Place::Content)
        sOut_.append(replaceAll(sText, "\n", "&#10;"));
    else if (place == Place::Tag)
        sOut_.append(replaceAll(sText, "\n", " "));
    else
        sOut_.append(replaceAll(replaceAll(replaceAll(sText, "\n", " "), "\"", "&quot;"), "'", "&apos;"));
    if (nDepth == 0)
        nLine_ += static_cast<std::uint32_t>(std::count(sText.begin(), sText.end(), '\n'));
    checkGrowth();
}

void Entities::checkGrowth() {
    if (sOut_.size() + nDefaults_ > nLimit_)
        fail(std::string(growthReason));
}

/// MSXML gives an element its default attributes.
void Entities::addDefaults(std::string_view sTag) {
    const std::string_view sName = sTag.substr(1, sTag.find_first_of(" \t\r\n/>") - 1);
    const auto it = declared_.find(sName);
    if (it == declared_.end())
        return;
    nDefaults_ += it->second.nSize;
    checkGrowth();
}

void Entities::replace(std::string_view sName, Place place, std::size_t nDepth) {
    const auto it = general_.find(sName);
    const std::string sShown(sName);
    if (it == general_.end()) {
        fail("Entity '" + sShown + "' not defined");
    } else if (it->second.bExternal) {
        fail("the external entity \"" + sShown + "\" is not loaded");
    } else if (nReplaced_ == mostReplaced) {
        fail("the document holds more references to entities than " + std::to_string(mostReplaced));
    } else if (nDepth + 1 >= deepest) {
        fail("the entity \"" + sShown + "\" stands in a default value, in itself or in too many others");
    } else {
        ++nReplaced_;
        if (place == Place::Content)
            expandMarkup(it->second.sValue, nDepth + 1);
        else
            expandPiece(it->second.sValue, Place::Value, nDepth + 1);
    }
}

} // namespace halvane::dom::msxml
