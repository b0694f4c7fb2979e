#pragma once

#include "host/Forward.h"

#include <memory>

namespace halvane::ui {

/// The running host application, as the form sees it.
class HostApplication {
public:
    HostApplication() = default;
    HostApplication(const HostApplication&) = delete;
    HostApplication& operator=(const HostApplication&) = delete;
    virtual ~HostApplication() = default;

    /// The map document that is open at this moment; nothing when none is. @throws Failure of the host.
    [[nodiscard]] virtual host::GisMapDocumentPtr mapDocument() = 0;
    /// Makes the objects that an export opens by itself.
    [[nodiscard]] virtual host::GisHostPtr objects() = 0;
};

using HostApplicationPtr = std::shared_ptr<HostApplication>;

} // namespace halvane::ui
