#pragma once

#include <QIcon>

namespace halvane::ui::qt {

// The pictures of the browse buttons, drawn at whatever size they are shown.

[[nodiscard]] QIcon pictureOfAFile();
[[nodiscard]] QIcon pictureOfAFolder();

} // namespace halvane::ui::qt
