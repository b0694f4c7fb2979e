#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::dom {

/// An XML catalogue: which local files stand in for which addresses. Of its entries are read "system", "uri",
/// "rewriteSystem", "rewriteURI", "systemSuffix", "uriSuffix", "group" and "nextCatalog"; catalogues that it
/// names are local files, too.
class SchemaCatalog {
public:
    SchemaCatalog() = default;
    /// @param sPath absolute. @param sShown the name that problems begin with.
    /// @param problems gets a line for each reason why it cannot be read.
    SchemaCatalog(const std::string& sPath, const std::string& sShown, std::vector<std::string>& problems);

    /// The path of the file that stands in for an address. An exact entry goes before a rewritten beginning,
    /// that before an ending; of several the longest. Nothing when no entry is for it.
    [[nodiscard]] std::optional<std::string> fileFor(std::string_view sAddress) const;
    /// The catalogue's own files.
    [[nodiscard]] const std::vector<std::string>& files() const noexcept { return files_; }

private:
    enum class Match { Exact, Beginning, Ending };
    struct Entry {
        Match match;
        std::string sText;
        std::string sTarget; ///< a path; of a beginning, that of what takes its place
    };
    struct Reader;

    std::vector<Entry> entries_;
    std::vector<std::string> files_;
};

} // namespace halvane::dom
