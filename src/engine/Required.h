#pragma once

#include "base/Failure.h"

#include <string>

namespace halvane {

/// The pointer itself. @throws Failure ObjectVariableNotSet for nothing; `sMissing` says what is missing.
template<class Pointer>
const Pointer& required(const Pointer& pObject, const char* sMissing) {
    if (pObject == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet, std::string(sMissing));
    return pObject;
}

} // namespace halvane
