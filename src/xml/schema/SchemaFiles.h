#pragma once

#include "xml/dom/Dom.h"
#include "xml/schema/SchemaCatalog.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::dom {

/// A schema with all that it imports, includes or redefines, read once into memory: nothing else is ever
/// opened for it. Imports without a location are no files.
class SchemaFiles {
public:
    /// @param sRoot an absolute path, or an address that the catalogue knows. @param sShown the name that
    ///        problems of the schema itself begin with.
    /// @param problems gets a line for each file that cannot be read, is no schema, or lies elsewhere and has
    ///        no local file in the catalogue.
    SchemaFiles(const std::string& sRoot, const std::string& sShown, const SchemaCatalog& catalog,
                std::vector<std::string>& problems);

    /// The path of the schema itself.
    [[nodiscard]] const std::string& root() const noexcept { return sRoot_; }
    /// The path of a file by the address that a schema has it under; nothing for one that is not among them.
    [[nodiscard]] const std::string* pathOf(std::string_view sAddress) const;
    /// @param sPath of one of the files.
    [[nodiscard]] const std::string& bytesOf(const std::string& sPath) const { return bytes_.at(sPath); }
    [[nodiscard]] std::vector<std::string> paths() const;

private:
    struct Reader;

    std::string sRoot_;
    std::map<std::string, std::string> bytes_;              ///< by path
    std::map<std::string, std::string, std::less<>> paths_; ///< by address, or by the path asked for
};

} // namespace halvane::dom
