#include "host/memory/Table.h"

#include "base/Failure.h"
#include "host/Geometry.h"
#include "host/Tables.h"
#include "host/memory/Subtypes.h"
#include "host/memory/WhereClause.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace halvane::host::memory {

namespace {

std::optional<std::int64_t> wholeNumber(const Value& vValue) {
    if (const auto* lNumber = std::get_if<std::int32_t>(&vValue))
        return *lNumber;
    if (const auto* nNumber = std::get_if<std::int64_t>(&vValue))
        return *nNumber;
    return std::nullopt;
}

} // namespace

TableContents::TableContents(std::string sName, std::vector<FieldDefinition> aFields)
    : sName_(std::move(sName)), pFields_(std::make_shared<MemoryFields>(std::move(aFields))) {}

std::int64_t TableContents::addRow(std::vector<Value> aValues) {
    auto pRow = std::make_shared<RowData>();
    pRow->pFields = pFields_;
    pRow->aValues = std::move(aValues);
    pRow->nObjectId = static_cast<std::int64_t>(aRows_.size() + 1);
    const auto nIdField = static_cast<std::size_t>(pFields_->indexOfType(FieldType::Oid));
    // The index -1 of a table without identifiers is beyond all values.
    if (nIdField < pRow->aValues.size())
        pRow->nObjectId = wholeNumber(pRow->aValues[nIdField]).value_or(pRow->nObjectId);
    aRows_.push_back(pRow);
    return pRow->nObjectId;
}

void TableContents::setBytes(std::string_view sFieldName, std::vector<std::byte> aBytes) {
    const std::int32_t lField = pFields_->indexOfName(sFieldName);
    if (lField < 0 || aRows_.empty())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    aRows_.back()->bytesByField[lField] = std::move(aBytes);
}

std::vector<RowDataPtr> TableContents::search(const GisQueryFilter* pFilter) {
    std::vector<RowDataPtr> aFound;
    if (pFilter != nullptr)
        aWhereClauses_.push_back(pFilter->sWhereClause);
    if (pFilter == nullptr || pFilter->sWhereClause.empty()) {
        aFound.assign(aRows_.begin(), aRows_.end());
    } else {
        const WhereClause clause(pFilter->sWhereClause, *pFields_);
        std::copy_if(aRows_.begin(), aRows_.end(), std::back_inserter(aFound),
                     [&](const auto& pRow) { return clause.matches(*pRow); });
    }
    return aFound;
}

std::vector<RowDataPtr> TableContents::rowsWithIds(const std::vector<std::int64_t>& aIds) const {
    std::vector<RowDataPtr> aFound;
    for (const std::int64_t nId : aIds)
        std::copy_if(aRows_.begin(), aRows_.end(), std::back_inserter(aFound),
                     [nId](const auto& pRow) { return pRow->nObjectId == nId; });
    return aFound;
}

MemoryTablePtr MemoryTable::make(std::string sName, std::vector<FieldDefinition> aFields) {
    return std::make_shared<MemoryTable>(std::move(sName), std::move(aFields));
}

MemoryFeatureClass::MemoryFeatureClass(std::string sName, ShapeType shapeType,
                                       std::vector<FieldDefinition> aFields)
    : MemoryTableOf(std::move(sName), std::move(aFields)), shapeType_(shapeType),
      pSubtypes_(MemorySubtypes::make({}, 0)) {}

MemoryFeatureClassPtr MemoryFeatureClass::make(std::string sName, ShapeType shapeType,
                                               std::vector<FieldDefinition> aFields) {
    return std::make_shared<MemoryFeatureClass>(std::move(sName), shapeType, std::move(aFields));
}

GisCursorPtr MemoryFeatureClass::searchWithoutShapes() {
    pass("GisTable", "search");
    ++nWithoutShapes_;
    return std::make_shared<MemoryCursor>(contents_.search(nullptr), script(), Shapes::Unread);
}

std::int64_t MemoryFeatureClass::featureCount() const {
    pass("GisFeatureClass", "featureCount");
    return static_cast<std::int64_t>(contents().rowCount());
}

std::int32_t MemoryFeatureClass::shapeType() const {
    pass("GisFeatureClass", "shapeType");
    return static_cast<std::int32_t>(shapeType_);
}

GisSpatialReferencePtr MemoryFeatureClass::spatialReference() const {
    pass("GisFeatureClass", "spatialReference");
    return pReference_;
}

GisSubtypesPtr MemoryFeatureClass::subtypes() const {
    pass("GisFeatureClass", "subtypes");
    return pSubtypes_;
}

} // namespace halvane::host::memory
