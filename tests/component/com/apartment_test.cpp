// Clients on several threads.

#include "Client.h"

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

/// Exports a small document. @returns the error number.
long exportSmall(const Folder& folder) {
    const _bstr_t sControl = folder.write(L"control.xml", "<a Name='Out'><b Name='T'/></a>").c_str();
    BSTR sName = SysAllocString(L"out");
    LONG lNumber = 17;
    BSTR sMessage = SysAllocString(L"as it was");
    EXPECT_EQ(create<_clsExport>(L"Halvane.clsExport")
                  ->Export2XML(nullptr, sControl, _bstr_t(folder.path().c_str()), &sName, nullptr,
                               _bstr_t(L""), &lNumber, &sMessage),
              S_OK);
    SysFreeString(sName);
    SysFreeString(sMessage);
    return lNumber;
}

TEST(Apartments, EachExportForItself) {
    runBeside(COINIT_APARTMENTTHREADED, [] {
        const Folder folder;
        EXPECT_EQ(exportSmall(folder), 0);
        EXPECT_TRUE(folder.read(L"out.xml").has_value());
    });
}

TEST(Apartments, WithoutOneAreServedByMarshalling) {
    runBeside(COINIT_MULTITHREADED, [] {
        const auto pCollection = newCollection();
        VARIANT_BOOL bAdded = VARIANT_FALSE;
        EXPECT_EQ(pCollection->Add(_variant_t(L"value"), _bstr_t(L"Key"), &bAdded), S_OK);
        EXPECT_EQ(bAdded, VARIANT_TRUE);
        _variant_t vValue;
        EXPECT_EQ(pCollection->GetValue(_bstr_t(L"key"), &vValue), S_OK);
        EXPECT_EQ(std::wstring(_bstr_t(vValue)), L"value");
        LONG lCount = 0;
        EXPECT_EQ(pCollection->get_Count(&lCount), S_OK);
        EXPECT_EQ(lCount, 1);
        const Folder folder;
        EXPECT_EQ(exportSmall(folder), 0);
    });
}

/// A map document that exports, on this thread and on another, while it is asked for its map.
class ExportingDocument final : public IDispatch {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        *ppObject = nullptr;
        if (iid != IID_IUnknown && iid != IID_IDispatch)
            return E_NOINTERFACE;
        *ppObject = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pnCount) override {
        *pnCount = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* asNames, UINT, LCID,
                                            DISPID* alMembers) override {
        *alMembers = 1;
        return std::wstring_view(asNames[0]) == L"FocusMap" ? S_OK : DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* pResult, EXCEPINFO*,
                                     UINT*) override {
        const Folder folder;
        lOnThisThread = exportSmall(folder);
        runBeside(COINIT_APARTMENTTHREADED, [&] { lOnAnotherThread = exportSmall(folder); });
        VariantInit(pResult);
        V_DISPATCH(pResult) = nullptr;
        V_VT(pResult) = VT_DISPATCH;
        return S_OK;
    }

    long lOnThisThread = -1;
    long lOnAnotherThread = -1;
};

TEST(Apartments, ExportOneDocumentAtATimeInAll) {
    const Folder folder;
    ExportingDocument document;
    const _bstr_t sControl = folder.write(L"control.xml", "<a Name='Out'><b Name='T'/></a>").c_str();
    BSTR sName = SysAllocString(L"out.xml");
    LONG lNumber = 17;
    EXPECT_EQ(create<_clsExport>(L"Halvane.clsExport")
                  ->Export2XML(&document, sControl, _bstr_t(folder.path().c_str()), &sName, nullptr, nullptr,
                               &lNumber, nullptr),
              S_OK);
    SysFreeString(sName);
    EXPECT_EQ(lNumber, 0) << "the others end without it";
    EXPECT_EQ(document.lOnThisThread, 5);
    EXPECT_EQ(document.lOnAnotherThread, 5);
    EXPECT_TRUE(folder.read(L"out.xml").has_value());
}

} // namespace
} // namespace halvane::client
