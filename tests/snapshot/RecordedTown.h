#pragma once

#include "host/conformance/Conformance.h"
#include "snapshot/RecordingHost.h"

namespace halvane::test {

/// A town seen through a recorder.
[[nodiscard]] inline conformance::OpenTown recordTown(Recording& recording, conformance::OpenTown open) {
    RecordedObject& document = recording.add("MapDocument");
    RecordedObject& application = recording.add("Application");
    document.answer("Application", application.reference());
    open.pDocument = recordDocument(document, open.pDocument);
    open.pHost = std::make_shared<RecordingHost>(application, recording, open.pHost);
    static_cast<void>(open.pHost->pathSeparator());
    return open;
}

} // namespace halvane::test
