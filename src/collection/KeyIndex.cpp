#include "collection/KeyIndex.h"

#include "base/Text.h"

#include <algorithm>

namespace halvane {

KeyIndex::KeyIndex(const std::vector<std::string>& aKeys) {
    serialsByHash_.reserve(aKeys.size());
    aSerials_.reserve(aKeys.size());
    for (const std::string& sKey : aKeys)
        append(sKey);
}

std::ptrdiff_t KeyIndex::find(std::string_view sKey, const std::vector<std::string>& aKeys) const {
    const auto [first, last] = serialsByHash_.equal_range(hashIgnoringCase(sKey));
    for (auto it = first; it != last; ++it) {
        const auto nOffset =
            std::lower_bound(aSerials_.begin(), aSerials_.end(), it->second) - aSerials_.begin();
        if (equalIgnoringCase(aKeys[static_cast<std::size_t>(nOffset)], sKey))
            return nOffset;
    }
    return -1;
}

void KeyIndex::append(std::string_view sKey) {
    aSerials_.push_back(nNextSerial_);
    if (!sKey.empty()) {
        try {
            serialsByHash_.emplace(hashIgnoringCase(sKey), nNextSerial_);
        } catch (...) {
            aSerials_.pop_back();
            throw;
        }
    }
    ++nNextSerial_;
}

void KeyIndex::remove(std::size_t nOffset, std::string_view sKey) noexcept {
    const auto serial = aSerials_.begin() + static_cast<std::ptrdiff_t>(nOffset);
    const auto [first, last] = serialsByHash_.equal_range(hashIgnoringCase(sKey));
    const auto entry = std::find_if(first, last, [&](const auto& pair) { return pair.second == *serial; });
    if (entry != last)
        serialsByHash_.erase(entry);
    aSerials_.erase(serial);
}

} // namespace halvane
