#pragma once

class GDALDataset;

namespace halvane::host::gdal {

/// Takes from a database file's handle what its SQL could reach other places with: functions that open other
/// data, call services or load code, attached databases, and virtual tables over other data. Where clauses
/// hold texts from the data, so that the data could otherwise choose what is opened. Handles of other
/// formats are left alone.
void guardDatabase(GDALDataset& dataset);

} // namespace halvane::host::gdal
