#pragma once

// The notations in which projects write where data is.

#include <map>
#include <string>
#include <string_view>

namespace halvane::host::gdal {

/// Pairs of a database's address: dbname='x' host=y table="s"."t" (shape) sql=to the end.
struct DatabaseText {
    std::map<std::string, std::string, std::less<>> values;
    std::string sSchema;
    std::string sTable;
    std::string sShapes; ///< the column of the shapes; "" where none is named
    std::string sSql;

    /// "" where it is absent.
    [[nodiscard]] std::string value(std::string_view sKey) const;
};
[[nodiscard]] DatabaseText parseDatabaseText(std::string_view sText);

/// PATH?a=b&c=d: the pairs, decoded. @param sPath becomes the path, of an address "file:" too.
[[nodiscard]] std::map<std::string, std::string, std::less<>> parseQueryText(std::string_view sText,
                                                                             std::string& sPath);

} // namespace halvane::host::gdal
