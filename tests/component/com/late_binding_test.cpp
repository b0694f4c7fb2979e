// Calls by name, with arguments as different languages pass them.

#include "Client.h"

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

VARIANT byReference(long& lValue) {
    VARIANT reference{};
    V_I4REF(&reference) = &lValue;
    V_VT(&reference) = VT_BYREF | VT_I4;
    return reference;
}
VARIANT byReference(BSTR& sValue) {
    VARIANT reference{};
    V_BSTRREF(&reference) = &sValue;
    V_VT(&reference) = VT_BYREF | VT_BSTR;
    return reference;
}
VARIANT byReference(VARIANT& variable) {
    VARIANT reference{};
    V_VARIANTREF(&reference) = &variable;
    V_VT(&reference) = VT_BYREF | VT_VARIANT;
    return reference;
}

/// An export of a small document, called by name.
class LateBoundExport : public ::testing::Test {
protected:
    [[nodiscard]] LateCall exportTo(VARIANT name, VARIANT number, VARIANT message) const {
        return call(pExport, L"Export2XML",
                    {nothing, control, outFolder, name, nothing, emptyText, number, message});
    }

    Folder folder;
    IDispatchPtr pExport = create<_clsExport>(L"Halvane.clsExport");
    _variant_t nothing = _variant_t(static_cast<IDispatch*>(nullptr));
    _variant_t control = _variant_t(folder.write(L"control.xml", "<a Name='Out'><b Name='T'/></a>").c_str());
    _variant_t outFolder = _variant_t(folder.path().c_str());
    _variant_t emptyText = _variant_t(L"");
};

TEST_F(LateBoundExport, PassesTypedReferencesBack) {
    _bstr_t name(L"roads");
    BSTR sName = name.copy();
    long lNumber = 17;
    BSTR sMessage = SysAllocString(L"as it was");
    EXPECT_EQ(exportTo(byReference(sName), byReference(lNumber), byReference(sMessage)).hr, S_OK);
    EXPECT_EQ(std::wstring(_bstr_t(sName, false)), L"roads.xml");
    EXPECT_EQ(lNumber, 0);
    EXPECT_EQ(SysStringLen(sMessage), 0U);
    SysFreeString(sMessage);
    EXPECT_TRUE(folder.read(L"roads.xml").has_value());
}

TEST_F(LateBoundExport, PassesScriptVariablesBack) {
    _variant_t name(L"roads");
    _variant_t number(static_cast<short>(17));
    _variant_t message(L"as it was");
    EXPECT_EQ(exportTo(byReference(name), byReference(number), byReference(message)).hr, S_OK);
    EXPECT_EQ(std::wstring(_bstr_t(name)), L"roads.xml");
    EXPECT_EQ(static_cast<long>(number), 0);
    EXPECT_EQ(std::wstring(_bstr_t(message)), L"");
}

TEST_F(LateBoundExport, PassesBackToVariablesThatNothingWasAssignedTo) {
    _variant_t name(L"roads");
    _variant_t number;
    _variant_t message;
    EXPECT_EQ(exportTo(byReference(name), byReference(number), byReference(message)).hr, S_OK);
    EXPECT_EQ(V_VT(&number), VT_I4);
    EXPECT_EQ(V_VT(&message), VT_BSTR);
}

/// What a variable of a script can hold that is neither a number nor a text.
std::vector<_variant_t> unsuitableValues() {
    std::vector<_variant_t> aValues;
    aValues.emplace_back(L"none");
    aValues.emplace_back(L"0");
    aValues.emplace_back(static_cast<IDispatch*>(newCollection()));
    aValues.emplace_back(static_cast<IDispatch*>(nullptr));
    aValues.emplace_back(1e300);
    _variant_t array;
    V_ARRAY(&array) = SafeArrayCreateVector(VT_VARIANT, 0, 2);
    V_VT(&array) = VT_ARRAY | VT_VARIANT;
    aValues.push_back(array);
    return aValues;
}

