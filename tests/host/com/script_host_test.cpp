#include "collection/Failure.h"
#include "host/com/ComHost.h"
#include "host/com/ScriptEngine.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace halvane::test {

namespace {

using host::com::makeHost;
using host::com::mapDocumentOf;

std::string townScript() {
    std::ifstream stream(HALVANE_SOURCE_DIR "/tests/host/com/TownMap.js", std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A map document that a script tells.
class ScriptHost : public testing::Test {
protected:
    /// @param sChange statements that change the document "town".
    host::GisMapDocumentPtr document(std::string_view sChange = {}) {
        engine_.run("var town = makeTown();");
        engine_.run(sChange);
        return mapDocumentOf(*engine_.evaluate("town"));
    }
    host::GisMapPtr map(std::string_view sChange = {}) { return document(sChange)->focusMap(); }
    host::GisFeatureLayerPtr roads(std::string_view sChange = {}) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(map(sChange)->layer(0));
    }

    Apartment apartment_;
    ScriptEngine engine_{"JScript", townScript()};
};

TEST_F(ScriptHost, TellsItsMaps) {
    const auto pDocument = document();
    EXPECT_EQ(pDocument->focusMap()->name(), "Town");
    ASSERT_EQ(pDocument->mapCount(), 2);
    EXPECT_EQ(pDocument->map(1)->name(), "Region");
    EXPECT_THROW(static_cast<void>(pDocument->map(2)), Failure);
}

} // namespace

} // namespace halvane::test
