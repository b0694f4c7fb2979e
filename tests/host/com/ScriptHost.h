#pragma once

#include "base/Failure.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "host/com/ComHost.h"
#include "host/com/ScriptEngine.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace halvane::test {

[[nodiscard]] inline std::string townScript() {
    std::ifstream stream(HALVANE_SOURCE_DIR "/examples/windows/TownMap.js", std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A map document that a script tells.
class ScriptHost : public testing::Test {
protected:
    /// @param sChange statements that change the document "town".
    host::GisMapDocumentPtr document(std::string_view sChange = {}) {
        engine_.run("var town = makeTown();");
        engine_.run(sChange);
        return host::com::mapDocumentOf(*engine_.evaluate("town"));
    }
    host::GisMapPtr map(std::string_view sChange = {}) { return document(sChange)->focusMap(); }
    host::GisFeatureLayerPtr roads(std::string_view sChange = {}) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(map(sChange)->layer(0));
    }
    host::GisWorkspacePtr workspace(std::string_view sChange = {}) {
        return roads(sChange)->featureClass()->workspace();
    }
    host::GisHostPtr application(std::string_view sChange = {}) {
        engine_.run("var town = makeTown();");
        engine_.run(sChange);
        return host::com::makeHost(engine_.evaluate("town").get());
    }

    Apartment apartment_;
    ScriptEngine engine_{"JScript", townScript()};
};

/// What a call fails with; "" when it does not.
template<class Call>
[[nodiscard]] std::string failureOf(const Call& call) {
    try {
        static_cast<void>(call());
        return "";
    } catch (const Failure& failure) {
        return failure.description();
    }
}

template<class Call>
[[nodiscard]] std::int32_t failureNumberOf(const Call& call) {
    try {
        static_cast<void>(call());
        return 0;
    } catch (const Failure& failure) {
        return failure.number();
    }
}

} // namespace halvane::test
