#pragma once

// The tests of a host: everything that the interfaces of a host promise to an export, on a small map that the
// host provides. A program with these tests links halvane_host_conformance and defines makeTownHost().

#include "base/Failure.h"
#include "host/Application.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Rows.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "host/conformance/Town.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::test::conformance {

/// A host's town, opened.
struct OpenTown {
    host::GisHostPtr pHost;
    host::GisMapDocumentPtr pDocument; ///< two maps: the town, which is shown, and an empty one, "Region"
    std::string sDatabase;             ///< where roads and signs are
    std::string sReliefDatabase;
    std::string sPhoto; ///< the photograph's file
    /// Whether the host knows codes and axes of references, and transforms; otherwise it must say so.
    bool bTransforms = true;

    [[nodiscard]] host::GisMapPtr map() const { return pDocument->focusMap(); }
    [[nodiscard]] host::GisFeatureLayerPtr featureLayer(std::int32_t lIndex) const {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(map()->layer(lIndex));
    }
    [[nodiscard]] host::GisFeatureClassPtr roads() const { return featureLayer(0)->featureClass(); }
    [[nodiscard]] host::GisTablePtr signs() const { return map()->standaloneTable(0); }
    [[nodiscard]] host::GisWorkspacePtr workspace() const { return roads()->workspace(); }
};

/// A host to be tested.
class TownHost {
public:
    using Test = std::function<void(const OpenTown&)>;

    TownHost() = default;
    TownHost(const TownHost&) = delete;
    TownHost& operator=(const TownHost&) = delete;
    virtual ~TownHost() = default;

    [[nodiscard]] virtual const Town& town() const = 0;
    /// Opens the town, and hands it to a test; once in each way in which this host is to be tested.
    virtual void open(const Test& test) = 0;
};

/// The host that this program tests.
[[nodiscard]] std::unique_ptr<TownHost> makeTownHost();

class HostTest : public testing::Test {
protected:
    void inTown(const TownHost::Test& test) { pHost_->open(test); }
    [[nodiscard]] const Town& town() const { return pHost_->town(); }

private:
    std::unique_ptr<TownHost> pHost_ = makeTownHost();
};

/// The failure of a call; nothing when it does not fail.
template<class Call>
[[nodiscard]] std::optional<Failure> failureOf(const Call& call) {
    try {
        static_cast<void>(call());
    } catch (const Failure& failure) {
        return failure;
    }
    return std::nullopt;
}

/// A failure has a number that is not 0, and a text.
template<class Call>
[[nodiscard]] testing::AssertionResult failsWithNumberAndText(const Call& call) {
    const auto failure = failureOf(call);
    if (!failure.has_value())
        return testing::AssertionFailure() << "it does not fail";
    if (failure->number() == 0 || failure->description().empty())
        return testing::AssertionFailure() << failure->number() << ": \"" << failure->description() << '"';
    return testing::AssertionSuccess();
}

/// What hosts count themselves knows its bounds.
template<class Call>
[[nodiscard]] testing::AssertionResult isOutOfRange(const Call& call) {
    const auto failure = failureOf(call);
    if (failure.has_value() &&
        failure->number() == static_cast<std::int32_t>(FailureNumber::SubscriptOutOfRange))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << (failure.has_value() ? failure->description() : "it does not fail");
}

[[nodiscard]] inline std::vector<std::int64_t> idsOf(host::GisCursor& cursor) {
    std::vector<std::int64_t> aIds;
    while (const auto pRow = cursor.nextRow())
        aIds.push_back(pRow->objectId());
    return aIds;
}

[[nodiscard]] inline std::vector<std::int64_t> idsOf(const TownTable& table) {
    std::vector<std::int64_t> aIds;
    for (const TownRow& row : table.aRows)
        aIds.push_back(row.nObjectId);
    return aIds;
}

} // namespace halvane::test::conformance
