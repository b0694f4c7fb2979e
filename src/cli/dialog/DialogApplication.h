#pragma once

#include "cli/ExportInputs.h"
#include "ui/HostApplication.h"

namespace halvane::cli {

/// The application of the dialog: the map that the command line named.
class DialogApplication : public ui::HostApplication {
public:
    explicit DialogApplication(const ExportInputs& inputs)
        : pHost_(inputs.pHost), pMapDocument_(inputs.pMapDocument) {}

    [[nodiscard]] host::GisMapDocumentPtr mapDocument() override { return pMapDocument_; }
    [[nodiscard]] host::GisHostPtr objects() override { return pHost_; }

private:
    host::GisHostPtr pHost_;
    host::GisMapDocumentPtr pMapDocument_;
};

} // namespace halvane::cli
