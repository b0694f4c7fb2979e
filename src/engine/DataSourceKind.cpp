#include "engine/DataSourceKind.h"

#include "collection/Text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace halvane {

DataSourceKind dataSourceKindOf(std::string_view sDataSource) {
    constexpr std::array<std::pair<std::string_view, DataSourceKind>, 20> kinds{{
        {"Map", DataSourceKind::Map},
        {"FeatureLayer", DataSourceKind::FeatureLayer},
        {"MapLayer", DataSourceKind::MapLayer},
        {"Feature", DataSourceKind::Feature},
        {"FeatureTable", DataSourceKind::FeatureTable},
        {"WorkspaceDomain", DataSourceKind::WorkspaceDomain},
        {"Workspace", DataSourceKind::Workspace},
        {"Table", DataSourceKind::Table},
        {"RelatedTable", DataSourceKind::RelatedTable},
        {"TinLayer", DataSourceKind::TinLayer},
        {"RasterLayer", DataSourceKind::RasterLayer},
        {"Relationship", DataSourceKind::Relationship},
        {"SubType", DataSourceKind::SubType},
        {"TinWorkspace", DataSourceKind::TinWorkspace},
        {"RasterWorkspace", DataSourceKind::RasterWorkspace},
        {"Record", DataSourceKind::Record},
        {"RelatedRecord", DataSourceKind::RelatedRecord},
        {"Field", DataSourceKind::Field},
        {"Time", DataSourceKind::Time},
        {"External", DataSourceKind::External},
    }};
    const auto* pKind = std::find_if(kinds.begin(), kinds.end(),
                                     [&](const auto& entry) { return entry.first == sDataSource; });
    if (pKind != kinds.end())
        return pKind->second;
    return trimBlanks(sDataSource).empty() ? DataSourceKind::Blank : DataSourceKind::Other;
}

} // namespace halvane
