#pragma once

#include "cli/ExportLog.h"
#include "ui/OutcomeView.h"

namespace halvane::cli {

/// Listens to an export of the dialog: at every step the person may cancel it.
class DialogLog : public ExportLog {
public:
    /// @param strip borrowed.
    explicit DialogLog(ui::OutcomeView& strip) : ExportLog(noLine_), strip_(strip) {}

protected:
    [[nodiscard]] bool endRequested() override {
        // Both are asked: the strip stays alive while an interruption ends the export.
        const bool bCancelled = strip_.cancelledAfter(items());
        return ExportLog::endRequested() || bCancelled;
    }

private:
    ProgressLine noLine_{stderr, false};
    ui::OutcomeView& strip_;
};

} // namespace halvane::cli
