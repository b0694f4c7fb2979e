#include "component/com/CollectionObject.h"

#include "base/com/Bstr.h"
#include "component/com/Arrays.h"
#include "component/com/DualObject.h"
#include "component/com/Entries.h"
#include "component/com/HeldVariant.h"
#include "component/com/KeyText.h"
#include "component/com/Members.h"

#include <algorithm>
#include <limits>

namespace halvane::server {

namespace {

VARIANT_BOOL yesNo(bool bValue) noexcept {
    return bValue ? VARIANT_TRUE : VARIANT_FALSE;
}

/// What an operation without failures yields.
template<class Result, class Operation>
Result orDefault(Result fallback, Operation operation) {
    try {
        return operation();
    } catch (const Failure&) {
        return fallback;
    }
}

/// An index into an array as an offset from its first element. @throws Failure SubscriptOutOfRange.
std::int32_t offsetOf(std::int32_t lIndex, std::int32_t lFirst) {
    const std::int64_t nOffset = std::int64_t{lIndex} - lFirst;
    if (!std::in_range<std::int32_t>(nOffset))
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    return static_cast<std::int32_t>(nOffset);
}

template<class Element>
Array arrayOf(const std::vector<Element>& aElements) {
    Array array = Array::create(typeOfElement<Element>, aElements.size());
    const auto target = ArrayElements<Element>(array.get()).all();
    std::copy(aElements.begin(), aElements.end(), target.begin());
    return array;
}

/// @throws Failure TypeMismatch where the caller keeps an array of other elements, which stays.
void replaceArrayOfSameKind(SAFEARRAY** ppKept, Array newArray) {
    if (*ppKept != nullptr && !isOf(*ppKept, elementType(newArray.get())))
        throw Failure::of(FailureNumber::TypeMismatch);
    replaceArray(ppKept, std::move(newArray));
}

Array arrayOf(const std::vector<std::string>& asElements) {
    Array array = Array::create(VT_BSTR, asElements.size());
    const auto target = ArrayElements<BSTR>(array.get()).all();
    std::transform(asElements.begin(), asElements.end(), target.begin(),
                   [](const std::string& sElement) { return com::Bstr(sElement).detach(); });
    return array;
}

/// The key of the first entry that is the same object; "" when none.
std::string keyOfObject(const dCollection& dEntries, IUnknown* pSought) {
    const auto found = std::find_if(dEntries.begin(), dEntries.end(), [pSought](const Value& vEntry) {
        if (!std::holds_alternative<ObjectPtr>(vEntry))
            return false;
        const com::Variant entry = orDefault(com::Variant(), [&] { return variantOf(vEntry); });
        return isObject(entry.get()) && areSameObject(V_UNKNOWN(&entry.get()), pSought);
    });
    return found == dEntries.end()
               ? std::string()
               : dEntries.ReturnKeys()[static_cast<std::size_t>(found - dEntries.begin())];
}

std::string keyOfValue(const dCollection& dEntries, const VARIANT& value) {
    const com::Variant sought = com::Variant::copyOf(value);
    if (isObject(sought.get()))
        return keyOfObject(dEntries, V_UNKNOWN(&sought.get()));
    const Value vSought = valueOf(sought.get());
    // A plain value is found by its text, whatever its type.
    return dEntries.FindValueKey(toText(vSought));
}

class CollectionObject final : public PublicObject<_dCollection, ::dCollection> {
public:
    explicit CollectionObject(dCollectionPtr dEntries)
        : PublicObject("Halvane.dCollection"), dEntries_(std::move(dEntries)) {}

