#include "io/Spool.h"
#include "oracle/Comparison.h"
#include "oracle/Coverage.h"
#include "oracle/Environment.h"

#include <gtest/gtest.h>

#include <iostream>

namespace halvane::oracle {

namespace {

/// Sanitizers make everything slower, so they see fewer cases.
#ifdef HALVANE_FEWER_CASES
constexpr std::uint64_t usualExports = 2000;
#else
constexpr std::uint64_t usualExports = 20000;
#endif

/// Differences are shrunk before they are told, and after some of them the rest tells nothing new.
constexpr int differencesShrunk = 5;

/// Whether it only matters that there is a difference: none is shrunk then, and the first is the last.
bool endsAtFirstFailure() {
    return GTEST_FLAG_GET(fail_fast);
}

class Oracle : public ::testing::Test {
protected:
    /// @returns whether the export and the interpreter agree on the case of a seed.
    bool agreeOn(std::uint64_t nSeed) {
        Case testCase = makeCase(nSeed);
        if (exported(testCase, folder) == interpreted(testCase))
            return true;
        if (endsAtFirstFailure()) {
            ADD_FAILURE() << "The case of seed " << nSeed << " differs.";
            return false;
        }
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
    const auto nCases = numberFromEnvironment("HALVANE_ORACLE_CASES", usualExports);
    const int lMost = endsAtFirstFailure() ? 1 : differencesShrunk;
    int lDifferences = 0;
    for (std::uint64_t nSeed = 1; nSeed <= nCases && lDifferences < lMost; ++nSeed)
        lDifferences += agreeOn(nSeed) ? 0 : 1;
}

TEST_F(Oracle, AgreesWithTheExportOnDocumentsThatOutgrowTheMemoryOfTheSpool) {
#ifdef HALVANE_FEWER_CASES
    GTEST_SKIP() << "takes minutes with sanitizers; the spool has tests of its own";
#endif
    int lLarge = 0;
    for (std::uint64_t nSeed = 1; nSeed <= 60 || (lLarge < 4 && nSeed <= 240); ++nSeed) {
        Case testCase = makeLargeCase(nSeed);
        const Outcome actual = exported(testCase, folder);
        // Nobody could read the difference of such documents.
        EXPECT_TRUE(actual == interpreted(testCase)) << nSeed;
        lLarge += actual.sFile && actual.sFile->size() > io::Spool::memoryLimit ? 1 : 0;
    }
    EXPECT_GE(lLarge, 4);
}

TEST_F(Oracle, AgreesWithTheExportOnShapesThatAreGivenBackWhileTheyAreWritten) {
#ifdef HALVANE_FEWER_CASES
    constexpr std::uint64_t nCases = 200;
#else
    constexpr std::uint64_t nCases = 2000;
#endif
    constexpr std::size_t nManyNodes = 10'000;
    std::uint64_t nLarge = 0;
    for (std::uint64_t nSeed = 1; nSeed <= nCases; ++nSeed) {
        Case testCase = makeCaseOfLargeShapes(nSeed);
        Reach reach;
        // Nobody could read the difference of such documents.
        EXPECT_TRUE(exported(testCase, folder) == interpreted(testCase, &reach)) << nSeed;
        nLarge += reach.nOutputNodes > nManyNodes ? 1U : 0U;
    }
    EXPECT_GE(nLarge, nCases / 50);
}

/// A generator that has lost its way would agree with everything.
TEST(OracleCases, ReachAllThatAControlFileCanAskFor) {
    const Coverage coverage = coverageOf(2000);
    if (numberFromEnvironment("HALVANE_ORACLE_FIGURES", 0) != 0)
        std::cout << coverage;
    EXPECT_GE(coverage.nSaved, 1700U);
    EXPECT_GE(coverage.nFailing, 600U);
    EXPECT_LE(coverage.nFailing, 1400U);
    EXPECT_GE(coverage.nFiveNodes, 1500U);
    EXPECT_GE(coverage.nTwentyNodes, 500U);
    const std::map<std::string, std::size_t> leastByKind{{"DomainCodedValues", 15},
                                                         {"External", 50},
                                                         {"Feature", 250},
                                                         {"FeatureLayer", 5},
                                                         {"FeatureTable", 50},
                                                         {"Field", 80},
                                                         {"Geometry.EndPoint", 15},
                                                         {"Geometry.FromNode", 15},
                                                         {"Geometry.Length", 15},
                                                         {"Geometry.Point", 15},
                                                         {"Geometry.ToNode", 15},
                                                         {"Geometry.Vertice", 50},
                                                         {"MapLayer", 150},
                                                         {"RasterLayer", 10},
                                                         {"RasterWorkspace", 5},
                                                         {"Record", 80},
                                                         {"RelatedRecord", 20},
                                                         {"Relationship", 20},
                                                         {"SPATIALREFERENCE", 60},
                                                         {"SubType", 80},
                                                         {"Table", 100},
                                                         {"Time", 100},
                                                         {"TinLayer", 5},
                                                         {"TinWorkspace", 3},
                                                         {"Workspace", 100},
                                                         {"WorkspaceDomain", 50}};
    for (const auto& [sKind, nLeast] : leastByKind)
        EXPECT_GE(coverage.casesOfKind(sKind), nLeast) << sKind;
    const std::map<std::string, std::size_t> leastByTurn{
        {"a field by its tag", 60},
        {"a further item", 400},
        {"a further related row", 12},
        {"a group inside a feature", 200},
        {"a group inside a record", 60},
        {"a layer from disk", 30},
        {"a value in an attribute", 250},
        {"a repeated node inside a feature", 250},
        {"another object since another layer is current", 15},
        {"nothing where there was an object before", 20},
        {"the same layer by its tag after another tag", 12}};
    for (const auto& [sTurn, nLeast] : leastByTurn)
        EXPECT_GE(coverage.casesOfTurn(sTurn), nLeast) << sTurn;
}

} // namespace halvane::oracle