TEST_F(LateBoundExport, PassesBackToVariablesWhateverTheyHold) {
    for (const _variant_t& held : unsuitableValues()) {
        const Folder own;
        outFolder = own.path().c_str();
        _variant_t number(held);
        _variant_t message(held);
        EXPECT_EQ(exportTo(_variant_t(L"roads"), byReference(number), byReference(message)).hr, S_OK);
        ASSERT_EQ(V_VT(&number), VT_I4);
        EXPECT_EQ(V_I4(&number), 0);
        ASSERT_EQ(V_VT(&message), VT_BSTR);
        EXPECT_EQ(SysStringLen(V_BSTR(&message)), 0U);
        EXPECT_TRUE(own.read(L"roads.xml").has_value());
    }
}

TEST_F(LateBoundExport, TellsAFailureToVariablesWhateverTheyHold) {
    nothing = static_cast<IDispatch*>(newCollection()); // no map document
    for (const _variant_t& held : unsuitableValues()) {
        _variant_t number(held);
        _variant_t message(held);
        call(pExport, L"Export2XML",
             {nothing, control, outFolder, _variant_t(L"roads"), VARIANT{}, emptyText, byReference(number),
              byReference(message)});
        ASSERT_EQ(V_VT(&number), VT_I4);
        EXPECT_EQ(V_I4(&number), 438);
        ASSERT_EQ(V_VT(&message), VT_BSTR);
        EXPECT_NE(SysStringLen(V_BSTR(&message)), 0U);
    }
}

TEST_F(LateBoundExport, LeavesVariablesAsTheyAreForABlankNodePath) {
    const _variant_t tags(static_cast<IDispatch*>(documentOf(L"<v/>")));
    auto aHeld = unsuitableValues();
    aHeld.emplace_back(); // nothing was assigned to it
    aHeld.emplace_back(17L);
    for (const _variant_t& held : aHeld) {
        _variant_t name(L"roads");
        _variant_t number(held);
        _variant_t message(held);
        EXPECT_EQ(call(pExport, L"Export2XML",
                       {nothing, control, outFolder, byReference(name), tags, _variant_t(L" "),
                        byReference(number), byReference(message)})
                      .hr,
                  S_OK);
        EXPECT_EQ(std::wstring(_bstr_t(name)), L"roads.xml") << "the call did its first steps";
        for (const _variant_t* pLeft : {&number, &message}) {
            EXPECT_EQ(V_VT(pLeft), V_VT(&held));
            EXPECT_TRUE(V_ISARRAY(&held) != 0 || *pLeft == held);
        }
    }
}

TEST_F(LateBoundExport, PassesBackToNumbersOfOtherWidths) {
    _variant_t name(L"roads");
    short nNumber = 17;
    VARIANT number{};
    V_I2REF(&number) = &nNumber;
    V_VT(&number) = VT_BYREF | VT_I2;
    EXPECT_EQ(exportTo(name, number, emptyText).hr, S_OK);
    EXPECT_EQ(nNumber, 0);
}

TEST_F(LateBoundExport, TakesPlainValuesWhereAReferenceIsWanted) {
    EXPECT_EQ(exportTo(_variant_t(L"roads"), _variant_t(17L), emptyText).hr, S_OK);
    EXPECT_TRUE(folder.read(L"roads.xml").has_value());
}

TEST_F(LateBoundExport, TakesEmptyAndNullForNoObject) {
    for (const VARTYPE vt : {VT_EMPTY, VT_NULL}) {
        VARIANT none{};
        V_VT(&none) = vt;
        const LateCall made = call(pExport, L"Export2XML",
                                   {none, control, outFolder, _variant_t(L"roads"), none, none, none, none});
        EXPECT_EQ(made.hr, S_OK);
        EXPECT_TRUE(folder.read(L"roads.xml").has_value());
    }
}

