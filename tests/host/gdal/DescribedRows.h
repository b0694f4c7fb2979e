#pragma once

#include "host/Rows.h"

#include <string>
#include <vector>

namespace halvane::tests {

/// What came of a reading: each row described, and the failure that it ended with.
struct Outcome {
    std::vector<std::string> rows;
    std::string sFailure;
};

/// The type of each value and its text, and all vertices of the shape: one line for a row.
std::string describe(const host::GisRow& row);
/// The rows of a cursor until its end.
Outcome readAll(host::GisCursor& cursor);
/// Fails the test at the first row that differs.
void expectSame(const Outcome& columns, const Outcome& rows);
/// Whether the last of so many rows came from a column.
bool readsColumns(host::GisCursor& cursor, int lRowCount);

} // namespace halvane::tests
