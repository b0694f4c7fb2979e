#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// What a project says and a map does not: a line for each kind of it, with the things that it is said of.
class ProjectRemarks {
public:
    /// @param sFile the project's, for the lines.
    explicit ProjectRemarks(std::string sFile) : sFile_(std::move(sFile)) {}

    /// @param sKind of what is left out; one of few. @param sThing a name; "" where the kind says all.
    void add(std::string_view sKind, std::string sThing);
    /// In the order of their first things.
    [[nodiscard]] std::vector<std::string> lines() const;

private:
    std::string sFile_;
    std::vector<std::pair<std::string, std::vector<std::string>>> kinds_;
};

} // namespace halvane::host::gdal
