#pragma once

#include "base/com/ComPtr.h"
#include "host/com/ObjectKinds.h"

#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace halvane::host::com {

/// Which identifiers an object has for the members of its kind, as far as they were asked for.
class MemberIds {
public:
    explicit MemberIds(const ObjectKind& kind) : kind_(&kind), aIds_(kind.aMembers.size()) {}

    /// @returns nothing when the object has no such member.
    /// @throws Failure when the object cannot tell.
    [[nodiscard]] std::optional<DISPID> idOf(IDispatch& dispatch, std::size_t nMember);

private:
    struct Known {
        bool bAsked = false;
        std::optional<DISPID> id;
    };

    const ObjectKind* kind_;
    std::vector<Known> aIds_;
};

/// The identifiers of all objects of which a type description says that they are alike. An object without a
/// description, or one that can grow members of its own, is alike to no other: scripts number the members of
/// each object anew.
class MemberIdCache {
public:
    /// @returns what objects like this one share, valid as long as the cache lives; nothing when there are
    /// none.
    [[nodiscard]] MemberIds* sharedIds(const ObjectKind& kind, IDispatch& dispatch);

private:
    struct Described {
        GUID guid;
        halvane::com::ComPtr<ITypeInfo> pTypeInfo; // that of the first object, which spares the others' guid
        std::unordered_map<const ObjectKind*, MemberIds> idsOfKind;
    };

    [[nodiscard]] Described* find(ITypeInfo& typeInfo);

    std::deque<Described> described_; // whose places in memory stay
};

} // namespace halvane::host::com
