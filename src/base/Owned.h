#pragma once

#include <memory>

namespace halvane {

/// Frees an object of a library by the library's own function, whose result nobody needs.
template<auto fnFree>
struct Deleter {
    template<class Object>
    void operator()(Object* pObject) const noexcept {
        static_cast<void>(fnFree(pObject));
    }
};

/// An object of a library, with the function that frees it.
template<class Object, auto fnFree>
using Owned = std::unique_ptr<Object, Deleter<fnFree>>;

} // namespace halvane
