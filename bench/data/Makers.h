#pragma once

#include <cstdint>
#include <string>

namespace halvane::bench {

// Each makes one file of test data, the same for the same count.
// All throw std::runtime_error when the file cannot be written.

/// Layer "points": ten fields of all common types, one value in seven of the optional ones null.
void makePoints(const std::string& sPath, std::int64_t nCount);

/// Table "points" of a server, anew: a key, a whole number, a text, a number, a date that one row in seven
/// lacks, a point. @param sConnection "PG:…".
void makeServerPoints(const std::string& sConnection, std::int64_t nCount);

/// Layer "areas": rings of about twenty vertices with coordinates in whole millimetres.
void makeAreas(const std::string& sPath, std::int64_t nCount);

/// Layer "areas" with one area: a ring of so many vertices, spread over the country.
void makeHugeArea(const std::string& sPath, std::int64_t nVertices);
/// The same with so many rings of four vertices, the first repeated at its end.
void makeAreaOfRings(const std::string& sPath, std::int64_t nRings);

/// Layer "parents" and table "children", five for each parent on average, in no order and without an index.
void makeRelated(const std::string& sPath, std::int64_t nParents);

/// Layer "parents", five "children" for each and three "grandchildren" for each of these on average, in no
/// order and without an index.
void makeNested(const std::string& sPath, std::int64_t nParents);

/// A folder of files with `nCount` layers and tables together, four layers to a table, a hundred to a file,
/// with a few fields and rows each.
void makeStructure(const std::string& sFolder, std::int64_t nCount);
/// A control file that describes all of them.
void makeStructureControl(const std::string& sPath, std::int64_t nCount);

/// A control file of `nCount` nodes, deep and wide, whose leaves take values from the map of makeSmall.
void makeTreeControl(const std::string& sPath, std::int64_t nCount);

/// A folder of `nCount` files of eighteen kinds by turns, vector, raster and tables, with twenty rows or 256
/// cells each.
void makeFolder(const std::string& sFolder, std::int64_t nCount);

/// A map of one layer, "places", with ten points.
void makeSmall(const std::string& sPath);

} // namespace halvane::bench
