#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace halvane::dom {

/// A name, stored once per document: equal names of one document are the same object.
struct Name {
    std::string sQualified;
    std::size_t nBase = 0;  ///< where the name without its prefix begins
    std::string sStartTag;  ///< a line break and a start tag without attributes
    std::string sEndTag;    ///< a line break and an end tag
    std::string sAttribute; ///< a blank and the beginning of an attribute, up to its value

    [[nodiscard]] std::string_view base() const noexcept {
        return std::string_view(sQualified).substr(nBase);
    }
};

/// The names of one document.
class NameTable {
public:
    /// @throws Failure DocumentFailure for a text that XML does not allow as a name.
    const Name* intern(std::string_view sName);

private:
    std::unordered_map<std::string_view, std::unique_ptr<Name>> namesByText_;
};

} // namespace halvane::dom
