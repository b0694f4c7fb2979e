#include "host/gdal/source/Errors.h"
#include "host/gdal/source/MissingRows.h"

#include <gtest/gtest.h>

#include <utility>

namespace halvane::tests {
namespace {

using host::gdal::ErrorScope;

void report(const char* pText) {
    CPLError(CE_Failure, CPLE_AppDefined, "%s", pText);
}

TEST(ErrorsOfTheLibrary, AreJoinedInTheirOrder) {
    const ErrorScope errors;
    report("no such table: A");
    report("no such table: B");
    EXPECT_EQ(errors.text(), "no such table: A; no such table: B");
}

TEST(ErrorsOfTheLibrary, AreToldOnceWhereAStatementRepeatsTheReason) {
    const ErrorScope errors;
    report("file is not a database");
    report("file is not a database");
    report("sqlite3_prepare_v2(SELECT 1) failed: file is not a database");
    EXPECT_EQ(errors.text(), "file is not a database");
}

TEST(ErrorsOfTheLibrary, KeepAStatementThatFailsForAnotherReason) {
    const ErrorScope errors;
    report("file is not a database");
    report("sqlite3_prepare_v2(SELECT 1) failed: disk I/O error");
    EXPECT_EQ(errors.text(), "file is not a database; sqlite3_prepare_v2(SELECT 1) failed: disk I/O error");
}

TEST(ErrorsOfTheLibrary, AreToldWithoutAdviceToSetOptionsOfTheLibrary) {
    for (const auto& [pReported, sTold] :
         {std::pair("Unable to open a.shx or a.SHX. Set SHAPE_RESTORE_SHX config option to YES to restore or "
                    "create it.",
                    "Unable to open a.shx or a.SHX"),
          {"Feature 2 cannot be parsed: <a>1 2</a>. You may set the GML_SKIP_CORRUPTED_FEATURES "
           "configuration "
           "option to YES to skip to the next feature",
           "Feature 2 cannot be parsed: <a>1 2</a>"},
          {"More than 5 tables. Limiting to first 5 (can be overridden with OGR_TABLE_LIMIT config option)",
           "More than 5 tables. Limiting to first 5"},
          {"no option is there in \"A_B.csv\". Sorry (so it is).",
           "no option is there in \"A_B.csv\". Sorry (so it is)."},
          {"no such table: MY_TABLE", "no such table: MY_TABLE"}}) {
        const ErrorScope errors;
        report(pReported);
        EXPECT_EQ(errors.text(), sTold);
    }
}

// A driver that finds no memory for a value leaves it out and goes on.
TEST(ErrorsOfTheLibrary, EndAReadingWhereMemoryRanOut) {
    const std::vector<std::pair<CPLErrorNum, const char*>> aReports{
        {CPLE_OutOfMemory, "Values.cpp, 12: cannot allocate 20 bytes"},
        {CPLE_AppDefined, "sqlite3_get_table(pragma table_xinfo('t')) failed: out of memory"},
        {CPLE_AppDefined, "sqlite3_get_table(pragma table_xinfo('t')) failed: query aborted"}};
    for (const auto& [lNumber, pText] : aReports) {
        const ErrorScope errors;
        CPLError(CE_Failure, lNumber, "%s", pText);
        EXPECT_TRUE(errors.outOfMemory()) << pText;
        EXPECT_TRUE(errors.storageFailed()) << pText;
        host::gdal::MissingRows missing;
        missing.note(errors);
        EXPECT_THROW(missing.raiseIfAny("Reading"), Failure) << pText;
    }
    const ErrorScope errors;
    CPLError(CE_Failure, CPLE_AppDefined, "no such column: x");
    EXPECT_FALSE(errors.outOfMemory());
}

} // namespace
} // namespace halvane::tests
