#include "ui/win32/TypedPath.h"

#include "base/Text.h"
#include "base/com/Bstr.h"

#include <filesystem>

namespace halvane::ui::win32 {

namespace fs = std::filesystem;

std::wstring folderOfTyped(std::string_view sTyped) {
    const std::string_view sPath = trimBlanks(sTyped);
    if (sPath.empty())
        return {};
    std::error_code error;
    fs::path path = fs::absolute(com::wideOf(sPath), error);
    path.make_preferred();
    if (!fs::is_directory(path, error))
        path = path.parent_path();
    else if (!path.has_filename() && path.has_relative_path())
        path = path.parent_path(); // the slash at its end
    return fs::is_directory(path, error) ? path.wstring() : std::wstring();
}

} // namespace halvane::ui::win32
