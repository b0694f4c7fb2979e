#pragma once

#include "base/com/ComPtr.h"

#include <string>

namespace halvane::server {

/// Where the dialog finds the map document.
class MapSource {
public:
    /// @param pObject the map document, or a running application whose member "MapDocument" tells the one
    /// that is open at each moment; may be nothing.
    explicit MapSource(com::ComPtr<IDispatch> pObject) : pObject_(std::move(pObject)) {}

    /// A running application or map document. @param sName a programmatic identifier under which it is
    /// registered as running, else the display name of a moniker. "": the application
    /// "Halvane.HostApplication", or nothing while that does not run.
    /// @throws Failure when there is none of that name.
    [[nodiscard]] static MapSource named(const std::wstring& sName);

    /// The document that is open at this moment; nothing when there is none.
    /// @throws Failure of the application.
    [[nodiscard]] com::ComPtr<IDispatch> document() const;

private:
    com::ComPtr<IDispatch> pObject_;
};

} // namespace halvane::server
