#pragma once

#include "Client.h"

#include <atomic>

namespace halvane::client {

/// Stands in for the class factory of the component's processor in this process, which it passes every call
/// on to, and counts what is created. It keeps nothing of the component in memory.
class ClassWatch final : public IClassFactory {
public:
    ClassWatch();
    ClassWatch(const ClassWatch&) = delete;
    ClassWatch& operator=(const ClassWatch&) = delete;
    ~ClassWatch();

    [[nodiscard]] long created() const { return nCreated_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* pOuter, REFIID iid, void** ppObject) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL /*bLock*/) override { return S_OK; }

private:
    DWORD nRegistration_ = 0;
    std::atomic<long> nCreated_ = 0;
};

} // namespace halvane::client
