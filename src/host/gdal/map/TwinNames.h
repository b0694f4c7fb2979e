#pragma once

#include <set>
#include <string>

namespace halvane::host::gdal {

/// Names of one kind of things in a map, ignoring case. Of twins the first keeps its name, and each later one
/// bears its file's name too, so that all can be named whatever is opened when.
class TwinNames {
public:
    /// A name that is not to be given to anything else.
    void take(const std::string& sName);
    /// @param sFile the path of the file, or what else the thing is in.
    [[nodiscard]] std::string give(const std::string& sName, const std::string& sFile);

private:
    std::set<std::string> given_; ///< in capitals
};

} // namespace halvane::host::gdal
