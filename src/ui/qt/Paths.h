#pragma once

#include <QString>

namespace halvane::ui::qt {

/// A path as a person typed it, for this machine: without the blanks around it, "\" read as "/".
[[nodiscard]] inline QString typedPath(const QString& sTyped) {
    QString sPath = sTyped.trimmed();
    sPath.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return sPath;
}

} // namespace halvane::ui::qt
