// Late-bound calls with arguments of every kind: whatever a client passes, it gets an answer.

#include "Client.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <functional>
#include <random>

namespace halvane::client {
namespace {

/// Describes records that are larger than a variant. It outlives the arrays that hold them.
class LargeRecords final : public IRecordInfo {
public:
    static constexpr ULONG nSize = 256;

    virtual ~LargeRecords() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        *ppObject = iid == IID_IUnknown || iid == IID_IRecordInfo ? this : nullptr;
        return *ppObject == nullptr ? E_NOINTERFACE : S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE RecordInit(PVOID pRecord) override {
        std::memset(pRecord, 0x5A, nSize);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE RecordClear(PVOID) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RecordCopy(PVOID pFrom, PVOID pTo) override {
        ++nCopies;
        std::memcpy(pTo, pFrom, nSize);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetGuid(GUID* pGuid) override {
        *pGuid = GUID{};
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetName(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSize(ULONG* pSize) override {
        *pSize = nSize;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetField(PVOID, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNoCopy(PVOID, LPCOLESTR, VARIANT*, PVOID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE PutField(ULONG, PVOID, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutFieldNoCopy(ULONG, PVOID, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNames(ULONG*, BSTR*) override { return E_NOTIMPL; }
    BOOL STDMETHODCALLTYPE IsMatchingType(IRecordInfo* pOther) override {
        return pOther == this ? TRUE : FALSE;
    }
    PVOID STDMETHODCALLTYPE RecordCreate() override { return nullptr; }
    HRESULT STDMETHODCALLTYPE RecordCreateCopy(PVOID, PVOID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RecordDestroy(PVOID) override { return E_NOTIMPL; }

    int nCopies = 0; ///< made so far
};

/// What arguments are made of, alive for one call. Each kind is a variable of its own, so that what is passed
/// back shows in none of the others.
class Ingredients {
public:
    Ingredients() {
        V_ARRAY(&table) = makeTable();
        V_VT(&table) = VT_ARRAY | VT_VARIANT;
        V_ARRAY(&texts) = SafeArrayCreateVector(VT_BSTR, -1, 4);
        V_VT(&texts) = VT_ARRAY | VT_BSTR;
        V_ARRAY(&numbers) = SafeArrayCreateVector(VT_R8, 0, 3);
        V_VT(&numbers) = VT_ARRAY | VT_R8;
        V_ARRAY(&decimals) = SafeArrayCreateVector(VT_DECIMAL, 0, 3);
        V_VT(&decimals) = VT_ARRAY | VT_DECIMAL;
        V_ARRAY(&records) = SafeArrayCreateVectorEx(VT_RECORD, 0, 3, &recordInfo);
        V_VT(&records) = VT_ARRAY | VT_RECORD;
    }
    Ingredients(const Ingredients&) = delete;
    Ingredients& operator=(const Ingredients&) = delete;
    ~Ingredients() {
        SysFreeString(sText);
        if (pObject != nullptr)
            pObject->Release();
        if (pArray != nullptr)
            SafeArrayDestroy(pArray);
    }

    static constexpr int nKinds = 24;

    [[nodiscard]] int copiesOfRecords() const { return recordInfo.nCopies; }
    [[nodiscard]] VARIANT argument(int nKind) {
        VARIANT made{};
        switch (nKind) {
        case 0:
            return made;
        case 1:
            V_VT(&made) = VT_NULL;
            return made;
        case 2:
            V_VT(&made) = VT_ERROR;
            V_ERROR(&made) = DISP_E_PARAMNOTFOUND;
            return made;
        case 3:
            return number;
        case 4:
            return text;
        case 5:
            return object;
        case 6:
            V_VT(&made) = VT_DISPATCH;
            return made;
        case 7:
            V_VT(&made) = VT_UNKNOWN;
            return made;
        case 8:
            return table;
        case 9:
            return texts;
        case 10:
            return numbers;
        case 11:
            return reference(VT_I4, &lNumber);
        case 12:
            return reference(VT_BSTR, &sText);
        case 13:
            return reference(VT_DISPATCH, &pObject);
        case 14:
            return reference(VT_ARRAY | VT_I4, &pArray);
        case 15:
            return reference(VT_VARIANT, &variable);
        case 16:
            return reference(VT_VARIANT, &text);
        case 17:
            return reference(VT_VARIANT, &table);
        case 18:
            return reference(VT_VARIANT, &numbers);
        case 19:
            return date;
        case 20:
            return reference(VT_R8, &dNumber);
        case 21:
            return decimals;
        case 22:
            return records;
        default:
            V_VT(&made) = VT_BOOL;
            V_BOOL(&made) = VARIANT_TRUE;
            return made;
        }
    }

private:
    static VARIANT reference(VARTYPE vt, void* pVariable) {
        VARIANT made{};
        V_BYREF(&made) = pVariable;
        V_VT(&made) = static_cast<VARTYPE>(VT_BYREF | vt);
        return made;
    }
    static SAFEARRAY* makeTable() {
        std::array<SAFEARRAYBOUND, 2> aBounds = {{{2, 0}, {3, 1}}};
        return SafeArrayCreate(VT_VARIANT, 2, aBounds.data());
    }

    _variant_t number = _variant_t(1L);
    _variant_t text = _variant_t(L"1");
    _variant_t object = _variant_t(static_cast<IDispatch*>(newCollection()));
    _variant_t date = _variant_t(2.0, VT_DATE);
    LargeRecords recordInfo; // before the array that it describes
    _variant_t decimals;
    _variant_t records;
    _variant_t table;
    _variant_t texts;
    _variant_t numbers;
    _variant_t variable;
    long lNumber = 1;
    double dNumber = 0.5;
    BSTR sText = SysAllocString(L"a");
    IDispatch* pObject = newCollection().Detach();
    SAFEARRAY* pArray = SafeArrayCreateVector(VT_I4, 0, 3);
};

constexpr int nCalls = 4000;

/// Calls members with arguments by chance; each call is answered.
void callByChance(const IDispatchPtr& pObject, DISPID lFirst, DISPID lLast, UINT nMost) {
    std::mt19937 random(4711);
    const auto chance = [&random](int nBelow) {
        return static_cast<int>(random() % static_cast<unsigned>(nBelow));
    };
    int nAnswered = 0;
    for (int i = 0; i < nCalls; ++i) {
        Ingredients ingredients;
        std::vector<VARIANT> aArguments(static_cast<std::size_t>(chance(static_cast<int>(nMost) + 1)));
        for (VARIANT& argument : aArguments)
            argument = ingredients.argument(chance(Ingredients::nKinds));
        DISPPARAMS parameters{aArguments.data(), nullptr, static_cast<UINT>(aArguments.size()), 0};
        const DISPID lMember = lFirst + chance(lLast - lFirst + 1);
        _variant_t result;
        EXCEPINFO exception{};
        UINT nWrong = 0;
        const HRESULT hr = pObject->Invoke(lMember, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                           &parameters, &result, &exception, &nWrong);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
        nAnswered += hr == S_OK ? 1 : 0;
    }
    EXPECT_GT(nAnswered, nCalls / 100) << "some of the arguments must do";
}

TEST(AnyArguments, AreAnsweredByTheCollection) {
    callByChance(newCollection(), -4, 20, 4);
}

TEST(AnyArguments, AreAnsweredByTheExport) {
    callByChance(create<_clsExport>(L"Halvane.clsExport"), 2, 4, 3);
}

TEST(AnyArguments, AreAnsweredByItsListsOfEntries) {
    const auto pCollection = newCollection();
    IDispatchPtr pKeys;
    ASSERT_EQ(pCollection->ReturnKeys(&pKeys), S_OK);
    callByChance(pKeys, -4, 1, 2);
}

TEST(AnyArguments, AreAnsweredByTheDeclarations) {
    callByChance(create<_IExternalProcessor>(L"Halvane.IExternalProcessor"), 1, 1, 2);
}

/// Passed by value: neither a number nor a text. A variable that holds one is a place for a result.
bool isPlainObjectOrArray(int nKind) {
    return nKind == 5 || (nKind >= 8 && nKind <= 10) || nKind == 21 || nKind == 22;
}

TEST(AnyArguments, AreRefusedAsArraysOfDecimalsOrRecords) {
    const auto pCollection = newCollection();
    for (const int nKind : {21, 22}) {
        Ingredients ingredients;
        const VARIANT array = ingredients.argument(nKind);
        ASSERT_NE(V_ARRAY(&array), nullptr) << nKind;
        EXPECT_EQ(call(pCollection, L"QuicksortDouble", {array, _variant_t(0L), _variant_t(2L)}).hr,
                  DISP_E_TYPEMISMATCH)
            << nKind;
        EXPECT_EQ(ingredients.copiesOfRecords(), 0) << "there is no place for one";
    }
}

TEST(AnyArguments, AreTakenForTheResultsOfAnExport) {
    const Folder folder;
    const IDispatchPtr pExport = create<_clsExport>(L"Halvane.clsExport");
    const _variant_t control(folder.write(L"control.xml", "<a Name='Out'><b Name='T'/></a>").c_str());
    const _variant_t outFolder(folder.path().c_str());
    const auto exportWith = [&](const VARIANT& number, const VARIANT& message) {
        const VARIANT nothing{};
        return call(pExport, L"Export2XML",
                    {nothing, control, outFolder, _variant_t(L"out"), nothing, _variant_t(L""), number,
                     message})
            .hr;
    };
    for (int nKind = 0; nKind < Ingredients::nKinds; ++nKind) {
        Ingredients ingredients;
        const VARIANT argument = ingredients.argument(nKind);
        const HRESULT hrExpected = isPlainObjectOrArray(nKind) ? DISP_E_TYPEMISMATCH : S_OK;
        EXPECT_EQ(exportWith(argument, _variant_t(L"")), hrExpected) << nKind;
        EXPECT_EQ(exportWith(_variant_t(0L), argument), hrExpected) << nKind;
    }
}

/// Passed in any way: an object, even none, or an array.
bool holdsObjectOrArray(int nKind) {
    constexpr std::array aKinds = {5, 6, 7, 8, 9, 10, 13, 14, 17, 18, 21, 22};
    return std::find(aKinds.begin(), aKinds.end(), nKind) != aKinds.end();
}

TEST(AnyArguments, AreTakenForTheNameOfTheDocumentUnlessTheyAreObjectsOrArrays) {
    const IDispatchPtr pExport = create<_clsExport>(L"Halvane.clsExport");
    for (int nKind = 0; nKind < Ingredients::nKinds; ++nKind) {
        const Folder folder;
        const Folder outFolder;
        const _variant_t control(folder.write(L"control.xml", "<a Name='Out'><b Name='T'/></a>").c_str());
        const VARIANT nothing{};
        Ingredients ingredients;
        const VARIANT name = ingredients.argument(nKind);
        const HRESULT hr = call(pExport, L"Export2XML",
                                {nothing, control, _variant_t(outFolder.path().c_str()), name, nothing,
                                 _variant_t(L""), _variant_t(0L), _variant_t(L"")})
                               .hr;
        EXPECT_EQ(hr, holdsObjectOrArray(nKind) ? DISP_E_TYPEMISMATCH : S_OK) << nKind;
        constexpr int nDate = 19; // whose text is a path
        EXPECT_EQ(std::filesystem::is_empty(outFolder.path()), holdsObjectOrArray(nKind) || nKind == nDate)
            << nKind;
    }
}

TEST(AnyArguments, AreKeptByTheCallerWhereTheyAreNoNameOfADocument) {
    const Folder folder;
    const IDispatchPtr pExport = create<_clsExport>(L"Halvane.clsExport");
    const _variant_t control(folder.write(L"control.xml", "<a Name='Out'><b Name='T'/></a>").c_str());
    const VARIANT nothing{};
    const auto pKept = newCollection();
    _variant_t variable(static_cast<IDispatch*>(pKept));
    VARIANT name{};
    V_VT(&name) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&name) = &variable;
    EXPECT_EQ(call(pExport, L"Export2XML",
                   {nothing, control, _variant_t(folder.path().c_str()), name, nothing, _variant_t(L""),
                    _variant_t(0L), _variant_t(L"")})
                  .hr,
              DISP_E_TYPEMISMATCH);
    ASSERT_EQ(V_VT(&variable), VT_DISPATCH);
    EXPECT_TRUE(areSame(V_DISPATCH(&variable), pKept));
}

} // namespace
} // namespace halvane::client
