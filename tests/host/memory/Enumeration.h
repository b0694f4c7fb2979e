#pragma once

#include "host/Domains.h"
#include "host/Relationships.h"
#include "host/memory/Faults.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::host::memory {

/// An enumeration of the host over a list of shared objects.
template<class Interface, class Item>
class MemoryEnumeration final : public Interface, private Scripted {
public:
    /// @param sInterface the name of the interface, a literal.
    MemoryEnumeration(std::string_view sInterface, std::vector<std::shared_ptr<Item>> aItems,
                      std::shared_ptr<FaultScript> pFaults)
        : Scripted(std::move(pFaults)), sInterface_(sInterface), aItems_(std::move(aItems)) {}

    [[nodiscard]] std::shared_ptr<Item> next() override {
        pass(sInterface_, "next");
        return nNext_ < aItems_.size() ? aItems_[nNext_++] : nullptr;
    }

private:
    std::string_view sInterface_;
    std::vector<std::shared_ptr<Item>> aItems_;
    std::size_t nNext_ = 0;
};

} // namespace halvane::host::memory
