#pragma once

#include "run/DataWarnings.h"
#include "run/ExportInputs.h"
#include "run/Overwriting.h"
#include "telling/DocumentLoading.h"
#include "telling/dialog/DialogWatch.h"
#include "ui/HostApplication.h"

#include <utility>

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

/// The same map, as the strip sees it.
class CommandLineMap : public DialogMap {
public:
    /// @param inputs borrowed; of them, the application's.
    explicit CommandLineMap(const ExportInputs& inputs) : inputs_(inputs) {}

    [[nodiscard]] std::string path() const override { return inputs_.sMapPath; }
    [[nodiscard]] Remedies remedies() const override {
        return {inputs_.pMapDocument == nullptr ? sGiveAMap : ""};
    }
    [[nodiscard]] host::DataHost* dataHost() const override { return inputs_.pHost.get(); }
    [[nodiscard]] std::vector<host::LostShapes> takeLostShapes() const override {
        return inputs_.pHost->takeLostShapes();
    }
    [[nodiscard]] std::string whyNotOver(const std::string& sPath,
                                         const std::string& sControl) const override {
        std::vector<std::string> problems; // told by the export itself
        const auto oControl = loadDocument(sControl, sControl, problems);
        return dataProblem(sPath, oControl, *inputs_.pHost);
    }
    [[nodiscard]] const SecondEdition* secondEdition() const override {
        return &inputs_.secondEdition.edition();
    }
    [[nodiscard]] std::vector<std::string> dataWarnings(const ExportLog& log) const override {
        std::vector<std::string> warnings = inputs_.warnings;
        for (auto& sWarning : halvane::dataWarnings(log, *inputs_.pHost, inputs_.pMapDocument))
            warnings.push_back(std::move(sWarning));
        return warnings;
    }

private:
    const ExportInputs& inputs_;
};

} // namespace halvane::cli
