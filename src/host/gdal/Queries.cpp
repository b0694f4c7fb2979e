#include "host/gdal/Queries.h"

#include "collection/Text.h"
#include "host/gdal/Errors.h"

#include <vector>

namespace halvane::host::gdal {

std::string QueryRow::text(int lColumn) const {
    return optionalText(lColumn).value_or("");
}

std::optional<std::string> QueryRow::optionalText(int lColumn) const {
    if (lColumn >= feature_.GetFieldCount() || feature_.IsFieldSetAndNotNull(lColumn) == 0) {
        return std::nullopt;
    }
    return feature_.GetFieldAsString(lColumn);
}

std::int32_t QueryRow::whole(int lColumn) const {
    return feature_.GetFieldAsInteger(lColumn);
}

void query(GDALDataset& dataset, const std::string& sSql, const std::function<void(const QueryRow&)>& take) {
    const ErrorScope errors;
    OGRLayer* pResult = dataset.ExecuteSQL(sSql.c_str(), nullptr, nullptr);
    if (pResult == nullptr) {
        return;
    }
    // Read to the end first: what is done with a row may ask the same dataset again.
    std::vector<OGRFeatureUniquePtr> rows;
    for (OGRFeatureUniquePtr& pFeature : *pResult) {
        rows.push_back(std::move(pFeature));
    }
    dataset.ReleaseResultSet(pResult);
    for (const OGRFeatureUniquePtr& pFeature : rows) {
        take(QueryRow(*pFeature));
    }
}

std::string quoted(std::string_view sText) {
    return "'" + replaceAll(sText, "'", "''") + "'";
}

} // namespace halvane::host::gdal
