#pragma once

#include "base/Value.h"
#include "engine/Cell.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace halvane {

struct ExportState;
struct ResolutionRequest;

/// The kinds of data source, told apart by exact letter case unless said otherwise.
enum class DataSourceKind : std::uint8_t {
    Map,
    MapLayer,
    FeatureLayer,
    RasterLayer,
    TinLayer,
    Feature,
    FeatureTable,
    FeatureClass,
    FeatureAttributes,
    Table,
    Record,
    RelatedTable,
    RelatedRecord,
    Workspace,
    WorkspaceDomain,
    Relationship,
    TinWorkspace,
    RasterWorkspace,
    Field,
    SubType,
    SubTypeFieldInfo, ///< in any letter case
    GeometryLength,
    GeometryPoint,
    GeometryFromNode,
    GeometryToNode,
    GeometryEndPoint,
    GeometryVertice,
    Time,
    External,
    LayerInOtherCase, ///< "MapLayer" or "FeatureLayer"
    SubTypeInOtherCase,
    OtherGeometry, ///< any other text with "geometry" in it, in any letter case
    Blank,         ///< no kind: "" or blanks
    Other,         ///< any other text
};
inline constexpr std::size_t nDataSourceKinds = static_cast<std::size_t>(DataSourceKind::Other) + 1;

/// Where the object of a kind is found.
enum class Origin : std::uint8_t {
    Nowhere,
    Map,       ///< by its name, in the map or at a data location
    Enclosing, ///< it belongs to what an enclosing node has found
    Workspace, ///< of the current layer, else at the data location
};

/// Whether the same map and layer yield the same object again.
enum class Keeping : std::uint8_t {
    Never,       ///< an enumeration has a position; a TIN's workspace depends on something else
    UnlessByTag, ///< a tag also sets the current tag node
    Always,
};

/// Whose row a leaf of a kind takes its value from.
enum class RowUse : std::uint8_t { None, Feature, Record };

/// Whether a leaf can be streamed.
enum class LeafStreaming : std::uint8_t {
    Never,
    IntoElement, ///< further values become siblings, so not into an attribute
    OneValue,    ///< unless it asks for a spatial reference, which can be written several times
};

/// Whether the items of a repeated group can be streamed.
enum class GroupStreaming : std::uint8_t {
    Never,
    Places,        ///< when what its children write has places of its own
    Content,       ///< when all that its children write can stream
    RecordContent, ///< the same where a repeated child is taken as an ordinary one
};

/// What of a shape a kind writes.
enum class ShapePart : std::uint8_t { None, Length, Start, End, Vertices, Unknown };

/// The object that stands behind a kind.
struct DataSourceObject {
    using Resolve = Value (*)(const ResolutionRequest&);
    using MakeCurrent = void (*)(ExportState&, const Value&);

    Cell<Resolve> fnResolve; ///< nothing: there is none
    Cell<Origin> origin;
    Cell<Keeping> keeping;
    Cell<MakeCurrent> fnMakeCurrent; ///< nothing: there is no current object of this kind
    Cell<bool> bCurrentInWalk;       ///< the walker makes it current, not only those who write values
};

/// Whether what is written inside an item can go straight to the spool.
struct DataSourceStreaming {
    Cell<LeafStreaming> leaf;
    Cell<GroupStreaming> group; ///< repeated
};

/// What the engine knows of a kind.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): its cells cannot be left out
struct DataSourceRow {
    Cell<DataSourceKind> kind;
    Cell<std::string_view> sWord; ///< in a control file; "" for kinds that are no single word
    DataSourceObject object;
    Cell<RowUse> rowUse;
    DataSourceStreaming streaming;
    Cell<ShapePart> shapePart;
};

/// Whether each row of a table of kinds stands where its kind is looked up.
template<class Table>
[[nodiscard]] constexpr bool standsInOrder(const Table& table) noexcept {
    std::size_t n = 0;
    for (const auto& row : table)
        if (static_cast<std::size_t>(row.kind.content()) != n++)
            return false;
    return n == nDataSourceKinds;
}

[[nodiscard]] DataSourceKind dataSourceKindOf(std::string_view sDataSource);
[[nodiscard]] const DataSourceRow& rowOf(DataSourceKind kind) noexcept;

/// Whether what stands inside a repeated node of the kind is read by the kind itself, and writes properties.
[[nodiscard]] bool listsThings(DataSourceKind kind) noexcept;
/// What a control file may ask for, in one fixed order.
[[nodiscard]] std::span<const std::string_view> dataSourceWords() noexcept;

} // namespace halvane
