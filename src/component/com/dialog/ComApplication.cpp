#include "component/com/dialog/ComApplication.h"

#include "host/com/ComHost.h"

namespace halvane::server {

host::GisHostPtr ComApplication::objects() {
    turn_.emplace();
    pDocument_ = source_.document();
    bHadDocument_ = static_cast<bool>(pDocument_);
    return host::com::makeHost(pDocument_.get());
}

host::GisMapDocumentPtr ComApplication::mapDocument() {
    return pDocument_ ? host::com::mapDocumentOf(*pDocument_) : nullptr;
}

void ComApplication::leave() noexcept {
    pDocument_ = nullptr;
    turn_.reset();
}

Remedies ComApplication::remedies() const {
    return {bHadDocument_ ? "" : "open a map document", "register its component"};
}

} // namespace halvane::server
