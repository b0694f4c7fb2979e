#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// What there is, for one who named something else.
struct Choice {
    std::string_view sWhere; ///< "the map has", in small letters
    std::string_view sOne;   ///< "feature layer"
    std::string_view sMany;  ///< "feature layers"
    std::vector<std::string> names;
};

/// The nearest name, and all where they are few; how many there are where none is near.
[[nodiscard]] std::string meantOrThere(std::string_view sWritten, const Choice& choice);

} // namespace halvane
