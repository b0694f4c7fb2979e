#pragma once

#include "host/memory/Memory.h"
#include "oracle/FaultyData.h"
#include "oracle/Random.h"

#include <string>
#include <vector>

namespace halvane::oracle {

/// The names of the fields that random tables draw theirs from.
[[nodiscard]] const std::vector<std::string>& fieldNames();

/// A few rows of a few fields of all types, nulls and odd texts among them.
[[nodiscard]] host::memory::MemoryTablePtr randomTable(Random& random, const std::string& sName);
/// The same with shapes of one kind.
[[nodiscard]] host::memory::MemoryFeatureClassPtr randomFeatureClass(Random& random,
                                                                     const std::string& sName);

[[nodiscard]] host::GisSpatialReferencePtr randomReference(Random& random);
/// Gives the class some subtypes, none, or not even the role.
void giveSubtypes(Random& random, host::memory::MemoryFeatureClass& featureClass);
/// Gives the workspace domains and relationship classes.
void fillWorkspace(Random& random, host::memory::MemoryWorkspace& workspace);
/// Mostly none.
[[nodiscard]] TableFaultsPtr randomFaults(Random& random);

} // namespace halvane::oracle
