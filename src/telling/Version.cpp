#include "telling/Version.h"

namespace halvane {

std::string_view version() noexcept {
    return HALVANE_VERSION;
}

} // namespace halvane
