#include "host/gdal/source/Queries.h"

#include "base/Text.h"
#include "host/gdal/source/Errors.h"

#include <vector>

namespace halvane::host::gdal {

std::string QueryRow::text(int lColumn) const {
    return optionalText(lColumn).value_or("");
}

std::optional<std::string> QueryRow::optionalText(int lColumn) const {
    if (lColumn >= feature_.GetFieldCount() || !feature_.IsFieldSetAndNotNull(lColumn))
        return std::nullopt;
    return std::string(feature_.GetFieldAsString(lColumn));
}

std::int32_t QueryRow::whole(int lColumn) const {
    return feature_.GetFieldAsInteger(lColumn);
}

ResultSet::ResultSet(GDALDataset& dataset, const std::string& sSql)
    : dataset_(dataset), pLayer_(dataset.ExecuteSQL(sSql.c_str(), nullptr, nullptr)) {}

ResultSet::~ResultSet() {
    try {
        if (pLayer_ != nullptr)
            dataset_.ReleaseResultSet(pLayer_);
    } catch (const std::exception&) {
        // The library had no memory for a reset: the dataset is good without it.
    }
}

void query(GDALDataset& dataset, const std::string& sSql, const std::function<void(const QueryRow&)>& take) {
    const ErrorScope errors;
    // Read to the end first: what is done with a row may ask the same dataset again.
    std::vector<OGRFeatureUniquePtr> rows;
    {
        const ResultSet result(dataset, sSql);
        while (OGRFeatureUniquePtr pFeature{result.layer() == nullptr ? nullptr
                                                                      : result.layer()->GetNextFeature()})
            rows.push_back(std::move(pFeature));
    }
    for (const OGRFeatureUniquePtr& pFeature : rows)
        take(QueryRow(*pFeature));
}

std::string serverTable(const std::string& sLayer) {
    const std::size_t nDot = sLayer.find('.');
    return nDot == std::string::npos
               ? quotedName(sLayer)
               : quotedName(sLayer.substr(0, nDot)) + "." + quotedName(sLayer.substr(nDot + 1));
}

} // namespace halvane::host::gdal
