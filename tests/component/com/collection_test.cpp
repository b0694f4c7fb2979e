// The public collection, early-bound.

#include "Client.h"

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

/// What the collection answers, in C++ types.
class Collection {
public:
    Collection() : p(newCollection()) {}

    bool add(const _variant_t& vValue, const wchar_t* sKey) const {
        VARIANT_BOOL bAdded = VARIANT_FALSE;
        EXPECT_EQ(p->Add(vValue, _bstr_t(sKey), &bAdded), S_OK);
        return bAdded == VARIANT_TRUE;
    }
    bool setValue(const _variant_t& vValue, const wchar_t* sKey) const {
        VARIANT_BOOL bAdded = VARIANT_FALSE;
        EXPECT_EQ(p->SetValue(vValue, _bstr_t(sKey), &bAdded), S_OK);
        return bAdded == VARIANT_TRUE;
    }
    [[nodiscard]] _variant_t value(const wchar_t* sKey) const {
        _variant_t vValue;
        EXPECT_EQ(p->GetValue(_bstr_t(sKey), &vValue), S_OK);
        return vValue;
    }
    [[nodiscard]] _variant_t item2(const _variant_t& vIndexKey) const {
        _variant_t vValue;
        EXPECT_EQ(p->get_Item2(vIndexKey, &vValue), S_OK);
        return vValue;
    }
    [[nodiscard]] IDispatchPtr item(const _variant_t& vIndexKey) const {
        IDispatchPtr pEntry;
        EXPECT_EQ(p->get_Item(vIndexKey, &pEntry), S_OK);
        return pEntry;
    }
    [[nodiscard]] long count() const {
        LONG lCount = -7;
        EXPECT_EQ(p->get_Count(&lCount), S_OK);
        return lCount;
    }
    [[nodiscard]] std::wstring valueString(const wchar_t* sKey) const {
        BSTR sValue = nullptr;
        EXPECT_EQ(p->GetValueString(_bstr_t(sKey), &sValue), S_OK);
        return textOf(sValue);
    }
    [[nodiscard]] std::wstring keyOf(const _variant_t& vValue) const {
        BSTR sKey = nullptr;
        EXPECT_EQ(p->FindValueKey(vValue, &sKey), S_OK);
        return textOf(sKey);
    }
    [[nodiscard]] long indexOf(const wchar_t* sKey) const {
        LONG lIndex = -7;
        EXPECT_EQ(p->FindIndexOfKey(_bstr_t(sKey), &lIndex), S_OK);
        return lIndex;
    }
    [[nodiscard]] bool exists(const wchar_t* sValue, bool bCaseSensitive) const {
        VARIANT_BOOL bExists = VARIANT_FALSE;
        EXPECT_EQ(p->bValueExist(_bstr_t(sValue), bCaseSensitive ? VARIANT_TRUE : VARIANT_FALSE, &bExists),
                  S_OK);
        return bExists == VARIANT_TRUE;
    }
    bool removeByKey(const wchar_t* sKey) const {
        VARIANT_BOOL bRemoved = VARIANT_FALSE;
        EXPECT_EQ(p->RemoveByKey(_bstr_t(sKey), &bRemoved), S_OK);
        return bRemoved == VARIANT_TRUE;
    }
    bool removeByIndex(long lIndex) const {
        VARIANT_BOOL bRemoved = VARIANT_FALSE;
        EXPECT_EQ(p->RemoveByIndex(lIndex, &bRemoved), S_OK);
        return bRemoved == VARIANT_TRUE;
    }

    _dCollectionPtr p;

private:
    static std::wstring textOf(BSTR sOwned) {
        const _bstr_t text(sOwned, false);
        return text.length() == 0 ? std::wstring() : std::wstring(text);
    }
};

std::vector<std::wstring> textsOf(IUnknown* pEnumerator) {
    IEnumVARIANTPtr pValues(pEnumerator);
    std::vector<std::wstring> asTexts;
    for (;;) {
        _variant_t value;
        ULONG nFetched = 0;
        if (pValues->Next(1, &value, &nFetched) != S_OK)
            return asTexts;
        asTexts.emplace_back(_bstr_t(value));
    }
}

