#include "component/com/ClassFactory.h"

#include "component/com/ErrorInfo.h"
#include "component/com/ServerUse.h"

#include <atomic>
#include <memory>

namespace halvane::server {

namespace {

class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(const PublicClass& madeClass) : class_(madeClass) {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;
    virtual ~ClassFactory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        if (ppObject == nullptr)
            return E_POINTER;
        *ppObject = nullptr;
        if (iid != IID_IUnknown && iid != IID_IClassFactory)
            return E_NOINTERFACE;
        *ppObject = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++nReferences_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG nLeft = --nReferences_;
        if (nLeft == 0)
            const std::unique_ptr<ClassFactory> last(this);
        return nLeft;
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* pOuter, REFIID iid, void** ppObject) override {
        if (ppObject == nullptr)
            return E_POINTER;
        *ppObject = nullptr;
        if (pOuter != nullptr)
            return CLASS_E_NOAGGREGATION;
        try {
            return class_.make()->QueryInterface(iid, ppObject);
        } catch (...) {
            return raise(currentFailure(), IID_IClassFactory, "Halvane");
        }
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL bLock) override {
        lockServer(bLock != FALSE);
        return S_OK;
    }

private:
    const PublicClass& class_;
    std::atomic<ULONG> nReferences_ = 1;
    ServerUse use_;
};

} // namespace

com::ComPtr<IClassFactory> makeClassFactory(const PublicClass& madeClass) {
    return com::ComPtr<IClassFactory>::attach(std::make_unique<ClassFactory>(madeClass).release());
}

} // namespace halvane::server
