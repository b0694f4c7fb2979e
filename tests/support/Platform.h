#pragma once

#include <string>
#include <system_error>

#ifdef _WIN32
#include "base/com/HResult.h"
#endif

namespace halvane::test {

#ifdef _WIN32
inline constexpr bool bWindows = true;
/// What the platform says of a file that is not there.
inline std::string textOfMissingFile() {
    return com::systemText(ERROR_FILE_NOT_FOUND);
}
/// Likewise of a folder.
inline std::string textOfMissingFolder() {
    return com::systemText(ERROR_PATH_NOT_FOUND);
}
/// What the platform says of a folder where a file is wanted.
inline std::string textOfFolder() {
    return com::systemText(ERROR_ACCESS_DENIED);
}
#else
inline constexpr bool bWindows = false;
inline std::string textOfMissingFile() {
    return "No such file or directory";
}
inline std::string textOfMissingFolder() {
    return "No such file or directory";
}
inline std::string textOfFolder() {
    return "Is a directory";
}
#endif

} // namespace halvane::test
