#pragma once

#include "ui/OutcomeView.h"
#include "ui/Pacing.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>

#include <cstdint>

namespace halvane::ui::qt {

/// The strip in a window: text and a button once an export has ended, a bar while a long one runs. While
/// events are handled amid an export, the form's own controls are disabled by the window.
class OutcomeStrip : public QWidget, public OutcomeView {
public:
    explicit OutcomeStrip(Pacing pacing, QWidget* pParent);

    void begin() override;
    [[nodiscard]] bool cancelledAfter(std::uint64_t lItems) override;
    void show(const ExportOutcome& outcome) override;

    /// Asks the export that runs to end.
    void cancel();
    /// Whether a key may still be meant for the export that has ended.
    [[nodiscard]] bool endedJustNow() const { return pacing_.endedJustNow(); }

private:
    void buildOutcome();
    void buildProgress();
    void showProgress(std::uint64_t lItems);
    void setProgressVisible(bool bVisible);
    void setOutcomeVisible(bool bVisible);
    void openFolder();

    QLabel picture_{this};
    QPlainTextEdit text_{this};
    QPushButton openFolder_{this};
    QLabel items_{this};
    QProgressBar bar_{this};
    QPushButton cancel_{this};
    QGridLayout grid_{this};
    QHBoxLayout progressRow_; // after its layout, which would delete it

    QString sFolder_; // of the document
    bool bCancelled_ = false;
    Pacing pacing_;
};

} // namespace halvane::ui::qt
