#pragma once

#include <string>
#include <string_view>

namespace halvane::io {

/// The path as the platform understands it: on a POSIX system every "\" read as "/".
[[nodiscard]] std::string nativePath(std::string_view sPath);

/// Whether the name is an "http://" or "https://" URL, in any letter case.
[[nodiscard]] bool isHttpUrl(std::string_view sName);

/// A URL without the user name and password that it may hold, for messages; other names as they are.
[[nodiscard]] std::string withoutCredentials(std::string_view sName);

/// The text with each "%" and two hexadecimal digits as the byte that they stand for.
[[nodiscard]] std::string percentDecoded(std::string_view sText);

/// The path that a name stands for: for a "file:///" URL what comes after it (on a POSIX system with one "/"
/// in front), percent-decoded if there is no such file as it stands; any other name is a path itself. In the
/// platform's form.
[[nodiscard]] std::string pathOfName(std::string_view sName);

} // namespace halvane::io
