#pragma once

#include "run/preview/PreviewNotes.h"
#include "run/preview/PreviewPage.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

struct PreviewLine {
    enum class What : std::uint8_t { Markup, Reason, More };

    What what = What::Markup;
    std::size_t nDepth = 0; ///< the number of elements around it
    std::string sPlace;     ///< of the control node; "" for none
    std::string sText;
};

/// Cuts a document into lines: an element each, with what is known of it behind.
[[nodiscard]] std::vector<PreviewLine> layOutPreview(std::string_view sDocument, const PreviewNotes& notes,
                                                     const PreviewForm& form);

} // namespace halvane