std::vector<std::wstring> valuesOf(const Collection& collection) {
    IUnknownPtr pEnumerator;
    EXPECT_EQ(collection.p->get_NewEnum(&pEnumerator), S_OK);
    return textsOf(pEnumerator);
}

std::vector<std::wstring> keysOf(const Collection& collection) {
    IDispatchPtr pKeys;
    EXPECT_EQ(collection.p->ReturnKeys(&pKeys), S_OK);
    IUnknownPtr pEnumerator;
    EXPECT_EQ(_EntryListPtr(pKeys)->get__NewEnum(&pEnumerator), S_OK);
    return textsOf(pEnumerator);
}

using Texts = std::vector<std::wstring>;

TEST(PublicCollection, BeginsEmpty) {
    const Collection collection;
    EXPECT_EQ(collection.count(), 0);
    EXPECT_EQ(valuesOf(collection), Texts());
}

TEST(PublicCollection, AddsValuesWithAndWithoutKeys) {
    const Collection collection;
    EXPECT_TRUE(collection.add(L"first", L""));
    EXPECT_TRUE(collection.add(L"second", L"Name"));
    EXPECT_TRUE(collection.add(L"third", L""));
    EXPECT_EQ(valuesOf(collection), (Texts{L"first", L"second", L"third"}));
    EXPECT_EQ(keysOf(collection), (Texts{L"", L"Name", L""}));
    EXPECT_EQ(collection.indexOf(L""), 1);
    EXPECT_EQ(collection.indexOf(L"Name"), 2);
    EXPECT_EQ(collection.indexOf(L"NAME"), -1) << "keys in the list are compared exactly";
}

TEST(PublicCollection, RefusesAKeyThatIsFiledInAnotherLetterCase) {
    const Collection collection;
    EXPECT_TRUE(collection.add(1L, L"Straße"));
    EXPECT_FALSE(collection.add(2L, L"STRAßE"));
    EXPECT_EQ(collection.count(), 1);
    EXPECT_EQ(static_cast<long>(collection.value(L"straße")), 1);
}

TEST(PublicCollection, MovesAnEntryToTheEndWhenItsValueIsSet) {
    const Collection collection;
    collection.add(L"1", L"a");
    collection.add(L"2", L"b");
    EXPECT_TRUE(collection.setValue(L"3", L"A"));
    EXPECT_TRUE(collection.setValue(L"4", L"new"));
    EXPECT_EQ(valuesOf(collection), (Texts{L"2", L"3", L"4"}));
    EXPECT_EQ(keysOf(collection), (Texts{L"b", L"A", L"new"})) << "the old key went with its value";
}

TEST(PublicCollection, GivesValuesBackInTypeAndContent) {
    const Collection collection;
    CY amount{};
    amount.int64 = 123456;
    const std::vector<_variant_t> aValues = {_variant_t(true),
                                             _variant_t(static_cast<short>(-3)),
                                             _variant_t(70000L),
                                             _variant_t(1.5F),
                                             _variant_t(0.1),
                                             _variant_t(L"Ünïcode \U0001F30D"),
                                             _variant_t(amount),
                                             _variant_t(38000.123456, VT_DATE),
                                             _variant_t(static_cast<BYTE>(200))};
    for (std::size_t i = 0; i < aValues.size(); ++i) {
        const std::wstring sKey = L"k" + std::to_wstring(i);
        ASSERT_TRUE(collection.add(aValues[i], sKey.c_str()));
        const _variant_t vBack = collection.value(sKey.c_str());
        EXPECT_EQ(V_VT(&vBack), V_VT(&aValues[i])) << i;
        EXPECT_TRUE(vBack == aValues[i]) << i;
    }
}

TEST(PublicCollection, KeepsTextsThatAreNoValidUnicode) {
    const Collection collection;
    const std::wstring sHalf = {L'a', static_cast<wchar_t>(0xD800), L'b'};
    collection.add(sHalf.c_str(), L"k");
    EXPECT_EQ(std::wstring(_bstr_t(collection.value(L"k"))), sHalf);
}

