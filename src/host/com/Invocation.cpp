#include "host/com/Invocation.h"

#include "base/Failure.h"
#include "base/com/HResult.h"

#include <array>
#include <fmt/format.h>

namespace halvane::host::com {

using halvane::com::Variant;

namespace {

/// Automation takes arguments from the last to the first; they stay the caller's.
class ReversedArguments {
public:
    explicit ReversedArguments(std::span<const Variant> aArguments) : nCount_(aArguments.size()) {
        if (nCount_ > aHeld_.size())
            throw Failure::of(FailureNumber::InternalError);
        for (std::size_t n = 0; n < nCount_; ++n)
            aHeld_[n] = aArguments[nCount_ - 1 - n].get();
    }
    [[nodiscard]] DISPPARAMS parameters() { return {aHeld_.data(), nullptr, static_cast<UINT>(nCount_), 0}; }

private:
    std::array<VARIANT, 8> aHeld_; // no member has more
    std::size_t nCount_;
};

struct Call {
    IDispatch& dispatch;
    DISPID id;
    DISPPARAMS parameters;
    const CallName& name;

    HRESULT run(WORD nFlags, VARIANT* pResult, EXCEPINFO& exception) {
        return dispatch.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, nFlags, &parameters, pResult, &exception,
                               nullptr);
    }

    void check(HRESULT hr, EXCEPINFO& exception) const {
        if (hr == DISP_E_EXCEPTION)
            throw halvane::com::failureOf(exception, name.text());
        if (FAILED(hr))
            throw halvane::com::failureOf(hr, name.text());
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

std::string CallName::text() const {
    return fmt::format("{}.{}", sKind, sMember);
}

Variant invoke(IDispatch& dispatch, DISPID id, bool bMethod, std::span<const Variant> aArguments,
               const CallName& name) {
    ReversedArguments reversed(aArguments);
    Call call{dispatch, id, reversed.parameters(), name};
    const Ways ways = waysFor(bMethod, !aArguments.empty());
    Variant result;
    EXCEPINFO exception{};
    HRESULT hr = call.run(ways.nFirst, result.put(), exception);
    if (hr == DISP_E_MEMBERNOTFOUND)
        hr = call.run(ways.nSecond, result.put(), exception);
    call.check(hr, exception);
    return (V_VT(&result.get()) & VT_BYREF) != 0 ? Variant::copyOf(result.get()) : std::move(result);
}

void invokeAssignment(IDispatch& dispatch, DISPID id, const Variant& object, const CallName& name) {
    VARIANT argument = object.get();
    DISPID idPut = DISPID_PROPERTYPUT;
    Call call{dispatch, id, {&argument, &idPut, 1, 1}, name};
    EXCEPINFO exception{};
    HRESULT hr = call.run(DISPATCH_PROPERTYPUTREF, nullptr, exception);
    if (hr == DISP_E_MEMBERNOTFOUND)
        hr = call.run(DISPATCH_PROPERTYPUT, nullptr, exception);
    call.check(hr, exception);
}

} // namespace halvane::host::com
