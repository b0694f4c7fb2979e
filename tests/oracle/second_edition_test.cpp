// Control files of both editions, as the export and as the interpreter read them.

#include "expression/sqlite/SqliteEvaluator.h"
#include "oracle/Comparison.h"
#include "oracle/Coverage.h"
#include "oracle/Environment.h"
#include "oracle/second/RandomReferences.h"

#include <gtest/gtest.h>

#include <iostream>

namespace halvane::oracle {

namespace {

#ifdef HALVANE_FEWER_CASES
constexpr std::uint64_t usualCases = 200;
#else
constexpr std::uint64_t usualCases = 3000;
#endif

/// Differences are shrunk before they are told, and after some of them the rest tells nothing new.
constexpr int differencesTold = 5;

/// Of how many cases in a thousand the two must have agreed on a document that came to that.
const std::map<std::string, std::size_t> leastByTurn{{"a bound of a layer", 12},
                                                     {"a constant in an attribute", 17},
                                                     {"a date in a format", 7},
                                                     {"a document that is indented", 94},
                                                     {"a field in a text", 97},
                                                     {"a field of a row around", 3},
                                                     {"a group of several rows", 12},
                                                     {"a leaf that reads a Code", 3},
                                                     {"a leaf that reads a Domain", 10},
                                                     {"a leaf that reads a Field", 21},
                                                     {"a leaf that reads a Layer", 17},
                                                     {"a leaf that reads a Map", 10},
                                                     {"a leaf that reads a Part", 4},
                                                     {"a leaf that reads a Relationship", 9},
                                                     {"a leaf that reads a Subtype", 3},
                                                     {"a leaf that reads a Table", 9},
                                                     {"a leaf that reads a Vertex", 5},
                                                     {"a leaf that reads a Workspace", 10},
                                                     {"a leaf that reads the row at hand", 64},
                                                     {"a limit of items", 6},
                                                     {"a node in another reference", 2},
                                                     {"a number in a format", 22},
                                                     {"a part of the control file", 100},
                                                     {"a point without a place in the reference", 1},
                                                     {"a position with y before x", 5},
                                                     {"a repeated node without items", 203},
                                                     {"a row of the second edition", 53},
                                                     {"a row of the second edition inside a row", 30},
                                                     {"a row without a shape", 30},
                                                     {"a shape in a text: GeometryCollection", 3},
                                                     {"a shape in a text: LineString", 10},
                                                     {"a shape in a text: MultiLineString", 8},
                                                     {"a shape in a text: MultiPoint", 7},
                                                     {"a shape in a text: MultiPolygon", 2},
                                                     {"a shape in a text: Point", 4},
                                                     {"a shape in a text: Polygon", 2},
                                                     {"a shape in elements: LineString", 2},
                                                     {"a shape in elements: MultiLineString", 2},
                                                     {"a shape in elements: MultiPoint", 2},
                                                     {"a shape that cannot be read", 2},
                                                     {"a shape that names its reference", 3},
                                                     {"a shape that names no reference", 3},
                                                     {"a text as a section", 52},
                                                     {"a text in an attribute", 90},
                                                     {"a text in an element", 153},
                                                     {"a text in an item", 13},
                                                     {"a text that is XML", 17},
                                                     {"a whole number in a format", 18},
                                                     {"an aggregate: avg", 1},
                                                     {"an aggregate: count", 4},
                                                     {"an aggregate: max", 1},
                                                     {"an aggregate: min", 1},
                                                     {"an aggregate: sum", 1},
                                                     {"an attribute without content is omitted", 2},
                                                     {"an element has content", 177},
                                                     {"an element without content is omitted", 140},
                                                     {"an element without line breaks", 100},
                                                     {"an envelope of a layer", 5},
                                                     {"an expression in a text", 148},
                                                     {"an item of a group", 21},
                                                     {"h:ForEach=\"Code\"", 5},
                                                     {"h:ForEach=\"Domain\"", 18},
                                                     {"h:ForEach=\"Field\"", 30},
                                                     {"h:ForEach=\"Layer\"", 29},
                                                     {"h:ForEach=\"Map\"", 17},
                                                     {"h:ForEach=\"Part\"", 7},
                                                     {"h:ForEach=\"Relationship\"", 15},
                                                     {"h:ForEach=\"Subtype\"", 5},
                                                     {"h:ForEach=\"Table\"", 14},
                                                     {"h:ForEach=\"Vertex\"", 9},
                                                     {"h:ForEach=\"Workspace\"", 15},
                                                     {"h:Geometry=\"GML\"", 7},
                                                     {"h:Geometry=\"GeoJSON\"", 1},
                                                     {"h:Geometry=\"KML\"", 3},
                                                     {"h:Geometry=\"SVG\"", 2},
                                                     {"h:Geometry=\"WKT\"", 4},
                                                     {"h:Geometry=\"area\"", 3},
                                                     {"h:Geometry=\"centroid\"", 2},
                                                     {"h:Geometry=\"coordinates\"", 1},
                                                     {"h:Geometry=\"length\"", 2},
                                                     {"h:Geometry=\"posList\"", 1},
                                                     {"h:Geometry=\"pos\"", 1},
                                                     {"h:Geometry=\"type\"", 5},
                                                     {"h:Geometry=\"xmax\"", 2},
                                                     {"h:Geometry=\"xmin\"", 2},
                                                     {"h:Geometry=\"ymax\"", 2},
                                                     {"h:Geometry=\"ymin\"", 2},
                                                     {"h:Omit=\"Self\"", 201},
                                                     {"h:When does not hold", 245},
                                                     {"h:When holds", 115},
                                                     {"h:Where does not hold", 37},
                                                     {"h:Where holds", 11},
                                                     {"rows in an order", 21},
                                                     {"rows related by a class", 1},
                                                     {"rows related by a class with a table of links", 1},
                                                     {"rows related by a key", 29},
                                                     {"rows related by several keys", 4},
                                                     {"the rows of a group", 1},
                                                     {"the value of a field that is gone over", 2},
                                                     {"vertices in another reference", 1},
                                                     {"{$Crs}", 40},
                                                     {"{$DateTime}", 52},
                                                     {"{$Date}", 49},
                                                     {"{$Item}", 53},
                                                     {"{$Layer}", 52},
                                                     {"{$Map}", 52},
                                                     {"{$Table}", 53},
                                                     {"{$who}", 55}};

class SecondEditionOracle : public ::testing::Test {
protected:
    SecondEdition makeEdition() {
        SecondEdition made{evaluator, "2023-11-14", "2023-11-14T22:13:20Z", {{"who", "O'Brien"}}};
        made.fnReferenceOf = registeredReference;
        (void)registeredReference("OGC:CRS84");
        return made;
    }
    /// @returns whether the export and the interpreter agree on the case of a seed.
    bool agreeOn(std::uint64_t nSeed) {
        Case testCase = makeSecondCase(nSeed, edition);
        Reach reach;
        const Outcome expected = interpreted(testCase, &reach);
        if (exported(testCase, folder) == expected) {
            coverage.add(expected, reach);
            return true;
        }
        if (GTEST_FLAG_GET(fail_fast)) {
            ADD_FAILURE() << "The case of seed " << nSeed << " differs.";
            return false;
        }
        shrink(testCase, folder);
        const Outcome actual = exported(testCase, folder);
        ADD_FAILURE() << describeDifference(testCase, actual, interpreted(testCase));
        return false;
    }

