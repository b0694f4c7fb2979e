#include "ui/qt/FormExporterWindow.h"

#include "ui/FormLayout.h"
#include "ui/qt/BrowseDialog.h"
#include "ui/qt/Pictures.h"
#include "ui/qt/RememberedBoxes.h"
#include "ui/qt/Text.h"

#include <QGuiApplication>
#include <QMessageBox>

#include <utility>

namespace halvane::ui::qt {

namespace {

constexpr int lBoxWidth = 60; // average characters

} // namespace

FormExporterWindow::FormExporterWindow(QWidget* pParent, Pacing pacing)
    : QDialog(pParent), strip_(std::move(pacing), this) {
    setObjectName(QStringLiteral("FormExporter"));
    setWindowTitle(toQt(sFormCaption));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    buildRows();
    buildButtons();
    layout_.addWidget(&fields_);
    layout_.addWidget(&strip_, 1);
    connectButtons();
}

void FormExporterWindow::buildRows() {
    const std::array<std::pair<std::string_view, QPushButton*>, 3> browsers{
        {{"Command3", &command3_}, {"Command4", &command4_}, {"Command5", &command5_}}};
    grid_.setContentsMargins(0, 0, 0, 0);
    grid_.setColumnStretch(1, 1);
    int lRow = 0;
    for (const FormRow& row : formRows()) {
        QLabel& label = labels_.at(static_cast<std::size_t>(lRow));
        QLineEdit& box = boxes_.at(static_cast<std::size_t>(lRow));
        label.setObjectName(toQt(row.sLabel));
        label.setText(toQt(withMnemonic(row.sCaption, row.cMnemonic)));
        label.setBuddy(&box);
        box.setObjectName(toQt(row.sBox));
        box.setAccessibleName(toQt(row.sCaption));
        box.setMinimumWidth(box.fontMetrics().averageCharWidth() * lBoxWidth);
        grid_.addWidget(&label, lRow, 0);
        grid_.addWidget(&box, lRow, 1);
        for (const auto& [sName, pButton] : browsers) {
            if (sName != row.sBrowse)
                continue;
            pButton->setObjectName(toQt(sName));
            // They keep the focus after a choice, and Enter is to be OK then.
            pButton->setAutoDefault(false);
            pButton->setToolTip(toQt(row.sBrowseTold));
            pButton->setAccessibleName(toQt(row.sBrowseTold));
            pButton->setIcon(row.box == Box::Text2 ? pictureOfAFolder() : pictureOfAFile());
            grid_.addWidget(pButton, lRow, 2);
        }
        ++lRow;
    }
}

void FormExporterWindow::buildButtons() {
    command1_.setObjectName(QStringLiteral("Command1"));
    command1_.setText(toQt(sOkCaption));
    command1_.setDefault(true);
    command2_.setObjectName(QStringLiteral("Command2"));
    command2_.setText(toQt(sCancelCaption));
    buttonRow_.addStretch(1);
    buttonRow_.addWidget(&command1_);
    buttonRow_.addWidget(&command2_);
    grid_.addLayout(&buttonRow_, static_cast<int>(nRows), 0, 1, 3);

    QWidget* pBefore = nullptr;
    const std::array<QWidget*, 10> order{boxes_.data(), &command3_, &boxes_[1], &command4_, &boxes_[2],
                                         &boxes_[3],    &command5_, &boxes_[4], &command1_, &command2_};
    for (QWidget* pWidget : order) {
        if (pBefore != nullptr)
            setTabOrder(pBefore, pWidget);
        pBefore = pWidget;
    }
}

void FormExporterWindow::connectButtons() {
    connect(&command1_, &QPushButton::clicked, this, &QDialog::accept);
    connect(&command2_, &QPushButton::clicked, this, &QDialog::reject);
    connect(&command3_, &QPushButton::clicked, this, [this] { pForm_->Command3_Click(); });
    connect(&command4_, &QPushButton::clicked, this, [this] { pForm_->Command4_Click(); });
    connect(&command5_, &QPushButton::clicked, this, [this] { pForm_->Command5_Click(); });
}

void FormExporterWindow::present(FormExporter& form, HostApplicationPtr pApplication) {
    pForm_ = &form;
    form.Load(std::move(pApplication));
    recallBoxes(*this);
    boxes_[0].setFocus();
    show();
    activateWindow();
}

const QLineEdit& FormExporterWindow::boxOf(Box box) const {
    return boxes_.at(static_cast<std::size_t>(box));
}

std::string FormExporterWindow::text(Box box) const {
    return fromQt(boxOf(box).text());
}

void FormExporterWindow::setText(Box box, const std::string& sText) {
    boxes_.at(static_cast<std::size_t>(box)).setText(toQt(sText));
}

void FormExporterWindow::MsgBox(const std::string& sText) {
    QMessageBox message(QMessageBox::NoIcon, toQt(sFormCaption), toQt(sText), QMessageBox::Ok, this);
    message.setObjectName(QStringLiteral("MsgBox"));
    message.setTextFormat(Qt::PlainText);
    message.exec();
}

void FormExporterWindow::setMousePointer(MousePointer pointer) {
    const bool bBusy = pointer == MousePointer::Hourglass;
    if (bBusy)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
    setBusy(bBusy);
}

void FormExporterWindow::setFocusTo(Box box) {
    boxes_.at(static_cast<std::size_t>(box)).setFocus();
}

void FormExporterWindow::keyPressEvent(QKeyEvent* pEvent) {
    // A key that is held down repeats itself, also behind the export that it has cancelled.
    const bool bEscape = pEvent->key() == Qt::Key_Escape;
    const bool bLateCancel = !pForm_->exporting() && strip_.endedJustNow();
    if (!bEscape || !(pEvent->isAutoRepeat() || bLateCancel))
        QDialog::keyPressEvent(pEvent);
}

void FormExporterWindow::setBusy(bool bBusy) {
    if (bBusy)
        pFocusBefore_ = focusWidget();
    fields_.setEnabled(!bBusy);
    if (!bBusy && pFocusBefore_ != nullptr)
        pFocusBefore_->setFocus();
}

std::optional<std::string> FormExporterWindow::ShowOpen(std::string_view sFilter) {
    return commonDialog1_.showOpen(sFilter, boxOf(Box::Text1).text());
}

std::optional<BrowsedItem> FormExporterWindow::Browse(std::string_view sTitle) {
    BrowseDialog dialog(this, toQt(sTitle), boxOf(Box::Text2).text());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.item();
}

void FormExporterWindow::Unload() {
    QDialog::reject();
}

void FormExporterWindow::accept() {
    if (pForm_->Command1_Click())
        rememberBoxes(*this);
}

void FormExporterWindow::reject() {
    if (pForm_->exporting())
        strip_.cancel();
    else
        pForm_->Command2_Click();
}

} // namespace halvane::ui::qt
