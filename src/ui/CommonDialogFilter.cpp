#include "ui/CommonDialogFilter.h"

#include "base/Text.h"

namespace halvane::ui {

namespace {

std::vector<std::string> patternsOf(const std::string& sPatterns) {
    std::vector<std::string> pieces;
    Split(sPatterns, ";", pieces);
    std::vector<std::string> patterns;
    for (const auto& sPiece : pieces)
        if (const auto sPattern = trimBlanks(sPiece); !sPattern.empty())
            patterns.emplace_back(sPattern);
    return patterns;
}

} // namespace

std::vector<FileKind> fileKinds(std::string_view sFilter) {
    std::vector<FileKind> kinds;
    if (sFilter.empty())
        return kinds;
    std::vector<std::string> pieces;
    Split(sFilter, "|", pieces);
    for (std::size_t n = 0; n < pieces.size(); n += 2)
        kinds.push_back(
            {pieces[n], n + 1 < pieces.size() ? patternsOf(pieces[n + 1]) : std::vector<std::string>()});
    return kinds;
}

} // namespace halvane::ui
