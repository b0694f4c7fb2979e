#include "ClassWatch.h"

#include <gtest/gtest.h>

namespace halvane::client {

ClassWatch::ClassWatch() {
    EXPECT_EQ(CoRegisterClassObject(__uuidof(::IExternalProcessor), this, CLSCTX_INPROC_SERVER,
                                    REGCLS_MULTIPLEUSE, &nRegistration_),
              S_OK);
}

ClassWatch::~ClassWatch() {
    EXPECT_EQ(CoRevokeClassObject(nRegistration_), S_OK);
}

HRESULT ClassWatch::QueryInterface(REFIID iid, void** ppObject) {
    *ppObject = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory)
        return E_NOINTERFACE;
    *ppObject = this;
    return S_OK;
}

HRESULT ClassWatch::CreateInstance(IUnknown* pOuter, REFIID iid, void** ppObject) {
    const auto getClassObject = entryPoint<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
    IClassFactory* pFactory = nullptr;
    HRESULT hr = getClassObject(__uuidof(::IExternalProcessor), IID_IClassFactory,
                                reinterpret_cast<void**>(&pFactory));
    if (FAILED(hr))
        return hr;
    hr = pFactory->CreateInstance(pOuter, iid, ppObject);
    pFactory->Release();
    nCreated_ += SUCCEEDED(hr) ? 1 : 0;
    return hr;
}

} // namespace halvane::client
