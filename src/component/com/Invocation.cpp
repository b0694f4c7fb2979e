#include "component/com/Invocation.h"

#include "base/com/HResult.h"
#include "component/com/TypedArguments.h"

#include <memory>

namespace halvane::server {

namespace {

struct FunctionReleaser {
    ITypeInfo* pInfo;
    void operator()(FUNCDESC* pFunction) const noexcept { pInfo->ReleaseFuncDesc(pFunction); }
};
using FunctionPtr = std::unique_ptr<FUNCDESC, FunctionReleaser>;

/// Nothing when there is no such member.
FunctionPtr functionOf(ITypeInfo& info, DISPID lMember) {
    for (UINT nFunction = 0;; ++nFunction) {
        FUNCDESC* pFunction = nullptr;
        if (FAILED(info.GetFuncDesc(nFunction, &pFunction)))
            return FunctionPtr(nullptr, {&info});
        FunctionPtr function(pFunction, {&info});
        if (function->memid == lMember)
            return function;
    }
}

/// Languages differ in what they call reading: whoever calls without assigning is answered.
WORD flagsOf(WORD wFlags) {
    constexpr WORD wReading = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    return (wFlags & wReading) != 0 ? static_cast<WORD>(wFlags | wReading) : wFlags;
}

} // namespace

HRESULT invokeMember(ITypeInfo& info, void* pInstance, const MemberCall& call, const DISPPARAMS& arguments,
                     VARIANT* pResult, EXCEPINFO* pException, UINT* pnWrongArgument) {
    const FunctionPtr function = functionOf(info, call.lMember);
    if (function == nullptr)
        return DISP_E_MEMBERNOTFOUND;
    TypedArguments typed(info, *function, arguments, call);
    const HRESULT hrConverted = typed.convert(pnWrongArgument);
    if (FAILED(hrConverted))
        return hrConverted;
    const HRESULT hr = info.Invoke(pInstance, call.lMember, flagsOf(call.wFlags), typed.parameters(), pResult,
                                   pException, pnWrongArgument);
    if (SUCCEEDED(hr))
        typed.passBack();
    return hr;
}

} // namespace halvane::server
