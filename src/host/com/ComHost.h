#pragma once

// The host application behind automation objects: any objects that have the members which
// docs/host-automation.md lists, of whatever language. The objects are called late-bound, on the thread that
// calls here; what they report becomes a Failure.
//
// The objects given to external processors are the application's own. A collection travels through the object
// bridge of base/com/Variant.h, which a front end that publishes dCollection installs.

#include "base/com/Windows.h"
#include "host/Forward.h"

namespace halvane::host::com {

/// @param document lent; kept as long as the result lives.
[[nodiscard]] GisMapDocumentPtr mapDocumentOf(IDispatch& document);

/// The application of a map document.
/// @param pDocument lent; null: the application that is registered under the programmatic identifier
///        "Halvane.HostApplication", a running one first, asked for when it is first needed.
[[nodiscard]] GisHostPtr makeHost(IDispatch* pDocument);

} // namespace halvane::host::com
