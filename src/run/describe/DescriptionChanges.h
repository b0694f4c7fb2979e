#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// One difference between two descriptions.
struct DescriptionChange {
    enum class What { Added, Removed, Changed };
    /// A thing that has a name among its like: a layer, a field, a code.
    struct Place {
        std::string sKind;
        std::string sName;
    };

    What what = What::Changed;
    std::vector<Place> where;       ///< the outermost first; empty for the description itself
    std::string sMember;            ///< of the innermost, that was changed; "" where it was added or removed
    nlohmann::ordered_json before;  ///< as in the description; null where it was added
    nlohmann::ordered_json after;   ///< null where it was removed
    std::string sBeforeNotReadable; ///< why it is null; "" where it is not for that
    std::string sAfterNotReadable;
};

/// Compares what two maps are made of. Things are found again by their names, whatever their order. Where the
/// maps lie is no difference, nor is a name that follows from the name of the map's file.
/// @param sOld,sNew in the form of docs/describe.schema.json.
[[nodiscard]] std::vector<DescriptionChange> compareDescriptions(std::string_view sOld,
                                                                 std::string_view sNew);

/// A line for each change.
[[nodiscard]] std::string changesText(const std::vector<DescriptionChange>& changes);
/// JSON in the form of docs/describe-changes.schema.json, with a line break at its end.
/// @param sOld,sNew the maps' absolute paths.
[[nodiscard]] std::string changesJson(const std::vector<DescriptionChange>& changes, std::string_view sOld,
                                      std::string_view sNew);

} // namespace halvane
