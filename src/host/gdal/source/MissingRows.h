#pragma once

#include "host/gdal/source/Errors.h"

#include <string>

namespace halvane::host::gdal {

/// What a handle reported of rows or values that its data holds and that it leaves out. Drivers tell it once
/// for each handle, at the opening, with the definition, or with a row that comes all the same, and end the
/// rows as if there were no others.
class MissingRows {
public:
    /// Keeps the first text that tells of such rows or values.
    void note(const ErrorScope& errors);
    [[nodiscard]] bool any() const { return !sReason_.empty(); }
    /// @throws Failure behind the context, when there are any.
    void raiseIfAny(const std::string& sContext) const;

private:
    std::string sReason_;
};

} // namespace halvane::host::gdal
