#include "run/preview/PreviewPage.h"

#include "run/preview/PreviewLayout.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

namespace halvane {

namespace {

// Sequences that terminals know.
constexpr std::string_view sPlain = "\x1B[0m";
constexpr std::string_view sDim = "\x1B[2m";
constexpr std::string_view sOfTags = "\x1B[34m";
constexpr std::string_view sOfValues = "\x1B[32m";
constexpr std::string_view sOfMore = "\x1B[33m";

// ---- Colours ----

/// Markup that may be cut anywhere.
std::string coloured(std::string_view sMarkup) {
    std::string sColoured;
    char cQuote = 0;
    bool bTag = false;
    for (const char c : sMarkup) {
        if (c == '<' && !bTag) {
            bTag = true;
            sColoured += sOfTags;
        }
        const bool bBeginsValue = bTag && cQuote == 0 && (c == '"' || c == '\'');
        if (bBeginsValue)
            sColoured += sOfValues;
        sColoured += c;
        if (bBeginsValue) {
            cQuote = c;
        } else if (c == cQuote && cQuote != 0) {
            cQuote = 0;
            sColoured += sOfTags;
        } else if (c == '>' && bTag && cQuote == 0) {
            bTag = false;
            sColoured += sPlain;
        }
    }
    return bTag ? sColoured + std::string(sPlain) : sColoured;
}

std::string shown(const PreviewLine& line, std::size_t nWidth, bool bColours) {
    const std::string sGutter = fmt::format("{:>{}} │ ", line.sPlace, nWidth);
    const std::string sIndent(2 * line.nDepth, ' ');
    const std::string sText =
        printable(line.what == PreviewLine::What::Reason ? "· " + line.sText : line.sText);
    if (!bColours)
        return sGutter + sIndent + sText + "\n";
    const std::string sBody = line.what == PreviewLine::What::Markup ? coloured(sText)
                              : line.what == PreviewLine::What::More
                                  ? fmt::format("{}{}{}", sOfMore, sText, sPlain)
                                  : fmt::format("{}{}{}", sDim, sText, sPlain);
    return fmt::format("{}{}{}{}{}\n", sDim, sGutter, sPlain, sIndent, sBody);
}

} // namespace

std::string previewPage(std::string_view sDocument, const PreviewNotes& notes, const PreviewForm& form) {
    const auto lines = layOutPreview(sDocument, notes, form);
    std::size_t nWidth = 1;
    for (const PreviewLine& line : lines)
        nWidth = std::max(nWidth, line.sPlace.size());
    std::string sPage;
    for (const PreviewLine& line : lines)
        sPage += shown(line, nWidth, form.bColours);
    return sPage;
}

} // namespace halvane
