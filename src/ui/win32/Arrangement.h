#pragma once

#include "ui/win32/Units.h"

#include <vector>

namespace halvane::ui::win32 {

/// What the strip beneath the form shows.
enum class StripShows { Nothing, Progress, Outcome };

struct PlacedControl {
    int lControl;
    RECT place; ///< in pixels of the window's inside
};

/// How big the inside of the window is at first, in dialog units.
inline constexpr SIZE sizeAtFirst{364, 121};

/// Where each control stands: a row a box, the buttons beneath, then the strip, which takes what height is
/// left. The boxes and the strip grow with the width.
class Arrangement {
public:
    Arrangement(Units units, StripShows shows) : units_(units), shows_(shows) {}

    /// The smallest inside that all of it fits into, in pixels.
    [[nodiscard]] SIZE smallest() const;
    /// The controls of the form and those of the strip that are shown.
    [[nodiscard]] std::vector<PlacedControl> places(SIZE inside) const;

private:
    void placeRows(SIZE inside, std::vector<PlacedControl>& places) const;
    void placeButtons(SIZE inside, std::vector<PlacedControl>& places) const;
    void placeProgress(SIZE inside, std::vector<PlacedControl>& places) const;
    void placeOutcome(SIZE inside, std::vector<PlacedControl>& places) const;

    Units units_;
    StripShows shows_;
};

} // namespace halvane::ui::win32
