#pragma once

#include <string>

namespace halvane::test {

/// A leaf that fails each time: no such processor.
inline std::string failingLeaf(const std::string& sName) {
    return "<X Name=\"" + sName + "\" DataSource=\"External\" IdentityValue=\"Acme.Zone\"/>";
}

} // namespace halvane::test
