#pragma once

#include "support/ExportTest.h"

#include <string>

namespace halvane::test {

/// Nodes that are repeated once for each item.
class MultipleTest : public ExportTest {
protected:
    std::string below(const std::string& sNodes) { return run(group(sNodes)).value_or("(not written)"); }
    /// Nodes below an element T of the table of signs.
    std::string belowSigns(const std::string& sNodes) {
        return run("<a Name='Out'><t Name='T' DataSource='Table' Identity='TableName' "
                   "IdentityValue='SIGNS'>" +
                   sNodes + "</t></a>")
            .value_or("(not written)");
    }
};

} // namespace halvane::test
