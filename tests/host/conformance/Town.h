#pragma once

// The small map on which every host is tested, as plain data. A host provides it in its own way, and tells
// the tests where its town differs from the common one: in the order or the lengths of fields, say.

#include "host/Domains.h"
#include "host/Fields.h"
#include "host/Geometry.h"
#include "host/SpatialReference.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::test::conformance {

struct TownField {
    std::string sName;
    std::string sAlias; ///< "": the field has none of its own
    host::FieldType type = host::FieldType::String;
    std::int32_t lLength = 0; ///< of texts alone
};

struct TownShape {
    host::ShapeType type = host::ShapeType::Null;
    double dLength = 0;
    std::vector<std::vector<host::PointValues>> aParts;
};

struct TownRow {
    std::int64_t nObjectId = 0;
    /// By the names of their fields. Identifier and shape stand apart; a field that is not named is null.
    std::map<std::string, Value> values;
    std::map<std::string, std::vector<std::byte>> bytes;
    std::optional<TownShape> shape;
};

struct TownTable {
    std::string sName;
    std::vector<TownField> aFields; ///< the identifier's among them, and a feature class's shape
    std::vector<TownRow> aRows;

    [[nodiscard]] std::int32_t indexOf(std::string_view sField) const; ///< -1 when there is none
    [[nodiscard]] std::int32_t indexOf(host::FieldType type) const;
};

struct TownDomain {
    std::string sName;
    std::string sDescription;
    host::FieldType fieldType = host::FieldType::Integer;
    std::int32_t lMergePolicy = 0;
    std::int32_t lSplitPolicy = 0;
    std::vector<host::CodedValue> aCodes;          ///< of a domain of codes
    std::optional<std::pair<Value, Value>> bounds; ///< of a range
};

struct TownSubtypes {
    /// What one field has in one subtype.
    struct FieldRule {
        std::int32_t lCode = 0;
        std::string sField;
        std::string sDomain;
        Value vDefault;
    };
    std::string sField;
    std::int32_t lDefaultCode = 0;
    std::vector<std::pair<std::int32_t, std::string>> aSubtypes;
    std::vector<FieldRule> aRules;
};

struct TownRelationshipClass {
    std::string sName, sForwardPathLabel, sBackwardPathLabel, sFeatureDatasetName;
    bool bAttributed = false;
    bool bComposite = false;
    std::int32_t lNotification = 1;
    std::int32_t lCardinality = 1;
    std::string sOriginClassName, sDestinationClassName;
    std::string sOriginPrimaryKey, sOriginForeignKey, sDestinationPrimaryKey, sDestinationForeignKey;
};

struct TownReference {
    std::string sFirstLine; ///< of the description
    std::optional<host::XyDomain> xyDomain;
    std::optional<host::MeasureDomain> zDomain, mDomain;
    std::string sCode;
    bool bNorthFirst = false;
};

/// A registered reference, and where points of the roads lie in it.
struct TownTransformation {
    std::string sCode;
    host::PointValues from, to; ///< with a height and a measure
    host::PointValues nowhere;  ///< has no place in it
};

/// A feature layer shows the roads, a raster layer the photograph, a TIN layer the relief.
struct TownLayer {
    enum class Kind { Feature, Raster, Tin, Group, Other };
    Kind kind = Kind::Feature;
    std::string sName;
    std::vector<TownLayer> aMembers;     ///< of a group
    std::vector<std::int64_t> aSelected; ///< identifiers of the selected features, in this order
};

/// A where clause, and the identifiers of the rows that satisfy it.
struct TownClause {
    std::string sWhere;
    std::vector<std::int64_t> aIds;
};

struct Town {
    TownTable roads; ///< polylines
    TownTable signs; ///< a plain table
    std::vector<TownDomain> aDomains;
    TownSubtypes subtypes; ///< of the roads
    TownRelationshipClass relationshipClass;
    TownReference mapReference;
    TownReference roadsReference;
    TownTransformation transformation;
    std::vector<TownLayer> aLayers;
    std::vector<TownClause> aRoadClauses;
    std::vector<std::string> aRejectedClauses; ///< of the roads
};

/// The common town: what a host gives unless it says otherwise.
[[nodiscard]] Town commonTown();

} // namespace halvane::test::conformance
