#pragma once

#include "base/Value.h"
#include "base/com/Variant.h"

namespace halvane::server {

/// A client's value of a type that Value lacks, kept as it is.
class HeldVariant final : public Object, public TextHolder {
public:
    explicit HeldVariant(com::Variant variant) noexcept : variant_(std::move(variant)) {}

    [[nodiscard]] std::string_view typeName() const override { return "Variant"; }
    [[nodiscard]] std::string text() const override;
    [[nodiscard]] const VARIANT& variant() const noexcept { return variant_.get(); }

private:
    com::Variant variant_;
};

/// A client's value as an entry of a collection: given back by variantOf, it is the same in type and content.
/// What it holds by reference is fetched. @throws Failure.
[[nodiscard]] Value valueOf(const VARIANT& variant);
/// @throws Failure TypeMismatch for an object that no client can see.
[[nodiscard]] com::Variant variantOf(const Value& vValue);

/// The object in a variant; nothing for any other value and for no object.
[[nodiscard]] com::ComPtr<IUnknown> objectIn(const VARIANT& variant);
[[nodiscard]] bool isObject(const VARIANT& variant) noexcept;
/// Whether both are one object; no object is the same as no object.
[[nodiscard]] bool areSameObject(IUnknown* pLeft, IUnknown* pRight) noexcept;

} // namespace halvane::server
