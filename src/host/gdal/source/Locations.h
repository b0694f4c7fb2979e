#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// A location as a file path: backslashes read as slashes, made absolute from `sBaseFolder` (absolute), "."
/// and ".." resolved by text.
/// @throws Failure for what could reach further than one file or folder: "/vsi...", "scheme:", an inline
///         definition ("<", "{"), a virtual dataset (".vrt"), an empty location, a NUL inside.
[[nodiscard]] std::string filePathOf(std::string_view sLocation, const std::string& sBaseFolder);

/// The part of a file's path before its name, without a separator at the end except for the root.
[[nodiscard]] std::string folderOf(const std::string& sPath);
/// The file's name without its extension.
[[nodiscard]] std::string stemOf(const std::string& sPath);
/// The extension in lower case, without its dot.
[[nodiscard]] std::string extensionOf(const std::string& sPath);

/// By their names alone; both are absolute and without "..".
[[nodiscard]] bool isInside(const std::filesystem::path& path, const std::filesystem::path& folder);

[[nodiscard]] std::string currentFolder();
[[nodiscard]] bool isFolder(const std::string& sPath);
/// Why there is no file or folder at a path to open: it is not there, or a folder on the way is closed.
[[nodiscard]] std::string whyMissing(const std::string& sPath);
/// Why what is there may not be read, and what to do; "" where it may be.
[[nodiscard]] std::string whyDenied(const std::string& sPath);
/// A regular file; one of /proc or another view of the kernel is none.
[[nodiscard]] bool isFile(const std::string& sPath);
/// A symbolic link that leads to nothing, or to what cannot be reached.
[[nodiscard]] bool isLostLink(const std::string& sPath);

} // namespace halvane::host::gdal
