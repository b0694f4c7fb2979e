#pragma once

#include "engine/ExportState.h"
#include "engine/ExportTrace.h"

namespace halvane {

/// The next item of a repeated node, from before its element is made until it is written.
class TracedItem {
public:
    TracedItem(const ExportState& state, const ControlNode& repeated)
        : state_(state), repeated_(repeated), pTrace_(state.options.pTrace),
          bWanted_(pTrace_ == nullptr || pTrace_->itemBegins(state, repeated)) {}
    TracedItem(const TracedItem&) = delete;
    TracedItem& operator=(const TracedItem&) = delete;
    ~TracedItem() {
        if (pTrace_ != nullptr && bWanted_)
            pTrace_->itemEnds(state_, repeated_);
    }

    /// Otherwise the node ends before it.
    [[nodiscard]] bool isWanted() const noexcept { return bWanted_; }

private:
    const ExportState& state_;
    const ControlNode& repeated_;
    ExportTrace* pTrace_;
    bool bWanted_;
};

} // namespace halvane
