#pragma once

#include "ui/FormExporter.h"
#include "ui/FormView.h"
#include "ui/qt/FileDialog.h"
#include "ui/qt/OutcomeStrip.h"

#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

namespace halvane::ui::qt {

/// The window of the form. Enter is OK; Escape is Cancel, and cancels the export while one runs.
class FormExporterWindow : public QDialog, public FormView {
public:
    explicit FormExporterWindow(QWidget* pParent = nullptr, Pacing pacing = Pacing());

    /// The strip beneath the form; lives as long as the window.
    [[nodiscard]] OutcomeView& strip() noexcept { return strip_; }

    /// Loads the form, fills the boxes as this person last had them and shows the window.
    /// @param form borrowed; its view is this window.
    void present(FormExporter& form, HostApplicationPtr pApplication);

    [[nodiscard]] std::string text(Box box) const override;
    void setText(Box box, const std::string& sText) override;
    void MsgBox(const std::string& sText) override;
    void setMousePointer(MousePointer pointer) override;
    void setFocusTo(Box box) override;
    [[nodiscard]] std::optional<std::string> ShowOpen(std::string_view sFilter) override;
    [[nodiscard]] std::optional<BrowsedItem> Browse(std::string_view sTitle) override;
    void Unload() override;

    void accept() override; ///< OK
    void reject() override; ///< Cancel, Escape, and closing the window

protected:
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    static constexpr std::size_t nRows = 5;

    void buildRows();
    void buildButtons();
    void connectButtons();
    [[nodiscard]] const QLineEdit& boxOf(Box box) const;
    void setBusy(bool bBusy);

    // The layout makes them children of fields_ from the top down, the order in which they are read out.
    QWidget fields_{this};
    std::array<QLabel, nRows> labels_;
    std::array<QLineEdit, nRows> boxes_;
    QPushButton command3_;
    QPushButton command4_;
    QPushButton command5_;
    QPushButton command1_;
    QPushButton command2_;
    OutcomeStrip strip_;
    QGridLayout grid_{&fields_};
    QHBoxLayout buttonRow_; // after its layout, which would delete it
    QVBoxLayout layout_{this};

    FileDialog commonDialog1_{this};
    FormExporter* pForm_ = nullptr;
    QPointer<QWidget> pFocusBefore_; // while busy
};

} // namespace halvane::ui::qt
