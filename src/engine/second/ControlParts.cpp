#include "engine/second/ControlParts.h"

#include "engine/second/SecondEdition.h"

namespace halvane {

std::string partOf(dom::Node oElement) {
    for (dom::Node oAround = oElement ? oElement.parentNode() : dom::Node(); isElement(oAround);
         oAround = oAround.parentNode())
        if (const auto sPart = secondAttribute(oAround, "Include"))
            return std::string(*sPart);
    return {};
}

} // namespace halvane
