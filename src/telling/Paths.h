#pragma once

#include <string>
#include <string_view>

namespace halvane {

/// Whether the text names a document that is loaded by its address: "http://…", "https://…" or "file:///…",
/// in any letter case.
[[nodiscard]] bool isUrl(std::string_view sText);

/// A path made absolute from the current folder, with "\" read as "/". A URL is left as it is. Where the
/// current folder's own name holds a "\", a relative path stays relative: "./" and the path.
[[nodiscard]] std::string absolutePath(std::string_view sText);

/// Whether both paths lead to one existing file or folder.
[[nodiscard]] bool sameFile(const std::string& sLeft, const std::string& sRight);

} // namespace halvane