TEST(PublicCollection, TellsKeysApartThatAreNoValidUnicode) {
    const Collection collection;
    const std::wstring sFirst = {L'a', static_cast<wchar_t>(0xD800)};
    const std::wstring sOther = {L'a', static_cast<wchar_t>(0xD801)};
    const std::wstring sSecondHalf = {static_cast<wchar_t>(0xDC00), L'\u00C4', static_cast<wchar_t>(0xDBFF)};
    const std::wstring sReplacement = {L'a', static_cast<wchar_t>(0xFFFD)};
    const std::wstring sPair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    long lValue = 0;
    for (const std::wstring& sKey : {sFirst, sOther, sSecondHalf, sReplacement, sPair})
        EXPECT_TRUE(collection.add(++lValue, sKey.c_str()));
    EXPECT_FALSE(collection.add(6L, sFirst.c_str()));
    EXPECT_EQ(keysOf(collection), (Texts{sFirst, sOther, sSecondHalf, sReplacement, sPair}));
    EXPECT_EQ(static_cast<long>(collection.value(sOther.c_str())), 2);
    EXPECT_EQ(static_cast<long>(collection.item2(sSecondHalf.c_str())), 3);
    EXPECT_EQ(collection.keyOf(3L), sSecondHalf);
    EXPECT_EQ(collection.indexOf(sPair.c_str()), 5);
    EXPECT_TRUE(collection.removeByKey(sFirst.c_str()));
    EXPECT_EQ(collection.count(), 4);
}

TEST(PublicCollection, KeepsArrays) {
    const Collection collection;
    VARIANT array{};
    V_ARRAY(&array) = SafeArrayCreateVector(VT_I4, 0, 3);
    V_VT(&array) = VT_ARRAY | VT_I4;
    long lIndex = 1;
    long lElement = 42;
    SafeArrayPutElement(V_ARRAY(&array), &lIndex, &lElement);
    collection.add(_variant_t(array, false), L"k");
    const _variant_t vBack = collection.value(L"k");
    ASSERT_EQ(V_VT(&vBack), VT_ARRAY | VT_I4);
    lElement = 0;
    SafeArrayGetElement(V_ARRAY(&vBack), &lIndex, &lElement);
    EXPECT_EQ(lElement, 42);
    EXPECT_EQ(collection.valueString(L"k"), L"") << "it has no text";
}

TEST(PublicCollection, FetchesWhatIsPassedByReference) {
    const Collection collection;
    long lValue = 5;
    VARIANT reference{};
    V_I4REF(&reference) = &lValue;
    V_VT(&reference) = VT_BYREF | VT_I4;
    VARIANT_BOOL bAdded = VARIANT_FALSE;
    ASSERT_EQ(collection.p->Add(reference, _bstr_t(L"k"), &bAdded), S_OK);
    lValue = 6;
    EXPECT_EQ(static_cast<long>(collection.value(L"k")), 5);
}

TEST(PublicCollection, ReturnsObjectsThemselves) {
    const Collection collection;
    const Collection other;
    collection.add(static_cast<IDispatch*>(other.p), L"object");
    collection.add(L"text", L"plain");
    const _variant_t vBack = collection.value(L"OBJECT");
    ASSERT_EQ(V_VT(&vBack), VT_DISPATCH);
    EXPECT_TRUE(areSame(V_DISPATCH(&vBack), other.p));
    EXPECT_TRUE(areSame(collection.item(L"object"), other.p));
    EXPECT_TRUE(areSame(collection.item(1L), other.p));
    EXPECT_EQ(collection.item(L"plain"), nullptr) << "an entry that is no object";
    EXPECT_EQ(collection.item(L"absent"), nullptr);
}

TEST(PublicCollection, ReturnsObjectsWithoutAutomationToo) {
    const Collection collection;
    IUnknownPtr pPlain;
    ASSERT_EQ(CreateErrorInfo(reinterpret_cast<ICreateErrorInfo**>(&pPlain)), S_OK);
    collection.add(static_cast<IUnknown*>(pPlain), L"k");
    const _variant_t vBack = collection.value(L"k");
    ASSERT_EQ(V_VT(&vBack), VT_UNKNOWN);
    EXPECT_TRUE(areSame(V_UNKNOWN(&vBack), pPlain));
    EXPECT_EQ(collection.keyOf(static_cast<IUnknown*>(pPlain)), L"k");
}