    test::TemporaryFolder folder;
    expression::sqlite::SqliteEvaluator evaluator{1'700'000'000};
    SecondEdition edition = makeEdition();
    Coverage coverage; ///< of the cases that the two agree on
};

} // namespace

TEST_F(SecondEditionOracle, AgreesWithTheExportOnRandomControlFilesOfBothEditions) {
    if (const auto nSeed = numberFromEnvironment("HALVANE_ORACLE_SEED", 0); nSeed != 0) {
        agreeOn(nSeed);
        return;
    }
    const auto nFirst = numberFromEnvironment("HALVANE_ORACLE_FIRST", 1);
    const auto nCases = numberFromEnvironment("HALVANE_ORACLE_CASES", usualCases);
    const int lMost = GTEST_FLAG_GET(fail_fast) ? 1 : differencesTold;
    int lDifferences = 0;
    for (std::uint64_t nSeed = nFirst; nSeed < nFirst + nCases && lDifferences < lMost; ++nSeed)
        lDifferences += agreeOn(nSeed) ? 0 : 1;
    if (numberFromEnvironment("HALVANE_ORACLE_FIGURES", 0) != 0)
        std::cout << coverage;
    // Fewer cases tell nothing of how often things come about; and differences were told already.
    if (nCases < 3000 || lDifferences > 0)
        return;
    // What is refused before it begins would agree with anything that writes nothing.
    EXPECT_GE(coverage.nSaved * 100, nCases * 85);
    for (const auto& [sTurn, nLeast] : leastByTurn)
        EXPECT_GE(coverage.casesOfTurn(sTurn) * 1000, nLeast * nCases) << sTurn;
}

} // namespace halvane::oracle
