#pragma once

#include "xml/dom/ItemStream.h"

#include <string_view>

namespace halvane {

/// The text of a value, and what may stand in it.
struct FieldText {
    std::string_view sText;
    dom::TextKind kind = dom::TextKind::Any;
};

} // namespace halvane
