#pragma once

#include "base/com/Variant.h"
#include "host/com/AbsentItem.h"
#include "host/com/LateBound.h"
#include "host/com/Lists.h"

#include <memory>
#include <utility>
#include <vector>

namespace halvane::host::com {

/// What every object of this host is besides its role: a view of one of the application's own objects.
class HostObject : public halvane::com::DispatchHolder {
public:
    [[nodiscard]] IDispatch& dispatch() const noexcept override { return object_.dispatch(); }

protected:
    HostObject(ContextPtr pContext, const ObjectKind& kind, ComPtr<IDispatch> pDispatch)
        : object_(std::move(pContext), kind, std::move(pDispatch)) {}
    ~HostObject() = default;

    [[nodiscard]] const LateBound& object() const noexcept { return object_; }
    [[nodiscard]] const ContextPtr& context() const noexcept { return object_.context(); }

private:
    LateBound object_;
};

/// The object of a member in a role; nothing where the member is nothing.
template<class Role>
[[nodiscard]] std::shared_ptr<Role> roleOf(const LateBound& object, std::string_view sMember,
                                           std::initializer_list<Value> aArguments = {}) {
    auto pDispatch = object.object(sMember, aArguments);
    return pDispatch ? std::make_shared<Role>(object.context(), std::move(pDispatch)) : nullptr;
}

/// The same for a member that must not be nothing. @throws Failure TypeMismatch.
template<class Role>
[[nodiscard]] std::shared_ptr<Role> requiredRoleOf(const LateBound& object, std::string_view sMember,
                                                   std::initializer_list<Value> aArguments = {}) {
    auto pRole = roleOf<Role>(object, sMember, aArguments);
    if (pRole == nullptr)
        throw object.mismatch(sMember);
    return pRole;
}

/// The objects of a list, each of that kind.
/// @param make makes the role from an item's object, which is nothing only where absence is allowed.
template<class Make>
[[nodiscard]] auto itemsAs(const LateBound& object, std::string_view sMember, const ObjectKind& kind,
                           Absence absence, const Make& make) {
    std::vector<decltype(make(ComPtr<IDispatch>()))> aRoles;
    for (const Variant& item : allItemsOf(object.context(), object.call(sMember).get()))
        aRoles.push_back(make(objectOfItem(item, aRoles.size(), kind, absence)));
    return aRoles;
}

/// The same in one role.
template<class Role>
[[nodiscard]] std::vector<std::shared_ptr<Role>> rolesOf(const LateBound& object, std::string_view sMember,
                                                         const ObjectKind& kind,
                                                         Absence absence = Absence::Fails) {
    return itemsAs(object, sMember, kind, absence, [&](ComPtr<IDispatch> pDispatch) {
        return pDispatch ? std::make_shared<Role>(object.context(), std::move(pDispatch)) : nullptr;
    });
}

/// A list as it was when its items were last counted: those who count it go through it by number next.
template<class Item>
class CountedList {
public:
    /// @param read yields all items.
    template<class Read>
    [[nodiscard]] std::int32_t count(const Read& read) {
        aItems_ = read();
        bRead_ = true;
        return static_cast<std::int32_t>(aItems_.size());
    }
    /// @throws Failure SubscriptOutOfRange.
    template<class Read>
    [[nodiscard]] const Item& item(std::int32_t lIndex, const Read& read) {
        if (!bRead_)
            static_cast<void>(count(read));
        if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aItems_.size())
            throw Failure::of(FailureNumber::SubscriptOutOfRange);
        return aItems_[static_cast<std::size_t>(lIndex)];
    }

private:
    std::vector<Item> aItems_;
    bool bRead_ = false;
};

} // namespace halvane::host::com
