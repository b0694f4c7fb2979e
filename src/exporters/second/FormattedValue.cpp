#include "exporters/second/FormattedValue.h"

#include "engine/second/Inherited.h"
#include "exporters/second/CodedNames.h"
#include "host/Fields.h"
#include "host/Rows.h"

namespace halvane {

namespace {

/// Appends a value, or tells that the format says nothing of such values.
class Formatting {
public:
    Formatting(const ValueFormat& format, host::ValueRole role, std::int32_t lDecimalPlaces,
               std::string& sText)
        : format_(format), role_(role), lDecimalPlaces_(lDecimalPlaces), sText_(sText) {}

    template<class Other>
    bool operator()(const Other& /*other*/) const {
        return false;
    }
    bool operator()(bool bValue) const {
        if (format_.formatsBooleans())
            ValueFormat::appendBoolean(sText_, bValue);
        return format_.formatsBooleans();
    }
    bool operator()(std::int32_t lValue) const { return (*this)(std::int64_t{lValue}); }
    bool operator()(std::int64_t lValue) const {
        if (role_ == host::ValueRole::Boolean && format_.formatsBooleans())
            return (*this)(lValue != 0);
        if (format_.formatsNumbers())
            format_.appendNumber(sText_, lValue);
        return format_.formatsNumbers();
    }
    bool operator()(float fValue) const { return appendReal(fValue); }
    bool operator()(double dValue) const { return appendReal(dValue); }
    bool operator()(const Date& date) const {
        if (format_.formatsDates())
            format_.appendDate(sText_, date, role_);
        return format_.formatsDates();
    }

private:
    template<class Number>
    bool appendReal(Number value) const {
        if (format_.formatsNumbers())
            format_.appendNumber(sText_, value, lDecimalPlaces_);
        return format_.formatsNumbers();
    }

    const ValueFormat& format_;
    host::ValueRole role_;
    std::int32_t lDecimalPlaces_;
    std::string& sText_;
};

} // namespace

std::optional<FieldText> formattedRowValue(ExportState& state, const host::GisRow& row,
                                           const FoundField& field, const ValueView& value,
                                           std::int32_t lDecimalPlaces) {
    const ValueFormat& format = state.pInherited->format;
    if (format.namesCodes())
        if (const auto sName = codedName(state, row, field.lIndex, value))
            return FieldText{*sName, TextKind::Any};
    if (field.lTypeCode == static_cast<std::int32_t>(host::FieldType::Oid))
        return std::nullopt; // it names the row
    state.sValueText.clear();
    const host::ValueRole role = row.fields().field(field.lIndex).valueRole();
    if (!std::visit(Formatting(format, role, lDecimalPlaces, state.sValueText), value))
        return std::nullopt;
    return FieldText{state.sValueText, TextKind::Any};
}

std::optional<FieldText> formattedDate(ExportState& state, const Date& date) {
    if (state.pInherited == nullptr || !state.pInherited->format.formatsDates())
        return std::nullopt;
    state.sValueText.clear();
    state.pInherited->format.appendDate(state.sValueText, date, host::ValueRole::AsTyped);
    return FieldText{state.sValueText, TextKind::Any};
}

} // namespace halvane
