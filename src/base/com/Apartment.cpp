#include "base/com/Apartment.h"

#include "base/com/Windows.h"

#include <ole2.h>

namespace halvane::com {

namespace {

HRESULT enter(Apartment::For use) noexcept {
    return use == Apartment::For::Dialogs
               ? OleInitialize(nullptr)
               : CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
}

} // namespace

Apartment::Apartment(For use) noexcept : use_(use), bEntered_(SUCCEEDED(enter(use))) {}

Apartment::~Apartment() {
    if (!bEntered_)
        return;
    if (use_ == For::Dialogs)
        OleUninitialize();
    else
        CoUninitialize();
}

} // namespace halvane::com
