#pragma once

#include "host/DataHost.h"
#include "telling/Messages.h"
#include "telling/Outcome.h"
#include "telling/StandardStreams.h"
#include "telling/dialog/DialogLog.h"
#include "ui/ExportWatch.h"
#include "ui/OutcomeView.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvane {

struct SecondEdition;

/// What the strip needs to know of the map that is exported.
class DialogMap {
public:
    DialogMap() = default;
    DialogMap(const DialogMap&) = delete;
    DialogMap& operator=(const DialogMap&) = delete;
    virtual ~DialogMap() = default;

    /// Of the map document's file; "" where there is none.
    [[nodiscard]] virtual std::string path() const = 0;
    [[nodiscard]] virtual Remedies remedies() const = 0;
    /// The host that opened the map's data; nothing where another program holds it.
    [[nodiscard]] virtual host::DataHost* dataHost() const { return nullptr; }
    /// The shapes that the export could not read. The next call tells of the next export.
    [[nodiscard]] virtual std::vector<host::LostShapes> takeLostShapes() const { return {}; }
    /// Why nothing may be written to a path: the data that would be replaced there. "" for none.
    /// @param sControl the control file, whose locations count too.
    [[nodiscard]] virtual std::string whyNotOver(const std::string& /*sPath*/,
                                                 const std::string& /*sControl*/) const {
        return {};
    }
    /// What control files of the second edition are exported with; nothing: they are taken for files of the
    /// first.
    [[nodiscard]] virtual const SecondEdition* secondEdition() const { return nullptr; }
    /// What of the map's data explains that something was not found.
    [[nodiscard]] virtual std::vector<std::string> dataWarnings(const ExportLog& log) const = 0;
};

/// Tells the strip of the dialog what became of each export, in the words of the command line.
class DialogWatch : public ui::ExportWatch {
public:
    /// @param map,strip borrowed.
    DialogWatch(const DialogMap& map, ui::OutcomeView& strip) : map_(map), strip_(strip) {}

    [[nodiscard]] ExportObserver* exportBegins(const ui::ExportRequest& request) override;
    void optionalDocumentLoaded(const dom::DocumentPtr& oDocument) override;
    void exportEnds() override;
    [[nodiscard]] std::optional<ui::Box> refusedBox() const override { return refusedBox_; }

private:
    void holdServers();
    void checkOptionalDocument(const dom::DocumentPtr& oDocument);
    [[nodiscard]] ui::ExportOutcome outcome();
    void describeSaved(ui::ExportOutcome& outcome, const LostShapesList& lost) const;
    void describeNotSaved(ui::ExportOutcome& outcome) const;

    const DialogMap& map_;
    ui::OutcomeView& strip_;
    ui::ExportRequest request_;
    std::vector<std::string> warnings_;        // about the optional document
    std::string sRefusal_;                     // why the export may not begin; "" when it may
    std::optional<ui::Box> refusedBox_;        // what it was refused for
    std::vector<std::string> replaced_;        // what the export reads where its document is to stand
    std::optional<DialogLog> log_;             // during and after an export
    std::optional<LibraryLines> libraryLines_; // during an export
    std::shared_ptr<void> pServers_;           // held during an export
};

} // namespace halvane
