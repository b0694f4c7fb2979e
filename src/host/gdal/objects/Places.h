#pragma once

#include "base/Failure.h"

#include <string>

namespace halvane::host::gdal {

/// What a call yields. Its failure begins with the place in a map document that it comes from, unless it
/// tells one of that document already: the nearer to the cause, the more exact.
/// @param sPlace FILE, line N; "" where no document says anything.
template<class Call>
auto at(const std::string& sPlace, Call call) {
    try {
        return call();
    } catch (const Failure& failure) {
        const std::string sAnyLine = sPlace.substr(0, sPlace.rfind(' ') + 1);
        if (sPlace.empty() || failure.description().starts_with(sAnyLine))
            throw;
        throw Failure(failure.number(), sPlace + ": " + failure.description());
    }
}

} // namespace halvane::host::gdal
