#pragma once

#include "host/Geometry.h"
#include "host/Tables.h"
#include "host/memory/Rows.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::memory {

/// The fields and rows of a table or feature class.
class TableContents {
public:
    TableContents(std::string sName, std::vector<FieldDefinition> aFields);

    [[nodiscard]] const std::string& name() const noexcept { return sName_; }
    [[nodiscard]] const MemoryFieldsPtr& fields() const noexcept { return pFields_; }
    [[nodiscard]] std::size_t rowCount() const noexcept { return aRows_.size(); }

    /// Appends a row; fields without a value are null. The value of the first field of type Oid becomes the
    /// row's identifier; without one rows count from 1. @returns the identifier.
    std::int64_t addRow(std::vector<Value> aValues);
    /// Gives the last row bytes in a field.
    void setBytes(std::string_view sFieldName, std::vector<std::byte> aBytes);

    /// The rows that satisfy the filter; notes the filter. @throws Failure for a bad filter.
    [[nodiscard]] std::vector<RowDataPtr> search(const GisQueryFilter* pFilter);
    /// The rows with these identifiers, in the identifiers' order.
    [[nodiscard]] std::vector<RowDataPtr> rowsWithIds(const std::vector<std::int64_t>& aIds) const;
    [[nodiscard]] const std::vector<std::string>& whereClauses() const noexcept { return aWhereClauses_; }

private:
    std::string sName_;
    MemoryFieldsPtr pFields_;
    std::vector<std::shared_ptr<RowData>> aRows_;
    std::vector<std::string> aWhereClauses_;
};

/// A table in its role: what is common to tables and feature classes.
template<class Role>
class MemoryTableOf : public Role, protected Scripted {
public:
    MemoryTableOf(std::string sName, std::vector<FieldDefinition> aFields)
        : contents_(std::move(sName), std::move(aFields)) {}

    std::int64_t addRow(std::vector<Value> aValues) { return contents_.addRow(std::move(aValues)); }
    void setBytes(std::string_view sFieldName, std::vector<std::byte> aBytes) {
        contents_.setBytes(sFieldName, std::move(aBytes));
    }
    /// The workspace is not kept alive by its datasets. MemoryWorkspace::add calls this.
    void setWorkspace(const GisWorkspacePtr& pWorkspace) { pWorkspace_ = pWorkspace; }
    /// Every where clause that was searched for, in order, rejected ones included.
    [[nodiscard]] const std::vector<std::string>& whereClauses() const { return contents_.whereClauses(); }
    /// For the host itself and for tests: no host calls.
    [[nodiscard]] const TableContents& contents() const noexcept { return contents_; }

    [[nodiscard]] std::string datasetName() const override {
        pass("GisTable", "datasetName");
        return contents_.name();
    }
    [[nodiscard]] GisFieldsPtr fields() const override {
        pass("GisTable", "fields");
        return contents_.fields();
    }
    [[nodiscard]] GisCursorPtr search(const GisQueryFilter* pFilter) override {
        pass("GisTable", "search");
        return std::make_shared<MemoryCursor>(contents_.search(pFilter), script());
    }
    [[nodiscard]] GisWorkspacePtr workspace() const override {
        pass("GisTable", "workspace");
        return pWorkspace_.lock();
    }

protected:
    TableContents contents_;

private:
    std::weak_ptr<GisWorkspace> pWorkspace_;
};

class MemoryTable final : public MemoryTableOf<GisTable> {
public:
    using MemoryTableOf::MemoryTableOf;
    [[nodiscard]] static std::shared_ptr<MemoryTable> make(std::string sName,
                                                           std::vector<FieldDefinition> aFields);
};
using MemoryTablePtr = std::shared_ptr<MemoryTable>;

/// A feature's shape is the value of its field of type Geometry.
class MemoryFeatureClass final : public MemoryTableOf<GisFeatureClass> {
public:
    MemoryFeatureClass(std::string sName, ShapeType shapeType, std::vector<FieldDefinition> aFields);
    [[nodiscard]] static std::shared_ptr<MemoryFeatureClass> make(std::string sName, ShapeType shapeType,
                                                                  std::vector<FieldDefinition> aFields);

    void setSpatialReference(GisSpatialReferencePtr pReference) { pReference_ = std::move(pReference); }
    /// Without it the class has a subtypes role that holds none. Nothing: it has not even the role.
    void setSubtypes(GisSubtypesPtr pSubtypes) { pSubtypes_ = std::move(pSubtypes); }

    /// Of these rows any look at a shape fails.
    [[nodiscard]] GisCursorPtr searchWithoutShapes() override;
    /// How often that was asked for.
    [[nodiscard]] int searchesWithoutShapes() const noexcept { return nWithoutShapes_; }
    [[nodiscard]] std::int64_t featureCount() const override;
    [[nodiscard]] std::int32_t shapeType() const override;
    [[nodiscard]] GisSpatialReferencePtr spatialReference() const override;
    [[nodiscard]] GisSubtypesPtr subtypes() const override;

private:
    ShapeType shapeType_;
    GisSpatialReferencePtr pReference_;
    GisSubtypesPtr pSubtypes_;
    int nWithoutShapes_ = 0;
};
using MemoryFeatureClassPtr = std::shared_ptr<MemoryFeatureClass>;

} // namespace halvane::host::memory
