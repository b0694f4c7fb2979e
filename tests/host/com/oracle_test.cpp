// Random control files over random maps, failures included: what an export makes of a host in memory it must
// make of the same host behind automation objects.

#include "host/com/CollectionFace.h"
#include "host/com/ComHost.h"
#include "host/com/DispatchObject.h"
#include "host/com/HostServer.h"
#include "host/com/ScriptEngine.h"
#include "oracle/Comparison.h"

#include <gtest/gtest.h>

namespace halvane::test {

namespace {

/// The case with its host behind automation objects.
oracle::Case behindAutomation(const oracle::Case& testCase) {
    oracle::Case served = testCase;
    oracle::Setting& setting = served.world.setting;
    const auto pDocument = serve(setting.pMapDocument, setting.pHost);
    setting.pHost = host::com::makeHost(pDocument.get());
    if (setting.pMapDocument != nullptr)
        setting.pMapDocument = host::com::mapDocumentOf(*pDocument);
    return served;
}

TEST(AutomationHost, IsToTheExportAsTheHostBehindIt) {
    const Apartment apartment;
    const CollectionBridge bridge;
    const TemporaryFolder folder;
    constexpr std::uint64_t nCases = 1000;
    int nDifferences = 0;
    int nFailing = 0;
    for (std::uint64_t nSeed = 1; nSeed <= nCases && nDifferences < 5; ++nSeed) {
        oracle::Case testCase = oracle::makeCase(nSeed, oracle::Texts::Utf8);
        const oracle::Outcome expected = oracle::exported(testCase, folder);
        {
            oracle::Case served = behindAutomation(testCase);
            const oracle::Outcome actual = oracle::exported(served, folder);
            if (!(actual == expected)) {
                ++nDifferences;
                ADD_FAILURE() << oracle::describeDifference(testCase, actual, expected);
            }
        }
        nFailing += expected.aFailures.empty() ? 0 : 1;
        ASSERT_EQ(DispatchObject::alive(), 0) << "objects that nobody releases, seed " << nSeed;
    }
    EXPECT_GT(nFailing, 200) << "failures have to be among what is compared";
}

} // namespace

} // namespace halvane::test
