#include "telling/dialog/DialogWatch.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "engine/second/SecondEdition.h"
#include "io/SpecialName.h"
#include "telling/ControlFileChecks.h"
#include "telling/ControlFileLint.h"
#include "telling/ControlFileParts.h"
#include "telling/DocumentLoading.h"
#include "telling/DocumentPlace.h"
#include "telling/LogListing.h"
#include "telling/Outcome.h"
#include "telling/Paths.h"
#include "telling/PrefixChecks.h"
#include "telling/TagDocument.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <cctype>
#include <filesystem>
#include <utility>

namespace halvane {

namespace {

/// The last part of a path, enough where the path stands in a box above.
std::string nameOf(const std::string& sPath) {
    const auto lSlash = sPath.find_last_of("/\\");
    return lSlash == std::string::npos ? sPath : sPath.substr(lSlash + 1);
}

std::string asSentence(std::string sText) {
    if (!sText.empty())
        sText[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(sText[0])));
    return sText;
}

#ifdef _WIN32
constexpr const char* sRootsBegin = "a drive";
#else
constexpr const char* sRootsBegin = "\"/\"";
#endif

bool isFullPath(const std::string& sPath) {
    return isUrl(sPath) || std::filesystem::path(replaceAll(sPath, "\\", "/")).is_absolute();
}

/// The document's path as it was typed: its name gets its ending as an export gives it.
std::string typedPath(const ui::ExportRequest& request) {
    const char* sEnding = containsIgnoringCase(request.SOutXML, "XML") ? "" : ".xml";
    return request.sOutPath + "/" + request.SOutXML + sEnding;
}

/// Where the document is to stand.
std::string documentPath(const ui::ExportRequest& request) {
    return absolutePath(typedPath(request));
}

/// What is wrong with a control file that led to no document.
std::vector<std::string> controlProblems(const std::string& sControl, const SecondEdition* pSecondEdition) {
    if (!isFullPath(sControl))
        return {
            fmt::format(R"(Control XML File: "{}" is no full path; begin with {})", sControl, sRootsBegin)};
    return checkControlFile(absolutePath(sControl), nameOf(sControl), pSecondEdition);
}

/// What a control file that led to a document says in vain, and which prefixes make the document unfit.
struct ControlReading {
    std::vector<Finding> findings;
    std::vector<std::string> prefixErrors;
};

ControlReading readControl(const std::string& sControl, const SecondEdition* pSecondEdition) {
    std::vector<std::string> problems;
    const auto oDocument = loadDocument(absolutePath(sControl), nameOf(sControl), problems);
    static_cast<void>(includeParts(oDocument, absolutePath(sControl), pSecondEdition));
    if (oDocument == nullptr)
        return {};
    const dom::Node oRoot = oDocument->documentElement();
    const bool bSecond = pSecondEdition != nullptr && isOfSecondEdition(oRoot);
    return {lintControlFile(oRoot),
            bSecond ? std::vector<std::string>() : prefixErrors(oRoot, nameOf(sControl))};
}

struct Refusal {
    std::string sWhy; ///< "" for none
    std::optional<ui::Box> box;
};

/// Whether there is no place for the document, in the words of the command line.
Refusal refusalOfPlace(const ui::ExportRequest& request) {
    if (const std::string sWhy = whyNotInFolder(absolutePath(request.sOutPath)); !sWhy.empty())
        return {"Output Directory: " + sWhy, ui::Box::Text2};
    // The system makes something else of such a name when the path is completed.
    std::string sWhy = io::whySpecial(typedPath(request));
    const std::string sDocument = documentPath(request);
    if (sWhy.empty())
        sWhy = whyNotInFolder(std::filesystem::path(sDocument).parent_path().string());
    if (sWhy.empty())
        sWhy = whyNotInPlace(sDocument);
    if (sWhy.empty())
        return {};
    return {"Output XML File Name: " + sWhy, ui::Box::Text3};
}

/// What the export reads in the place where its document is to stand.
std::vector<std::string> readWhereItIsWritten(const ui::ExportRequest& request, const std::string& sMap) {
    std::vector<std::string> found;
    const std::string sDocument = documentPath(request);
    const auto look = [&](const char* sWhat, const std::string& sPath) {
        if (sameFile(sDocument, absolutePath(sPath)))
            found.emplace_back(sWhat);
    };
    look("the control file", request.sControlXML);
    look("the map document", sMap);
    look("the optional XML", request.sOptionalXML);
    return found;
}

/// Why an optional document could not be loaded. What cannot be opened is told as a control file is.
std::string loadingProblem(const std::string& sPath, const std::string& sShown,
                           const dom::ParseError& error) {
    std::vector<std::string> problems;
    if (error.line == 0)
        static_cast<void>(loadDocument(absolutePath(sPath), sShown, problems));
    return problems.empty() ? parseProblem(sShown, error) : problems.front();
}

void tellOfWarnings(ui::ExportOutcome& outcome) {
    if (outcome.kind == ui::ExportOutcome::Kind::Written)
        outcome.kind = ui::ExportOutcome::Kind::Warned;
}

void warn(ui::ExportOutcome& outcome, const std::vector<std::string>& warnings) {
    for (const auto& sWarning : warnings) {
        outcome.details.push_back("warning: " + sWarning);
        tellOfWarnings(outcome);
    }
}

} // namespace

