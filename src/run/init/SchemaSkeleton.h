#pragma once

#include "xml/schema/SchemaFiles.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace halvane {

/// An element or an attribute of the documents that a schema describes.
struct SkeletonNode {
    std::string sName; ///< with its prefix
    bool bAttribute = false;
    bool bRepeated = false; ///< it may come more than once
    std::string sType;      ///< of its text, for people; "" where it has none
    std::string sText;    ///< the only, the default or the first value that it may have; "" where any may be
    std::string sContent; ///< the elements in it in their order: "name?, desc?, trkseg+"; "" for none
    std::vector<SkeletonNode> required; ///< attributes first, elements in the order of the schema
    std::vector<SkeletonNode> optional; ///< likewise, with what they require
};

/// What a schema prescribes for documents, as far as a control file can be begun with it.
struct SchemaSkeleton {
    /// Prefix and namespace of the names; the prefix "" is the default namespace.
    std::vector<std::pair<std::string, std::string>> namespaces;
    SkeletonNode root;
    std::vector<std::string> otherRoots; ///< elements that documents may begin with as well
};

/// Reads a skeleton out of a schema's declarations: sequences, choices (the first of each), groups,
/// extensions, references and substitutions. The root is the first element that no other one refers to.
/// @param problems gets a line when there is none. @returns nothing then.
[[nodiscard]] std::optional<SchemaSkeleton> schemaSkeleton(const dom::SchemaFiles& files,
                                                           std::vector<std::string>& problems);

} // namespace halvane
