#pragma once

#include "host/Fields.h"
#include "host/Rows.h"
#include "host/com/HostObject.h"

#include <cstddef>
#include <string>
#include <vector>

namespace halvane::host::com {

/// A field; its names are asked for once, since fields are looked for by them.
class ComField final : public GisField, public HostObject {
public:
    ComField(ContextPtr pContext, ComPtr<IDispatch> pDispatch);

    [[nodiscard]] std::string_view name() const override { return sName_; }
    [[nodiscard]] std::string_view aliasName() const override { return sAlias_; }
    [[nodiscard]] std::int32_t typeCode() const override { return object().integer("FieldType"); }
    [[nodiscard]] std::int32_t length() const override { return object().integer("Length"); }
    [[nodiscard]] std::int32_t precision() const override { return object().integer("Precision"); }
    [[nodiscard]] bool isNullable() const override { return object().flag("IsNullable"); }
    [[nodiscard]] bool isEditable() const override { return object().flag("IsEditable"); }

private:
    std::string sName_;
    std::string sAlias_;
};

/// The fields of a table as they were when they were asked for.
class ComFields final : public GisFields {
public:
    /// @param table has the member "Fields".
    explicit ComFields(const LateBound& table);

    [[nodiscard]] std::int32_t count() const override { return static_cast<std::int32_t>(aFields_.size()); }
    [[nodiscard]] const GisField& field(std::int32_t lIndex) const override;
    [[nodiscard]] std::int32_t findField(std::string_view sName) const override;
    [[nodiscard]] std::int32_t findFieldByAliasName(std::string_view sAlias) const override;

private:
    using Name = std::string_view (GisField::*)() const;
    /// The first field whose name is the one that is sought, ignoring case; -1 when none.
    [[nodiscard]] std::int32_t indexOf(std::string_view sSought, Name name) const;

    std::vector<std::shared_ptr<ComField>> aFields_;
};

/// A row; each value is asked for once.
class ComRow final : public GisRow, public HostObject {
public:
    ComRow(ContextPtr pContext, ComPtr<IDispatch> pDispatch, GisFieldsPtr pFields);

    [[nodiscard]] const GisFields& fields() const override { return *pFields_; }
    [[nodiscard]] ValueView value(std::int32_t lIndex) const override;
    [[nodiscard]] std::int64_t objectId() const override { return object().longInteger("ObjectId"); }
    [[nodiscard]] GisGeometryPtr shape() const override;

private:
    struct Cell {
        Value vValue;
        std::optional<std::vector<std::byte>> aBytes;
    };
    [[nodiscard]] Cell readCell(std::int32_t lIndex) const;
    [[nodiscard]] Value objectIn(std::int32_t lIndex, const VARIANT& held) const;

    GisFieldsPtr pFields_;
    mutable std::vector<std::optional<Cell>> aCells_;
};

/// The rows of a search: an object with "NextRow", or a list.
/// @param rows what the search yielded; nothing is a search without rows.
[[nodiscard]] GisCursorPtr cursorOver(const ContextPtr& pContext, const Variant& rows, GisFieldsPtr pFields);

} // namespace halvane::host::com
