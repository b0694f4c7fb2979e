#pragma once

#include "component/com/ExportTurn.h"
#include "component/com/dialog/MapSource.h"
#include "telling/dialog/DialogWatch.h"
#include "ui/HostApplication.h"

#include <optional>

namespace halvane::server {

/// The application of the dialog, behind automation objects, and its map as the strip sees it. It has the
/// process's turn to export from the moment that its objects are asked for.
class ComApplication final : public ui::HostApplication, public DialogMap {
public:
    explicit ComApplication(MapSource source) : source_(std::move(source)) {}

    [[nodiscard]] host::GisMapDocumentPtr mapDocument() override;
    /// @throws Failure while another thread exports.
    [[nodiscard]] host::GisHostPtr objects() override;
    /// The export has ended.
    void leave() noexcept;

    [[nodiscard]] std::string path() const override { return ""; }
    [[nodiscard]] Remedies remedies() const override;
    [[nodiscard]] std::vector<std::string> dataWarnings(const ExportLog& /*log*/) const override {
        return {};
    }

private:
    MapSource source_;
    std::optional<ExportTurn> turn_;
    com::ComPtr<IDispatch> pDocument_; // of the export
    bool bHadDocument_ = false;        // likewise, and after it
};

/// Tells the strip what became of each export, and ends the turn.
class ComDialogWatch final : public DialogWatch {
public:
    /// @param application,strip borrowed.
    ComDialogWatch(ComApplication& application, ui::OutcomeView& strip)
        : DialogWatch(application, strip), application_(application) {}

    void exportEnds() override {
        application_.leave();
        DialogWatch::exportEnds();
    }

private:
    ComApplication& application_;
};

} // namespace halvane::server
