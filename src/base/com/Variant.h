#pragma once

#include "base/Value.h"
#include "base/com/ComPtr.h"
#include "base/com/Windows.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace halvane::com {

/// Owns what a VARIANT holds.
class Variant {
public:
    Variant() noexcept { VariantInit(&held_); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    Variant(Variant&& other) noexcept : held_(other.detach()) {}
    Variant& operator=(Variant&& other) noexcept;
    ~Variant() { VariantClear(&held_); }

    /// Takes over what the caller owns.
    [[nodiscard]] static Variant attach(const VARIANT& owned) noexcept;
    /// A copy of what the caller lends; what it holds by reference is fetched. @throws Failure.
    [[nodiscard]] static Variant copyOf(const VARIANT& lent);
    /// Gives away what is held.
    [[nodiscard]] VARIANT detach() noexcept;

    [[nodiscard]] const VARIANT& get() const noexcept { return held_; }
    /// For an out-parameter; what was held is cleared.
    [[nodiscard]] VARIANT* put() noexcept;

private:
    VARIANT held_;
};

/// What an object is besides its role here when it stands for one of another component: that component's
/// own object. A mix-in, found by dynamic_cast.
class DispatchHolder {
public:
    /// Never null.
    [[nodiscard]] virtual IDispatch& dispatch() const noexcept = 0;

protected:
    DispatchHolder() = default;
    DispatchHolder(const DispatchHolder&) = default;
    DispatchHolder& operator=(const DispatchHolder&) = default;
    ~DispatchHolder() = default;
};

/// Another component's object without a role here.
class ForeignObject final : public Object, public DispatchHolder {
public:
    explicit ForeignObject(ComPtr<IDispatch> pDispatch) : pDispatch_(std::move(pDispatch)) {}

    [[nodiscard]] std::string_view typeName() const override { return "Object"; }
    [[nodiscard]] IDispatch& dispatch() const noexcept override { return *pDispatch_; }

private:
    ComPtr<IDispatch> pDispatch_;
};

/// How objects of our own travel. A front end that publishes classes installs one.
class ObjectBridge {
public:
    ObjectBridge() = default;
    ObjectBridge(const ObjectBridge&) = delete;
    ObjectBridge& operator=(const ObjectBridge&) = delete;
    virtual ~ObjectBridge() = default;

    /// The face of an object of ours that is no DispatchHolder; nothing when the bridge knows none.
    [[nodiscard]] virtual ComPtr<IDispatch> dispatchOf(const ObjectPtr& pObject) = 0;
    /// The object of ours behind a face of ours; nothing for the objects of others.
    [[nodiscard]] virtual ObjectPtr objectOf(IDispatch& dispatch) = 0;
};
/// @param pBridge lives until another is installed; nullptr: none.
void installObjectBridge(ObjectBridge* pBridge) noexcept;

/// The automation face of an object: that of a DispatchHolder itself, else what the bridge says; nothing for
/// no object.
/// @throws Failure TypeMismatch for an object without one.
[[nodiscard]] ComPtr<IDispatch> dispatchOf(const ObjectPtr& pObject);
/// The object behind a face: one of ours where the bridge knows it, else a ForeignObject; nothing for null.
[[nodiscard]] ObjectPtr objectOf(IDispatch* pDispatch);

/// Empty, Null, yes/no, whole numbers (VT_I4 where they fit, else VT_I8), VT_R4, VT_R8, VT_DATE, VT_BSTR,
/// VT_DISPATCH. No object is VT_DISPATCH with a null pointer.
/// @throws Failure TypeMismatch for an object without a face, Overflow for a date outside the years 100 to
/// 9999.
[[nodiscard]] Variant toVariant(const Value& vValue);

/// The inverse. Whole numbers of every width become 32-bit ones where they fit; currency and decimals become
/// double precision; an array of bytes becomes its base64 text; an omitted argument is Empty; what stands
/// behind a reference is taken.
/// @throws Failure TypeMismatch for other arrays, for error codes and records.
[[nodiscard]] Value toValue(const VARIANT& variant);

/// The bytes of an array of bytes; nothing for anything else.
[[nodiscard]] std::optional<std::vector<std::byte>> bytesOf(const VARIANT& variant);

/// A VT_DATE number as a date; less than a day is a time of day without a date.
/// @throws Failure Overflow outside the years 100 to 9999.
[[nodiscard]] Date dateOf(DATE dDays);
[[nodiscard]] DATE daysOf(const Date& date);

} // namespace halvane::com
