// Writes the field values of one row, and makes texts of values.

#include "collection/Numbers.h"
#include "collection/Text.h"
#include "engine/ModExporter.h"

#include <algorithm>

namespace halvane {

namespace {

bool isFloatingPoint(std::int32_t lTypeCode) {
    return lTypeCode == static_cast<std::int32_t>(host::FieldType::Single) ||
           lTypeCode == static_cast<std::int32_t>(host::FieldType::Double);
}

/// @throws Failure TypeMismatch for a value that is no number.
double asDouble(const ValueView& value) {
    if (const auto* dDouble = std::get_if<double>(&value))
        return *dDouble;
    if (const auto* fSingle = std::get_if<float>(&value))
        return static_cast<double>(*fSingle);
    return toDouble(toText(value));
}

std::int32_t findRecordField(ExportState& state, const host::GisRow& row, std::string_view sIdentity,
                             std::string_view sIdentityValue) {
    if (sIdentity == "TagName")
        return row.fields().findFieldByAliasName(LookupFieldAlias(state, state.oSharedNode, sIdentityValue));
    return row.fields().findField(sIdentityValue);
}

using FieldText = std::string (*)(ExportState&, const host::GisRow&, const ClsXMLNode&, std::int32_t);

std::string featureFieldText(ExportState& state, const host::GisRow& row, const ClsXMLNode& child,
                             std::int32_t lDecimalPlaces) {
    if (namesObjectId(child.IdentityValue()))
        return std::to_string(row.objectId());
    return RecordFieldText(state, row, child.Identity(), child.IdentityValue(), lDecimalPlaces);
}

std::string tableFieldText(ExportState& state, const host::GisRow& row, const ClsXMLNode& child,
                           std::int32_t lDecimalPlaces) {
    return RecordFieldText(state, row, child.Identity(), child.IdentityValue(), lDecimalPlaces);
}

void exportRecord(ExportState& state, Node oRecordNode, Node oOutputElement, const GisRowPtr& pRow,
                  std::int32_t lDecimalPlaces, FieldText fnText) {
    if (pRow == nullptr)
        return;
    for (Node oChild = firstControlChild(state, oRecordNode); oChild;
         oChild = nextControlSibling(state, oChild)) {
        const ActiveNodeScope scope(state, oChild);
        const ClsXMLNode child(oChild);
        writeChildValue(state, child, oOutputElement, fnText(state, *pRow, child, lDecimalPlaces));
    }
}

} // namespace

bool namesObjectId(std::string_view sIdentityValue) {
    return equalIgnoringCase(sIdentityValue, "OBJECTID") || equalIgnoringCase(sIdentityValue, "OID");
}

std::int32_t decimalPlacesOf(std::string_view sText) {
    return isNumeric(sText) ? toInt32(sText) : 0;
}

std::string FormatNumber(ExportState& state, double dValue, std::int32_t lDecimalPlaces) {
    constexpr std::int32_t allDecimals = 15;
    std::string sText;
    trapFailures(state, [&] {
        const auto pFormat = state.pHost->newNumericFormat();
        // No decimal places asked for means all of them, on purpose.
        pFormat->configure({1, 0, 15, lDecimalPlaces == 0 ? allDecimals : lDecimalPlaces, 0, 0, 0});
        sText = pFormat->valueToText(dValue);
    });
    return sText;
}

std::string RowValueText(ExportState& state, const host::GisRow& row, std::int32_t lFieldIndex,
                         std::int32_t lDecimalPlaces) {
    const ValueView value = row.value(lFieldIndex);
    if (!isFloatingPoint(row.fields().field(lFieldIndex).typeCode()))
        return toText(value);
    return isNull(value) ? std::string() : FormatNumber(state, asDouble(value), lDecimalPlaces);
}

std::string RecordFieldText(ExportState& state, const host::GisRow& row, std::string_view sIdentity,
                            std::string_view sIdentityValue, std::int32_t lDecimalPlaces) {
    const std::int32_t lIndex = findRecordField(state, row, sIdentity, sIdentityValue);
    if (lIndex < 0) {
        state.notice(Notice::FieldNotFound, sIdentityValue);
        return {};
    }
    return RowValueText(state, row, lIndex, lDecimalPlaces);
}

void ExportFeatureRecord(ExportState& state, Node oRecordNode, Node oOutputElement, const GisRowPtr& pRow) {
    const ActiveNodeScope scope(state, oRecordNode);
    trapFailures(state, [&] {
        if (state.pFeatureLayer != nullptr)
            exportRecord(state, oRecordNode, oOutputElement, pRow,
                         decimalPlacesOf(ClsXMLNode(oRecordNode).DecimalPL()), featureFieldText);
    });
}

void ExportTableRecord(ExportState& state, Node oRecordNode, Node oOutputElement, const GisRowPtr& pRow,
                       std::int32_t lDecimalPlaces) {
    const ActiveNodeScope scope(state, oRecordNode);
    trapFailures(state, [&] {
        if (state.pTable != nullptr)
            exportRecord(state, oRecordNode, oOutputElement, pRow, lDecimalPlaces, tableFieldText);
    });
}

} // namespace halvane
