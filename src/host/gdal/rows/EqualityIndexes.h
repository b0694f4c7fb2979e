#pragma once

#include "host/Forward.h"
#include "host/gdal/facts/Fields.h"
#include "host/gdal/rows/EqualityIndex.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace halvane::host::gdal {

/// The indexes of one table. From the second clause on a field that was answered, an index answers.
class EqualityIndexes {
public:
    /// Nothing when the format's own filter must be asked.
    [[nodiscard]] GisCursorPtr search(const EqualityClause& clause, const GdalFieldsPtr& pFields,
                                      const std::function<LayerHandle()>& openLayer);
    /// Notes that the format's own filter took the clause.
    void noteAnswered(const EqualityClause& clause);

private:
    struct Entry {
        bool bRefused = false; // once and for all
        std::shared_ptr<EqualityIndex> pIndex;
    };
    std::map<std::pair<std::string, bool>, Entry> entries_; // by field and kind of literal
};

} // namespace halvane::host::gdal
