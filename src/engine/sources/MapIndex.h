#pragma once

#include "host/Forward.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace halvane {

/// Remembers where in one map's layers and tables names stand, as far as somebody has looked. Each search
/// asks the host the questions of a search from the start in their order, but for those that were answered
/// before: so it finds the same, and fails at the same.
class MapIndex {
public:
    explicit MapIndex(host::GisMapPtr pMap) : pMap_(std::move(pMap)) {}

    [[nodiscard]] const host::GisMapPtr& map() const noexcept { return pMap_; }
    /// As FindLayerByName(). @throws Failure as the host does.
    [[nodiscard]] host::GisLayerPtr findLayer(std::string_view sName);
    /// The first standalone table whose dataset has that name, ignoring case; nothing when none.
    /// @throws Failure as the host does.
    [[nodiscard]] host::GisTablePtr findTable(std::string_view sName);

    /// The names of a list, up to a place.
    class Names {
    public:
        /// The first place of a name with that hash; -1 when there is none.
        [[nodiscard]] std::int32_t placeOf(std::size_t nHash) const;
        /// The places of the members that must be asked again: groups, and what has no name or is not there.
        [[nodiscard]] const std::vector<std::int32_t>& asked() const noexcept { return aAsked_; }
        [[nodiscard]] std::int32_t count() const noexcept { return lCount_; }
        /// The next member's name is known. @param bStays whether it need not be asked again.
        void add(std::size_t nHash, bool bStays);

    private:
        std::unordered_map<std::size_t, std::int32_t> firstByHash_;
        std::vector<std::int32_t> aAsked_;
        std::int32_t lCount_ = 0;
    };

private:
    host::GisMapPtr pMap_;
    Names layers_;
    Names tables_;
};

/// The indexes of the maps that an export works on, few at a time.
class MapIndexes {
public:
    /// @param nGeneration of what the host was when it was asked last: another one ends what is remembered.
    [[nodiscard]] MapIndex& of(const host::GisMapPtr& pMap, std::uint64_t nGeneration);
    void clear() { indexes_.clear(); }

private:
    std::vector<MapIndex> indexes_;
    std::uint64_t nGeneration_ = 0;
};

} // namespace halvane
