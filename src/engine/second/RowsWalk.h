#pragma once

#include "base/Failure.h"
#include "engine/control/ControlNode.h"
#include "engine/sources/MapIndex.h"
#include "host/Forward.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Walks a control file as an export does, without rows, and follows which fields the current layer, table
/// and rows have, as far as the control file and the shown map tell.
class RowsWalk {
public:
    /// What rows are of. What is not known is nothing.
    struct KnownRows {
        host::GisTablePtr pTable;
        host::GisFieldsPtr pFields;
    };
    struct Current {
        KnownRows layer;
        KnownRows table;
        KnownRows related;
    };

    RowsWalk(const RowsWalk&) = delete;
    RowsWalk& operator=(const RowsWalk&) = delete;
    virtual ~RowsWalk() = default;

    /// Visits all nodes inside the root.
    void walk(const ControlNode& root);

protected:
    /// @param pMap nothing: no fields are known. Layers and tables that the control file names are opened.
    explicit RowsWalk(host::GisMapPtr pMap) : index_(std::move(pMap)) {}

    /// Before the node is bound.
    virtual void reach(const ControlNode& /*node*/) {}
    /// The node goes over rows; it is bound, and the rows around it are still those of rows().
    virtual void beginRows(const ControlNode& /*node*/, const Current& /*current*/) {}
    /// The node is bound; where it goes over rows, they are the innermost ones.
    virtual void at(const ControlNode& node, const Current& current) = 0;

    /// The node's relationship class does not lead from the rows around, which are known.
    virtual void cannotFollow(const ControlNode& /*node*/, const Failure& /*failure*/) {}

    /// The rows of the loops around, the innermost last.
    [[nodiscard]] const std::vector<KnownRows>& rows() const noexcept { return rows_; }

private:
    using Known = std::map<std::string, KnownRows, std::less<>>;

    void visitChildren(const ControlNode& node, Current& current);
    void visit(const ControlNode& node, Current& current);
    void bind(const ControlNode& node, Current& current);
    void visitRows(const ControlNode& node, Current& current);
    [[nodiscard]] KnownRows rowsOf(const ControlNode& node, const Current& current);
    [[nodiscard]] KnownRows related(const ControlNode& node);
    [[nodiscard]] KnownRows ofLayer(std::string_view sName);
    [[nodiscard]] KnownRows ofTable(std::string_view sName);

    MapIndex index_;
    Known layers_;
    Known tables_;
    std::vector<KnownRows> rows_;
};

} // namespace halvane