    HRESULT STDMETHODCALLTYPE Add(VARIANT objNewMember, BSTR sKey, VARIANT_BOOL* bAdded) override {
        return answer(bAdded, VARIANT_FALSE,
                      [&] { return yesNo(dEntries_->Add(valueOf(objNewMember), keyOf(sKey))); });
    }
    HRESULT STDMETHODCALLTYPE SetValue(VARIANT vValue, BSTR sKey, VARIANT_BOOL* bAdded) override {
        return answer(bAdded, VARIANT_FALSE,
                      [&] { return yesNo(dEntries_->SetValue(valueOf(vValue), keyOf(sKey))); });
    }
    HRESULT STDMETHODCALLTYPE removeAll() override {
        return guarded([&] { dEntries_->removeAll(); });
    }
    HRESULT STDMETHODCALLTYPE GetValue(BSTR sKey, VARIANT* vValue) override {
        return answer(vValue, VARIANT{},
                      [&] { return variantOf(dEntries_->GetValue(keyOf(sKey))).detach(); });
    }
    HRESULT STDMETHODCALLTYPE get_Item(VARIANT vntIndexKey, IDispatch** oEntry) override {
        return answer(oEntry, static_cast<IDispatch*>(nullptr), [&] {
            const com::Variant entry = variantOf(dEntries_->Item2(indexOrKeyOf(vntIndexKey)));
            return objectIn(entry.get()).query<IDispatch>().detach();
        });
    }
    HRESULT STDMETHODCALLTYPE get_Item2(VARIANT vntIndexKey, VARIANT* vEntry) override {
        return answer(vEntry, VARIANT{},
                      [&] { return variantOf(dEntries_->Item2(indexOrKeyOf(vntIndexKey))).detach(); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* lCount) override {
        return answer(lCount, LONG{0}, [&] { return LONG{dEntries_->Count()}; });
    }
    HRESULT STDMETHODCALLTYPE RemoveByKey(BSTR sKey, VARIANT_BOOL* bRemoved) override {
        return answer(bRemoved, VARIANT_FALSE, [&] { return yesNo(dEntries_->RemoveByKey(keyOf(sKey))); });
    }
    HRESULT STDMETHODCALLTYPE RemoveByIndex(LONG lIndex, VARIANT_BOOL* bRemoved) override {
        return answer(bRemoved, VARIANT_FALSE, [&] { return yesNo(dEntries_->RemoveByIndex(lIndex)); });
    }
    HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** oEnumerator) override {
        if (oEnumerator == nullptr)
            return E_POINTER;
        *oEnumerator = nullptr;
        return guarded([&] { *oEnumerator = makeEnumerator(valuesOf(dEntries_)).detach(); });
    }
    HRESULT STDMETHODCALLTYPE ReturnKeys(IDispatch** oKeys) override {
        if (oKeys == nullptr)
            return E_POINTER;
        *oKeys = nullptr;
        return guarded([&] { *oKeys = makeEntryList(keysOf(dEntries_)).detach(); });
    }
    HRESULT STDMETHODCALLTYPE ReturnValues(IDispatch** oValues) override {
        if (oValues == nullptr)
            return E_POINTER;
        *oValues = nullptr;
        return guarded([&] { *oValues = makeEntryList(valuesOf(dEntries_)).detach(); });
    }
    HRESULT STDMETHODCALLTYPE GetValueString(BSTR sKey, BSTR* sValue) override {
        return answer(sValue, BSTR{nullptr},
                      [&] { return com::Bstr(dEntries_->GetValueString(keyOf(sKey))).detach(); });
    }
    HRESULT STDMETHODCALLTYPE bValueExist(BSTR sValue, VARIANT_BOOL bCaseSensitive,
                                          VARIANT_BOOL* bExists) override {
        return answer(bExists, VARIANT_FALSE, [&] {
            return yesNo(dEntries_->bValueExist(com::utf8Of(sValue), bCaseSensitive != VARIANT_FALSE));
        });
    }
    HRESULT STDMETHODCALLTYPE FindIndexOfKey(BSTR sKey, LONG* lIndex) override {
        return answer(lIndex, LONG{-1}, [&] { return LONG{dEntries_->FindIndexOfKey(keyOf(sKey))}; });
    }
    HRESULT STDMETHODCALLTYPE FindValueKey(VARIANT vValue, BSTR* sKey) override {
        return answer(sKey, BSTR{nullptr},
                      [&] { return com::Bstr(textOfKey(keyOfValue(*dEntries_, vValue))).detach(); });
    }

    HRESULT STDMETHODCALLTYPE SortByValue(SAFEARRAY** inValue, SAFEARRAY** SrtIndex, LONG n) override {
        if (inValue == nullptr || SrtIndex == nullptr)
            return E_POINTER;
        return guarded([&] {
            const ArrayElements<LONG> positions(*SrtIndex);
            std::vector<Value> avValues;
            // An array that was never dimensioned holds no values: enough for a single member.
            if (*inValue != nullptr) {
                const ArrayElements<VARIANT> values(*inValue);
                for (const VARIANT& value : values.fromZero())
                    avValues.push_back(com::toValue(value));
            }
            const auto target = positions.fromZero();
            std::vector<std::int32_t> alPositions(target.begin(), target.end());
            dEntries_->SortByValue(avValues, alPositions, n);
            std::copy(alPositions.begin(), alPositions.end(), target.begin());
        });
    }
    HRESULT STDMETHODCALLTYPE IsNumericCollection(IDispatch* CollectionIn, VARIANT_BOOL* bNumeric) override {
        return answer(bNumeric, VARIANT_FALSE, [&] {
            const auto pMembers = membersOf(CollectionIn);
            return yesNo(pMembers != nullptr && dEntries_->IsNumericCollection(*pMembers));
        });
    }
    HRESULT STDMETHODCALLTYPE ReturnSortedNumeric(SAFEARRAY** nArray, IDispatch* CollectionIn,
                                                  LONG* nCnt) override {
        if (nArray == nullptr)
            return E_POINTER;
        return answer(nCnt, LONG{-1}, [&] {
            std::vector<std::int32_t> alSorted;
            const std::int32_t lCount =
                dEntries_->ReturnSortedNumeric(alSorted, membersOf(CollectionIn).get());
            if (lCount >= 0)
                replaceArrayOfSameKind(nArray, arrayOf(alSorted));
            return LONG{lCount};
        });
    }
    HRESULT STDMETHODCALLTYPE ReturnSortedString(SAFEARRAY** sArray, IDispatch* CollectionIn,
                                                 LONG* nCnt) override {
        if (sArray == nullptr)
            return E_POINTER;
        return answer(nCnt, LONG{-1}, [&] {
            std::vector<std::string> asSorted;
            const std::int32_t lCount =
                dEntries_->ReturnSortedString(asSorted, membersOf(CollectionIn).get());
            if (lCount >= 0)
                replaceArrayOfSameKind(sArray, arrayOf(asSorted));
            return LONG{lCount};
        });
    }
    HRESULT STDMETHODCALLTYPE ReturnSortedDouble(SAFEARRAY** dArray, IDispatch* CollectionIn,
                                                 LONG* nCnt) override {
        if (dArray == nullptr)
            return E_POINTER;
        return answer(nCnt, LONG{-1}, [&] {
            std::vector<double> adSorted;
            const std::int32_t lCount =
                dEntries_->ReturnSortedDouble(adSorted, membersOf(CollectionIn).get());
            if (lCount >= 0)
                replaceArrayOfSameKind(dArray, arrayOf(adSorted));
            return LONG{lCount};
        });
    }
    HRESULT STDMETHODCALLTYPE QuicksortDouble(SAFEARRAY** List, LONG min, LONG max) override {
        if (List == nullptr)
            return E_POINTER;
        return guarded([&] {
            const ArrayElements<double> elements(*List);
            dEntries_->QuicksortDouble(elements.all(), offsetOf(min, elements.first()),
                                       offsetOf(max, elements.first()));
        });
    }

protected:
    /// The three that sort into an array.
    MemberTraits traitsOf(DISPID lMember) const override {
        return {.readText = std::nullopt, .bMakesArray = lMember >= 17 && lMember <= 19};
    }

private:
    /// Runs an operation that reports no failures: the default takes the place of its result.
    template<class Result, class Operation>
    HRESULT answer(Result* pResult, Result fallback, Operation operation) {
        if (pResult == nullptr)
            return E_POINTER;
        *pResult = fallback;
        return guarded([&] { *pResult = orDefault(fallback, operation); });
    }

    dCollectionPtr dEntries_;
};

} // namespace

com::ComPtr<_dCollection> makeCollectionObject(dCollectionPtr dEntries) {
    return com::makeObject<CollectionObject>(std::move(dEntries)).query<_dCollection>();
}

} // namespace halvane::server
