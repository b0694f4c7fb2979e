#pragma once

#include "xml/dom/Dom.h"

#include <string_view>

namespace halvane {

/// A control element's own value of an attribute, else that of the nearest one around it that has one.
[[nodiscard]] inline std::string_view inherited(dom::Node oElement, std::string_view sAttribute) {
    for (; isElement(oElement); oElement = oElement.parentNode()) {
        const auto sValue = oElement.getAttribute(sAttribute);
        if (sValue && !sValue->empty())
            return *sValue;
    }
    return {};
}

} // namespace halvane
