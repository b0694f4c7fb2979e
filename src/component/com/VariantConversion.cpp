#include "component/com/VariantConversion.h"

#include "base/com/HResult.h"

namespace halvane::server {

com::Variant convertedTo(VARTYPE vt, const VARIANT& source, LCID lcid) {
    com::Variant result;
    VARIANT lent = source; // the function wants it mutable, and leaves it alone
    com::require(VariantChangeTypeEx(result.put(), &lent, lcid, 0, vt), "VariantChangeTypeEx");
    return result;
}

com::Variant defaultOf(VARTYPE vt) {
    VARIANT value{}; // the default of every type has no bits set
    V_VT(&value) = vt;
    return com::Variant::attach(value);
}

} // namespace halvane::server
