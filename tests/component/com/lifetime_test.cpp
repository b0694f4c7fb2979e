// What keeps the component in memory, and what it takes there.

#include "ClassWatch.h"
#include "Client.h"
#include "PlainObject.h"

#include <psapi.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>

namespace halvane::client {
namespace {

HRESULT canUnload() {
    return entryPoint<HRESULT(WINAPI*)()>("DllCanUnloadNow")();
}

/// Bytes that the process alone has taken from the system.
std::size_t privateBytes() {
    std::size_t nBytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (std::uintptr_t nAddress = 0;
         VirtualQuery(reinterpret_cast<LPCVOID>(nAddress), &region, sizeof(region)) == sizeof(region);
         nAddress = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE)
            nBytes += region.RegionSize;
    }
    return nBytes;
}

/// Bytes of the memory blocks in use, to the byte.
std::size_t blockBytes() {
    std::array<HANDLE, 64> aHeaps{};
    const DWORD nHeaps = GetProcessHeaps(static_cast<DWORD>(aHeaps.size()), aHeaps.data());
    std::size_t nBytes = 0;
    for (DWORD i = 0; i < nHeaps; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(aHeaps[i]);
        while (HeapWalk(aHeaps[i], &entry)) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
                nBytes += entry.cbData;
        }
        HeapUnlock(aHeaps[i]);
    }
    return nBytes;
}

class Lifetime : public ::testing::Test {
protected:
    /// Creates, exports a map of its own with a processor's value, asks for tag names, walks them, releases.
    void useOnce() {
        const long nCreatedBefore = watch.created();
        const _variant_t document = smallMapDocument();
        const auto pExport = create<_clsExport>(L"Halvane.clsExport");
        BSTR sName = SysAllocString(L"out");
        LONG lNumber = 0;
        BSTR sMessage = nullptr;
        EXPECT_EQ(pExport->Export2XML(V_DISPATCH(&document), sControl, sFolder, &sName, nullptr, nullptr,
                                      &lNumber, &sMessage),
                  S_OK);
        EXPECT_EQ(lNumber, 0);
        EXPECT_EQ(watch.created(), nCreatedBefore + 1) << "the processor";
        SysFreeString(sName);
        SysFreeString(sMessage);
        const LateCall names =
            call(pExport, L"GetTagNames", {_variant_t(static_cast<IDispatch*>(pTags)), _variant_t(L"//q")});
        ASSERT_EQ(V_VT(&names.result), VT_DISPATCH);
        IUnknownPtr pEnumerator;
        EXPECT_EQ(_dCollectionPtr(V_DISPATCH(&names.result))->get_NewEnum(&pEnumerator), S_OK);
        _variant_t first;
        EXPECT_EQ(IEnumVARIANTPtr(pEnumerator)->Next(1, &first, nullptr), S_OK);
    }

    void useTimes(int nTimes) {
        for (int i = 0; i < nTimes; ++i)
            useOnce();
    }
    /// A heap takes small blocks from larger ones, and these count as in use: some thousand uses until it has
    /// enough of them. What leaks never comes to rest.
    void useUntilCachesAreFull() {
        constexpr int mostRounds = 12;
        std::size_t nBefore = 0;
        for (int nRound = 0; nRound < mostRounds && blockBytes() != nBefore; ++nRound) {
            nBefore = blockBytes();
            useTimes(500);
        }
    }

    Folder folder;
    _bstr_t sControl =
        folder
            .write(L"control.xml",
                   "<a Name='Out'><b Name='T' DataSource='Time'/><l Name='Layer' "
                   "DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                   "<n Name='LayerName' DataProperty='LayerName'/><c Name='X' "
                   "DataSource='External' IdentityValue='Halvane.IExternalProcessor'/></l></a>")
            .c_str();
    _bstr_t sFolder = folder.path().c_str();
    ClassWatch watch;
    IDispatchPtr pTags = documentOf(L"<v><q TagName='a' Alias='b'/></v>");
};

TEST_F(Lifetime, EndsWithTheLastObject) {
    auto pExport = create<_clsExport>(L"Halvane.clsExport");
    EXPECT_EQ(canUnload(), S_FALSE);
    auto pCollection = newCollection();
    pExport = nullptr;
    EXPECT_EQ(canUnload(), S_FALSE);
    IUnknownPtr pEnumerator;
    ASSERT_EQ(pCollection->get_NewEnum(&pEnumerator), S_OK);
    pCollection = nullptr;
    EXPECT_EQ(canUnload(), S_FALSE) << "an enumerator is left";
    pEnumerator = nullptr;
    EXPECT_EQ(canUnload(), S_OK);
}

