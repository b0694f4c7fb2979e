#pragma once

#include "host/DataHost.h"
#include "run/ExportArguments.h"
#include "run/OpenedSchema.h"
#include "run/OutputTarget.h"
#include "run/SecondEditionKit.h"
#include "telling/ControlFileParts.h"
#include "xml/dom/Dom.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane {

/// What an export is started with, opened and found fit.
struct ExportInputs {
    /// @param dataHosts stays.
    explicit ExportInputs(const host::DataHosts& dataHosts) : hosts(dataHosts) {}

    const host::DataHosts& hosts;
    std::string sControlPath; ///< absolute, or a URL, or sStandardInput
    dom::DocumentPtr oControlDocument;
    OutputTarget output;
    host::DataHostPtr pHost;
    host::GisMapDocumentPtr pMapDocument; ///< nothing without --map
    std::string sMapPath;                 ///< absolute; "" without --map
    dom::DocumentPtr oExternalDocument;   ///< nothing without --xml
    std::string sNodePath;                ///< "" without --node-path
    bool bReportIsData = false;           ///< the report would replace data: it is not written
    OpenedSchema schema;
    SecondEditionKit secondEdition;
    std::vector<std::string> warnings; ///< what is fit but will not do what was meant
    /// Of the reasons not to start those that the control file gives, with their places. Where nothing is
    /// written, what the rows lack is no such reason, and stands here all the same.
    std::vector<ControlProblem> controlProblems;
    dom::ParseError parseError; ///< of a control file that cannot be read
};

/// Opens and checks everything that an export reads, so that nothing is started in vain.
/// @param inputs filled as far as it got.
/// @returns a line for each reason not to start; empty when there is none.
[[nodiscard]] std::vector<std::string> openInputs(const ExportArguments& arguments, ExportInputs& inputs);

/// Of these, only what stands for the application: the host, its map with the selections, the processors.
/// @returns as openInputs.
[[nodiscard]] std::vector<std::string> openApplication(const ExportArguments& arguments,
                                                       ExportInputs& inputs);

} // namespace halvane
