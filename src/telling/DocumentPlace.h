#pragma once

#include <string>

namespace halvane {

// Why no document can be written to a place; "" where it can. The same on a terminal and in a window.

/// @param sFolder that is to hold the document.
[[nodiscard]] std::string whyNotInFolder(const std::string& sFolder);

/// @param sPath of the document, in a folder that is there.
[[nodiscard]] std::string whyNotInPlace(const std::string& sPath);

} // namespace halvane
