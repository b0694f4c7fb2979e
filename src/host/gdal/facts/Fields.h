#pragma once

#include "host/Fields.h"

#include <ogr_feature.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace halvane::host::gdal {

/// How a column's values are read off a feature.
enum class ColumnKind : std::uint8_t {
    ObjectId,
    Shape,
    Boolean,
    Integer,
    Integer64,
    Single,
    Double,
    Text,
    Date,       ///< with or without a time
    Time,       ///< of day, whatever date the format stores beside it
    DateOrTime, ///< a date with a time, or a time of day: one on the first day that the format knows
    Binary,
    Structured, ///< a list: as text
};

struct Column {
    ColumnKind kind;
    int lColumn;
};

/// What is known of a field, and where its values stand in a feature.
struct FieldFacts {
    std::string sName;
    std::string sAlias; ///< "" without one of its own
    std::int32_t lTypeCode = 0;
    std::int32_t lLength = 0;
    std::int32_t lPrecision = 0;
    bool bNullable = true;
    bool bEditable = true;
    std::string sDomain;                 ///< "" without one
    std::optional<std::string> sDefault; ///< the default value in SQL
    ColumnKind kind = ColumnKind::Text;
    ValueRole role = ValueRole::AsTyped;
    int lColumn = -1; ///< the attribute's index in a feature; -1 for the object identifier and the shape
};

class GdalField : public GisField {
public:
    explicit GdalField(FieldFacts facts) : facts_(std::move(facts)) {}

    [[nodiscard]] const FieldFacts& facts() const { return facts_; }
    [[nodiscard]] std::string_view name() const override { return facts_.sName; }
    [[nodiscard]] std::string_view aliasName() const override {
        return facts_.sAlias.empty() ? facts_.sName : facts_.sAlias;
    }
    [[nodiscard]] std::int32_t typeCode() const override { return facts_.lTypeCode; }
    [[nodiscard]] std::int32_t length() const override { return facts_.lLength; }
    [[nodiscard]] std::int32_t precision() const override { return facts_.lPrecision; }
    [[nodiscard]] bool isNullable() const override { return facts_.bNullable; }
    [[nodiscard]] bool isEditable() const override { return facts_.bEditable; }
    [[nodiscard]] ValueRole valueRole() const override { return facts_.role; }

private:
    FieldFacts facts_;
};

/// What a map document says of a field, over what the data says. Absent members leave the data's own.
struct FieldOverride {
    std::string sPlace; ///< where the map document says it
    std::string sName;
    std::optional<std::string> sAlias;
    std::optional<bool> bEditable;
    std::optional<std::string> sDomain;
    std::optional<std::string> sDefault;
    std::optional<bool> bNullable = {};
    bool bMayLack = false; ///< passed over where the data has no such field
};

/// Changes a shape as a map document says. @throws Failure where it cannot be done.
using ShapeChange = std::function<void(OGRGeometry& shape)>;

/// The fields of one table, shared by its rows: the object identifier, then the shape where there is one,
/// then the attributes in the data's order.
class GdalFields : public GisFields {
public:
    explicit GdalFields(const std::vector<FieldFacts>& fields);

    [[nodiscard]] std::int32_t count() const override;
    [[nodiscard]] const GisField& field(std::int32_t lIndex) const override { return at(lIndex); }
    [[nodiscard]] std::int32_t findField(std::string_view sName) const override;
    [[nodiscard]] std::int32_t findFieldByAliasName(std::string_view sAlias) const override;

    /// @throws Failure SubscriptOutOfRange.
    [[nodiscard]] const GdalField& at(std::int32_t lIndex) const;
    [[nodiscard]] bool hasShape() const { return bShape_; }
    /// Where each field's values stand, for rows: read for every value, hence apart from the fields.
    [[nodiscard]] const std::vector<Column>& columns() const { return columns_; }
    /// The same fields with what a map document says of them.
    /// @throws Failure when there is no field of an override's name.
    [[nodiscard]] std::shared_ptr<const GdalFields> with(const std::vector<FieldOverride>& overrides) const;
    /// The same fields, whose rows change their shapes.
    [[nodiscard]] std::shared_ptr<const GdalFields> withShapes(ShapeChange change) const;
    /// What rows do with a shape that they have read; may be empty.
    [[nodiscard]] const ShapeChange& shapeChange() const { return shapeChange_; }

private:
    struct Hash {
        using is_transparent = void;
        [[nodiscard]] std::size_t operator()(std::string_view sName) const noexcept {
            return std::hash<std::string_view>()(sName);
        }
    };
    // Keys are upper-cased names, and names as they are: a name is mostly asked for as it is written, and is
    // then found without making another text.
    using Index = std::unordered_map<std::string, std::int32_t, Hash, std::equal_to<>>;

    static void add(Index& index, std::string_view sName, std::int32_t lIndex);
    [[nodiscard]] static std::int32_t find(const Index& index, std::string_view sName);

    std::vector<Column> columns_;
    std::deque<GdalField> fields_; // objects do not move
    ShapeChange shapeChange_;
    Index byName_;
    Index byAlias_;
    bool bShape_ = false;
};
using GdalFieldsPtr = std::shared_ptr<const GdalFields>;

/// The type code of an attribute.
[[nodiscard]] FieldType fieldTypeOf(OGRFieldType type, OGRFieldSubType subType);
[[nodiscard]] inline FieldType fieldTypeOf(const OGRFieldDefn& definition) {
    return fieldTypeOf(definition.GetType(), definition.GetSubType());
}

class LayerHandle;
/// The fields of a layer as its data has them.
[[nodiscard]] GdalFieldsPtr fieldsOf(const LayerHandle& layer);

} // namespace halvane::host::gdal
