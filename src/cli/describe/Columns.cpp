#include "cli/describe/Columns.h"

#include <algorithm>
#include <cstddef>

namespace halvane::cli {

namespace {

constexpr std::size_t nWidest = 40;

/// In characters: a byte that continues one does not count.
std::size_t widthOf(const std::string& sText) {
    return static_cast<std::size_t>(std::count_if(
        sText.begin(), sText.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

bool isEmptyColumn(const std::vector<std::vector<std::string>>& rows, std::size_t nColumn) {
    return std::all_of(rows.begin() + 1, rows.end(), [&](const auto& row) { return row[nColumn].empty(); });
}

std::size_t columnWidth(const std::vector<std::vector<std::string>>& rows, std::size_t nColumn) {
    std::size_t nWidth = 0;
    for (const auto& row : rows)
        if (const auto lCell = widthOf(row[nColumn]); lCell <= nWidest)
            nWidth = std::max(nWidth, lCell);
    return nWidth;
}

} // namespace

std::vector<std::string> alignedColumns(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::string> lines(rows.size());
    if (rows.empty())
        return lines;
    for (std::size_t nColumn = 0; nColumn < rows.front().size(); ++nColumn) {
        if (isEmptyColumn(rows, nColumn))
            continue;
        const std::size_t nWidth = columnWidth(rows, nColumn);
        for (std::size_t nRow = 0; nRow < rows.size(); ++nRow) {
            const std::string& sCell = rows[nRow][nColumn];
            const std::size_t nPadding = nWidth - std::min(nWidth, widthOf(sCell)) + 2;
            lines[nRow] += sCell + std::string(nPadding, ' ');
        }
    }
    for (auto& sLine : lines)
        sLine.erase(sLine.find_last_not_of(' ') + 1);
    return lines;
}

} // namespace halvane::cli
