#pragma once

#include "collection/Value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// An ordered collection of values, each optionally filed under a text key; keys are unique and found
/// ignoring case. Positions count from 1. Failures are thrown: the quiet public face is dCollection.
class ValueCollection;

/// The program's general keyed list: values in order, optional text keys, the keys themselves in insertion
/// order, and sorted views. Apart from the sorts, no operation throws: a missing key, a bad position or a
/// duplicate key yields the stated default.
class dCollection;
using dCollectionPtr = std::shared_ptr<dCollection>;

} // namespace halvane