TEST_F(Lifetime, IsProlongedByLocks) {
    IClassFactory* pFactory = nullptr;
    ASSERT_EQ(CoGetClassObject(__uuidof(::dCollection), CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                               reinterpret_cast<void**>(&pFactory)),
              S_OK);
    EXPECT_EQ(canUnload(), S_FALSE) << "a class factory is an object too";
    EXPECT_EQ(pFactory->LockServer(TRUE), S_OK);
    auto* pKept = pFactory;
    pFactory->AddRef();
    pFactory->Release();
    EXPECT_EQ(pKept->LockServer(FALSE), S_OK);
    IUnknown* pAggregated = nullptr;
    EXPECT_EQ(pKept->CreateInstance(pKept, IID_IUnknown, reinterpret_cast<void**>(&pAggregated)),
              CLASS_E_NOAGGREGATION);
    pKept->Release();
    EXPECT_EQ(canUnload(), S_OK);
}

TEST_F(Lifetime, KnowsNoOtherClasses) {
    const auto pCollection = newCollection();
    void* pFactory = this;
    const auto getClassObject = entryPoint<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
    EXPECT_EQ(getClassObject(IID_IUnknown, IID_IClassFactory, &pFactory), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(pFactory, nullptr);
    EXPECT_EQ(getClassObject(__uuidof(::clsExport), IID_IDispatch, &pFactory), E_NOINTERFACE);
}

TEST_F(Lifetime, ObjectsAreOneObjectUnderAllTheirInterfaces) {
    const auto pCollection = newCollection();
    const IDispatchPtr pDispatch(pCollection);
    IUnknown* pFirst = nullptr;
    IUnknown* pSecond = nullptr;
    ISupportErrorInfo* pSupport = nullptr;
    ASSERT_EQ(pCollection->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(&pSupport)), S_OK);
    EXPECT_EQ(pSupport->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&pFirst)), S_OK);
    EXPECT_EQ(pDispatch->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&pSecond)), S_OK);
    EXPECT_EQ(pFirst, pSecond);
    EXPECT_EQ(pSupport->QueryInterface(__uuidof(_clsExport), reinterpret_cast<void**>(&pSupport)),
              E_NOINTERFACE);
    pFirst->Release();
    pSecond->Release();
    pCollection->Release(); // that of pSupport, which the refusal overwrote
}

TEST_F(Lifetime, AThousandUsesLeaveNothingBehind) {
    useUntilCachesAreFull();
    const long nObjectsBefore = PlainObject::alive();
    const std::size_t nBefore = privateBytes();
    const std::size_t nBlocksBefore = blockBytes();
    useTimes(1000);
    const std::size_t nBlocksAfter = blockBytes();
    const std::size_t nAfter = privateBytes();
    std::printf("before and after 1,000 uses: %zu and %zu bytes private, %zu and %zu in blocks\n", nBefore,
                nAfter, nBlocksBefore, nBlocksAfter);
    EXPECT_LE(nAfter, nBefore + 64 * 1024);
    EXPECT_LE(nBlocksAfter, nBlocksBefore + 4 * 1024) << "not a pointer for each use";
    EXPECT_EQ(PlainObject::alive(), nObjectsBefore) << "of the maps";
    EXPECT_NE(folder.read(L"out.xml").value_or("").find("<LayerName>Roads</LayerName>\r\n<X/>"),
              std::string::npos)
        << "the map was read";
    EXPECT_EQ(canUnload(), S_OK);
}

TEST_F(Lifetime, TheLibraryCanBeLoadedAndUnloadedAgainAndAgain) {
    CoFreeUnusedLibrariesEx(0, 0);
    const auto loadAndUse = [&] {
        const HMODULE hServer = LoadLibraryW(serverFile().c_str());
        ASSERT_NE(hServer, nullptr);
        useOnce();
        EXPECT_EQ(canUnload(), S_OK);
        CoFreeUnusedLibrariesEx(0, 0);
        FreeLibrary(hServer);
        EXPECT_EQ(GetModuleHandleW(L"Halvane.dll"), nullptr) << "it is gone";
    };
    for (int i = 0; i < 3; ++i)
        loadAndUse();
}

} // namespace
} // namespace halvane::client
