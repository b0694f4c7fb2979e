#pragma once

#include "base/Failure.h"
#include "host/gdal/rows/Clause.h"
#include "host/gdal/rows/RowOrder.h"

#include <ogrsf_frmts.h>

#include <string>

namespace halvane::host::gdal {

/// Sets a layer's filter. @throws Failure when the driver rejects it.
void setFilter(OGRLayer& layer, const Clause& clause, const RowOrder& order = {});

/// Asks the data whether it takes a clause. No row is read: a clause that no row satisfies costs no more.
/// @throws Failure with the reason for a clause that it rejects.
void testClause(const LayerHandle& layer, const Clause& clause);
/// Raises the failure that reading with a clause ended in, with the reason in words where the data tells one.
[[noreturn]] void raiseRejected(const LayerHandle& layer, const Clause& clause, const Failure& failure);

/// The failure of a clause that a person wrote: with what to do where an apostrophe in a text ends the text.
[[nodiscard]] Failure withHint(const Failure& failure, const std::string& sWhere);

} // namespace halvane::host::gdal
