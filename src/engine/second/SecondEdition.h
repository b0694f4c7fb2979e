#pragma once

#include "expression/Evaluator.h"
#include "host/Forward.h"
#include "xml/dom/Dom.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace halvane {

class ControlParts;

/// The namespace of the attributes that the second edition of the control file adds.
inline constexpr std::string_view sSecondEditionNamespace = "urn:halvane:control:2";

/// What control files of the second edition are exported with. A control file without its namespace is
/// exported by the first edition all the same.
struct SecondEdition {
    expression::Evaluator& evaluator; ///< borrowed; outlives the export
    /// What `$Date` and `$DateTime` stand for: the beginning of the export, in forms of XML Schema.
    std::string sDate;
    std::string sDateTime;
    /// The values that the person gives: `$name` in texts and expressions.
    std::map<std::string, std::string, std::less<>> values = {};
    /// Fetches what control files include; nothing: they include nothing. Borrowed.
    ControlParts* pParts = nullptr;
    /// The spatial reference of a code, and a failure for a text that is none; nothing: none can be named.
    std::function<host::GisSpatialReferencePtr(std::string_view sCode)> fnReferenceOf = {};
    /// Told the name of each of the values that a control file asks for; nothing: nobody wants to know.
    std::function<void(std::string_view sName)> fnValueAsked = {};
};

/// What an element says in the second edition; nothing where it does not say it.
/// @param sName without prefix.
[[nodiscard]] std::optional<std::string_view> secondAttribute(dom::Node oElement, std::string_view sName);
/// An attribute of the second edition's namespace that the element has; nothing for none.
[[nodiscard]] dom::Node anySecondAttribute(dom::Node oElement);

/// Whether a control file is of the second edition: its root declares the namespace.
[[nodiscard]] bool isOfSecondEdition(dom::Node oControlRoot);

} // namespace halvane
