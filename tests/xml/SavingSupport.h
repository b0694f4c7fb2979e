#pragma once

#include "XmlSupport.h"
#include "support/TemporaryFolder.h"

#include <iterator>

namespace halvane::test {

inline std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

inline Failure failureOfSave(dom::Document& document, std::string_view sPath) {
    try {
        document.save(sPath);
    } catch (const Failure& failure) {
        return failure;
    }
    ADD_FAILURE() << "saved";
    return Failure::of(FailureNumber::InternalError);
}

} // namespace halvane::test
