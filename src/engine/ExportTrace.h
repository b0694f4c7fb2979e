#pragma once

#include "base/Failure.h"
#include "engine/ExportObserver.h"

#include <string_view>

namespace halvane {

struct ControlNode;
struct ExportState;

/// Follows the walk of an export step by step, and may end repeated nodes early. While one follows, the whole
/// document stays in the tree, so that what each step wrote can be found there: it is for small documents.
/// What is handed in is borrowed for the call. Traces must not throw.
class ExportTrace {
public:
    ExportTrace() = default;
    ExportTrace(const ExportTrace&) = delete;
    ExportTrace& operator=(const ExportTrace&) = delete;
    virtual ~ExportTrace() = default;

    /// A procedure works on a control node from here on; several may work on one, each inside the other.
    virtual void nodeBegins(const ExportState& state, const ControlNode& control) = 0;
    virtual void nodeEnds(const ExportState& state, const ControlNode& control) = 0;
    /// The next item of a repeated node is at hand. @returns false to end the node: the item is not written.
    [[nodiscard]] virtual bool itemBegins(const ExportState& state, const ControlNode& repeated) = 0;
    virtual void itemEnds(const ExportState& state, const ControlNode& repeated) = 0;
    /// The node's condition does not hold: it writes nothing.
    virtual void conditionFails(const ExportState& state, const ControlNode& control) = 0;
    /// The node at hand failed, or did not do something.
    virtual void failed(const Failure& failure) = 0;
    virtual void noticed(Notice notice, std::string_view sDetail) = 0;
    /// All is written, and about to be saved.
    virtual void documentComplete(const ExportState& state) = 0;
};

} // namespace halvane
