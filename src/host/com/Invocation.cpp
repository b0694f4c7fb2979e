#include "host/com/Invocation.h"

#include "collection/com/HResult.h"

#include <algorithm>
#include <vector>

namespace halvane::host::com {

using halvane::com::Variant;

namespace {

/// Automation takes arguments from the last to the first; they stay the caller's.
std::vector<VARIANT> reversed(std::span<const Variant> aArguments) {
    std::vector<VARIANT> aReversed;
    aReversed.reserve(aArguments.size());
    for (auto pArgument = aArguments.rbegin(); pArgument != aArguments.rend(); ++pArgument)
        aReversed.push_back(pArgument->get());
    return aReversed;
}

struct Call {
    IDispatch& dispatch;
    DISPID id;
    DISPPARAMS parameters;
    std::string_view sName;

    HRESULT run(WORD nFlags, VARIANT* pResult, EXCEPINFO& exception) {
        return dispatch.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, nFlags, &parameters, pResult, &exception,
                               nullptr);
    }

    void check(HRESULT hr, EXCEPINFO& exception) const {
        if (hr == DISP_E_EXCEPTION)
            throw halvane::com::failureOf(exception, sName);
        halvane::com::require(hr, sName);
    }
};

/// The way of calling that suits the member, and the one for objects that see it otherwise.
struct Ways {
    WORD nFirst;
    WORD nSecond;
};

Ways waysFor(bool bMethod, bool bArguments) {
    if (bArguments)
        return {DISPATCH_METHOD | DISPATCH_PROPERTYGET, DISPATCH_METHOD};
    if (bMethod)
        return {DISPATCH_METHOD, DISPATCH_PROPERTYGET};
    return {DISPATCH_PROPERTYGET, DISPATCH_METHOD};
}

} // namespace

Variant invoke(IDispatch& dispatch, DISPID id, bool bMethod, std::span<const Variant> aArguments,
               std::string_view sName) {
    std::vector<VARIANT> aReversed = reversed(aArguments);
    Call call{dispatch, id, {aReversed.data(), nullptr, static_cast<UINT>(aReversed.size()), 0}, sName};
    const Ways ways = waysFor(bMethod, !aArguments.empty());
    Variant result;
    EXCEPINFO exception{};
    HRESULT hr = call.run(ways.nFirst, result.put(), exception);
    if (hr == DISP_E_MEMBERNOTFOUND)
        hr = call.run(ways.nSecond, result.put(), exception);
    call.check(hr, exception);
    return (V_VT(&result.get()) & VT_BYREF) != 0 ? Variant::copyOf(result.get()) : std::move(result);
}

void invokeAssignment(IDispatch& dispatch, DISPID id, const Variant& object, std::string_view sName) {
    VARIANT argument = object.get();
    DISPID idPut = DISPID_PROPERTYPUT;
    Call call{dispatch, id, {&argument, &idPut, 1, 1}, sName};
    EXCEPINFO exception{};
    HRESULT hr = call.run(DISPATCH_PROPERTYPUTREF, nullptr, exception);
    if (hr == DISP_E_MEMBERNOTFOUND)
        hr = call.run(DISPATCH_PROPERTYPUT, nullptr, exception);
    call.check(hr, exception);
}

} // namespace halvane::host::com
