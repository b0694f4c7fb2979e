#pragma once

#include "base/Failure.h"
#include "engine/second/NodeGeometry.h"
#include "host/SpatialReference.h"
#include "host/Tables.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace halvane {

/// How the shapes of one table come to the coordinates that nodes ask for.
struct TableSpace {
    host::GisTransformationPtr pTransformation;   ///< nothing: coordinates stay what they are
    host::GisSpatialReferencePtr pReference;      ///< of the coordinates that are written; may be nothing
    mutable std::optional<bool> bNorthFirst = {}; ///< once it was asked for
    mutable std::optional<std::string> sCode = {};

    [[nodiscard]] bool isNorthFirst() const;
    /// "" where it is not known.
    [[nodiscard]] const std::string& code() const;
};

/// Keeps for one export what takes long to find out of references.
class Coordinates {
public:
    /// @param nGeneration what was found in an earlier one is looked for anew.
    /// @returns what stays until the generation changes.
    /// @throws Failure when the shapes cannot be brought there.
    [[nodiscard]] const TableSpace& of(const host::GisTablePtr& pTable, const NodeSpace& space,
                                       std::uint64_t nGeneration);
    void clear() { known_.clear(); }

private:
    struct Known {
        host::GisTablePtr pTable;
        std::string sTarget;
        std::uint64_t nGeneration;
        TableSpace space;
        std::optional<Failure> failure; ///< why there is none
    };

    std::deque<Known> known_; ///< few; they keep their places
};

/// The reference of a table's shapes; nothing where it has none, or no shapes.
[[nodiscard]] host::GisSpatialReferencePtr referenceOf(const host::GisTablePtr& pTable);

} // namespace halvane
