#pragma once

#include "base/Value.h"
#include "collection/ValueCollection.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

class dCollection;
using dCollectionPtr = std::shared_ptr<dCollection>;

/// The program's general keyed list: values in order, optional text keys that are unique ignoring case, the
/// keys themselves in insertion order, and sorted views. Positions count from 1. Apart from QuicksortDouble
/// and SortByValue no operation throws a Failure: a missing key, a bad position, a duplicate key or a value
/// that cannot be converted yields the stated default.
class dCollection : public Object, public std::enable_shared_from_this<dCollection> {
public:
    [[nodiscard]] static dCollectionPtr create() { return std::make_shared<dCollection>(); }

    [[nodiscard]] std::string_view typeName() const override { return "dCollection"; }

    /// Appends a value, filed under the key unless that is "".
    /// @returns false, and adds nothing, when the key is already filed in any letter case.
    bool Add(Value objNewMember, std::string_view sKey);
    /// Removes what the key holds and adds the value under it: the entry moves to the end.
    /// @returns what Add returned.
    bool SetValue(Value vValue, std::string_view sKey);
    void removeAll() noexcept { mCol.clear(); }

    /// The value under the key; Empty when the key is absent.
    [[nodiscard]] Value GetValue(std::string_view sKey) const;
    /// The entry at a position (a number) or under a key (a text); nothing when there is none or it is no
    /// object.
    [[nodiscard]] ObjectPtr Item(const Value& vntIndexKey) const;
    /// The entry as a value of any type; Empty when there is none.
    [[nodiscard]] Value Item2(const Value& vntIndexKey) const;
    [[nodiscard]] std::int32_t Count() const noexcept { return mCol.count(); }

    /// @returns false when the key is absent.
    bool RemoveByKey(std::string_view sKey);
    /// @returns false when there is no such position.
    bool RemoveByIndex(std::int32_t lIndex);

    /// The values in order; the enumerator borrows the collection.
    [[nodiscard]] ValueEnumerator NewEnum() const { return ValueEnumerator(mCol); }
    [[nodiscard]] ValueCollection::const_iterator begin() const noexcept { return mCol.begin(); }
    [[nodiscard]] ValueCollection::const_iterator end() const noexcept { return mCol.end(); }

    /// The key list itself, not a copy: the key of every value in order, "" for a value without one.
    [[nodiscard]] const std::vector<std::string>& ReturnKeys() const noexcept { return mCol.keys(); }
    /// The values themselves, not a copy.
    [[nodiscard]] const ValueCollection& ReturnValues() const noexcept { return mCol; }

    /// The value under the key as text; "" when the key is absent or its value has no text.
    [[nodiscard]] std::string GetValueString(std::string_view sKey) const;
    /// Whether any value's text equals `sValue`; both are upper-cased first unless `bCaseSensitive`. An
    /// object met before a match has no text and ends the search with false.
    [[nodiscard]] bool bValueExist(std::string_view sValue, bool bCaseSensitive) const;
    /// The position of the first key that is exactly equal (letter case counts; "" finds the first value
    /// without a key); -1 when none.
    [[nodiscard]] std::int32_t FindIndexOfKey(std::string_view sKey) const;
    /// The key of the first entry that is the same object, or, for any other value, whose text is exactly
    /// equal; "" when none, and when an object, which has no text, is met first.
    [[nodiscard]] std::string FindValueKey(const Value& vValue) const;

    /// Fills SrtIndex(0..n-1) with the positions (from 0) of `inValue` from the largest value to the
    /// smallest; among equal values the later position comes first.
    /// @throws Failure SubscriptOutOfRange when an array is too small, TypeMismatch for an object.
    void SortByValue(std::span<const Value> inValue, std::span<std::int32_t> SrtIndex, std::int32_t n) const;

    /// Whether the text of every member is numeric; true for a collection without members.
    [[nodiscard]] bool IsNumericCollection(const ValueCollection& CollectionIn) const;
    /// Fill the array with the members in ascending order. @returns their number; -1 for no collection and
    /// when a member cannot be converted (the array's content is then unspecified).
    [[nodiscard]] std::int32_t ReturnSortedNumeric(std::vector<std::int32_t>& nArray,
                                                   const ValueCollection* CollectionIn) const;
    [[nodiscard]] std::int32_t ReturnSortedString(std::vector<std::string>& sArray,
                                                  const ValueCollection* CollectionIn) const;
    [[nodiscard]] std::int32_t ReturnSortedDouble(std::vector<double>& dArray,
                                                  const ValueCollection* CollectionIn) const;

    /// Sorts List(min..max) in place, ascending; an empty range is left alone.
    /// @throws Failure SubscriptOutOfRange for a range outside the list, Overflow when its length leaves the
    /// 32-bit range.
    void QuicksortDouble(std::span<double> List, std::int32_t min, std::int32_t max) const;

private:
    ValueCollection mCol;
};

} // namespace halvane
