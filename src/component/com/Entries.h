#pragma once

#include "base/com/Variant.h"
#include "collection/dCollection.h"

#include <cstdint>
#include <memory>

namespace halvane::server {

/// What clients can walk through and pick from: a collection's values or its keys, as they are at the moment.
class Entries {
public:
    Entries() = default;
    Entries(const Entries&) = delete;
    Entries& operator=(const Entries&) = delete;
    virtual ~Entries() = default;

    [[nodiscard]] virtual std::int32_t count() const = 0;
    /// @param lPosition from 1. @throws Failure SubscriptOutOfRange beyond.
    [[nodiscard]] virtual com::Variant at(std::int32_t lPosition) const = 0;
    /// By key, where entries have keys, for a text; by position for a number. @throws Failure.
    [[nodiscard]] virtual com::Variant entry(const Value& vIndexOrKey) const = 0;
};
using EntriesPtr = std::shared_ptr<const Entries>;

[[nodiscard]] EntriesPtr valuesOf(dCollectionPtr dEntries);
[[nodiscard]] EntriesPtr keysOf(dCollectionPtr dEntries);

/// Walks entries in order; it sees what is added during the walk.
[[nodiscard]] com::ComPtr<IEnumVARIANT> makeEnumerator(EntriesPtr pEntries);

/// The entries as an object of their own.
[[nodiscard]] com::ComPtr<IDispatch> makeEntryList(EntriesPtr pEntries);

} // namespace halvane::server
