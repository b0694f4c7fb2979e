#pragma once

#include "support/ExportTest.h"

#include <string>

namespace halvane::test {

/// The one value of a leaf.
class ElementPropertyTest : public ExportTest {
protected:
    /// The document's content for one leaf directly below the root.
    std::string leaf(const std::string& sAttributes) {
        return run("<a Name='Out'><v Name='V' " + sAttributes + "/></a>").value_or("(not written)");
    }
    /// The same after the roads layer became current.
    std::string leafBelowRoads(const std::string& sAttributes) {
        return run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' "
                   "IdentityValue='Roads'>"
                   "<v Name='V' " +
                   sAttributes + "/></l></a>")
            .value_or("(not written)");
    }
    /// The same for each road.
    std::string leafOfEachRoad(const std::string& sAttributes) {
        return run(group("<r Name='R' DataSource='Feature' Entries='Multiple'><v Name='V' " + sAttributes +
                         "/></r>"))
            .value_or("(not written)");
    }
};

} // namespace halvane::test
