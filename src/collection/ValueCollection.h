#pragma once

#include "base/Value.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

class KeyIndex;

/// An ordered collection of values, each optionally filed under a text key; keys are unique and found
/// ignoring case. Positions count from 1. Failures are thrown: the quiet public face is dCollection.
class ValueCollection {
public:
    using const_iterator = std::vector<Value>::const_iterator;

    ValueCollection();
    ValueCollection(const ValueCollection&) = delete;
    ValueCollection& operator=(const ValueCollection&) = delete;
    ~ValueCollection();

    [[nodiscard]] std::int32_t count() const noexcept { return static_cast<std::int32_t>(values_.size()); }

    /// Appends a value; with the key "" it is filed under no key.
    /// @returns false, and changes nothing, when the key is already filed.
    bool tryAdd(Value vValue, std::string_view sKey);
    /// @throws Failure DuplicateKey when the key is already filed.
    void add(Value vValue, std::string_view sKey = {});

    /// The position of the value filed under the key; 0 when there is none, and for "".
    [[nodiscard]] std::int32_t positionOf(std::string_view sKey) const;
    /// The value filed under the key; nullptr when there is none. Valid until the collection changes.
    [[nodiscard]] const Value* find(std::string_view sKey) const;

    /// The value at a position, valid until the collection changes.
    /// @throws Failure SubscriptOutOfRange outside 1 to count().
    [[nodiscard]] const Value& item(std::int32_t lPosition) const;
    /// @throws Failure InvalidProcedureCall when the key is absent.
    [[nodiscard]] const Value& item(std::string_view sKey) const;
    /// By key for a text, by position for a number.
    /// @throws Failure as above; TypeMismatch for anything else.
    [[nodiscard]] const Value& entry(const Value& vIndexOrKey) const;

    /// @throws Failure as item() does.
    void remove(std::int32_t lPosition);
    void remove(std::string_view sKey);
    void clear() noexcept;

    /// The key of every value in the order of the values, as it was written when added; "" for none.
    [[nodiscard]] const std::vector<std::string>& keys() const noexcept { return keys_; }

    [[nodiscard]] const_iterator begin() const noexcept { return values_.begin(); }
    [[nodiscard]] const_iterator end() const noexcept { return values_.end(); }

private:
    void makeRoom();

    std::vector<Value> values_;
    std::vector<std::string> keys_;
    std::unique_ptr<KeyIndex> pIndex_; // only for large collections
};

/// Walks the values of a collection in order. It borrows the collection, and sees what is added during the
/// walk.
class ValueEnumerator {
public:
    explicit ValueEnumerator(const ValueCollection& values) : pValues_(&values) {}

    /// The next value; nullptr at the end. Valid until the collection changes.
    [[nodiscard]] const Value* next();
    /// Passes over values. @returns false when fewer than `lCount` were left.
    bool skip(std::int32_t lCount);
    void reset() noexcept { lPosition_ = 0; }

private:
    const ValueCollection* pValues_;
    std::int32_t lPosition_ = 0;
};

} // namespace halvane
