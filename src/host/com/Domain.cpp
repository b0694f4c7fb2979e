#include "host/com/Domain.h"

#include "base/Conversions.h"

namespace halvane::host::com {

std::vector<std::int32_t> ComSubtypes::readCodes() const {
    std::vector<std::int32_t> aCodes;
    for (const Variant& item : allItemsOf(context(), object().call("SubtypeCodes").get()))
        aCodes.push_back(wholeNumberOf(toView(halvane::com::toValue(item.get()))));
    return aCodes;
}

std::int32_t ComSubtypes::subtypeCount() const {
    return codes_.count([&] { return readCodes(); });
}

std::int32_t ComSubtypes::subtypeCode(std::int32_t lIndex) const {
    return codes_.item(lIndex, [&] { return readCodes(); });
}

} // namespace halvane::host::com
