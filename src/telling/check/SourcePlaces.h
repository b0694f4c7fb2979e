#pragma once

#include "xml/dom/Dom.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace halvane {

/// A place in a text, counted from 1.
struct SourcePlace {
    std::uint32_t lLine = 0;
    std::uint32_t lColumn = 0; ///< in characters; 0 where it is not known
};

/// Finds where the elements and attributes of a control file stand in its text, which a parser does not keep.
/// Files in other encodings than UTF-8, and those whose elements come out of entities, have lines alone.
class SourcePlaces {
public:
    /// @param sControlPath absolute, or what the control file was read from: then there are lines alone.
    SourcePlaces(dom::Node oControlRoot, std::string sControlPath);

    /// @param sAttribute of the element; where it has none of that name, the place is that of its tag.
    [[nodiscard]] SourcePlace of(dom::Node oElement, std::string_view sAttribute = {});

private:
    /// A start tag: where it begins, and its text.
    struct Tag {
        SourcePlace place;
        std::string_view sText;
    };
    /// A file of the control file.
    struct File {
        std::string sText;
        std::vector<Tag> tags; ///< in document order; none where they cannot be told
    };

    [[nodiscard]] const File& fileOf(const std::string& sPart);
    void read(const std::string& sPart, File& file) const;

    std::string sControlPath_;
    std::unordered_map<const dom::NodeData*, std::size_t> places_; ///< among the elements of their files
    std::map<std::string, std::vector<dom::Node>> elements_;       ///< by part
    std::map<std::string, File> files_;                            ///< by part
};

} // namespace halvane
