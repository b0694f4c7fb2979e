#include "ui/qt/OutcomeStrip.h"

#include "ui/qt/Text.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLocale>
#include <QStyle>
#include <QUrl>

#include <utility>

namespace halvane::ui::qt {

namespace {

constexpr int lLines = 5;

struct KindLook {
    QStyle::StandardPixmap picture;
    const char* sWord; ///< what the picture says, for those who hear it
};

KindLook lookOf(ExportOutcome::Kind kind) {
    switch (kind) {
    case ExportOutcome::Kind::Written:
        return {QStyle::SP_MessageBoxInformation, "Written"};
    case ExportOutcome::Kind::Warned:
        return {QStyle::SP_MessageBoxWarning, "Written, with warnings"};
    case ExportOutcome::Kind::Incomplete:
        return {QStyle::SP_MessageBoxWarning, "Incomplete"};
    case ExportOutcome::Kind::NotWritten:
        break;
    }
    return {QStyle::SP_MessageBoxCritical, "Not written"};
}

} // namespace

OutcomeStrip::OutcomeStrip(Pacing pacing, QWidget* pParent) : QWidget(pParent), pacing_(std::move(pacing)) {
    setObjectName(QStringLiteral("Strip"));
    buildOutcome();
    buildProgress();
    grid_.setContentsMargins(0, 0, 0, 0);
    grid_.setColumnStretch(1, 1);
    grid_.addLayout(&progressRow_, 0, 0, 1, 3);
    grid_.addWidget(&picture_, 1, 0, Qt::AlignTop);
    grid_.addWidget(&text_, 1, 1, 1, 2);
    grid_.addWidget(&openFolder_, 2, 2);
    setProgressVisible(false);
    setOutcomeVisible(false);
}

void OutcomeStrip::buildOutcome() {
    picture_.setObjectName(QStringLiteral("OutcomeKind"));
    text_.setObjectName(QStringLiteral("Outcome"));
    text_.setAccessibleName(QStringLiteral("Outcome of the export"));
    text_.setReadOnly(true);
    text_.setTabChangesFocus(true);
    text_.setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text_.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text_.setMinimumHeight(text_.fontMetrics().lineSpacing() * lLines);
    openFolder_.setObjectName(QStringLiteral("OpenFolder"));
    openFolder_.setText(QStringLiteral("Op&en Folder"));
    openFolder_.setToolTip(QStringLiteral("Open the folder of the document"));
    openFolder_.setAutoDefault(true);
    connect(&openFolder_, &QPushButton::clicked, this, [this] { openFolder(); });
}

void OutcomeStrip::buildProgress() {
    items_.setObjectName(QStringLiteral("Items"));
    bar_.setObjectName(QStringLiteral("Progress"));
    bar_.setAccessibleName(QStringLiteral("The export is running"));
    bar_.setRange(0, 0); // nobody knows how many items there will be
    bar_.setTextVisible(false);
    cancel_.setObjectName(QStringLiteral("CancelExport"));
    cancel_.setText(QStringLiteral("Cance&l Export"));
    cancel_.setAutoDefault(true);
    connect(&cancel_, &QPushButton::clicked, this, [this] { cancel(); });
    progressRow_.addWidget(&items_);
    progressRow_.addWidget(&bar_, 1);
    progressRow_.addWidget(&cancel_);
}

void OutcomeStrip::begin() {
    bCancelled_ = false;
    sFolder_.clear();
    text_.clear();
    picture_.clear();
    openFolder_.hide();
    cancel_.setEnabled(true);
    pacing_.begin();
}

bool OutcomeStrip::cancelledAfter(std::uint64_t lItems) {
    if (pacing_.turnIsDue()) {
        showProgress(lItems);
        QCoreApplication::processEvents();
        pacing_.endTurn();
    }
    return bCancelled_;
}

void OutcomeStrip::showProgress(std::uint64_t lItems) {
    if (!pacing_.lastsLong())
        return;
    items_.setText(QLocale().toString(static_cast<qulonglong>(lItems)) + QStringLiteral(" items"));
    if (bar_.isVisible())
        return;
    setProgressVisible(true);
    cancel_.setFocus();
}

void OutcomeStrip::cancel() {
    bCancelled_ = true;
    cancel_.setEnabled(false);
}

void OutcomeStrip::show(const ExportOutcome& outcome) {
    pacing_.end();
    setProgressVisible(false);
    const KindLook look = lookOf(outcome.kind);
    const int lSide = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
    picture_.setPixmap(style()->standardIcon(look.picture, nullptr, this).pixmap(lSide, lSide));
    picture_.setAccessibleName(QLatin1String(look.sWord));
    QString sText = toQt(outcome.sSummary);
    for (const auto& sDetail : outcome.details)
        sText += QLatin1Char('\n') + toQt(sDetail);
    text_.setPlainText(sText);
    sFolder_ = outcome.sDocument.empty() ? QString() : QFileInfo(toQt(outcome.sDocument)).absolutePath();
    setOutcomeVisible(true);
    openFolder_.setVisible(!sFolder_.isEmpty());
    QAccessibleEvent told(&text_, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

void OutcomeStrip::setProgressVisible(bool bVisible) {
    items_.setVisible(bVisible);
    bar_.setVisible(bVisible);
    cancel_.setVisible(bVisible);
}

void OutcomeStrip::setOutcomeVisible(bool bVisible) {
    picture_.setVisible(bVisible);
    text_.setVisible(bVisible);
    openFolder_.setVisible(bVisible);
}

void OutcomeStrip::openFolder() {
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(sFolder_)))
        text_.appendPlainText(QStringLiteral("No program for folders was found on this machine."));
}

} // namespace halvane::ui::qt
