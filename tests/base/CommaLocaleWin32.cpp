#include "base/CommaLocale.h"

#include "base/DecimalSeparator.h"
#include "base/com/Bstr.h"

namespace halvane::test {

CommaLocale::CommaLocale() {
    sEarlier_ = decimalSeparator();
    bActive_ = ::SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, L",") != 0 && decimalSeparator() == ",";
}

CommaLocale::~CommaLocale() {
    ::SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, com::wideOf(sEarlier_).c_str());
}

} // namespace halvane::test
