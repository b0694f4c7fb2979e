#include "io/SpecialName.h"

namespace halvane::io {

std::string whySpecial(std::string_view /*sPath*/) {
    return {};
}

} // namespace halvane::io
