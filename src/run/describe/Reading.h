#pragma once

#include "base/Failure.h"
#include "telling/Interruption.h"

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace halvane {

/// An orderly end was asked for: nothing more is read.
struct DescriptionGivenUp {};

/// What the host told when asked, or why it did not.
template<class Fact>
struct Reading {
    std::optional<Fact> fact;
    std::string sWhyNot; ///< only without a fact

    [[nodiscard]] explicit operator bool() const noexcept { return fact.has_value(); }
    [[nodiscard]] const Fact& operator*() const noexcept { return *fact; }
    [[nodiscard]] const Fact* operator->() const noexcept { return &*fact; }
    [[nodiscard]] Fact* operator->() noexcept { return &*fact; }
};

/// A list whose items are asked for one by one: an item that cannot be read leaves the others readable.
template<class Item>
using ReadingList = Reading<std::vector<Reading<Item>>>;

/// Asks; whatever exception the question ends with becomes the reason.
/// @throws DescriptionGivenUp
template<class Question>
[[nodiscard]] auto read(Question&& question) -> Reading<std::decay_t<decltype(question())>> {
    if (interruptionRequested())
        throw DescriptionGivenUp{};
    try {
        return {question(), {}};
    } catch (const DescriptionGivenUp&) {
        throw;
    } catch (...) {
        return {std::nullopt, currentFailure().description()};
    }
}

/// The object itself. @throws Failure with this reason where there is none.
template<class Role>
[[nodiscard]] std::shared_ptr<Role> present(std::shared_ptr<Role> pObject, const char* sWhyNot) {
    if (pObject == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet, sWhyNot);
    return pObject;
}

/// Asks for the items 0 to count() - 1.
template<class Count, class Item>
[[nodiscard]] auto readItems(Count&& count, Item&& item) -> ReadingList<std::decay_t<decltype(item(0))>> {
    return read([&] {
        const auto lCount = count();
        std::vector<Reading<std::decay_t<decltype(item(0))>>> items;
        for (auto lIndex = decltype(lCount){0}; lIndex < lCount; ++lIndex)
            items.push_back(read([&] { return item(lIndex); }));
        return items;
    });
}

/// Asks an enumeration for its items. A failure ends it: what would follow is unknown.
template<class Enumeration, class Describe>
[[nodiscard]] auto readEnumeration(Enumeration& enumeration, Describe&& describe) {
    using Description = std::decay_t<decltype(describe(*enumeration.next()))>;
    std::vector<Reading<Description>> items;
    for (;;) {
        const auto next = read([&] { return enumeration.next(); });
        if (!next) {
            items.push_back({std::nullopt, next.sWhyNot});
            return items;
        }
        if (*next == nullptr)
            return items;
        items.push_back(read([&] { return describe(**next); }));
    }
}

} // namespace halvane
