// The sorts of the public collection, which work on arrays passed by reference.

#include "Client.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace halvane::client {
namespace {

constexpr auto hrSubscript = static_cast<HRESULT>(0x800A0009);

/// An array that its client owns.
class ClientArray {
public:
    ClientArray() = default;
    ClientArray(VARTYPE vt, LONG lFirst, ULONG nElements) {
        SAFEARRAYBOUND bound{nElements, lFirst};
        p = SafeArrayCreate(vt, 1, &bound);
    }
    ClientArray(const ClientArray&) = delete;
    ClientArray& operator=(const ClientArray&) = delete;
    ~ClientArray() {
        if (p != nullptr)
            SafeArrayDestroy(p);
    }

    template<class Element>
    [[nodiscard]] std::vector<Element> elements() const {
        if (p == nullptr)
            return {};
        void* pData = nullptr;
        SafeArrayAccessData(p, &pData);
        const auto* pElements = static_cast<const Element*>(pData);
        std::vector<Element> aElements(pElements, pElements + p->rgsabound[0].cElements);
        SafeArrayUnaccessData(p);
        return aElements;
    }
    template<class Element>
    void fill(std::initializer_list<Element> aElements) const {
        LONG lIndex = p->rgsabound[0].lLbound;
        for (Element element : aElements) {
            SafeArrayPutElement(p, &lIndex, &element);
            ++lIndex;
        }
    }

