#include "base/DecimalSeparator.h"

#include <langinfo.h>

namespace halvane {

// Asked for at every number, since the locale may change: this one fact alone is told much faster than all of
// them by std::localeconv.
std::string_view decimalSeparator() {
    const char* const pSeparator = nl_langinfo(RADIXCHAR);
    const bool bOneByte = pSeparator[0] != '\0' && pSeparator[1] == '\0';
    return bOneByte ? std::string_view(pSeparator, 1) : std::string_view(pSeparator);
}

} // namespace halvane
