#include "xml/dom/Width.h"

#include "xml/dom/Backend.h"
#include "xml/dom/MarkupScanner.h"

#include <algorithm>
#include <string>

namespace halvane::dom {

namespace {

/// Shorter tags cannot have too many: the shortest attribute is ` a=""`.
constexpr std::size_t shortestWideTag = mostAttributes * 5;

/// No "<" stands inside a tag: of most documents a few bytes in thousands tell that they have none.
bool mayHaveWideTags(std::string_view sText) noexcept {
    std::size_t nAt = std::min(sText.find('<'), sText.size());
    while (sText.size() - nAt > shortestWideTag) {
        const std::size_t nLast = sText.substr(nAt + 1, shortestWideTag).rfind('<');
        if (nLast == std::string_view::npos)
            return true;
        nAt += nLast + 1;
    }
    return false;
}

bool hasTooManyAttributes(std::string_view sTag) noexcept {
    sTag.remove_prefix(std::min(sTag.find_first_of(" \t\r\n"), sTag.size()));
    std::size_t nCount = 0;
    for (WrittenAttribute attribute; nCount <= mostAttributes && takeAttribute(sTag, attribute);)
        ++nCount;
    return nCount > mostAttributes;
}

} // namespace

ParseError tooManyAttributes(std::uint32_t nLine) {
    return {static_cast<std::int32_t>(LoadError::TooWide),
            std::string(attributesReason).append(std::to_string(mostAttributes)).append(widthRemedy),
            nLine,
            0,
            {}};
}

std::optional<std::uint32_t> lineOfTooManyAttributes(std::string_view sText) noexcept {
    if (!mayHaveWideTags(sText))
        return std::nullopt;
    MarkupScanner scanner(sText);
    for (Markup markup; scanner.next(markup);) {
        const bool bTag = markup.what == Markup::What::Start || markup.what == Markup::What::Empty;
        if (bTag && markup.sText.size() > shortestWideTag && hasTooManyAttributes(markup.sText))
            return markup.nLine;
    }
    return std::nullopt;
}

} // namespace halvane::dom
