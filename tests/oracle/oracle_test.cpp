#include "oracle/Comparison.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace halvane::oracle {

namespace {

std::uint64_t numberFromEnvironment(const char* sName, std::uint64_t nDefault) {
    const char* const sValue = std::getenv(sName); // NOLINT(concurrency-mt-unsafe): nobody sets it
    return sValue == nullptr ? nDefault : std::strtoull(sValue, nullptr, 10);
}

/// Sanitizers make everything slower, so they see fewer cases.
#ifdef HALVANE_FEWER_CASES
constexpr std::uint64_t usualCases = 2000;
#else
constexpr std::uint64_t usualCases = 20000;
#endif

/// Differences are shrunk before they are told, and after some of them the rest tells nothing new.
constexpr int differencesTold = 5;

class Oracle : public ::testing::Test {
protected:
    /// @returns whether the export and the interpreter agree on the case of a seed.
    bool agreeOn(std::uint64_t nSeed) {
        Case testCase = makeCase(nSeed);
        if (exported(testCase, folder) == interpreted(testCase))
            return true;
        shrink(testCase, folder);
        const Outcome actual = exported(testCase, folder);
        ADD_FAILURE() << describeDifference(testCase, actual, interpreted(testCase));
        return false;
    }

    test::TemporaryFolder folder;
};

} // namespace

TEST_F(Oracle, AgreesWithTheExportOnRandomControlFilesOverRandomMaps) {
    if (const auto nSeed = numberFromEnvironment("HALVANE_ORACLE_SEED", 0); nSeed != 0) {
        agreeOn(nSeed);
        return;
    }
    const auto nCases = numberFromEnvironment("HALVANE_ORACLE_CASES", usualCases);
    int lDifferences = 0;
    for (std::uint64_t nSeed = 1; nSeed <= nCases && lDifferences < differencesTold; ++nSeed)
        lDifferences += agreeOn(nSeed) ? 0 : 1;
}

} // namespace halvane::oracle
