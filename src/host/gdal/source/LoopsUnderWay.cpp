#include "host/gdal/source/LoopsUnderWay.h"

#include <exception>
#include <utility>

namespace halvane::host::gdal {

LoopsUnderWay::Place LoopsUnderWay::begin(std::string sTable, CountAll countAll) {
    return loops_.insert(loops_.end(), {++nLast_, std::move(sTable), std::move(countAll)});
}

std::optional<RowsUnderWay> LoopsUnderWay::outermost() {
    if (loops_.empty())
        return std::nullopt;
    Loop& loop = loops_.front();
    if (!std::exchange(loop.bCounted, true)) {
        try {
            loop.lAll = loop.countAll();
        } catch (const std::exception&) {
            // Whoever reads the rows tells what is wrong with them.
        }
    }
    return RowsUnderWay{loop.nNumber, loop.sTable, loop.lRead, loop.lAll};
}

} // namespace halvane::host::gdal
