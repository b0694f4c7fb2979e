#pragma once

#include "host/gdal/rows/Clause.h"
#include "host/gdal/source/HandlePool.h"

#include <string>

namespace halvane::host::gdal {

/// In which order the rows of a layer come: one order, whatever is read of them and whichever filter they
/// pass. A database takes whichever index serves the question at hand, and its rows in the order of that.
class RowOrder {
public:
    /// Rows come as the format yields them.
    RowOrder() = default;
    [[nodiscard]] static RowOrder of(const LayerHandle& layer);

    /// A filter that lets through what a clause lets through, in the order.
    /// @returns "" where no filter is needed.
    [[nodiscard]] std::string filter(const Clause& clause) const;
    /// Whether columns may be left unread.
    [[nodiscard]] bool allowsIgnoredColumns() const { return kind_ != Kind::OfView; }
    /// Whether a row has no identifier but its place among all rows, from 0.
    [[nodiscard]] bool numbersRows() const { return bNumbersRows_; }

private:
    enum class Kind { OfFormat, OfKey, OfView };

    RowOrder(Kind kind, std::string sKey, bool bNumbersRows)
        : kind_(kind), sKey_(std::move(sKey)), bNumbersRows_(bNumbersRows) {}

    Kind kind_ = Kind::OfFormat;
    std::string sKey_; ///< columns of SQL
    bool bNumbersRows_ = false;
};

/// Leaves the shapes of a layer unread, the bulk of most features, where its format and its order allow it.
void leaveShapesUnread(OGRLayer& layer, const RowOrder& order);

} // namespace halvane::host::gdal
