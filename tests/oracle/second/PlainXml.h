#pragma once

// A reading of pieces of XML, as far as texts of random cases need it: no document types, no entities but
// those that XML has itself.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::oracle {

/// An element, or a text (no name). Comments and instructions are left out.
struct XmlPiece {
    std::string sName = {};
    std::string sText = {};
    bool bCData = false; ///< of a text
    std::vector<std::pair<std::string, std::string>> aAttributes = {};
    std::vector<XmlPiece> aChildren = {};
};

/// @throws std::runtime_error for what is not well-formed.
[[nodiscard]] std::vector<XmlPiece> readXml(std::string_view sText);

} // namespace halvane::oracle
