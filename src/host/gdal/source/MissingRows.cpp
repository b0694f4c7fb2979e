#include "host/gdal/source/MissingRows.h"

#include "base/Failure.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace halvane::host::gdal {

namespace {

// Other errors are of a value or a shape of a row that comes.
bool tellsOfRows(const std::string& sText) {
    constexpr std::array<std::string_view, 3> aTexts{"XML parsing of ", "JSON parsing error",
                                                     "decompression failed"};
    return std::any_of(aTexts.begin(), aTexts.end(),
                       [&](std::string_view sOne) { return sText.find(sOne) != std::string::npos; });
}

} // namespace

void MissingRows::note(const ErrorScope& errors) {
    if (!errors.failed() || any())
        return;
    if (std::string sText = errors.text(); errors.outOfMemory() || tellsOfRows(sText))
        sReason_ = std::move(sText);
}

void MissingRows::raiseIfAny(const std::string& sContext) const {
    if (any())
        throw Failure(FailureNumber::HostFailure, sContext + ": " + sReason_);
}

} // namespace halvane::host::gdal
