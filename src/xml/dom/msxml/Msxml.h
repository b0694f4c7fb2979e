#pragma once

// Ownership, creation and texts of MSXML. Only the files of this backend include it.

#include "base/com/Bstr.h"
#include "base/com/ComPtr.h"
#include "xml/dom/Backend.h"

#include <msxml2.h>
#include <string>
#include <string_view>

namespace halvane::dom::msxml {

using com::Bstr;
using com::ComPtr;

using DocumentPtr = ComPtr<IXMLDOMDocument2>;
using NodePtr = ComPtr<IXMLDOMNode>;

/// A new document of the newest version that this machine has. It keeps all white space, loads nothing from
/// outside, refuses document types, does not validate by itself, and its selections are XPath's. Its elements
/// may be nested without limit.
/// @throws Failure CannotCreateComponent when there is no version 6, 4 or 3.
[[nodiscard]] DocumentPtr createDocument();

/// Sets a property that not every version has. @returns whether this one has it.
bool setProperty(IXMLDOMDocument2& document, std::wstring_view sName, VARIANT value) noexcept;
bool setProperty(IXMLDOMDocument2& document, std::wstring_view sName, std::string_view sValue);

/// Why the document could not be loaded, or breaks its document type.
[[nodiscard]] ParseError errorOf(IXMLDOMParseError& error);

[[nodiscard]] DOMNodeType typeOf(IXMLDOMNode& node);
/// The qualified name.
[[nodiscard]] std::string nameOf(IXMLDOMNode& node);
/// The whole value: nothing is trimmed. "" for nodes without one.
[[nodiscard]] std::string valueOf(IXMLDOMNode& node);

using Step = HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*)(IXMLDOMNode**);
/// A relative of the node; nothing when it has none.
[[nodiscard]] NodePtr relative(IXMLDOMNode& node, Step fnStep);

} // namespace halvane::dom::msxml
