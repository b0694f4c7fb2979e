#include "host/com/LateBound.h"

#include "base/Conversions.h"
#include "base/Failure.h"
#include "host/com/Invocation.h"

#include <cmath>
#include <fmt/format.h>
#include <limits>
#include <utility>
#include <vector>

namespace halvane::host::com {

LateBound::LateBound(ContextPtr pContext, const ObjectKind& kind, ComPtr<IDispatch> pDispatch)
    : pContext_(std::move(pContext)), kind_(&kind), pDispatch_(std::move(pDispatch)) {}

MemberIds& LateBound::ids() const {
    if (pIds_ == nullptr)
        pIds_ = pContext_->memberIds.sharedIds(*kind_, *pDispatch_);
    if (pIds_ == nullptr) {
        pOwnIds_ = std::make_unique<MemberIds>(*kind_);
        pIds_ = pOwnIds_.get();
    }
    return *pIds_;
}

std::optional<DISPID> LateBound::idOf(std::size_t nMember) const {
    return ids().idOf(*pDispatch_, nMember);
}

DISPID LateBound::requiredId(std::size_t nMember) const {
    const auto id = idOf(nMember);
    if (!id.has_value()) {
        throw Failure(FailureNumber::PropertyOrMethodNotSupported,
                      fmt::format("The host application's {} has no member \"{}\"", kind_->sName,
                                  kind_->aMembers[nMember].sName));
    }
    return *id;
}

bool LateBound::has(std::string_view sMember) const {
    return idOf(kind_->indexOf(sMember)).has_value();
}

Variant LateBound::callWith(std::string_view sMember, std::span<const Variant> aArguments) const {
    const std::size_t nMember = kind_->indexOf(sMember);
    const DISPID id = requiredId(nMember);
    return invoke(*pDispatch_, id, kind_->aMembers[nMember].sort == Member::Sort::Method, aArguments,
                  {kind_->sName, sMember});
}

Variant LateBound::call(std::string_view sMember, std::initializer_list<Value> aArguments) const {
    std::vector<Variant> aVariants;
    aVariants.reserve(aArguments.size());
    for (const Value& vArgument : aArguments)
        aVariants.push_back(halvane::com::toVariant(vArgument));
    return callWith(sMember, aVariants);
}

void LateBound::assign(std::string_view sMember, const Variant& object) const {
    const DISPID id = requiredId(kind_->indexOf(sMember));
    invokeAssignment(*pDispatch_, id, object, {kind_->sName, sMember});
}

Failure LateBound::mismatch(std::string_view sMember) const {
    return {FailureNumber::TypeMismatch, fmt::format("{}.{}: {}", kind_->sName, sMember,
                                                     Failure::of(FailureNumber::TypeMismatch).description())};
}

template<class Convert>
auto LateBound::converted(std::string_view sMember, const Convert& convert) const {
    try {
        return convert();
    } catch (const Failure& failure) {
        throw Failure(failure.number(),
                      fmt::format("{}.{}: {}", kind_->sName, sMember, failure.description()));
    }
}

Value LateBound::value(std::string_view sMember, std::initializer_list<Value> aArguments) const {
    const Variant result = call(sMember, aArguments);
    return converted(sMember, [&] { return halvane::com::toValue(result.get()); });
}

std::string LateBound::text(std::string_view sMember, std::initializer_list<Value> aArguments) const {
    const Value vValue = value(sMember, aArguments);
    return converted(sMember, [&] { return toText(vValue); });
}

std::int32_t LateBound::integer(std::string_view sMember, std::initializer_list<Value> aArguments) const {
    const Value vValue = value(sMember, aArguments);
    return converted(sMember, [&] { return wholeNumberOf(toView(vValue)); });
}

std::int64_t LateBound::longInteger(std::string_view sMember) const {
    const Value vValue = value(sMember);
    if (const auto* pLong = std::get_if<std::int64_t>(&vValue))
        return *pLong;
    const double dValue = converted(sMember, [&] { return numberOf(toView(vValue)); });
    constexpr double dLimit = 9007199254740992.0; // beyond, not every whole number is a double
    if (!(std::fabs(dValue) <= dLimit))
        throw mismatch(sMember);
    return static_cast<std::int64_t>(std::nearbyint(dValue));
}

double LateBound::number(std::string_view sMember) const {
    const Value vValue = value(sMember);
    return converted(sMember, [&] { return numberOf(toView(vValue)); });
}

double LateBound::numberIfAny(std::string_view sMember) const {
    constexpr double dNone = std::numeric_limits<double>::quiet_NaN();
    if (!has(sMember))
        return dNone;
    const Value vValue = value(sMember);
    if (isEmpty(vValue) || std::holds_alternative<Null>(vValue))
        return dNone;
    return converted(sMember, [&] { return numberOf(toView(vValue)); });
}

bool LateBound::flag(std::string_view sMember) const {
    const Value vValue = value(sMember);
    if (const auto* pFlag = std::get_if<bool>(&vValue))
        return *pFlag;
    return converted(sMember, [&] { return numberOf(toView(vValue)) != 0; });
}

ComPtr<IDispatch> LateBound::object(std::string_view sMember, std::initializer_list<Value> aArguments) const {
    const Variant result = call(sMember, aArguments);
    return converted(sMember, [&] { return dispatchIn(result.get()); });
}

ComPtr<IDispatch> dispatchIn(const VARIANT& variant) {
    const Variant plain = Variant::copyOf(variant);
    switch (V_VT(&plain.get())) {
    case VT_EMPTY:
    case VT_NULL:
        return {};
    case VT_DISPATCH:
        return ComPtr<IDispatch>(V_DISPATCH(&plain.get()));
    case VT_UNKNOWN: {
        const ComPtr<IUnknown> pUnknown(V_UNKNOWN(&plain.get()));
        auto pDispatch = pUnknown.query<IDispatch>();
        if (pUnknown && !pDispatch)
            throw Failure::of(FailureNumber::TypeMismatch);
        return pDispatch;
    }
    default:
        throw Failure::of(FailureNumber::TypeMismatch);
    }
}

} // namespace halvane::host::com
