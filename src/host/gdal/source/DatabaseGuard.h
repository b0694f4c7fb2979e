#pragma once

#include <string>

class GDALDataset;

namespace halvane::host::gdal {

/// The database file that the data library opens next on this thread is guarded from its first statement on,
/// before the driver has read anything of it.
void guardDatabaseFromTheStart();

/// Takes from a database file's handle what its SQL could reach other places with, or change anything with:
/// all functions but those of isAllowedFunction(), attached databases, and virtual tables over other data.
/// Views, generated columns and where clauses hold what somebody else wrote, so that the data could otherwise
/// choose what is opened. A function that is refused is reported by its name. Handles of other formats are
/// left alone.
/// @returns false when that could not be done: the handle is not for use.
[[nodiscard]] bool guardDatabase(GDALDataset& dataset);

/// Why a text is not one SELECT that does nothing but read this database's own tables, with the functions of
/// isAllowedFunction(), or why the database rejects it; "" where it is one. Nothing of it is run.
/// @param dataset a guarded one.
[[nodiscard]] std::string whyNoQuery(GDALDataset& dataset, const std::string& sSql);

} // namespace halvane::host::gdal
