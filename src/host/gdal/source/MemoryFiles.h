#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

/// A folder of files in memory that the data library can open; it goes with the object.
class MemoryFiles {
public:
    MemoryFiles();
    MemoryFiles(const MemoryFiles&) = delete;
    MemoryFiles& operator=(const MemoryFiles&) = delete;
    ~MemoryFiles();

    /// @returns the file's path. @throws Failure when there is no memory.
    std::string add(const std::string& sName, std::string_view sContent);
    /// Adds a copy of a file that stands beside another one, where it is there.
    void addBeside(const std::string& sPath, const char* pExtension);

private:
    std::string sFolder_;
    std::vector<std::string> files_;
};

/// The bytes of a file. @throws Failure when it cannot be read.
[[nodiscard]] std::string contentOf(const std::string& sPath);

} // namespace halvane::host::gdal
