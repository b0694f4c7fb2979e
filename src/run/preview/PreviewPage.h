#pragma once

#include "run/preview/PreviewNotes.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane {

struct PreviewForm {
    std::uint64_t nItems = 3; ///< of each repeated node, and of the like elements of one value; at least 1
    bool bColours = false;    ///< for a terminal
    bool bExplains = false;   ///< with reasons, and with the nodes that wrote nothing
};

/// The document for people: an element a line, indented, with the line of the control file beside it. Long
/// texts are cut; nothing in it steers a terminal.
/// @param sDocument UTF-8, well-formed. @param notes of its elements.
[[nodiscard]] std::string previewPage(std::string_view sDocument, const PreviewNotes& notes,
                                      const PreviewForm& form);

} // namespace halvane