TEST(PublicCollection, YieldsEmptyForWhatIsNotThere) {
    const Collection collection;
    collection.add(L"x", L"k");
    EXPECT_EQ(V_VT(&static_cast<const VARIANT&>(collection.value(L"absent"))), VT_EMPTY);
    for (const _variant_t& vIndexKey :
         {_variant_t(0L), _variant_t(2L), _variant_t(-1L), _variant_t(L"absent"), _variant_t(1e300),
          _variant_t(static_cast<IDispatch*>(collection.p))})
        EXPECT_EQ(V_VT(&static_cast<const VARIANT&>(collection.item2(vIndexKey))), VT_EMPTY);
    EXPECT_EQ(std::wstring(_bstr_t(collection.item2(1L))), L"x");
    EXPECT_EQ(std::wstring(_bstr_t(collection.item2(static_cast<short>(1)))), L"x");
    EXPECT_EQ(std::wstring(_bstr_t(collection.item2(L"K"))), L"x");
}

TEST(PublicCollection, RemovesByKeyAndByPosition) {
    const Collection collection;
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
        collection.add(sKey, sKey);
    EXPECT_TRUE(collection.removeByKey(L"B"));
    EXPECT_FALSE(collection.removeByKey(L"b"));
    EXPECT_EQ(keysOf(collection), (Texts{L"a", L"c"}));
    EXPECT_TRUE(collection.removeByIndex(1));
    EXPECT_FALSE(collection.removeByIndex(2));
    EXPECT_FALSE(collection.removeByIndex(0));
    EXPECT_EQ(valuesOf(collection), (Texts{L"c"}));
    EXPECT_EQ(collection.p->removeAll(), S_OK);
    EXPECT_EQ(collection.count(), 0);
    EXPECT_EQ(keysOf(collection), Texts());
}

TEST(PublicCollection, ConvertsValuesToText) {
    const Collection collection;
    collection.add(true, L"yes");
    collection.add(1e15, L"large");
    collection.add(_variant_t(38000.0, VT_DATE), L"date");
    CY amount{};
    amount.int64 = 922337203685477580;
    collection.add(amount, L"currency");
    EXPECT_EQ(collection.valueString(L"yes"), L"True");
    EXPECT_EQ(collection.valueString(L"large"), L"1E+15");
    EXPECT_EQ(collection.valueString(L"date"), L"01/14/2004");
    EXPECT_EQ(collection.valueString(L"currency"), L"92233720368547.758");
    EXPECT_EQ(collection.valueString(L"absent"), L"");
}

TEST(PublicCollection, TellsWhetherAValueExists) {
    const Collection collection;
    collection.add(L"Größe", L"");
    collection.add(12L, L"");
    EXPECT_TRUE(collection.exists(L"GRÖßE", false));
    EXPECT_FALSE(collection.exists(L"GRÖßE", true));
    EXPECT_TRUE(collection.exists(L"12", true));
    EXPECT_FALSE(collection.exists(L"13", false));
}

TEST(PublicCollection, FindsTheKeyOfAValue) {
    const Collection collection;
    const Collection other;
    const Collection another;
    collection.add(12L, L"number");
    collection.add(L"12", L"text");
    EXPECT_EQ(collection.keyOf(L"12"), L"number") << "the first whose text is equal";
    EXPECT_EQ(collection.keyOf(L"13"), L"");
    collection.add(static_cast<IDispatch*>(other.p), L"object");
    EXPECT_EQ(collection.keyOf(static_cast<IDispatch*>(other.p)), L"object");
    EXPECT_EQ(collection.keyOf(static_cast<IDispatch*>(another.p)), L"");
    EXPECT_EQ(collection.keyOf(L"13"), L"") << "an object, which has no text, ends the search";
}

