#pragma once

#include "engine/ExportObserver.h"

namespace halvane::test {

/// Counts what an export tells; it allocates nothing.
class CountingObserver : public ExportObserver {
public:
    void nodeFailed(dom::Node /*oControlNode*/, const Failure& /*failure*/) override { ++lFailures; }
    void nodeNoticed(dom::Node /*oControlNode*/, Notice /*notice*/, std::string_view /*sDetail*/,
                     const Surroundings& /*around*/) override {}
    bool itemWritten(dom::Node /*oControlNode*/) override { return true; }
    void documentSaved(std::string_view /*sPath*/, const dom::CharacterRepairs& /*repairs*/) override {
        bSaved = true;
    }
    void documentNotSaved(std::string_view /*sReason*/) override { bToldNotSaved = true; }

    int lFailures = 0;
    bool bSaved = false;
    bool bToldNotSaved = false;
};

} // namespace halvane::test