ExportObserver* DialogWatch::exportBegins(const ui::ExportRequest& request) {
    request_ = request;
    warnings_.clear();
    replaced_ = readWhereItIsWritten(request, map_.path());
    strip_.begin();
    libraryLines_.emplace();
    log_.emplace(strip_);
    try {
        const Refusal refusal = refusalOfPlace(request_);
        sRefusal_ = refusal.sWhy;
        refusedBox_ = refusal.box;
        if (sRefusal_.empty())
            sRefusal_ = map_.whyNotOver(documentPath(request_), absolutePath(request_.sControlXML));
        if (sRefusal_.empty())
            holdServers();
    } catch (...) {
        sRefusal_ = currentFailure().description();
    }
    return sRefusal_.empty() ? &*log_ : nullptr;
}

void DialogWatch::holdServers() {
    host::DataHost* pHost = map_.dataHost();
    if (pHost == nullptr)
        return;
    pServers_ = pHost->holdServers();
    log_->watchServersOf(*pHost);
}

void DialogWatch::optionalDocumentLoaded(const dom::DocumentPtr& oDocument) {
    try {
        checkOptionalDocument(oDocument);
    } catch (...) {
        warnings_.push_back(currentFailure().description());
    }
}

void DialogWatch::checkOptionalDocument(const dom::DocumentPtr& oDocument) {
    const std::string sShown = nameOf(request_.sOptionalXML);
    if (oDocument->parseError().errorCode != 0) {
        warnings_.push_back(loadingProblem(request_.sOptionalXML, sShown, oDocument->parseError()) +
                            "; no tags are known");
        return;
    }
    // A blank path is told as the reason why nothing is written.
    if (request_.sNodePath.empty())
        return;
    std::string sProblem = checkTagPath(oDocument, request_.sNodePath, {"XML Node Path", sShown}, warnings_);
    if (!sProblem.empty())
        warnings_.push_back(std::move(sProblem));
}

void DialogWatch::exportEnds() {
    DialogLog::settle();
    ui::ExportOutcome told;
    try {
        told = outcome();
    } catch (...) {
        told.sSummary = currentFailure().description();
    }
    libraryLines_.reset();
    pServers_.reset();
    strip_.show(told);
}

ui::ExportOutcome DialogWatch::outcome() {
    ui::ExportOutcome outcome;
    warn(outcome, warnings_);
    const LostShapesList lost = map_.takeLostShapes();
    const ControlReading control =
        log_->saved() ? readControl(request_.sControlXML, map_.secondEdition()) : ControlReading();
    if (log_->saved())
        describeSaved(outcome, lost);
    else
        describeNotSaved(outcome);
    if (!control.prefixErrors.empty()) {
        outcome.kind = ui::ExportOutcome::Kind::Incomplete;
        outcome.sSummary += ". Programs that know namespaces cannot read the document";
        outcome.details.insert(outcome.details.end(), control.prefixErrors.begin(),
                               control.prefixErrors.end());
    }
    const ListingContext context{nameOf(request_.sControlXML), map_.remedies(), control.findings};
    for (const Finding& finding : context.findings) {
        outcome.details.push_back(listed(finding, context.sControl));
        if (finding.severity == Finding::Severity::Warning)
            tellOfWarnings(outcome);
    }
    for (auto& line : listing(*log_, context))
        outcome.details.push_back(std::move(line.sText));
    for (const auto& sLine : lostShapesLines(lost))
        outcome.details.push_back("error: " + sLine);
    warn(outcome, map_.dataWarnings(*log_));
    warn(outcome, libraryWarnings(libraryLines_->take()));
    for (auto& sDetail : outcome.details)
        sDetail = printable(sDetail);
    outcome.sSummary = printable(outcome.sSummary);
    return outcome;
}

void DialogWatch::describeSaved(ui::ExportOutcome& outcome, const LostShapesList& lost) const {
    outcome.sDocument = absolutePath(log_->savedPath());
    outcome.kind = log_->failures() > 0 || !lost.empty() ? ui::ExportOutcome::Kind::Incomplete
                   : outcome.details.empty()             ? ui::ExportOutcome::Kind::Written
                                                         : ui::ExportOutcome::Kind::Warned;
    outcome.sSummary = writtenSentence(outcome.sDocument, *log_);
    if (const std::string sIncomplete = incompleteSentence(*log_, lost); !sIncomplete.empty())
        outcome.sSummary += ". " + asSentence(sIncomplete);
    for (const auto& sWhat : replaced_)
        warn(outcome, {"the document replaced " + sWhat});
    if (!log_->notDurableReason().empty())
        warn(outcome, {notDurableWarning(outcome.sDocument, log_->notDurableReason())});
    warn(outcome, repairWarnings(log_->repairs()));
}

void DialogWatch::describeNotSaved(ui::ExportOutcome& outcome) const {
    std::vector<std::string> problems;
    if (!sRefusal_.empty())
        problems = {sRefusal_};
    else if (!log_->givenUp())
        problems = controlProblems(request_.sControlXML, map_.secondEdition());
    const std::string sReason = problems.size() == 1 ? problems.front() : whyNotSaved(*log_, "");
    outcome.sSummary = asSentence(notWrittenSentence(documentPath(request_), sReason));
    if (problems.size() > 1)
        outcome.details.insert(outcome.details.end(), problems.begin(), problems.end());
}

} // namespace halvane
