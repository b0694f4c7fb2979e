#pragma once

#include "telling/ExportLog.h"
#include "telling/Interruption.h"
#include "ui/OutcomeView.h"

#include <atomic>
#include <exception>
#include <thread>

namespace halvane {

/// Listens to an export of the dialog: at every step the person may cancel it.
class DialogLog : public ExportLog {
public:
    /// @param strip borrowed.
    explicit DialogLog(ui::OutcomeView& strip) : ExportLog(noLine_), strip_(strip) { active() = this; }
    DialogLog(const DialogLog&) = delete;
    DialogLog& operator=(const DialogLog&) = delete;
    ~DialogLog() override { settle(); }

    /// The export has ended: what is read from now on is no part of it.
    static void settle() noexcept { active() = nullptr; }

    /// For databases that compute, on whatever thread: whether the export under way is to end. On the thread
    /// of the dialog the person is heard meanwhile.
    [[nodiscard]] static bool endsNow() noexcept {
        DialogLog* pLog = active();
        if (pLog == nullptr || interruptionRequested())
            return interruptionRequested();
        try {
            return std::this_thread::get_id() == pLog->thread_ ? pLog->endRequested() : pLog->bEnds_.load();
        } catch (const std::exception&) {
            return false;
        }
    }

protected:
    [[nodiscard]] bool endRequested() override {
        // Both are asked: the strip stays alive while an interruption ends the export.
        const bool bCancelled = strip_.cancelledAfter(items());
        bEnds_ = ExportLog::endRequested() || bCancelled;
        return bEnds_;
    }

private:
    static std::atomic<DialogLog*>& active() noexcept {
        static std::atomic<DialogLog*> pActive = nullptr;
        return pActive;
    }

    NoProgress noLine_;
    ui::OutcomeView& strip_;
    std::thread::id thread_ = std::this_thread::get_id();
    std::atomic<bool> bEnds_ = false;
};

} // namespace halvane
