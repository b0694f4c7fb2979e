#pragma once

#include "base/Failure.h"
#include "engine/control/ControlNode.h"
#include "host/Rows.h"
#include "host/Tables.h"

#include <cstdint>
#include <string>

namespace halvane {

/// The rows of a related table whose link field equals that of a row.
class RelatedRows {
public:
    /// How the row's value stands in the clause; it is never escaped.
    enum class Clause {
        Quoted, ///< LINK=value, a text value between single quotes
        Plain,  ///< LINK = value
    };

    /// @param table,control borrowed until the rows are read; the control node names the link field.
    /// @param lIndex of the link field among the row's.
    RelatedRows(host::GisTable& table, const host::GisRow& row, std::int32_t lIndex,
                const ControlNode& control, Clause clause);

    /// The next row; nothing at the end. Give the one before back first: the host may use it again.
    /// @throws Failure as the host does; its context tells what the clause is made of.
    [[nodiscard]] host::GisRowPtr next();

private:
    template<class Call>
    [[nodiscard]] auto asked(Call call) const;
    [[nodiscard]] std::string context(const Failure& failure) const;
    [[nodiscard]] bool tableLacksLinkField() const;

    host::GisTable& table_;
    const ControlNode& control_;
    std::size_t nValue_ = 0; ///< where the value begins in the clause
    host::GisQueryFilter filter_;
    host::GisCursorPtr pCursor_;
};

} // namespace halvane
