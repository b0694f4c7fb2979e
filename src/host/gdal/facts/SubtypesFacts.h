#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

struct SubtypeFieldFacts {
    std::string sName;
    std::optional<std::string> sDomain;  ///< absent: the field's own
    std::optional<std::string> sDefault; ///< plain text; absent: the field's own
};

struct SubtypeFacts {
    std::int32_t lCode = 0;
    std::string sName;
    std::vector<SubtypeFieldFacts> fields;
};

/// The subtypes of a table, in the order of their definition.
struct SubtypesFacts {
    std::string sPlace; ///< where a map document says it; "" for the data's own
    std::string sField;
    std::int32_t lDefault = 0;
    std::vector<SubtypeFacts> subtypes;
};

} // namespace halvane::host::gdal
