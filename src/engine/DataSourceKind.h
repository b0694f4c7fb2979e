#pragma once

#include <cstdint>
#include <string_view>

namespace halvane {

/// The kinds of data source that the engine tells apart by exact letter case.
enum class DataSourceKind : std::uint8_t {
    Blank, ///< no kind: "" or blanks
    Other, ///< any other text; layers and geometry kinds are recognised in other letter cases too
    Map,
    FeatureLayer,
    MapLayer,
    Feature,
    FeatureTable,
    WorkspaceDomain,
    Workspace,
    Table,
    RelatedTable,
    TinLayer,
    RasterLayer,
    Relationship,
    SubType,
    TinWorkspace,
    RasterWorkspace,
    Record,
    RelatedRecord,
    Field,
    Time,
    External,
};

[[nodiscard]] DataSourceKind dataSourceKindOf(std::string_view sDataSource);

} // namespace halvane
