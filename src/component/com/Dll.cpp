#include "base/FindRow.h"
#include "base/com/HResult.h"
#include "component/com/ClassFactory.h"
#include "component/com/CollectionBridge.h"
#include "component/com/ErrorInfo.h"
#include "component/com/ExportTurn.h"
#include "component/com/ModuleObjects.h"
#include "component/com/PublicClasses.h"
#include "component/com/Registration.h"
#include "component/com/ServerUse.h"
#include "component/com/TypeLibrary.h"

namespace halvane::server {

namespace {

template<class Body>
HRESULT reported(Body body) noexcept {
    try {
        body();
        return S_OK;
    } catch (...) {
        return raise(currentFailure(), IID_NULL, "Halvane");
    }
}

} // namespace

} // namespace halvane::server

using namespace halvane::server;

extern "C" {

BOOL WINAPI DllMain(HINSTANCE /*hModule*/, DWORD nReason, LPVOID pEndOfProcess) {
    // At the end of the process other libraries' objects may be gone: nothing of theirs is touched any more.
    if (nReason == DLL_PROCESS_DETACH && pEndOfProcess != nullptr)
        abandonModuleObjects();
    return TRUE;
}

HRESULT WINAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** ppObject) {
    if (ppObject == nullptr)
        return E_POINTER;
    *ppObject = nullptr;
    const PublicClass* pClass = halvane::findRow(publicClasses(), clsid, &PublicClass::clsid);
    if (pClass == nullptr)
        return CLASS_E_CLASSNOTAVAILABLE;
    HRESULT hr = S_OK;
    const HRESULT hrReported = reported([&] {
        installCollectionBridge();
        hr = makeClassFactory(*pClass)->QueryInterface(iid, ppObject);
    });
    return FAILED(hrReported) ? hrReported : hr;
}

HRESULT WINAPI DllCanUnloadNow() {
    // What an export that did not begin left behind may belong to libraries that are unloaded before this
    // one.
    if (serverInUse() || !releaseModuleObjects())
        return S_FALSE;
    releaseTypeLibrary();
    return S_OK;
}

HRESULT WINAPI DllRegisterServer() {
    return reported([] { registerServer(RegisterFor::Machine); });
}

HRESULT WINAPI DllUnregisterServer() {
    return reported([] { unregisterServer(RegisterFor::Machine); });
}

/// Registers for the current user only: regsvr32 /n /i:user
HRESULT WINAPI DllInstall(BOOL bInstall, LPCWSTR sCommandLine) {
    if (sCommandLine == nullptr || lstrcmpiW(sCommandLine, L"user") != 0)
        return E_INVALIDARG;
    return reported([&] {
        if (bInstall != FALSE)
            registerServer(RegisterFor::User);
        else
            unregisterServer(RegisterFor::User);
    });
}
}
