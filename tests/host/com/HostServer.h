#pragma once

#include "base/com/ComPtr.h"
#include "host/Forward.h"

namespace halvane::test {

/// Serves any host as automation objects, with the members that a host application has.
/// @param pDocument may be nothing: the result then has an application alone.
[[nodiscard]] com::ComPtr<IDispatch> serve(const host::GisMapDocumentPtr& pDocument,
                                           const host::GisHostPtr& pHost);

} // namespace halvane::test