TEST_F(LateBoundExport, TellsWhichArgumentHasAWrongType) {
    std::wstring sMember = L"GetTagNames";
    LPOLESTR pMember = sMember.data();
    DISPID lMember = 0;
    ASSERT_EQ(pExport->GetIDsOfNames(IID_NULL, &pMember, 1, LOCALE_USER_DEFAULT, &lMember), S_OK);
    VARIANT aReversed[2] = {emptyText, _variant_t(5L)};
    DISPPARAMS parameters{aReversed, nullptr, 2, 0};
    UINT nWrong = 99;
    EXPECT_EQ(pExport->Invoke(lMember, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                              nullptr, &nWrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(nWrong, 1U);
}

TEST_F(LateBoundExport, TellsOfMissingMembersAndArguments) {
    EXPECT_EQ(call(pExport, L"Export2Xml2", {}).hr, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(call(pExport, L"GetTagNames", {}).hr, DISP_E_BADPARAMCOUNT);
    DISPPARAMS none{};
    EXPECT_EQ(pExport->Invoke(4711, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr, nullptr,
                              nullptr),
              DISP_E_MEMBERNOTFOUND);
}

TEST(LateBinding, FindsMembersAndParametersByNameInAnyLetterCase) {
    const IDispatchPtr pExport = create<_clsExport>(L"Halvane.clsExport");
    std::vector<std::wstring> asNames = {L"EXPORT2xml", L"pDunvelDoc", L"SOutXML", L"sErrMsg"};
    std::vector<LPOLESTR> aNames;
    for (std::wstring& sName : asNames)
        aNames.push_back(sName.data());
    std::vector<DISPID> alIds(aNames.size());
    EXPECT_EQ(pExport->GetIDsOfNames(IID_NULL, aNames.data(), 4, LOCALE_USER_DEFAULT, alIds.data()), S_OK);
    EXPECT_EQ(alIds, (std::vector<DISPID>{1, 0, 3, 7}));
}

TEST(LateBinding, TakesNamedArguments) {
    const IDispatchPtr pCollection = newCollection();
    std::wstring sAdd = L"Add";
    std::wstring sMember = L"objNewMember";
    std::wstring sKey = L"sKey";
    LPOLESTR aNames[3] = {sAdd.data(), sMember.data(), sKey.data()};
    DISPID alIds[3]{};
    ASSERT_EQ(pCollection->GetIDsOfNames(IID_NULL, aNames, 3, LOCALE_USER_DEFAULT, alIds), S_OK);
    _variant_t key(L"the key");
    VARIANT aArguments[2] = {byReference(key), _variant_t(5L)};
    DISPID alNamed[2] = {alIds[2], alIds[1]};
    DISPPARAMS parameters{aArguments, alNamed, 2, 2};
    _variant_t added;
    EXPECT_EQ(pCollection->Invoke(alIds[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                  &added, nullptr, nullptr),
              S_OK);
    EXPECT_TRUE(static_cast<bool>(added));
    EXPECT_EQ(static_cast<long>(call(pCollection, L"GetValue", {_variant_t(L"THE KEY")}).result), 5);
}

/// A call of the member "Add" with positional arguments and, before them, named ones.
HRESULT addWith(std::vector<VARIANT> aReversed, std::vector<DISPID> alNamed, UINT* pnWrong = nullptr) {
    DISPPARAMS parameters{aReversed.data(), alNamed.data(), static_cast<UINT>(aReversed.size()),
                          static_cast<UINT>(alNamed.size())};
    constexpr DISPID idAdd = 1;
    return newCollection()->Invoke(idAdd, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                   nullptr, nullptr, pnWrong);
}

TEST(LateBinding, RefusesOtherCountsOfArguments) {
    const _variant_t one(L"one");
    EXPECT_EQ(addWith({}, {}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(addWith({one}, {}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(addWith({one, one}, {}), S_OK);
    EXPECT_EQ(addWith({one, one, one}, {}), DISP_E_BADPARAMCOUNT) << "the result is none";
    EXPECT_EQ(addWith({one, one, one, one}, {}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(addWith({one}, {0}), DISP_E_BADPARAMCOUNT);
}

TEST(LateBinding, RefusesNamesOfNoArgument) {
    const _variant_t one(L"one");
    EXPECT_EQ(addWith({one, one}, {1}), S_OK);
    UINT nWrong = 99;
    EXPECT_EQ(addWith({one, one}, {0, 5}, &nWrong), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(nWrong, 1U);
    EXPECT_EQ(addWith({one, one}, {2}, &nWrong), DISP_E_PARAMNOTFOUND) << "the result";
    EXPECT_EQ(addWith({one, one}, {-3}), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(addWith({one, one}, {0}), DISP_E_PARAMNOTFOUND) << "it is given by its place, too";
    EXPECT_EQ(addWith({one, one}, {1, 1}), DISP_E_PARAMNOTFOUND);
}

TEST(LateBinding, AssignsNothing) {
    EXPECT_EQ(call(newCollection(), L"Count", {_variant_t(2L)}, DISPATCH_PROPERTYPUT).hr,
              DISP_E_MEMBERNOTFOUND);
}

TEST(LateBinding, AnswersHoweverALanguageCallsReading) {
    const IDispatchPtr pCollection = newCollection();
    call(pCollection, L"Add", {_variant_t(L"x"), _variant_t(L"k")});
    for (const int nFlags : {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_METHOD | DISPATCH_PROPERTYGET}) {
        const auto wFlags = static_cast<WORD>(nFlags);
        EXPECT_EQ(static_cast<long>(call(pCollection, L"Count", {}, wFlags).result), 1);
        EXPECT_EQ(std::wstring(_bstr_t(call(pCollection, L"Item2", {_variant_t(1L)}, wFlags).result)), L"x");
        EXPECT_EQ(std::wstring(_bstr_t(call(pCollection, L"GetValue", {_variant_t(L"k")}, wFlags).result)),
                  L"x");
    }
}

TEST(LateBinding, SortsIntoAScriptsVariable) {
    const IDispatchPtr pCollection = newCollection();
    for (const wchar_t* sValue : {L"10", L"9", L"100"})
        call(pCollection, L"Add", {_variant_t(sValue), _variant_t(L"")});
    _variant_t array;
    const LateCall made = call(pCollection, L"ReturnSortedNumeric",
                               {byReference(array), _variant_t(static_cast<IDispatch*>(pCollection))});
    ASSERT_EQ(made.hr, S_OK);
    EXPECT_EQ(static_cast<long>(made.result), 3);
    ASSERT_EQ(V_VT(&array), VT_ARRAY | VT_VARIANT) << "the only arrays that scripts can index";
    _variant_t first;
    LONG lIndex = 0;
    EXPECT_EQ(SafeArrayGetElement(V_ARRAY(&array), &lIndex, &first), S_OK);
    EXPECT_EQ(static_cast<long>(first), 9);
}

TEST(LateBinding, SortsIntoAScriptsVariableWhateverItsArrayHolds) {
    const IDispatchPtr pCollection = newCollection();
    call(pCollection, L"Add", {_variant_t(L"10"), _variant_t(L"")});
    const _variant_t members(static_cast<IDispatch*>(pCollection));
    _variant_t array;
    V_ARRAY(&array) = SafeArrayCreateVector(VT_VARIANT, 0, 2);
    V_VT(&array) = VT_ARRAY | VT_VARIANT;
    _variant_t text(L"no number");
    LONG lIndex = 0;
    SafeArrayPutElement(V_ARRAY(&array), &lIndex, &text);
    EXPECT_EQ(
        static_cast<long>(call(pCollection, L"ReturnSortedNumeric", {byReference(array), members}).result),
        1);
    EXPECT_EQ(V_ARRAY(&array)->rgsabound[0].cElements, 1U);
    call(pCollection, L"Add", {_variant_t(L"x"), _variant_t(L"")});
    EXPECT_EQ(
        static_cast<long>(call(pCollection, L"ReturnSortedNumeric", {byReference(array), members}).result),
        -1);
    ASSERT_EQ(V_VT(&array), VT_ARRAY | VT_VARIANT) << "it keeps what it has";
    EXPECT_EQ(V_ARRAY(&array)->rgsabound[0].cElements, 1U);
}

TEST(LateBinding, LeavesATypedArrayOfOtherElementsAsItIs) {
    const IDispatchPtr pCollection = newCollection();
    call(pCollection, L"Add", {_variant_t(L"10"), _variant_t(L"")});
    const _variant_t members(static_cast<IDispatch*>(pCollection));
    for (const VARTYPE vt : {VT_R8, VT_BSTR, VT_I2, VT_DECIMAL}) {
        _variant_t array;
        V_ARRAY(&array) = SafeArrayCreateVector(vt, 0, 2);
        V_VT(&array) = static_cast<VARTYPE>(VT_ARRAY | vt);
        const LateCall made = call(pCollection, L"ReturnSortedNumeric", {byReference(array), members});
        EXPECT_EQ(made.hr, S_OK) << vt;
        EXPECT_EQ(static_cast<long>(made.result), -1) << vt;
        EXPECT_EQ(V_VT(&array), VT_ARRAY | vt);
        EXPECT_EQ(V_ARRAY(&array)->rgsabound[0].cElements, 2U);
    }
}

/// What `Dim a(2)` makes of a script's variable: an array that cannot be dimensioned anew.
_variant_t fixedArray(const std::vector<_variant_t>& aElements) {
    _variant_t array;
    V_ARRAY(&array) = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(aElements.size()));
    V_VT(&array) = VT_ARRAY | VT_VARIANT;
    for (LONG lIndex = 0; lIndex < static_cast<LONG>(aElements.size()); ++lIndex)
        SafeArrayPutElement(V_ARRAY(&array), &lIndex,
                            const_cast<_variant_t*>(&aElements[static_cast<std::size_t>(lIndex)]));
    V_ARRAY(&array)->fFeatures |= FADF_FIXEDSIZE;
    return array;
}

std::wstring elementsOf(const _variant_t& array) {
    std::wstring sElements;
    for (LONG lIndex = 0; lIndex < static_cast<LONG>(V_ARRAY(&array)->rgsabound[0].cElements); ++lIndex) {
        _variant_t element;
        SafeArrayGetElement(V_ARRAY(&array), &lIndex, &element);
        sElements += std::wstring(_bstr_t(element)) + L";";
    }
    return sElements;
}

TEST(LateBinding, SortsIntoAScriptsArrayOfFixedSizeWhereTheSizeIsThatOfTheResult) {
    const IDispatchPtr pCollection = newCollection();
    for (const wchar_t* sValue : {L"10", L"9"})
        call(pCollection, L"Add", {_variant_t(sValue), _variant_t(L"")});
    const _variant_t members(static_cast<IDispatch*>(pCollection));
    for (const wchar_t* sMember : {L"ReturnSortedNumeric", L"ReturnSortedString", L"ReturnSortedDouble"}) {
        const std::wstring sSorted = sMember == std::wstring(L"ReturnSortedString") ? L"10;9;" : L"9;10;";
        _variant_t fitting = fixedArray({L"a", L"b"});
        LateCall made = call(pCollection, sMember, {byReference(fitting), members});
        EXPECT_EQ(made.hr, S_OK) << sMember;
        EXPECT_EQ(static_cast<long>(made.result), 2) << sMember;
        EXPECT_EQ(elementsOf(fitting), sSorted);
        _variant_t larger = fixedArray({L"a", L"b", L"c"});
        made = call(pCollection, sMember, {byReference(larger), members});
        EXPECT_EQ(made.hr, S_OK) << sMember;
        EXPECT_EQ(static_cast<long>(made.result), -1) << sMember;
        EXPECT_EQ(elementsOf(larger), L"a;b;c;") << "it keeps what it has";
    }
}

TEST(LateBinding, SortsNoTypedArrayOfOtherElementsInPlace) {
    const IDispatchPtr pCollection = newCollection();
    SAFEARRAY* pLongs = SafeArrayCreateVector(VT_I4, 0, 2);
    for (LONG lIndex = 0; lIndex < 2; ++lIndex) {
        LONG lElement = 2 - lIndex;
        SafeArrayPutElement(pLongs, &lIndex, &lElement);
    }
    VARIANT holder{};
    V_ARRAYREF(&holder) = &pLongs;
    V_VT(&holder) = VT_BYREF | VT_ARRAY | VT_I4;
    EXPECT_EQ(call(pCollection, L"QuicksortDouble", {holder, _variant_t(0L), _variant_t(1L)}).hr,
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call(pCollection, L"SortByValue", {holder, holder, _variant_t(2L)}).hr, DISP_E_TYPEMISMATCH)
        << "values are variants";
    LONG lFirst = 0;
    LONG lIndex = 0;
    SafeArrayGetElement(pLongs, &lIndex, &lFirst);
    EXPECT_EQ(lFirst, 2) << "nothing was sorted";
    SafeArrayDestroy(pLongs);
}

TEST(LateBinding, SortsAScriptsArrayInPlace) {
    const IDispatchPtr pCollection = newCollection();
    SAFEARRAY* pArray = SafeArrayCreateVector(VT_VARIANT, 0, 3);
    for (LONG lIndex = 0; lIndex < 3; ++lIndex) {
        _variant_t element(3L - lIndex);
        SafeArrayPutElement(pArray, &lIndex, &element);
    }
    VARIANT holder{};
    V_ARRAYREF(&holder) = &pArray;
    V_VT(&holder) = VT_BYREF | VT_ARRAY | VT_VARIANT;
    SAFEARRAY* pBefore = pArray;
    const LateCall made =
        call(pCollection, L"QuicksortDouble", {byReference(holder), _variant_t(0L), _variant_t(2L)});
    EXPECT_EQ(made.hr, S_OK);
    EXPECT_EQ(pArray, pBefore);
    _variant_t first;
    LONG lIndex = 0;
    SafeArrayGetElement(pArray, &lIndex, &first);
    EXPECT_EQ(static_cast<double>(first), 1.0);
    SafeArrayDestroy(pArray);
}

TEST(LateBinding, RaisesErrorsWithNumberAndDescription) {
    const IDispatchPtr pCollection = newCollection();
    _variant_t variable;
    const LateCall made =
        call(pCollection, L"QuicksortDouble", {byReference(variable), _variant_t(0L), _variant_t(1L)});
    EXPECT_EQ(made.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(made.code, static_cast<SCODE>(0x800A0009));
    EXPECT_EQ(made.sDescription, L"Subscript out of range");
}

TEST(LateBinding, TakesTheCollectionOfAProcessorByReference) {
    const IDispatchPtr pProcessor = create<_IExternalProcessor>(L"Halvane.IExternalProcessor");
    IDispatch* pCollection = newCollection().Detach();
    VARIANT reference{};
    V_DISPATCHREF(&reference) = &pCollection;
    V_VT(&reference) = VT_BYREF | VT_DISPATCH;
    const LateCall made = call(pProcessor, L"Process", {reference});
    EXPECT_EQ(made.hr, S_OK);
    EXPECT_EQ(V_VT(&made.result), VT_BSTR);
    EXPECT_EQ(std::wstring(_bstr_t(made.result)), L"");
    ASSERT_NE(pCollection, nullptr);
    EXPECT_EQ(pCollection->Release(), 0U) << "nobody kept it";
}

} // namespace
} // namespace halvane::client
