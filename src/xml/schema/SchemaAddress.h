#pragma once

#include "xml/dom/Dom.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::dom {

// Addresses in schemas and catalogues, and the local files that they lead to.

/// Whether it begins with a scheme ("http:", "file:", "urn:").
[[nodiscard]] bool hasScheme(std::string_view sAddress);
/// Without "." and ".."; a "/" at the end stays.
[[nodiscard]] std::string normalPath(const std::string& sPath);
/// The path that a reference leads to from the file or folder ("/" at its end) that it stands in; nothing
/// for an address that is no local file's.
[[nodiscard]] std::optional<std::string> localFile(std::string_view sReference, std::string_view sBase);
/// The address that a relative reference leads to from another address.
[[nodiscard]] std::string addressBeside(std::string_view sReference, std::string_view sBase);

/// The address that the root's own prefix, or none, stands for; "" where it declares none.
[[nodiscard]] std::string_view namespaceOfRoot(Node oRoot);
/// Loads a local XML file by the rules of every document: nothing outside it is opened.
/// @param sShown the name that problems begin with. @param problems gets a line when it cannot be read.
/// @param pBytes gets the file's bytes. @returns nothing then.
[[nodiscard]] DocumentPtr loadLocalFile(const std::string& sPath, const std::string& sShown,
                                        std::vector<std::string>& problems, std::string* pBytes = nullptr);

} // namespace halvane::dom
