#pragma once

namespace halvane::host::gdal {

/// Lets the data library open and see less of this machine for as long as it is called for data
/// (LibraryCall): regular files and folders in the folder in which the data in use stands, at any depth, and
/// the library's own definitions. What else data name (a schema that a schema includes, a part of a table, an
/// overview) is not there for it, and a warning says so. Of its virtual file systems those stay that read
/// memory and the insides of files; the others are gone for the whole process.
void confineFiles();

} // namespace halvane::host::gdal
