#include "library/Messages.h"

#include "telling/Text.h"

namespace halvane::library {

void Messages::pass(int nLevel, std::string_view sLine) const {
    if (pCallback_ != nullptr)
        pCallback_(pUser_, nLevel, printable(sLine).c_str());
}

} // namespace halvane::library
