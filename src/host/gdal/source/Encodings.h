#pragma once

#include "host/gdal/source/MemoryFiles.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane::host::gdal {

/// Whether texts in an encoding of that name can be read.
[[nodiscard]] bool isEncoding(const std::string& sName);
/// Whether the format of a file, by its name, may leave the encoding of its texts open.
[[nodiscard]] bool hasOpenEncoding(const std::string& sPath);
/// Whether the data library reads a format's texts as UTF-8 and nothing else, so that it needs a copy.
[[nodiscard]] bool needsUtf8Copy(const std::string& sPath);

/// The text of GML in UTF-8 that states so, where it states an encoding that its driver does not know;
/// nothing for other text, and for text that is none in that encoding.
[[nodiscard]] std::optional<std::string> decodedMarkup(const std::string& sContent);

/// A file in UTF-8, with the files beside it that say of what types it is and where it lies: in memory, for
/// as long as the object lives.
class Utf8Copy {
public:
    /// @throws Failure when the file cannot be read, and when it is no text in that encoding.
    Utf8Copy(const std::string& sPath, const std::string& sEncoding);
    /// For the data library alone.
    [[nodiscard]] const std::string& path() const { return sPath_; }

private:
    MemoryFiles files_;
    std::string sPath_;
};

} // namespace halvane::host::gdal
