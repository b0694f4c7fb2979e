#pragma once

#include "base/Failure.h"
#include "base/Value.h"
#include "base/com/ComPtr.h"
#include "base/com/Variant.h"
#include "host/com/MemberIds.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace halvane::host::com {

using halvane::com::ComPtr;
using halvane::com::Variant;

/// What the objects of one application share.
struct Context {
    MemberIdCache memberIds;
};
using ContextPtr = std::shared_ptr<Context>;

/// An automation object in a role: what the application offers is asked for by the names of the role's kind.
/// Every operation throws Failure: with the object's own text when it raised an exception, with the kind and
/// the member's name when the object lacks a member that is required, or answers with something else than is
/// asked for.
class LateBound {
public:
    LateBound(ContextPtr pContext, const ObjectKind& kind, ComPtr<IDispatch> pDispatch);

    [[nodiscard]] const ContextPtr& context() const noexcept { return pContext_; }
    [[nodiscard]] IDispatch& dispatch() const noexcept { return *pDispatch_; }

    [[nodiscard]] bool has(std::string_view sMember) const;

    Variant call(std::string_view sMember, std::initializer_list<Value> aArguments = {}) const;
    /// Hands over arguments that are no plain values.
    Variant callWith(std::string_view sMember, std::span<const Variant> aArguments) const;
    /// Assigns an object to a property.
    void assign(std::string_view sMember, const Variant& object) const;

    [[nodiscard]] Value value(std::string_view sMember, std::initializer_list<Value> aArguments = {}) const;
    /// "" for null.
    [[nodiscard]] std::string text(std::string_view sMember,
                                   std::initializer_list<Value> aArguments = {}) const;
    [[nodiscard]] std::int32_t integer(std::string_view sMember,
                                       std::initializer_list<Value> aArguments = {}) const;
    [[nodiscard]] std::int64_t longInteger(std::string_view sMember) const;
    [[nodiscard]] double number(std::string_view sMember) const;
    /// Not a number where the member is missing, empty or null.
    [[nodiscard]] double numberIfAny(std::string_view sMember) const;
    [[nodiscard]] bool flag(std::string_view sMember) const;
    /// Nothing for null, empty and no object.
    [[nodiscard]] ComPtr<IDispatch> object(std::string_view sMember,
                                           std::initializer_list<Value> aArguments = {}) const;

    /// The failure of a member that answers with something else than is asked for.
    [[nodiscard]] Failure mismatch(std::string_view sMember) const;

private:
    [[nodiscard]] std::optional<DISPID> idOf(std::size_t nMember) const;
    [[nodiscard]] DISPID requiredId(std::size_t nMember) const;
    [[nodiscard]] MemberIds& ids() const;
    template<class Convert>
    auto converted(std::string_view sMember, const Convert& convert) const;

    ContextPtr pContext_;
    const ObjectKind* kind_;
    ComPtr<IDispatch> pDispatch_;
    mutable MemberIds* pIds_ = nullptr;
    mutable std::unique_ptr<MemberIds> pOwnIds_;
};

/// The object in a variant; nothing for null, empty and no object.
/// @throws Failure TypeMismatch for anything else.
[[nodiscard]] ComPtr<IDispatch> dispatchIn(const VARIANT& variant);

} // namespace halvane::host::com
