#pragma once

#include "base/FindRow.h"
#include "base/Text.h"
#include "engine/ExportState.h"

#include <string_view>
#include <utility>

namespace halvane {

/// A property as control files name it, and how its text is read.
template<class Read>
using Property = std::pair<std::string_view, Read>;

/// How the property of a name is read, ignoring case; null for one that there is none of, which is noticed.
template<class Properties>
[[nodiscard]] const auto* findProperty(const ExportState& state, const Properties& properties,
                                       std::string_view sName) {
    const auto* pProperty = findRow(properties, sName, &Properties::value_type::first, equalIgnoringCase);
    if (pProperty == nullptr)
        state.notice(Notice::UnknownProperty, sName);
    return pProperty;
}

} // namespace halvane
