#pragma once

// Reading small XML files of ours: parsed without network and entities, checked against a schema.

#include "base/Owned.h"

#include <libxml/tree.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

using MarkupDocument = Owned<xmlDoc, xmlFreeDoc>;

/// An element of a parsed document, which must outlive it.
class MarkupElement {
public:
    explicit MarkupElement(const xmlNode* pNode) : pNode_(pNode) {}

    [[nodiscard]] std::string_view name() const;
    [[nodiscard]] long line() const;
    [[nodiscard]] std::optional<std::string> attribute(const char* pName) const;
    /// "" when it is absent.
    [[nodiscard]] std::string text(const char* pName) const { return attribute(pName).value_or(""); }
    /// All text inside it.
    [[nodiscard]] std::string content() const;
    [[nodiscard]] std::vector<MarkupElement> children() const;
    [[nodiscard]] std::vector<MarkupElement> children(std::string_view sName) const;
    /// The first of that name; nothing without one.
    [[nodiscard]] std::optional<MarkupElement> child(std::string_view sName) const;
    /// All text inside the first child of that name; "" without one.
    [[nodiscard]] std::string contentOf(std::string_view sName) const;

private:
    const xmlNode* pNode_;
};

/// @throws Failure with the file, the line and what is wrong.
[[nodiscard]] MarkupDocument parseMarkup(const std::string& sPath);
enum class DocumentTypes : std::uint8_t {
    Refused,
    WithoutContent, ///< may name an address, which is not opened, and declares nothing
};
/// @param sPath what the text is, for messages.
[[nodiscard]] MarkupDocument parseMarkupText(const std::string& sContent, const std::string& sPath,
                                             DocumentTypes allowed = DocumentTypes::Refused);
/// @throws Failure with every line that breaks the schema.
void checkAgainst(std::string_view sSchema, xmlDoc& document, const std::string& sPath);

} // namespace halvane::host::gdal
