#include "component/com/dialog/VisualStyles.h"

namespace halvane::server {

namespace {

HANDLE contextOf(HMODULE hLibrary) {
    constexpr WORD nManifestOfIsolatedLibraries = 2;
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    description.hModule = hLibrary;
    description.lpResourceName = MAKEINTRESOURCEW(nManifestOfIsolatedLibraries);
    return CreateActCtxW(&description);
}

} // namespace

VisualStyles::VisualStyles(HMODULE hLibrary) noexcept : hContext_(contextOf(hLibrary)) {
    if (hContext_ == INVALID_HANDLE_VALUE)
        return;
    if (ActivateActCtx(hContext_, &nActivation_) == FALSE)
        nActivation_ = 0;
}

VisualStyles::~VisualStyles() {
    if (nActivation_ != 0)
        DeactivateActCtx(0, nActivation_);
    if (hContext_ != INVALID_HANDLE_VALUE)
        ReleaseActCtx(hContext_);
}

} // namespace halvane::server
