#include "xml/dom/Depth.h"

#include "xml/dom/Backend.h"

#include <string>

namespace halvane::dom {

ParseError tooDeep(std::uint32_t nDeepest, std::uint32_t nLine) {
    return {static_cast<std::int32_t>(LoadError::TooDeep),
            std::string(depthReason).append(std::to_string(nDeepest)).append(depthRemedy),
            nLine,
            0,
            {}};
}

} // namespace halvane::dom
