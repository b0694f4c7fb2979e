#include "cli/describe/Columns.h"

#include <algorithm>
#include <cstddef>

namespace halvane::cli {

namespace {

constexpr std::size_t lWidest = 40;

/// In characters: a byte that continues one does not count.
std::size_t widthOf(const std::string& sText) {
    return static_cast<std::size_t>(std::count_if(
        sText.begin(), sText.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

bool isEmptyColumn(const std::vector<std::vector<std::string>>& rows, std::size_t lColumn) {
    return std::all_of(rows.begin() + 1, rows.end(), [&](const auto& row) { return row[lColumn].empty(); });
}

std::size_t columnWidth(const std::vector<std::vector<std::string>>& rows, std::size_t lColumn) {
    std::size_t lWidth = 0;
    for (const auto& row : rows)
        if (const auto lCell = widthOf(row[lColumn]); lCell <= lWidest)
            lWidth = std::max(lWidth, lCell);
    return lWidth;
}

} // namespace

std::vector<std::string> alignedColumns(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::string> lines(rows.size());
    if (rows.empty())
        return lines;
    for (std::size_t lColumn = 0; lColumn < rows.front().size(); ++lColumn) {
        if (isEmptyColumn(rows, lColumn))
            continue;
        const std::size_t lWidth = columnWidth(rows, lColumn);
        for (std::size_t lRow = 0; lRow < rows.size(); ++lRow) {
            const std::string& sCell = rows[lRow][lColumn];
            const std::size_t lPadding = lWidth - std::min(lWidth, widthOf(sCell)) + 2;
            lines[lRow] += sCell + std::string(lPadding, ' ');
        }
    }
    for (auto& sLine : lines)
        sLine.erase(sLine.find_last_not_of(' ') + 1);
    return lines;
}

} // namespace halvane::cli
