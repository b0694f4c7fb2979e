// External processors that other components publish: found by programmatic identifier, called with the
// resolved objects.

#include "Client.h"

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

constexpr CLSID clsidProcessor = {
    0x1c9d0a5e, 0x55c4, 0x4f0e, {0x8a, 0x77, 0x1e, 0x3d, 0x5b, 0x2c, 0x9f, 0x10}};

/// A processor in a compiled language: the published interface, called directly.
class CompiledProcessor final : public _IExternalProcessor {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        *ppObject = nullptr;
        if (iid != IID_IUnknown && iid != IID_IDispatch && iid != __uuidof(_IExternalProcessor))
            return E_NOINTERFACE;
        *ppObject = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* /*pnCount*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE Process(_dCollection** dColSpatialVariables, BSTR* sValue) override {
        if (bFails)
            return E_FAIL;
        LONG lCount = -1;
        (*dColSpatialVariables)->get_Count(&lCount);
        if (bReplaces) {
            (*dColSpatialVariables)->Release();
            *dColSpatialVariables = nullptr;
        }
        *sValue = SysAllocString((L"objects: " + std::to_wstring(lCount)).c_str());
        return S_OK;
    }

    bool bFails = false;
    bool bReplaces = false;
};

/// Hands out one object.
class OneObjectFactory final : public IClassFactory {
public:
    explicit OneObjectFactory(IUnknown& object) : object_(object) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        *ppObject = nullptr;
        if (iid != IID_IUnknown && iid != IID_IClassFactory)
            return E_NOINTERFACE;
        *ppObject = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** ppObject) override {
        return object_.QueryInterface(iid, ppObject);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    IUnknown& object_;
};

/// Gives a class of this process a programmatic identifier.
class PublishedClass {
public:
    PublishedClass(const wchar_t* sProgId, REFCLSID clsid, IUnknown& object)
        : sKey_(std::wstring(L"Software\\Classes\\") + sProgId), factory_(object) {
        EXPECT_EQ(
            CoRegisterClassObject(clsid, &factory_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &nCookie_),
            S_OK);
        LPOLESTR sClass = nullptr;
        EXPECT_EQ(StringFromCLSID(clsid, &sClass), S_OK);
        EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, (sKey_ + L"\\CLSID").c_str(), nullptr, REG_SZ, sClass,
                                  39 * sizeof(wchar_t)),
                  ERROR_SUCCESS);
        CoTaskMemFree(sClass);
    }
    PublishedClass(const PublishedClass&) = delete;
    PublishedClass& operator=(const PublishedClass&) = delete;
    ~PublishedClass() {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, sKey_.c_str());
        CoRevokeClassObject(nCookie_);
    }

private:
    std::wstring sKey_;
    OneObjectFactory factory_;
    DWORD nCookie_ = 0;
};

/// What an export writes for processors of that identifier, asked twice.
std::string exported(const std::string& sProgId) {
    const Folder folder;
    const std::string sNode = " DataSource='External' IdentityValue='" + sProgId + "'/>";
    const _bstr_t sControl =
        folder.write(L"control.xml", "<a Name='Out'><p Name='P'" + sNode + "<p Name='P'" + sNode + "</a>")
            .c_str();
    BSTR sName = SysAllocString(L"out.xml");
    LONG lNumber = 17;
    EXPECT_EQ(create<_clsExport>(L"Halvane.clsExport")
                  ->Export2XML(nullptr, sControl, _bstr_t(folder.path().c_str()), &sName, nullptr, nullptr,
                               &lNumber, nullptr),
              S_OK);
    SysFreeString(sName);
    EXPECT_EQ(lNumber, 0);
    return folder.read(L"out.xml").value_or("(nothing)");
}

class CompiledProcessors : public ::testing::Test {
protected:
    CompiledProcessor processor;
    PublishedClass published{L"HalvaneTest.Compiled", clsidProcessor, processor};
};

TEST_F(CompiledProcessors, ReceiveTheResolvedObjects) {
    EXPECT_EQ(exported("HalvaneTest.Compiled"), "<Out>\r\n<P>objects: 0</P>\r\n<P>objects: 0</P>\r\n</Out>");
}

TEST_F(CompiledProcessors, MayReplaceTheirReference) {
    processor.bReplaces = true;
    EXPECT_EQ(exported("HalvaneTest.Compiled"), "<Out>\r\n<P>objects: 0</P>\r\n<P>objects: 0</P>\r\n</Out>");
}

TEST_F(CompiledProcessors, MayFailWithoutEndingTheExport) {
    processor.bFails = true;
    EXPECT_EQ(exported("HalvaneTest.Compiled"), "<Out>\r\n<P/>\r\n<P/>\r\n</Out>");
}

class ScriptComponents : public ::testing::Test {
protected:
    ScriptComponents() { EXPECT_TRUE(registered({L"/s", L"/n"})); }
    ~ScriptComponents() override { EXPECT_TRUE(registered({L"/s", L"/u", L"/n"})); }

private:
    static bool registered(std::vector<std::wstring> asArguments) {
        const auto path =
            std::filesystem::path(HALVANE_SOURCE_DIR) / "tests/component/com/scripts/TownReport.wsc";
        asArguments.push_back(L"/i:" + std::filesystem::path(path).make_preferred().wstring());
        asArguments.emplace_back(L"scrobj.dll");
        return run(L"regsvr32", asArguments).nCode == 0;
    }
};

TEST_F(ScriptComponents, AreProcessorsByTheirMethod) {
    EXPECT_EQ(exported("HalvaneTest.TownReport"),
              "<Out>\r\n<P>keys before: 0, mark: left by the script</P>\r\n"
              "<P>keys before: 0, mark: left by the script</P>\r\n</Out>")
        << "a key that is filed is not filed again";
}

} // namespace
} // namespace halvane::client
