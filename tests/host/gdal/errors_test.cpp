#include "host/gdal/Errors.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace halvane::tests
