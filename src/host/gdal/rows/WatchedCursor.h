#pragma once

#include "host/Rows.h"
#include "host/gdal/source/LoopsUnderWay.h"

#include <memory>
#include <optional>
#include <string>

namespace halvane::host::gdal {

/// The rows of another cursor, counted among the loops that are under way until its end.
class WatchedCursor final : public GisCursor {
public:
    WatchedCursor(GisCursorPtr pRows, std::shared_ptr<LoopsUnderWay> pLoops, std::string sTable,
                  LoopsUnderWay::CountAll countAll)
        : pRows_(std::move(pRows)), pLoops_(std::move(pLoops)),
          loop_(pLoops_->begin(std::move(sTable), std::move(countAll))) {}
    WatchedCursor(const WatchedCursor&) = delete;
    WatchedCursor& operator=(const WatchedCursor&) = delete;
    ~WatchedCursor() override { end(); }

    [[nodiscard]] GisRowPtr nextRow() override {
        GisRowPtr pRow = pRows_->nextRow();
        if (pRow == nullptr)
            end();
        else if (loop_)
            ++(*loop_)->lRead;
        return pRow;
    }

private:
    void end() {
        if (loop_)
            pLoops_->end(*loop_);
        loop_.reset();
    }

    GisCursorPtr pRows_;
    std::shared_ptr<LoopsUnderWay> pLoops_;
    std::optional<LoopsUnderWay::Place> loop_;
};

} // namespace halvane::host::gdal
