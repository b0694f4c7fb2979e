#pragma once

namespace halvane {

struct ControlNode;

/// Whether the items of a repeated node can be written straight to the spool: whether all that its children
/// write comes in document order and is never changed again. Its children are known already.
[[nodiscard]] bool itemsCanStream(const ControlNode& repeated);

} // namespace halvane
