#include "run/CheckRun.h"

#include "io/OutputBuffer.h"
#include "run/ExportRun.h"
#include "run/check/Foresight.h"
#include "telling/ControlFileChecks.h"
#include "telling/Outcome.h"
#include "telling/check/MapNeed.h"

#include <algorithm>
#include <utility>

namespace halvane {

namespace {

constexpr std::size_t nMostProblems = 1000;

/// The findings tell it all.
class SilentConsole final : public Console {
public:
    void result(std::string_view /*sLine*/) const override {}
    void note(std::string_view /*sLine*/) const override {}
    void failure(std::string_view /*sLine*/) const override {}
};

class Nowhere final : public io::ByteSink {
public:
    void write(std::string_view /*sBytes*/) override {}
};

ExportArguments rehearsal(ExportArguments arguments) {
    arguments.bRehearses = true;
    arguments.bWritesStandardOutput = true;
    arguments.sOutput = sStandardOutput;
    return arguments;
}

CheckFinding notWellFormed(const dom::ParseError& error) {
    CheckFinding finding;
    finding.pRule = &checkRule("NotWellFormed");
    finding.place = {error.line, error.column};
    finding.explanation.sWhat = error.reason;
    return finding;
}

/// What is wrong with the control file itself; an export stops at fewer.
std::vector<ControlProblem> allProblems(const ExportInputs& inputs) {
    const bool bCut = !inputs.controlProblems.empty() && inputs.controlProblems.back().sKind.empty();
    return bCut ? controlProblems(inputs.oControlDocument, &inputs.secondEdition.edition(), nMostProblems)
                : inputs.controlProblems;
}

/// Whether an export that was gone through came to the node.
bool isReached(dom::Node oNode, const ExportLog* pLog) {
    if (pLog == nullptr || secondAttribute(oNode, "When"))
        return false;
    for (oNode = oNode.parentNode(); isElement(oNode); oNode = oNode.parentNode()) {
        const bool bRepeated = oNode.getAttribute("Entries") == "Multiple" || secondAttribute(oNode, "Rows");
        if ((bRepeated && !pLog->wroteItems(oNode)) || secondAttribute(oNode, "When") ||
            secondAttribute(oNode, "ForEach"))
            return false;
    }
    return true;
}

/// Where keys never match, or where a value is obeyed as SQL, an export only finds other rows.
bool isToldByNoExport(const Finding& finding) {
    return finding.sKind == "KeysDiffer" || finding.sKind == "LinkValueEndsText";
}

/// What the export told, or would tell of nodes that it did not come to.
void addForeseen(const ExportRun& run, const std::vector<Finding>& findings, CheckFindings& all) {
    const ExportInputs& inputs = run.inputs();
    Foreseen foreseen = foresee(inputs.oControlDocument->documentElement(), inputs.secondEdition.edition(),
                                inputs.pMapDocument);
    const auto isTold = [&](const ForeseenNotice& notice) {
        return isReached(notice.oNode, run.log()) || all.has(notice.oNode, nameOf(notice.notice)) ||
               (notice.notice == Notice::UnknownKind &&
                std::ranges::any_of(
                    findings, [&](const Finding& finding) { return finding.sDetail == notice.sDetail; }));
    };
    for (const auto& notice : foreseen.notices)
        if (!isTold(notice))
            all.add(factsOf(notice.oNode), notice.oNode, {notice.notice, 0, notice.sDetail, 1, notice.sHint},
                    {});
    for (const auto& finding : foreseen.findings)
        if (isToldByNoExport(finding) ? !all.has(finding.oNode, "NodeFailed")
                                      : !isReached(finding.oNode, run.log()))
            all.add(finding);
}

void collect(ExportRun& run, CheckOutcome& outcome) {
    const ExportInputs& inputs = run.inputs();
    const ReportFacts& facts = run.facts();
    const dom::Node oRoot = inputs.oControlDocument->documentElement();
    CheckFindings all(oRoot, inputs.sControlPath);
    for (const auto& problem : allProblems(inputs))
        all.add(problem);
    const auto findings = lintControlFile(oRoot);
    for (const auto& finding : findings)
        all.add(finding);
    if (run.log() != nullptr)
        all.add(*run.log(), findings, {inputs.pMapDocument == nullptr ? sGiveAMap : ""});
    if (facts.exitCode != ExitCode::InvalidInput)
        addForeseen(run, findings, all);
    for (const auto& sLine : lostShapesLines(facts.lostShapes))
        all.addOfFile("LostShapes", sLine);
    if (facts.exitCode == ExitCode::NotWritten)
        for (const auto& sProblem : facts.problems)
            all.addOfFile("NothingWritten", sProblem);
    outcome.findings = all.take();
}

void refuse(ExportRun& run, CheckOutcome& outcome) {
    const ExportInputs& inputs = run.inputs();
    if (inputs.oControlDocument == nullptr && inputs.parseError.line > 0)
        outcome.findings.push_back(notWellFormed(inputs.parseError));
    else if (inputs.controlProblems.empty())
        outcome.problems = run.facts().problems;
    else
        collect(run, outcome);
}

bool counts(const CheckFinding& finding) {
    return finding.pRule->severity != CheckSeverity::Note;
}

} // namespace

CheckOutcome runCheck(const ExportArguments& given, const CheckSurroundings& around) {
    const ExportArguments arguments = rehearsal(given);
    const SilentConsole console;
    Nowhere nowhere;
    ExportRun run(arguments, {around.hosts, console, around.progress, around.pLibraryLines, &nowhere});
    run.run();
    CheckOutcome outcome;
    const ReportFacts& facts = run.facts();
    outcome.sControl = facts.sControl;
    outcome.sMap = facts.sMap;
    outcome.warnings = facts.warnings;
    if (facts.bCancelled) {
        outcome.exitCode = ExitCode::NotWritten;
        outcome.problems = {"the check was cancelled"};
        return outcome;
    }
    if (facts.exitCode == ExitCode::InvalidInput)
        refuse(run, outcome);
    else
        collect(run, outcome);
    outcome.bWithoutMap = run.log() == nullptr && facts.exitCode == ExitCode::Written;
    if (!outcome.problems.empty())
        outcome.exitCode = ExitCode::InvalidInput;
    else if (std::ranges::any_of(outcome.findings, counts))
        outcome.exitCode = ExitCode::Findings;
    return outcome;
}

} // namespace halvane
