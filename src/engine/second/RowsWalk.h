#pragma once

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
    /// Fields that are not known are nothing.
    struct Current {
        host::GisFieldsPtr pLayer;
        host::GisFieldsPtr pTable;
        host::GisFieldsPtr pRelated;
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

    /// The fields of the rows of the loops around, the innermost last.
    [[nodiscard]] const std::vector<host::GisFieldsPtr>& rows() const noexcept { return rows_; }

private:
    using Known = std::map<std::string, host::GisFieldsPtr, std::less<>>;

    void visitChildren(const ControlNode& node, Current& current);
    void visit(const ControlNode& node, Current& current);
    void bind(const ControlNode& node, Current& current);
    void visitRows(const ControlNode& node, Current& current);
    [[nodiscard]] host::GisFieldsPtr ofLayer(std::string_view sName);
    [[nodiscard]] host::GisFieldsPtr ofTable(std::string_view sName);

    MapIndex index_;
    Known layers_;
    Known tables_;
    std::vector<host::GisFieldsPtr> rows_;
};

} // namespace halvane
