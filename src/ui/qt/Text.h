#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace halvane::ui::qt {

[[nodiscard]] inline QString toQt(std::string_view sText) {
    return QString::fromUtf8(sText.data(), static_cast<int>(sText.size()));
}

[[nodiscard]] inline std::string fromQt(const QString& sText) {
    return sText.toStdString();
}

} // namespace halvane::ui::qt
