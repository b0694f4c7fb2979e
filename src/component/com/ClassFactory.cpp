#include "component/com/ClassFactory.h"

#include "base/com/Counted.h"
#include "component/com/ErrorInfo.h"
#include "component/com/ServerUse.h"

namespace halvane::server {

namespace {

class ClassFactory final : public com::Counted<IClassFactory> {
public:
    explicit ClassFactory(const PublicClass& madeClass) : class_(madeClass) {}

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
    ServerUse use_;
};

} // namespace

com::ComPtr<IClassFactory> makeClassFactory(const PublicClass& madeClass) {
    return com::makeObject<ClassFactory>(madeClass).query<IClassFactory>();
}

} // namespace halvane::server
