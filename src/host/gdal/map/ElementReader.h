#pragma once

#include "host/gdal/facts/Markup.h"
#include "host/gdal/map/MapDocumentModel.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace halvane::host::gdal {

/// What the readers of all parts of a map document share: places in it, and what the schema cannot ask for.
class ElementReader {
public:
    /// @param sPath the document's file.
    explicit ElementReader(std::string sPath) : sPath_(std::move(sPath)) {}

    /// @throws Failure with the element's place before the text.
    [[noreturn]] void fail(const MarkupElement& element, const std::string& sText) const;
    [[nodiscard]] Place placeOf(const MarkupElement& element) const { return {sPath_, element.line()}; }
    /// The child of that name; nothing when there is none. @throws Failure when there are two.
    [[nodiscard]] std::optional<MarkupElement> single(const MarkupElement& element,
                                                      std::string_view sName) const;
    /// Adds the name of an element. @throws Failure when it is among the names, ignoring case.
    void requireUnique(std::unordered_set<std::string>& names, const std::string& sName,
                       const MarkupElement& element) const;

private:
    std::string sPath_;
};

// Texts of the schema's types, whatever the process's locale.
[[nodiscard]] bool toBool(const std::string& sText);
[[nodiscard]] double toNumber(const std::string& sText);
[[nodiscard]] std::int32_t toWhole(const std::string& sText);

/// The position of a text in a list of names; the schema admits no other.
template<class... Names>
[[nodiscard]] std::int32_t indexOf(const std::string& sText, Names... names) {
    const std::vector<std::string_view> all{names...};
    return static_cast<std::int32_t>(std::find(all.begin(), all.end(), sText) - all.begin());
}

} // namespace halvane::host::gdal
