#pragma once

#include "engine/ExportOptions.h"
#include "ui/ExportWatch.h"
#include "ui/FormView.h"
#include "ui/HostApplication.h"
#include "xml/dom/Dom.h"

#include <string>

namespace halvane::ui {

/// The form "Export to XML" without its window: what its boxes hold and what each button does. While an
/// export runs, every button does nothing. No operation throws for a failing export.
class FormExporter {
public:
    /// @param view borrowed, as is the watch (which may be nothing).
    /// @param options of each export; the observer is the watch's.
    explicit FormExporter(FormView& view, ExportOptions options = {}, ExportWatch* pWatch = nullptr);

    /// Takes the reference to the running host application and fills the boxes as they are at first.
    void Load(HostApplicationPtr pApplication);

    /// OK: checks the boxes, then exports; the form stays open. @returns whether the boxes were fit.
    bool Command1_Click();
    void Command2_Click(); ///< Cancel: unloads the form
    void Command3_Click(); ///< browses for the control file
    void Command4_Click(); ///< browses for the output folder
    void Command5_Click(); ///< browses for the optional document

    [[nodiscard]] bool exporting() const noexcept { return bExporting_; }

private:
    [[nodiscard]] std::string trimmed(Box box) const;
    /// Tells what is wrong with the boxes. @returns whether nothing is.
    bool boxesAreFit();
    bool refuse(Box box, const std::string& sText);
    [[nodiscard]] ExportRequest request() const;
    void exportBoxes();
    void runExport(const ExportRequest& request, ExportObserver* pObserver);
    /// The form's own document with the content of that file; empty when it cannot be loaded.
    [[nodiscard]] const dom::DocumentPtr& loadOptionalDocument(const std::string& sPath);
    void browseForFile(Box box, std::string_view sFilter);

    FormView& view_;
    ExportOptions options_;
    ExportWatch* pWatch_;
    HostApplicationPtr pApplication_;
    dom::DocumentPtr oOptionalDom_; // made at first use
    bool bExporting_ = false;
};

} // namespace halvane::ui