TEST(PublicCollection, ShowsItsKeysAndValuesLive) {
    const Collection collection;
    IDispatchPtr pKeys;
    IDispatchPtr pValues;
    ASSERT_EQ(collection.p->ReturnKeys(&pKeys), S_OK);
    ASSERT_EQ(collection.p->ReturnValues(&pValues), S_OK);
    collection.add(L"later", L"Key");
    LONG lCount = 0;
    EXPECT_EQ(_EntryListPtr(pKeys)->get_Count(&lCount), S_OK);
    EXPECT_EQ(lCount, 1);
    _variant_t vKey;
    EXPECT_EQ(_EntryListPtr(pKeys)->get_Item(_variant_t(1L), &vKey), S_OK);
    EXPECT_EQ(std::wstring(_bstr_t(vKey)), L"Key");
    _variant_t vValue;
    EXPECT_EQ(_EntryListPtr(pValues)->get_Item(_variant_t(L"KEY"), &vValue), S_OK);
    EXPECT_EQ(std::wstring(_bstr_t(vValue)), L"later");
}

TEST(PublicCollection, ReportsAPlaceThatItsKeysDoNotHave) {
    const Collection collection;
    IDispatchPtr pKeys;
    ASSERT_EQ(collection.p->ReturnKeys(&pKeys), S_OK);
    _variant_t vKey;
    EXPECT_EQ(_EntryListPtr(pKeys)->get_Item(_variant_t(1L), &vKey), static_cast<HRESULT>(0x800A0009));
    EXPECT_EQ(errorText(), L"Subscript out of range");
}

TEST(PublicCollection, OutlivesItsClientInWhatItLent) {
    IDispatchPtr pKeys;
    IUnknownPtr pEnumerator;
    {
        const Collection collection;
        collection.add(L"value", L"Key");
        ASSERT_EQ(collection.p->ReturnKeys(&pKeys), S_OK);
        ASSERT_EQ(collection.p->get_NewEnum(&pEnumerator), S_OK);
    }
    EXPECT_EQ(textsOf(pEnumerator), Texts{L"value"});
    LONG lCount = 0;
    EXPECT_EQ(_EntryListPtr(pKeys)->get_Count(&lCount), S_OK);
    EXPECT_EQ(lCount, 1);
}

TEST(PublicCollection, EnumeratesInPiecesAndFromTheStartAgain) {
    const Collection collection;
    for (long l = 1; l <= 5; ++l)
        collection.add(l, L"");
    IUnknownPtr pUnknown;
    ASSERT_EQ(collection.p->get_NewEnum(&pUnknown), S_OK);
    IEnumVARIANTPtr pEnumerator(pUnknown);
    VARIANT aValues[3]{};
    ULONG nFetched = 0;
    EXPECT_EQ(pEnumerator->Next(3, aValues, &nFetched), S_OK);
    EXPECT_EQ(V_I4(&aValues[2]), 3);
    IEnumVARIANTPtr pClone;
    EXPECT_EQ(pEnumerator->Clone(&pClone), S_OK);
    EXPECT_EQ(pEnumerator->Next(3, aValues, &nFetched), S_FALSE);
    EXPECT_EQ(nFetched, 2U);
    EXPECT_EQ(pEnumerator->Skip(1), S_FALSE);
    EXPECT_EQ(pEnumerator->Reset(), S_OK);
    EXPECT_EQ(pEnumerator->Skip(4), S_OK);
    EXPECT_EQ(pEnumerator->Next(1, aValues, nullptr), S_OK);
    EXPECT_EQ(V_I4(&aValues[0]), 5);
    EXPECT_EQ(pClone->Next(1, aValues, nullptr), S_OK);
    EXPECT_EQ(V_I4(&aValues[0]), 4);
}

TEST(PublicCollection, MayHoldItselfForAWhile) {
    const Collection collection;
    collection.add(static_cast<IDispatch*>(collection.p), L"me");
    EXPECT_TRUE(areSame(collection.item(L"me"), collection.p));
    collection.removeByKey(L"me");
}

} // namespace
} // namespace halvane::client
