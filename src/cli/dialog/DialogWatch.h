#pragma once

#include "cli/ExportInputs.h"
#include "cli/dialog/DialogLog.h"
#include "ui/ExportWatch.h"
#include "ui/OutcomeView.h"

#include <optional>
#include <string>
#include <vector>

namespace halvane::cli {

/// Tells the strip of the dialog what became of each export, in the words of the command line.
class DialogWatch : public ui::ExportWatch {
public:
    /// @param inputs,strip borrowed; of the inputs, the application's.
    DialogWatch(const ExportInputs& inputs, ui::OutcomeView& strip) : inputs_(inputs), strip_(strip) {}

    [[nodiscard]] ExportObserver& exportBegins(const ui::ExportRequest& request) override;
    void optionalDocumentLoaded(const dom::DocumentPtr& oDocument) override;
    void exportEnds() override;

private:
    void checkOptionalDocument(const dom::DocumentPtr& oDocument);
    [[nodiscard]] ui::ExportOutcome outcome() const;
    void describeSaved(ui::ExportOutcome& outcome) const;
    void describeNotSaved(ui::ExportOutcome& outcome) const;

    const ExportInputs& inputs_;
    ui::OutcomeView& strip_;
    ui::ExportRequest request_;
    std::vector<std::string> warnings_; // about the optional document
    std::vector<std::string> replaced_; // what the export reads where its document is to stand
    std::optional<DialogLog> log_;      // during and after an export
};

} // namespace halvane::cli
