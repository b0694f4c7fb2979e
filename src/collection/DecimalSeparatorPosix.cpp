#include "collection/DecimalSeparator.h"

#include <langinfo.h>

namespace halvane {

// Asked for at every number, since the locale may change: this one fact alone is told much faster than all of
// them by std::localeconv.
std::string_view decimalSeparator() {
    return nl_langinfo(RADIXCHAR);
}

} // namespace halvane
