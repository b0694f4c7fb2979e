#pragma once

#include "ui/OutcomeView.h"
#include "ui/Pacing.h"
#include "ui/win32/Arrangement.h"
#include "ui/win32/Windows.h"

#include <cstdint>
#include <functional>
#include <string>

namespace halvane::ui::win32 {

/// The strip in a dialog: text and a button once an export has ended, a bar while a long one runs. While
/// messages are handled amid an export, the form's own controls are disabled by the window.
class OutcomeStrip final : public OutcomeView {
public:
    /// @param fnArrange called when the strip shows something else.
    OutcomeStrip(std::function<void()> fnArrange, Pacing pacing)
        : fnArrange_(std::move(fnArrange)), pacing_(std::move(pacing)) {}

    /// Adds the controls, hidden, behind those that the dialog has.
    void addTo(HWND hDialog);
    /// The dialog is going: what is told from now on is not shown.
    void leaveDialog() noexcept { hDialog_ = nullptr; }

    [[nodiscard]] StripShows shows() const noexcept { return shows_; }

    void begin() override;
    [[nodiscard]] bool cancelledAfter(std::uint64_t lItems) override;
    void show(const ExportOutcome& outcome) override;

    /// Asks the export that runs to end.
    void cancel();
    /// Whether a key may still be meant for the export that has ended.
    [[nodiscard]] bool endedJustNow() const { return pacing_.endedJustNow(); }
    void openFolder();

private:
    [[nodiscard]] HWND control(int lControl) const { return GetDlgItem(hDialog_, lControl); }
    void showControl(int lControl, bool bShown) const;
    void turnTo(StripShows shows);
    void showProgress(std::uint64_t lItems);

    std::function<void()> fnArrange_;
    Pacing pacing_;
    HWND hDialog_ = nullptr;
    StripShows shows_ = StripShows::Nothing;
    std::wstring sFolder_; // of the document
    bool bCancelled_ = false;
};

} // namespace halvane::ui::win32