    SAFEARRAY* p = nullptr;
};

_dCollectionPtr collectionOf(std::initializer_list<_variant_t> aValues) {
    auto pCollection = newCollection();
    VARIANT_BOOL bAdded = VARIANT_FALSE;
    for (const _variant_t& vValue : aValues)
        pCollection->Add(vValue, _bstr_t(L""), &bAdded);
    return pCollection;
}

TEST(PublicSorting, SortsNumbersInTextForm) {
    const auto pCollection = collectionOf({L"10", 9L, L"100"});
    ClientArray array;
    LONG lCount = 0;
    EXPECT_EQ(pCollection->ReturnSortedNumeric(&array.p, pCollection, &lCount), S_OK);
    EXPECT_EQ(lCount, 3);
    EXPECT_EQ(array.elements<long>(), (std::vector<long>{9, 10, 100}));
}

TEST(PublicSorting, SortsNothingWhenAMemberIsNoNumber) {
    const auto pCollection = collectionOf({L"10", L"9", L"x"});
    ClientArray array;
    LONG lCount = 0;
    EXPECT_EQ(pCollection->ReturnSortedNumeric(&array.p, pCollection, &lCount), S_OK);
    EXPECT_EQ(lCount, -1);
    EXPECT_EQ(pCollection->ReturnSortedDouble(&array.p, pCollection, &lCount), S_OK);
    EXPECT_EQ(lCount, -1);
    EXPECT_EQ(array.p, nullptr);
    VARIANT_BOOL bNumeric = VARIANT_TRUE;
    EXPECT_EQ(pCollection->IsNumericCollection(pCollection, &bNumeric), S_OK);
    EXPECT_EQ(bNumeric, VARIANT_FALSE);
}

TEST(PublicSorting, LeavesAnArrayOfOtherElementsAsItIs) {
    const auto pCollection = collectionOf({L"10", L"9"});
    ClientArray doubles(VT_R8, 0, 2);
    doubles.fill<double>({2.5, 1.5});
    LONG lCount = 0;
    EXPECT_EQ(pCollection->ReturnSortedNumeric(&doubles.p, pCollection, &lCount), S_OK);
    EXPECT_EQ(lCount, -1);
    lCount = 0;
    EXPECT_EQ(pCollection->ReturnSortedString(&doubles.p, pCollection, &lCount), S_OK);
    EXPECT_EQ(lCount, -1);
    EXPECT_EQ(doubles.elements<double>(), (std::vector<double>{2.5, 1.5}));
    ClientArray longs(VT_I8, 0, 2);
    EXPECT_EQ(pCollection->ReturnSortedDouble(&longs.p, pCollection, &lCount), S_OK);
    EXPECT_EQ(lCount, -1) << "of the same size";
    EXPECT_EQ(longs.elements<long long>(), (std::vector<long long>{0, 0}));
}

TEST(PublicSorting, SortsIntoAnArrayOfFixedSizeWhereTheSizeIsThatOfTheResult) {
    const auto pCollection = collectionOf({L"10", L"9"});
    for (const ULONG nElements : {2U, 3U}) {
        ClientArray array(VT_I4, 0, nElements);
        array.p->fFeatures |= FADF_FIXEDSIZE;
        LONG lCount = 0;
        EXPECT_EQ(pCollection->ReturnSortedNumeric(&array.p, pCollection, &lCount), S_OK);
        EXPECT_EQ(lCount, nElements == 2 ? 2 : -1);
        EXPECT_EQ(array.elements<long>(),
                  nElements == 2 ? (std::vector<long>{9, 10}) : (std::vector<long>{0, 0, 0}));
    }
}

TEST(PublicSorting, SortsTextsByCharacterCode) {
    const auto pCollection = collectionOf({L"b", L"B", L"a"});
    ClientArray array(VT_BSTR, 0, 1);
    LONG lCount = 0;
    EXPECT_EQ(pCollection->ReturnSortedString(&array.p, pCollection, &lCount), S_OK);
    EXPECT_EQ(lCount, 3);
    std::wstring sAll;
    for (const BSTR sText : array.elements<BSTR>())
        sAll += sText;
    EXPECT_EQ(sAll, L"Bab");
}

TEST(PublicSorting, SortsFloatingPointNumbers) {
    const auto pCollection = collectionOf({2.5, L"-1e3", 2L});
    ClientArray array;
    LONG lCount = 0;
    EXPECT_EQ(pCollection->ReturnSortedDouble(&array.p, pCollection, &lCount), S_OK);
    EXPECT_EQ(array.elements<double>(), (std::vector<double>{-1000, 2, 2.5}));
}

TEST(PublicSorting, TakesKeysAndValuesOfACollectionToo) {
    const auto pCollection = collectionOf({L"b", L"a"});
    IDispatchPtr pValues;
    ASSERT_EQ(pCollection->ReturnValues(&pValues), S_OK);
    ClientArray array;
    LONG lCount = 0;
    EXPECT_EQ(newCollection()->ReturnSortedString(&array.p, pValues, &lCount), S_OK);
    EXPECT_EQ(lCount, 2);
}

TEST(PublicSorting, YieldsMinusOneWithoutACollection) {
    const auto pCollection = newCollection();
    ClientArray array;
    LONG lCount = 0;
    EXPECT_EQ(pCollection->ReturnSortedString(&array.p, nullptr, &lCount), S_OK);
    EXPECT_EQ(lCount, -1);
}

TEST(PublicSorting, ListsPositionsFromTheLargestValueOn) {
    const auto pCollection = newCollection();
    ClientArray values(VT_VARIANT, 0, 3);
    LONG lIndex = 0;
    for (const _variant_t& vValue : {_variant_t(3L), _variant_t(static_cast<short>(1)), _variant_t(3.0)}) {
        SafeArrayPutElement(values.p, &lIndex, const_cast<VARIANT*>(&static_cast<const VARIANT&>(vValue)));
        ++lIndex;
    }
    ClientArray positions(VT_I4, 0, 3);
    EXPECT_EQ(pCollection->SortByValue(&values.p, &positions.p, 3), S_OK);
    EXPECT_EQ(positions.elements<long>(), (std::vector<long>{2, 0, 1}));
}

TEST(PublicSorting, NeedsNoValuesForASingleMember) {
    const auto pCollection = newCollection();
    ClientArray positions(VT_I4, 0, 1);
    SAFEARRAY* pNoValues = nullptr;
    EXPECT_EQ(pCollection->SortByValue(&pNoValues, &positions.p, 1), S_OK);
    EXPECT_EQ(positions.elements<long>(), (std::vector<long>{0}));
    ClientArray twoPositions(VT_I4, 0, 2);
    EXPECT_EQ(pCollection->SortByValue(&pNoValues, &twoPositions.p, 2), hrSubscript);
}

TEST(PublicSorting, RaisesABoundsErrorForATooSmallArrayOfPositions) {
    const auto pCollection = newCollection();
    const ClientArray values(VT_VARIANT, 0, 3);
    const ClientArray positions(VT_I4, 0, 2);
    SAFEARRAY* pValues = values.p;
    SAFEARRAY* pPositions = positions.p;
    EXPECT_EQ(pCollection->SortByValue(&pValues, &pPositions, 3), hrSubscript);
    EXPECT_EQ(errorText(), L"Subscript out of range");
}

TEST(PublicSorting, SortsAPartOfAnArrayInPlace) {
    const auto pCollection = newCollection();
    ClientArray list(VT_R8, 0, 5);
    list.fill<double>({5, 4, 3, 2, 1});
    EXPECT_EQ(pCollection->QuicksortDouble(&list.p, 1, 3), S_OK);
    EXPECT_EQ(list.elements<double>(), (std::vector<double>{5, 2, 3, 4, 1}));
}

TEST(PublicSorting, CountsTheIndexesOfAnArrayFromItsOwnLowerBound) {
    const auto pCollection = newCollection();
    ClientArray list(VT_R8, 10, 3);
    list.fill<double>({3, 2, 1});
    EXPECT_EQ(pCollection->QuicksortDouble(&list.p, 10, 12), S_OK);
    EXPECT_EQ(list.elements<double>(), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(pCollection->QuicksortDouble(&list.p, 0, 2), hrSubscript);
}

TEST(PublicSorting, RaisesATypeMismatchForAListOfOtherElementsOfTheSameSize) {
    ClientArray list(VT_I8, 0, 2);
    list.fill<long long>({2, 1});
    EXPECT_EQ(newCollection()->QuicksortDouble(&list.p, 0, 1), static_cast<HRESULT>(0x800A000D));
    EXPECT_EQ(list.elements<long long>(), (std::vector<long long>{2, 1}));
}

TEST(PublicSorting, RaisesABoundsErrorForARangeOutsideTheList) {
    const auto pCollection = newCollection();
    ClientArray list(VT_R8, 0, 2);
    EXPECT_EQ(pCollection->QuicksortDouble(&list.p, 0, 2), hrSubscript);
    EXPECT_EQ(errorText(), L"Subscript out of range");
    ClientArray none;
    EXPECT_EQ(pCollection->QuicksortDouble(&none.p, 0, 1), hrSubscript);
}

TEST(PublicSorting, TellsWhatRaisedAnError) {
    const auto pCollection = newCollection();
    ISupportErrorInfo* pSupport = nullptr;
    ASSERT_EQ(pCollection->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(&pSupport)), S_OK);
    EXPECT_EQ(pSupport->InterfaceSupportsErrorInfo(__uuidof(_dCollection)), S_OK);
    EXPECT_EQ(pSupport->InterfaceSupportsErrorInfo(IID_IDispatch), S_FALSE);
    pSupport->Release();
    ClientArray none;
    EXPECT_EQ(pCollection->QuicksortDouble(&none.p, 0, 1), hrSubscript);
    IErrorInfoPtr pInfo;
    ASSERT_EQ(GetErrorInfo(0, &pInfo), S_OK);
    BSTR sSource = nullptr;
    pInfo->GetSource(&sSource);
    EXPECT_EQ(std::wstring(_bstr_t(sSource, false)), L"Halvane.dCollection");
}

} // namespace
} // namespace halvane::client
