#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>

class QWidget;

namespace halvane::ui::qt {

/// CommonDialog1: the one file dialog of the form. It opens where it was left.
class FileDialog {
public:
    /// @param pParent borrowed.
    explicit FileDialog(QWidget* pParent) : pParent_(pParent) {}

    /// @param sFilter as CommonDialogFilter.h reads it. @param sStart where to begin the first time: a file,
    /// a folder or "", as a person typed it.
    /// @returns the existing file chosen, or nothing.
    [[nodiscard]] std::optional<std::string> showOpen(std::string_view sFilter, const QString& sStart);

private:
    QWidget* pParent_;
    QString sFolder_;
};

} // namespace halvane::ui::qt
