#pragma once

#include "host/gdal/source/Errors.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/Sqlite.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace halvane::host::gdal {

/// Finds the whole numbers of a layer that the types of their fields cannot hold: drivers cut them to the
/// type, with a warning at most.
class NumberCheck {
public:
    /// @param layer outlives the check, which is used by one thread at a time with it.
    explicit NumberCheck(const LayerHandle& layer);

    /// The columns of a feature whose numbers are not those of the data.
    /// @param errors what was reported while it was read, and nothing else.
    [[nodiscard]] std::vector<int> cutNumbersOf(const OGRFeature& feature, const ErrorScope& errors) {
        ++lRows_;
        const bool bSuspect = bAsksDatabase_ || errors.warned() || (!longs_.empty() && hasLimit(feature));
        return bSuspect ? find(feature, errors) : std::vector<int>();
    }

private:
    [[nodiscard]] bool hasLimit(const OGRFeature& feature) const;
    [[nodiscard]] std::vector<int> find(const OGRFeature& feature, const ErrorScope& errors);
    [[nodiscard]] std::vector<int> askDatabase(const OGRFeature& feature);
    [[nodiscard]] bool fileHasLargerNumbers();
    [[nodiscard]] std::string conditionOf(int lColumn) const;
    void prepareQuestions();
    void readAll();

    const LayerHandle& layer_;
    std::vector<int> integers_; // columns of 32 bits
    std::vector<int> longs_;    // columns of 64 bits
    bool bAsksDatabase_ = false;
    bool bPrepared_ = false;
    StatementPtr pOfRow_; // where the database can be asked for one row
    bool bByKey_ = false;
    std::string sOfAll_;
    std::optional<std::unordered_set<std::int64_t>> ids_; // of the rows that have such numbers
    std::int64_t lRows_ = 0;
    std::optional<bool> largerNumbers_;
};

} // namespace halvane::host::gdal
