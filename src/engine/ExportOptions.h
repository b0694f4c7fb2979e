#pragma once

#include "xml/dom/Dom.h"

#include <cstdint>

namespace halvane {

class ExportObserver;
class ExportTrace;
struct SecondEdition;

/// What a front end may relax or listen to. The defaults are the component's exact behaviour.
struct ExportOptions {
    /// The largest value of an item counter. The item that makes the counter pass it is still written, then
    /// the repeated node ends with an overflow.
    std::int64_t lItemLimit = 32767;
    /// Skip comments and processing instructions between control elements. Otherwise each is a control
    /// element without a name, whose output node cannot be made.
    bool bIgnoreComments = false;
    /// The control file as it was loaded from its path already; nothing: it is loaded.
    dom::DocumentPtr oControlDocument = {};
    /// What control files of the second edition are exported with; nothing: theirs is a namespace like any
    /// other. Borrowed; lives longer than the export.
    const SecondEdition* pSecondEdition = nullptr;
    /// The document's name is used as it is, whatever letters it holds.
    bool bExactName = false;
    /// Where the document goes once it is whole, instead of to its path, whose folder still holds what does
    /// not fit into memory. Borrowed; nothing: to its path.
    io::ByteSink* pDocumentSink = nullptr;
    /// When the document counts as written.
    io::Durability durability = io::Durability::LeftToSystem;
    /// Borrowed; lives longer than the export.
    ExportObserver* pObserver = nullptr;
    /// Borrowed; lives longer than the export.
    ExportTrace* pTrace = nullptr;
};

} // namespace halvane
