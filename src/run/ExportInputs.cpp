#include "run/ExportInputs.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "engine/second/FieldCheck.h"
#include "run/Overwriting.h"
#include "run/StandardInput.h"
#include "telling/ControlFileChecks.h"
#include "telling/ControlFileParts.h"
#include "telling/DocumentLoading.h"
#include "telling/Interruption.h"
#include "telling/Paths.h"
#include "telling/TagDocument.h"

#include <fmt/format.h>

#include <initializer_list>
#include <utility>

namespace halvane {

namespace {

using Problems = std::vector<std::string>;

void checkOptionsThatNeedOthers(const ExportArguments& arguments, Problems& problems) {
    if (arguments.sXmlDocument && !arguments.sNodePath)
        problems.push_back("--xml needs --node-path: the XPath of the nodes with TagName and Alias");
    if (arguments.sNodePath && !arguments.sXmlDocument)
        problems.push_back("--node-path needs --xml: the document that the path leads into");
    if (arguments.sSchemaCatalog && !arguments.sSchema)
        problems.push_back("--schema-catalog needs --schema: the schema whose addresses it maps");
    if (arguments.sSchema && arguments.sSchema->empty())
        problems.push_back("--schema: the path is empty; give the path of an XML Schema");
}

void checkSelections(const ExportArguments& arguments, ExportInputs& /*inputs*/, Problems& problems) {
    if (!arguments.selections.empty() && !arguments.sMap)
        problems.push_back("--select needs --map: the map whose layer it selects in");
}

void openMap(const std::string& sMap, ExportInputs& inputs, Problems& problems) {
    try {
        inputs.pMapDocument = inputs.pHost->openMapDocument(sMap);
        inputs.sMapPath = absolutePath(sMap);
        for (const auto& sRemark : inputs.pHost->remarks(inputs.pMapDocument))
            inputs.warnings.push_back(fmt::format("--map: {}", sRemark));
    } catch (const Failure& failure) {
        problems.push_back(fmt::format("--map: {}", failure.description()));
    }
}

void select(const std::string& sSelection, ExportInputs& inputs, Problems& problems) {
    const auto lEquals = sSelection.find('=');
    if (lEquals == std::string::npos || lEquals == 0) {
        problems.push_back(fmt::format(
            R"(--select: "{}" is not LAYER=FIDS or LAYER=WHERE, as in Cities=4,8 or "Cities=POP > 1000")",
            sSelection));
        return;
    }
    try {
        inputs.pHost->selectFeatures(inputs.pMapDocument, std::string_view(sSelection).substr(0, lEquals),
                                     std::string_view(sSelection).substr(lEquals + 1));
    } catch (const Failure& failure) {
        problems.push_back(fmt::format("--select: {}", failure.description()));
    }
}

void loadProcessor(const std::string& sLibrary, ExportInputs& inputs, Problems& problems) {
    try {
        inputs.pHost->loadProcessorLibrary(sLibrary);
    } catch (const Failure& failure) {
        problems.push_back(fmt::format("--processor: {}", failure.description()));
    }
}

void checkNames(const ExportArguments& arguments, ExportInputs& inputs, Problems& problems) {
    checkOptionsThatNeedOthers(arguments, problems);
    checkSelections(arguments, inputs, problems);
    if (arguments.sControl.empty())
        problems.emplace_back("CONTROL: the path is empty; give the path of a control file");
    for (auto& sProblem : inputs.secondEdition.setValues(arguments.values))
        problems.push_back(std::move(sProblem));
    inputs.sControlPath =
        arguments.bReadsStandardInput ? arguments.sControl : absolutePath(arguments.sControl);
    inputs.output = splitOutput(arguments, problems);
    if (problems.empty())
        problems = checkDocumentReplacesNothing(arguments, inputs.output);
}

/// A control file is checked before data is opened; only one that names references needs the host for that.
void lendRegister(ExportInputs& inputs) {
    inputs.secondEdition.setRegister([&inputs](std::string_view sCode) {
        if (inputs.pHost == nullptr)
            inputs.pHost = inputs.hosts.create();
        return inputs.pHost->referenceOf(sCode);
    });
}

void checkControl(const ExportArguments& arguments, ExportInputs& inputs, Problems& problems) {
    // What is read from standard input has its parts in the current folder.
    inputs.controlProblems = includeParts(inputs.oControlDocument, absolutePath(arguments.sControl),
                                          &inputs.secondEdition.edition());
    if (inputs.controlProblems.empty())
        inputs.controlProblems = controlProblems(inputs.oControlDocument, &inputs.secondEdition.edition());
    for (const auto& problem : inputs.controlProblems)
        problems.push_back(listed(problem, arguments.sControl));
    if (inputs.controlProblems.empty())
        for (const auto& sName : inputs.secondEdition.valuesLeft())
            inputs.warnings.push_back(fmt::format("--set: {} has no \"${}\"", arguments.sControl, sName));
}

void checkDocuments(const ExportArguments& arguments, ExportInputs& inputs, Problems& problems) {
    lendRegister(inputs);
    inputs.oControlDocument =
        arguments.bReadsStandardInput
            ? loadStandardInput(arguments.sControl, problems, inputs.parseError)
            : loadDocument(inputs.sControlPath, arguments.sControl, problems, &inputs.parseError);
    if (inputs.oControlDocument != nullptr)
        checkControl(arguments, inputs, problems);
    if (!problems.empty() || !arguments.sXmlDocument)
        return;
    inputs.oExternalDocument =
        openTagDocument(*arguments.sXmlDocument, *arguments.sNodePath, inputs.warnings, problems);
    inputs.sNodePath = *arguments.sNodePath;
}

void checkSchema(const ExportArguments& arguments, ExportInputs& inputs, Problems& problems) {
    inputs.schema = openSchema(arguments, inputs.output, problems);
}

void openData(const ExportArguments& arguments, ExportInputs& inputs, Problems& problems) {
    inputs.hosts.endWhen(&interruptionRequested);
    lendRegister(inputs);
    if (inputs.pHost == nullptr)
        inputs.pHost = inputs.hosts.create();
    if (arguments.bAllowConnections)
        inputs.pHost->allowConnections();
    if (arguments.sMap)
        openMap(*arguments.sMap, inputs, problems);
    if (!problems.empty())
        return;
    for (const auto& sSelection : arguments.selections)
        select(sSelection, inputs, problems);
}

void checkRows(const ExportArguments& arguments, ExportInputs& inputs, Problems& problems) {
    for (const auto& problem : checkSecondRows(inputs.oControlDocument->documentElement(),
                                               inputs.secondEdition.edition(), inputs.pMapDocument)) {
        inputs.controlProblems.push_back(
            problemOf({problem.oControlNode, problem.sText},
                      problem.bOfRelationship ? "RelationshipNotFollowed" : "RowsLackField"));
        if (!arguments.bRehearses)
            problems.push_back(listed(inputs.controlProblems.back(), arguments.sControl));
    }
}

void checkData(const ExportArguments& arguments, ExportInputs& inputs, Problems& problems) {
    auto found = checkDataIsNotReplaced(arguments, inputs.output, inputs.oControlDocument, *inputs.pHost);
    inputs.bReportIsData = !found.ofReport.empty();
    problems = std::move(found.ofDocument);
    problems.insert(problems.end(), found.ofReport.begin(), found.ofReport.end());
}

void loadProcessors(const ExportArguments& arguments, ExportInputs& inputs, Problems& problems) {
    for (const auto& sLibrary : arguments.processors)
        loadProcessor(sLibrary, inputs, problems);
}

using Step = void (*)(const ExportArguments&, ExportInputs&, Problems&);

/// A step sees only what the steps before it found fit.
Problems take(std::initializer_list<Step> steps, const ExportArguments& arguments, ExportInputs& inputs) {
    Problems problems;
    for (const Step step : steps) {
        step(arguments, inputs, problems);
        if (!problems.empty())
            break;
    }
    return problems;
}

} // namespace

std::vector<std::string> openInputs(const ExportArguments& arguments, ExportInputs& inputs) {
    // From the cheapest to what runs foreign code.
    return take({checkNames, checkDocuments, checkSchema, openData, checkRows, checkData, loadProcessors},
                arguments, inputs);
}

std::vector<std::string> openApplication(const ExportArguments& arguments, ExportInputs& inputs) {
    return take({checkSelections, openData, loadProcessors}, arguments, inputs);
}

} // namespace halvane
