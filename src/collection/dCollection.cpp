#include "collection/dCollection.h"

#include "base/Conversions.h"
#include "base/Failure.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "collection/Quicksort.h"

#include <algorithm>
#include <iterator>

namespace halvane {

namespace {

// Never raised: every range of two and more elements is sorted by the quicksort.
constexpr std::int32_t lSortCutOver = 0;

// What an operation without failures yields.
template<class Result, class Operation>
Result orDefault(Result fallback, Operation operation) {
    try {
        return operation();
    } catch (const Failure&) {
        return fallback;
    }
}

template<class Element, class Conversion>
std::int32_t sortedMembers(std::vector<Element>& aElements, const ValueCollection& members,
                           Conversion convert) {
    aElements.resize(static_cast<std::size_t>(members.count()));
    std::transform(members.begin(), members.end(), aElements.begin(),
                   [&](const Value& vMember) { return convert(toText(vMember)); });
    Quicksort<Element>(aElements, lSortCutOver).sort(0, members.count() - 1);
    return members.count();
}

} // namespace

bool dCollection::Add(Value objNewMember, std::string_view sKey) {
    return mCol.tryAdd(std::move(objNewMember), sKey);
}

bool dCollection::SetValue(Value vValue, std::string_view sKey) {
    const std::string sOwnKey(sKey); // the view may be of the entry that is removed
    RemoveByKey(sOwnKey);
    return Add(std::move(vValue), sOwnKey);
}

Value dCollection::GetValue(std::string_view sKey) const {
    const Value* pValue = mCol.find(sKey);
    return pValue == nullptr ? Value() : *pValue;
}

ObjectPtr dCollection::Item(const Value& vntIndexKey) const {
    return objectAs<Object>(Item2(vntIndexKey));
}

Value dCollection::Item2(const Value& vntIndexKey) const {
    return orDefault(Value(), [&]() -> Value { return mCol.entry(vntIndexKey); });
}

bool dCollection::RemoveByKey(std::string_view sKey) {
    const std::int32_t lPosition = mCol.positionOf(sKey);
    return lPosition != 0 && RemoveByIndex(lPosition);
}

bool dCollection::RemoveByIndex(std::int32_t lIndex) {
    return orDefault(false, [&] {
        mCol.remove(lIndex);
        return true;
    });
}

std::string dCollection::GetValueString(std::string_view sKey) const {
    const Value* pValue = mCol.find(sKey);
    if (pValue == nullptr)
        return {};
    return orDefault(std::string(), [&] { return toText(*pValue); });
}

bool dCollection::bValueExist(std::string_view sValue, bool bCaseSensitive) const {
    return orDefault(false, [&] {
        return std::any_of(begin(), end(), [&](const Value& vMember) {
            const std::string sMember = toText(vMember);
            return bCaseSensitive ? sMember == sValue : equalIgnoringCase(sMember, sValue);
        });
    });
}

std::int32_t dCollection::FindIndexOfKey(std::string_view sKey) const {
    const auto& aKeys = ReturnKeys();
    const auto found = std::find(aKeys.begin(), aKeys.end(), sKey);
    return found == aKeys.end() ? -1 : static_cast<std::int32_t>(found - aKeys.begin() + 1);
}

std::string dCollection::FindValueKey(const Value& vValue) const {
    return orDefault(std::string(), [&] {
        const auto* pSought = std::get_if<ObjectPtr>(&vValue);
        const std::string sSought = pSought == nullptr ? toText(vValue) : std::string();
        const auto found = std::find_if(begin(), end(), [&](const Value& vMember) {
            if (pSought == nullptr)
                return toText(vMember) == sSought;
            const auto* pMember = std::get_if<ObjectPtr>(&vMember);
            return pMember != nullptr && *pMember == *pSought;
        });
        return found == end() ? std::string() : ReturnKeys()[static_cast<std::size_t>(found - begin())];
    });
}

void dCollection::SortByValue(std::span<const Value> inValue, std::span<std::int32_t> SrtIndex,
                              std::int32_t n) const {
    const auto nCount = static_cast<std::size_t>(std::max(n, 0));
    // Position 0 is written even when there is nothing to sort, and one member alone is never looked at.
    const std::size_t nRead = nCount < 2 ? 0 : nCount;
    if (SrtIndex.size() < std::max<std::size_t>(nCount, 1) || inValue.size() < nRead)
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    SrtIndex[0] = 0;
    for (std::size_t i = 1; i < nCount; ++i) {
        const ValueView view = toView(inValue[i]);
        std::size_t j = i;
        for (; j >= 1; --j) {
            const std::int32_t lBefore = SrtIndex[j - 1];
            if (isLess(view, toView(inValue[static_cast<std::size_t>(lBefore)])))
                break;
            SrtIndex[j] = lBefore;
        }
        SrtIndex[j] = static_cast<std::int32_t>(i);
    }
}

bool dCollection::IsNumericCollection(const ValueCollection& CollectionIn) const {
    return orDefault(false, [&] {
        return std::all_of(CollectionIn.begin(), CollectionIn.end(),
                           [](const Value& vMember) { return isNumeric(toText(vMember)); });
    });
}

std::int32_t dCollection::ReturnSortedNumeric(std::vector<std::int32_t>& nArray,
                                              const ValueCollection* CollectionIn) const {
    if (CollectionIn == nullptr || !IsNumericCollection(*CollectionIn))
        return -1;
    return orDefault(-1, [&] { return sortedMembers(nArray, *CollectionIn, toInt32); });
}

std::int32_t dCollection::ReturnSortedString(std::vector<std::string>& sArray,
                                             const ValueCollection* CollectionIn) const {
    if (CollectionIn == nullptr)
        return -1;
    return orDefault(
        -1, [&] { return sortedMembers(sArray, *CollectionIn, [](std::string sText) { return sText; }); });
}

std::int32_t dCollection::ReturnSortedDouble(std::vector<double>& dArray,
                                             const ValueCollection* CollectionIn) const {
    if (CollectionIn == nullptr || !IsNumericCollection(*CollectionIn))
        return -1;
    return orDefault(-1, [&] { return sortedMembers(dArray, *CollectionIn, toDouble); });
}

void dCollection::QuicksortDouble(std::span<double> List, std::int32_t min, std::int32_t max) const {
    Quicksort<double>(List, lSortCutOver).sort(min, max);
}

} // namespace halvane
