#pragma once

#include "host/DataHost.h"

#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <string>

namespace halvane::host::gdal {

/// The loops over whole tables that have begun and not ended, for those who tell how far an export is.
class LoopsUnderWay {
public:
    /// How many rows a loop will have; asked once, and only where somebody looks.
    using CountAll = std::function<std::optional<std::int64_t>()>;

    struct Loop {
        std::uint64_t nNumber;
        std::string sTable;
        CountAll countAll;
        std::int64_t lRead = 0;
        bool bCounted = false;
        std::optional<std::int64_t> lAll{};
    };
    using Place = std::list<Loop>::iterator;

    [[nodiscard]] Place begin(std::string sTable, CountAll countAll);
    void end(Place place) { loops_.erase(place); }

    /// The one that began first. Nothing where there is none.
    [[nodiscard]] std::optional<RowsUnderWay> outermost();

private:
    std::list<Loop> loops_;
    std::uint64_t nLast_ = 0;
};

} // namespace halvane::host::gdal
