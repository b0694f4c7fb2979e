#include "ui/qt/FileDialog.h"

#include "ui/CommonDialogFilter.h"
#include "ui/qt/Paths.h"
#include "ui/qt/Text.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>

namespace halvane::ui::qt {

namespace {

/// Descriptions with their patterns in parentheses behind, which the dialog does not show.
QStringList nameFilters(std::string_view sFilter) {
    QStringList filters;
    for (const FileKind& kind : fileKinds(sFilter)) {
        QStringList patterns;
        for (const auto& sPattern : kind.patterns)
            patterns << toQt(sPattern);
        if (patterns.isEmpty())
            patterns << QStringLiteral("*");
        filters << toQt(kind.sDescription) + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) +
                       QLatin1Char(')');
    }
    return filters;
}

QString folderOf(const QString& sTyped) {
    const QString sPath = typedPath(sTyped);
    if (sPath.isEmpty())
        return {};
    const QFileInfo info(sPath);
    const QString sFolder = info.isDir() ? info.absoluteFilePath() : info.absolutePath();
    return QFileInfo(sFolder).isDir() ? sFolder : QString();
}

} // namespace

std::optional<std::string> FileDialog::showOpen(std::string_view sFilter, const QString& sStart) {
    QFileDialog dialog(pParent_, QStringLiteral("Open"), sFolder_.isEmpty() ? folderOf(sStart) : sFolder_);
    dialog.setObjectName(QStringLiteral("CommonDialog1"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(nameFilters(sFilter));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    const QString sChosen = dialog.selectedFiles().constFirst();
    sFolder_ = QFileInfo(sChosen).absolutePath();
    return fromQt(sChosen);
}

} // namespace halvane::ui::qt
