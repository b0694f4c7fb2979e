// Writes the field values of one row, and makes texts of values.

#include "base/Numbers.h"
#include "base/Text.h"
#include "engine/ModExporter.h"
#include "engine/second/Inherited.h"
#include "exporters/RowValue.h"
#include "exporters/second/FormattedValue.h"
#include "host/Application.h"

#include <algorithm>

namespace halvane {

namespace {

bool isFloatingPoint(std::int32_t lTypeCode) {
    return lTypeCode == static_cast<std::int32_t>(host::FieldType::Single) ||
           lTypeCode == static_cast<std::int32_t>(host::FieldType::Double);
}

/// A value of a row as a number. @throws Failure TypeMismatch for one that is none.
double asDouble(const ValueView& value, const host::GisRow& row, std::int32_t lIndex) {
    if (const auto* dDouble = std::get_if<double>(&value))
        return *dDouble;
    if (const auto* fSingle = std::get_if<float>(&value))
        return static_cast<double>(*fSingle);
    return rowNumber(row, lIndex, value);
}

std::int32_t indexOfField(ExportState& state, const host::GisFields& fields, std::string_view sIdentity,
                          std::string_view sIdentityValue) {
    if (sIdentity == "TagName")
        return fields.findFieldByAliasName(LookupFieldAlias(state, state.oSharedNode, sIdentityValue));
    return fields.findField(sIdentityValue);
}

/// The text of a row's value: floating-point fields through FormatNumber, null as "". Numbers and dates need
/// no escaping.
FieldText rowValueText(ExportState& state, const host::GisRow& row, const FoundField& field,
                       std::int32_t lDecimalPlaces) {
    const ValueView value = row.value(field.lIndex);
    if (state.pInherited != nullptr)
        if (const auto text = formattedRowValue(state, row, field, value, lDecimalPlaces))
            return *text;
    if (isFloatingPoint(field.lTypeCode))
        return isNull(value) ? FieldText()
                             : FormatNumber(state, asDouble(value, row, field.lIndex), lDecimalPlaces);
    if (const auto* pText = std::get_if<std::string_view>(&value))
        return {*pText, TextKind::Any};
    state.sValueText.clear();
    appendRowText(state.sValueText, row, field.lIndex, value);
    return {state.sValueText, TextKind::Plain};
}

/// Notices once for each set of fields that an attribute bears the name which asks for the identifier.
/// Nothing depends on it: a host that fails to answer changes nothing.
void noteAttributeOfThatName(const ExportState& state, const ControlNode& control, std::string_view sName,
                             const host::GisRow& row) {
    try {
        const host::GisFields& fields = row.fields();
        if (control.nFieldsWithIdentifier == fields.serialNumber())
            return;
        control.nFieldsWithIdentifier = fields.serialNumber();
        const std::int32_t lIndex = fields.findField(sName);
        if (lIndex >= 0 && fields.field(lIndex).typeCode() != static_cast<std::int32_t>(host::FieldType::Oid))
            state.notice(Notice::IdentifierWritten, sName);
    } catch (const Failure&) {
        return;
    }
}

/// Whether an object identifier is asked for by name: the variant for features alone knows it.
enum class ObjectIds { Known, Unknown };

void exportRecord(ExportState& state, const ControlNode& record, const OutputElement& oOutput,
                  const GisRowPtr& pRow, std::int32_t lDecimalPlaces, ObjectIds objectIds) {
    if (pRow == nullptr)
        return;
    for (const ControlNode& child : childrenOf(record)) {
        const ActiveNodeScope scope(state, child);
        if (objectIds == ObjectIds::Known && namesObjectId(child.own.sIdentityValue))
            writeChildValue(state, child, oOutput,
                            ObjectIdText(state, child, child.own.sIdentityValue, *pRow));
        else
            writeChildValue(state, child, oOutput,
                            RecordFieldText(state, *pRow, child.own.sIdentity, child.own.sIdentityValue,
                                            lDecimalPlaces, child.valueField)
                                .sText);
    }
}

} // namespace

bool namesObjectId(std::string_view sIdentityValue) {
    return equalIgnoringCase(sIdentityValue, "OBJECTID") || equalIgnoringCase(sIdentityValue, "OID");
}

std::string ObjectIdText(const ExportState& state, const ControlNode& control,
                         std::string_view sIdentityValue, const host::GisRow& row) {
    if (state.options.pObserver != nullptr)
        noteAttributeOfThatName(state, control, sIdentityValue, row);
    return std::to_string(row.objectId());
}

FieldText FormatNumber(ExportState& state, double dValue, std::int32_t lDecimalPlaces) {
    constexpr std::int32_t allDecimals = 15;
    std::string& sText = state.sValueText;
    bool bWhole = false;
    sText.clear();
    if (state.pInherited != nullptr && state.pInherited->format.formatsNumbers()) {
        state.pInherited->format.appendNumber(sText, dValue, lDecimalPlaces);
        return {sText, TextKind::Plain};
    }
    trapFailures(state, [&] {
        // No decimal places asked for means all of them, on purpose.
        const std::int32_t lDecimals = lDecimalPlaces == 0 ? allDecimals : lDecimalPlaces;
        if (state.pNumericFormat == nullptr || state.lNumericFormatDecimals != lDecimals ||
            state.nNumericFormatGeneration != state.nGeneration) {
            state.pNumericFormat.reset();
            auto pFormat = state.pHost->newNumericFormat();
            pFormat->configure({1, 0, 15, lDecimals, 0, 0, 0});
            state.pNumericFormat = std::move(pFormat);
            state.lNumericFormatDecimals = lDecimals;
            state.nNumericFormatGeneration = state.nGeneration;
            state.bNumericTextsPlain = state.pNumericFormat->yieldsPlainTexts();
        }
        state.pNumericFormat->appendValue(sText, dValue);
        bWhole = true;
    });
    if (!bWhole)
        sText.clear();
    return {sText, state.bNumericTextsPlain ? TextKind::Plain : TextKind::Any};
}

namespace {

/// Whether the field was found in these fields, and nothing has changed since.
bool isKnown(const ExportState& state, const host::GisFields& fields, const FoundField& found) {
    return found.nFields == fields.serialNumber() && found.nGeneration == state.nGeneration &&
           found.pTagNode == state.oSharedNode.data();
}

} // namespace

bool findRowField(ExportState& state, const host::GisRow& row, std::string_view sIdentity,
                  std::string_view sIdentityValue, FoundField& found) {
    const host::GisFields& fields = row.fields();
    if (!isKnown(state, fields, found)) {
        const std::int32_t lIndex = indexOfField(state, fields, sIdentity, sIdentityValue);
        const std::int32_t lTypeCode = lIndex < 0 ? -1 : fields.field(lIndex).typeCode();
        found = {fields.serialNumber(), state.nGeneration, state.oSharedNode.data(), lIndex, lTypeCode};
    }
    if (found.lIndex >= 0)
        return true;
    state.noticeMissingField(sIdentityValue, fields, sIdentity == "TagName");
    return false;
}

FieldText RecordFieldText(ExportState& state, const host::GisRow& row, std::string_view sIdentity,
                          std::string_view sIdentityValue, std::int32_t lDecimalPlaces, FoundField& found) {
    if (!findRowField(state, row, sIdentity, sIdentityValue, found))
        return {};
    return rowValueText(state, row, found, lDecimalPlaces);
}

void ExportFieldOfRow(ExportState& state, const ControlNode& control, const OutputElement& oParent,
                      const host::GisRow& row) {
    FieldText value;
    {
        // What fails leaves the element or attribute empty.
        const UntracedNodeScope scope(state, control);
        trapFailures(state, [&] {
            value = RecordFieldText(state, row, control.merged.sIdentity, control.merged.sIdentityValue,
                                    control.decimalPlaces.value(), control.valueField);
        });
    }
    if (!control.bTargetsAttribute) {
        oParent.appendElement(*control.pName, value.sText, value.kind);
        return;
    }
    oParent.setAttribute(*control.pName, value.sText, value.kind);
    checkAttributeName(state, control, oParent);
}

void ExportFeatureRecord(ExportState& state, const ControlNode& record, const OutputElement& oOutput,
                         const GisRowPtr& pRow) {
    const ActiveNodeScope scope(state, record);
    trapFailures(state, [&] {
        if (state.pFeatureLayer != nullptr)
            exportRecord(state, record, oOutput, pRow, record.ownDecimalPlaces.value(), ObjectIds::Known);
    });
}

void ExportTableRecord(ExportState& state, const ControlNode& record, const OutputElement& oOutput,
                       const GisRowPtr& pRow, std::int32_t lDecimalPlaces) {
    const ActiveNodeScope scope(state, record);
    trapFailures(state, [&] {
        if (state.pTable != nullptr)
            exportRecord(state, record, oOutput, pRow, lDecimalPlaces, ObjectIds::Unknown);
    });
}

} // namespace halvane
