#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace halvane {

/// Finds keys ignoring case in a long list of keys that it does not own. Every entry has a serial number that
/// it keeps for life, so a removal leaves the other entries' index untouched; serials ascend with positions.
class KeyIndex {
public:
    /// Indexes the keys as they stand.
    explicit KeyIndex(const std::vector<std::string>& aKeys);

    /// The offset (from 0) of the key that equals `sKey` ignoring case; -1 when none.
    [[nodiscard]] std::ptrdiff_t find(std::string_view sKey, const std::vector<std::string>& aKeys) const;
    /// To be called with every key that is about to be appended to the list. Strong guarantee.
    void append(std::string_view sKey);
    /// To be called with every key before it leaves its offset.
    void remove(std::size_t nOffset, std::string_view sKey) noexcept;

private:
    struct Identity {
        std::size_t operator()(std::size_t nHash) const noexcept { return nHash; }
    };

    std::unordered_multimap<std::size_t, std::uint64_t, Identity> serialsByHash_;
    std::vector<std::uint64_t> aSerials_;
    std::uint64_t nNextSerial_ = 0;
};

} // namespace halvane
