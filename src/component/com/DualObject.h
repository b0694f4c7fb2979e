#pragma once

#include "base/Failure.h"
#include "base/com/Counted.h"
#include "component/com/ErrorInfo.h"
#include "component/com/Invocation.h"
#include "component/com/ServerUse.h"
#include "component/com/TypeLibrary.h"

#include <ocidl.h>

#include <string_view>

namespace halvane::server {

/// An object with a dual interface of the type library: late-bound calls and error information.
template<class Interface, class... Others>
class DualObject : public com::Counted<Interface, ISupportErrorInfo, Others...> {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pnCount) override {
        if (pnCount == nullptr)
            return E_POINTER;
        *pnCount = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT nInfo, LCID /*lcid*/, ITypeInfo** ppInfo) override {
        if (ppInfo == nullptr)
            return E_POINTER;
        *ppInfo = nullptr;
        if (nInfo != 0)
            return DISP_E_BADINDEX;
        return guarded([&] { *ppInfo = typeInfoOf(__uuidof(Interface)).detach(); });
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*iid*/, LPOLESTR* asNames, UINT nNames, LCID /*lcid*/,
                                            DISPID* alMembers) override {
        HRESULT hr = S_OK;
        const HRESULT hrGuarded =
            guarded([&] { hr = typeInfoOf(__uuidof(Interface))->GetIDsOfNames(asNames, nNames, alMembers); });
        return FAILED(hrGuarded) ? hrGuarded : hr;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID lMember, REFIID /*iid*/, LCID lcid, WORD wFlags,
                                     DISPPARAMS* pArguments, VARIANT* pResult, EXCEPINFO* pException,
                                     UINT* pnWrongArgument) override {
        if (pArguments == nullptr)
            return E_POINTER;
        HRESULT hr = S_OK;
        const HRESULT hrGuarded = guarded([&] {
            hr = invokeMember(*typeInfoOf(__uuidof(Interface)), static_cast<Interface*>(this),
                              {lMember, lcid, wFlags, traitsOf(lMember)}, *pArguments, pResult, pException,
                              pnWrongArgument);
        });
        return FAILED(hrGuarded) ? hrGuarded : hr;
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == __uuidof(Interface) ? S_OK : S_FALSE;
    }

protected:
    /// @param sClassName for error information; a literal.
    explicit DualObject(std::string_view sClassName) noexcept : sClassName_(sClassName) {}

    [[nodiscard]] virtual MemberTraits traitsOf(DISPID /*lMember*/) const { return {}; }

    /// Runs a member's body; a failure becomes the caller's.
    template<class Body>
    HRESULT guarded(Body body) noexcept {
        try {
            body();
            return S_OK;
        } catch (...) {
            return raise(currentFailure(), __uuidof(Interface), sClassName_);
        }
    }

private:
    std::string_view sClassName_;
    ServerUse use_;
};

/// An object of a class that clients create: it tells which.
template<class Interface, class Class>
class PublicObject : public DualObject<Interface, IProvideClassInfo> {
public:
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** ppInfo) override {
        if (ppInfo == nullptr)
            return E_POINTER;
        *ppInfo = nullptr;
        return this->guarded([&] { *ppInfo = typeInfoOf(__uuidof(Class)).detach(); });
    }

protected:
    using DualObject<Interface, IProvideClassInfo>::DualObject;
};

} // namespace halvane::server
