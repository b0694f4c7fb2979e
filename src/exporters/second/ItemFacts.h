#pragma once

#include "engine/ModExporter.h"
#include "engine/second/ItemScope.h"

#include <vector>

namespace halvane {

struct Leaf;

/// Makes a thing of a map the current one of its kind. @throws Failure when its data cannot be opened.
void makeItemCurrent(ExportState& state, const LoopItem& item);

/// The feature class or table that things are said of: of the innermost item that is a layer or a table, else
/// of the current layer, else the current table. Nothing where there is none.
[[nodiscard]] host::GisTablePtr tableAtHand(const ExportState& state);
/// Whether the row at hand stands within that item: it is nearer then.
[[nodiscard]] bool rowsAreWithinItems(const ExportState& state);

/// The rules of a table's fields; nothing where the host knows none.
[[nodiscard]] host::GisSubtypesPtr subtypesOf(host::GisTable& table);
/// The domains of a field, those of all subtypes, each once.
[[nodiscard]] std::vector<host::GisDomainPtr> domainsOfField(const LoopItem& field);

/// Writes the property of the innermost item that a leaf names. @throws Failure.
void writeItemProperty(const Leaf& leaf);

} // namespace halvane
