// Texts of a map document as values of a field's type, and defaults in the data's SQL.

#include "base/Failure.h"
#include "fuzz/Check.h"
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "host/gdal/facts/Values.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane;
    fuzz::Input input(pBytes, nSize);
    const auto type = static_cast<host::FieldType>(input.below(9));
    const std::string_view sText = input.rest();
    const auto vValue = host::gdal::parseValue(sText, type);
    fuzz::check(!vValue.has_value() || type != host::FieldType::String || toText(*vValue) == sText,
                "A text stays as it is", std::string(sText));
    if (vValue.has_value() && !toText(*vValue).empty()) {
        const auto vAgain = host::gdal::parseValue(toText(*vValue), type);
        fuzz::check(type == host::FieldType::Date || vAgain.has_value(), "A value's text is a value",
                    std::string(sText));
    }
    static_cast<void>(toText(host::gdal::parseDefault(sText, type)));
    return 0;
}
