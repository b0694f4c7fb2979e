#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halvane::ui {

/// One choice of a file dialog.
struct FileKind {
    std::string sDescription;
    std::vector<std::string> patterns; ///< "*.xml"; none: every file

    friend bool operator==(const FileKind&, const FileKind&) = default;
};

/// Reads the filter of a common file dialog: "description|pattern;pattern|description|…". A description with
/// no pattern behind it keeps no file back.
[[nodiscard]] std::vector<FileKind> fileKinds(std::string_view sFilter);

} // namespace halvane::ui
