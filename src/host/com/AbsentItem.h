#pragma once

#include "host/com/LateBound.h"

#include <cstddef>

namespace halvane::host::com {

/// What stands for an item of a list that holds no object. Whatever it is asked fails and tells which item
/// that is, so that the items after it are reached.
enum class Absence {
    Fails,
    Nameless, ///< its name is "": a search by name passes over it
    Allowed,  ///< nothing stands for an empty item, and a nameless one for another value
};

/// @param failure what it answers with.
[[nodiscard]] ComPtr<IDispatch> absentItem(Failure failure, Absence absence);

/// @param nItem counted from 0. @param kind what is wanted there.
[[nodiscard]] ComPtr<IDispatch> objectOfItem(const Variant& item, std::size_t nItem, const ObjectKind& kind,
                                             Absence absence);

} // namespace halvane::host::com
