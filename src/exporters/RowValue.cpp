#include "exporters/RowValue.h"

#include "base/Numbers.h"
#include "host/Fields.h"
#include "host/Geometry.h"

namespace halvane {

namespace {

std::string kindOf(const ValueView& value) {
    constexpr std::size_t longest = 100;
    if (const auto* pText = std::get_if<std::string_view>(&value)) {
        if (pText->size() > longest)
            return "a long text";
        return "the text \"" + std::string(*pText) + "\"";
    }
    if (const auto* pObject = std::get_if<ObjectPtr>(&value)) {
        const bool bShape = dynamic_cast<const host::GisGeometry*>(pObject->get()) != nullptr;
        return bShape ? "a shape" : "an object";
    }
    return isNull(value) ? "no value" : "a value";
}

} // namespace

std::string valueContext(const host::GisRow& row, std::int32_t lIndex, const ValueView& value,
                         const char* sWanted) {
    try {
        return "the field \"" + std::string(row.fields().field(lIndex).name()) + "\" of row " +
               std::to_string(row.objectId()) + " holds " + kindOf(value) + ", not " + sWanted;
    } catch (const Failure&) {
        return "";
    }
}

double rowNumber(const host::GisRow& row, std::int32_t lIndex, const ValueView& value) {
    try {
        return toDouble(toText(value));
    } catch (const Failure& failure) {
        throw failure.about(valueContext(row, lIndex, value, "a number"));
    }
}

} // namespace halvane
