// The component by its manifest alone.

#include "Client.h"

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

/// A folder that holds the component and its manifest, whose context is active on this thread.
class ManifestContext {
public:
    ManifestContext() {
        const std::filesystem::path manifest =
            std::filesystem::path(HALVANE_SOURCE_DIR) / "packaging/windows/Halvane.X.manifest";
        std::filesystem::copy_file(serverFile(), folder() / L"Halvane.dll");
        std::filesystem::copy_file(manifest, folder() / L"Halvane.X.manifest");
        const std::wstring sManifest = (folder() / L"Halvane.X.manifest").wstring();
        ACTCTXW description{};
        description.cbSize = sizeof description;
        description.lpSource = sManifest.c_str();
        hContext_ = CreateActCtxW(&description);
        EXPECT_NE(hContext_, INVALID_HANDLE_VALUE) << GetLastError();
        EXPECT_NE(ActivateActCtx(hContext_, &nCookie_), 0);
    }
    ManifestContext(const ManifestContext&) = delete;
    ManifestContext& operator=(const ManifestContext&) = delete;
    ~ManifestContext() {
        DeactivateActCtx(0, nCookie_);
        ReleaseActCtx(hContext_);
        CoFreeUnusedLibrariesEx(0, 0);
    }

    [[nodiscard]] std::filesystem::path folder() const { return folder_.path(); }

private:
    Folder folder_;
    HANDLE hContext_ = nullptr;
    ULONG_PTR nCookie_ = 0;
};

/// Registered again for the other tests.
class Unregistered {
public:
    Unregistered() { EXPECT_TRUE(unregisterServer()); }
    Unregistered(const Unregistered&) = delete;
    Unregistered& operator=(const Unregistered&) = delete;
    ~Unregistered() { EXPECT_TRUE(registerServer()); }
};

TEST(RegistrationFree, ClassesAreMadeByTheManifestAlone) {
    const Unregistered unregistered;
    CLSID clsid{};
    ASSERT_NE(CLSIDFromProgID(L"Halvane.dCollection", &clsid), S_OK);
    const ManifestContext context;
    for (const wchar_t* sClass : {L"Halvane.clsExport", L"Halvane.dCollection", L"Halvane.IExternalProcessor",
                                  L"Halvane.IExternalProgID"}) {
        ASSERT_EQ(CLSIDFromProgID(sClass, &clsid), S_OK) << sClass;
        IDispatchPtr pObject;
        ASSERT_EQ(pObject.CreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER), S_OK) << sClass;
    }
    const IDispatchPtr pCollection = create<_dCollection>(L"Halvane.dCollection");
    EXPECT_EQ(call(pCollection, L"Add", {_variant_t(L"a"), _variant_t(L"k")}).hr, S_OK);
    EXPECT_EQ(std::wstring(_bstr_t(call(pCollection, L"GetValue", {_variant_t(L"K")}).result)), L"a");
}

} // namespace
} // namespace halvane::client
