#pragma once

#include "engine/ExportObserver.h"
#include "ui/FormView.h"
#include "xml/dom/Dom.h"

#include <optional>
#include <string>

namespace halvane::ui {

/// What an export is started with: the boxes without the blanks around them.
struct ExportRequest {
    std::string sControlXML;
    std::string sOutPath;
    std::string SOutXML;
    std::string sOptionalXML; ///< "": none
    std::string sNodePath;    ///< "" without an optional document
};

/// Follows the exports of a form, to tell the person about them beside it. The form itself tells nothing of
/// an export, and but for that refusal does the same whether it is watched or not. A watch must not throw.
class ExportWatch {
public:
    ExportWatch() = default;
    ExportWatch(const ExportWatch&) = delete;
    ExportWatch& operator=(const ExportWatch&) = delete;
    virtual ~ExportWatch() = default;

    /// An export is to begin. @returns who listens to it; lives at least until exportEnds(). Nothing where
    /// the export must not begin, since there is no place for its document; the watch tells it at
    /// exportEnds().
    [[nodiscard]] virtual ExportObserver* exportBegins(const ExportRequest& request) = 0;
    /// The optional document was loaded, or is empty: its parseError tells. The export goes on either way.
    virtual void optionalDocumentLoaded(const dom::DocumentPtr& oDocument) = 0;
    /// Comes once for each exportBegins().
    virtual void exportEnds() = 0;
    /// The box that the export which may not begin was refused for; nothing where it is none in particular.
    [[nodiscard]] virtual std::optional<Box> refusedBox() const { return std::nullopt; }
};

} // namespace halvane::ui
