#pragma once

#include "host/gdal/map/ElementReader.h"

#include <map>
#include <optional>
#include <string>

namespace halvane::host::gdal {

/// Reads the reference systems of a project, each tested once.
class ProjectReferences {
public:
    /// @param reader stays.
    explicit ProjectReferences(const ElementReader& reader) : reader_(reader) {}

    /// What stands in an element, by its code or else by its text. Nothing where there is none, or none that
    /// is known here.
    [[nodiscard]] std::optional<ReferenceOverride> in(const std::optional<MarkupElement>& parent);
    /// Nothing for a text that is none.
    [[nodiscard]] std::optional<ReferenceOverride> of(const std::string& sDefinition,
                                                      const MarkupElement& element);

private:
    const ElementReader& reader_;
    std::map<std::string, bool> known_; // by definition
};

} // namespace halvane::host::gdal
