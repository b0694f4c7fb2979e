#include "component/com/Invocation.h"

#include "base/com/HResult.h"
#include "component/com/TypedArguments.h"

#include <algorithm>
#include <memory>
#include <set>
#include <span>

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

constexpr WORD wReading = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

/// How many arguments callers write: a result that is returned is none of them.
UINT countOfArguments(const FUNCDESC& function) {
    const std::span parameters(function.lprgelemdescParam, static_cast<std::size_t>(function.cParams));
    return static_cast<UINT>(
        std::count_if(parameters.begin(), parameters.end(), [](const ELEMDESC& parameter) {
            return (parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) == 0;
        }));
}

/// Each place is taken once. @param pnWrongArgument may be null.
HRESULT checkArguments(const FUNCDESC& function, const DISPPARAMS& given, UINT* pnWrongArgument) {
    const UINT nCount = countOfArguments(function);
    if (given.cArgs != nCount || given.cNamedArgs > given.cArgs)
        return DISP_E_BADPARAMCOUNT;
    // Those without a name come first; a negative place is beyond all others.
    const UINT nUnnamed = nCount - given.cNamedArgs;
    std::set<UINT> named;
    for (UINT nNamed = 0; nNamed < given.cNamedArgs; ++nNamed) {
        const auto nPlace = static_cast<UINT>(given.rgdispidNamedArgs[nNamed]);
        if (nPlace >= nUnnamed && nPlace < nCount && named.insert(nPlace).second)
            continue;
        if (pnWrongArgument != nullptr)
            *pnWrongArgument = nNamed;
        return DISP_E_PARAMNOTFOUND;
    }
    return S_OK;
}

/// @throws Failure.
void passBack(TypedArguments& typed, const MemberTraits& traits, VARIANT* pResult) {
    try {
        typed.passBack();
    } catch (const Failure&) {
        if (!traits.bMakesArray)
            throw;
        if (pResult != nullptr)
            V_I4(pResult) = -1;
    }
}

} // namespace

HRESULT invokeMember(ITypeInfo& info, void* pInstance, const MemberCall& call, const DISPPARAMS& arguments,
                     VARIANT* pResult, EXCEPINFO* pException, UINT* pnWrongArgument) {
    const FunctionPtr function = functionOf(info, call.lMember);
    if (function == nullptr || (call.wFlags & wReading) == 0)
        return DISP_E_MEMBERNOTFOUND;
    const HRESULT hrArguments = checkArguments(*function, arguments, pnWrongArgument);
    if (FAILED(hrArguments))
        return hrArguments;
    TypedArguments typed(info, *function, arguments, call);
    const HRESULT hrConverted = typed.convert(pnWrongArgument);
    if (FAILED(hrConverted))
        return hrConverted;
    const HRESULT hr =
        // Languages differ in what they call reading: whoever calls without assigning is answered.
        info.Invoke(pInstance, call.lMember, static_cast<WORD>(call.wFlags | wReading), typed.parameters(),
                    pResult, pException, pnWrongArgument);
    if (SUCCEEDED(hr))
        passBack(typed, call.traits, pResult);
    return hr;
}

} // namespace halvane::server
