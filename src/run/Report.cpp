#include "run/Report.h"

#include "base/Redaction.h"
#include "telling/Messages.h"
#include "telling/Text.h"
#include "telling/Version.h"

#include <nlohmann/json.hpp>

namespace halvane {

namespace {

using Json = nlohmann::ordered_json;

std::string_view outcome(const ReportFacts& facts) {
    if (facts.bCancelled)
        return "cancelled";
    switch (facts.exitCode) {
    case ExitCode::Written:
        return "written";
    case ExitCode::InvalidInput:
        return "refused";
    case ExitCode::WrittenIncomplete:
        return "incomplete";
    case ExitCode::Findings:
    case ExitCode::NotWritten:
        break;
    }
    return "not written";
}

Json textOrNull(const std::string& sText) {
    return sText.empty() ? Json(nullptr) : Json(withoutPasswords(sText));
}

Json texts(const std::vector<std::string>& lines) {
    Json array = Json::array();
    for (const auto& sLine : lines)
        array.push_back(withoutPasswords(sLine));
    return array;
}

Json lostShapes(const std::vector<host::LostShapes>& lost) {
    Json array = Json::array();
    for (const auto& ofLayer : lost)
        array.push_back({{"layer", ofLayer.sLayer},
                         {"location", withoutPasswords(ofLayer.sLocation)},
                         {"count", ofLayer.nCount},
                         {"reason", withoutPasswords(ofLayer.sReason)}});
    return array;
}

Json sources(const Sources& read) {
    return {{"files", texts(read.files)}, {"data", texts(read.data)}, {"elsewhere", read.bElsewhere}};
}

/// The line is one of an included part.
void addPart(Json& entry, const std::string& sPart) {
    if (!sPart.empty())
        entry["part"] = sPart;
}

Json place(const ControlNodeFacts& facts) {
    Json entry{{"line", facts.lLine}, {"element", facts.sElement}, {"name", facts.sName}};
    addPart(entry, facts.sPart);
    return entry;
}

std::string sentence(const ControlNodeFacts& facts, const NodeEvent& event, bool bHasMap) {
    return withoutPasswords(explain(facts, event, {bHasMap ? "" : sGiveAMap}));
}

Json failureJson(const ControlNodeFacts& facts, const NodeEvent& event, bool bHasMap) {
    Json entry = place(facts);
    entry["number"] = event.lNumber;
    entry["description"] = withoutPasswords(event.sText);
    entry["message"] = sentence(facts, event, bHasMap);
    entry["count"] = event.lCount;
    return entry;
}

Json noticeJson(const ControlNodeFacts& facts, const NodeEvent& event, bool bHasMap) {
    Json entry = place(facts);
    entry["kind"] = nameOf(*event.notice);
    entry["detail"] = withoutPasswords(event.sText);
    entry["message"] = sentence(facts, event, bHasMap);
    entry["count"] = event.lCount;
    return entry;
}

Json findingJson(const Finding& finding) {
    Json entry{{"line", finding.lLine},
               {"element", finding.sElement},
               {"name", finding.sName},
               {"kind", finding.sKind},
               {"detail", withoutPasswords(finding.sDetail)},
               {"message", withoutPasswords(explain(finding))},
               {"count", 1}};
    addPart(entry, finding.sPart);
    return entry;
}

Json schemaErrorJson(const SchemaError& error) {
    Json entry{{"documentLine", error.lDocumentLine},
               {"line", error.lLine},
               {"element", error.sElement},
               {"name", error.sName},
               {"otherLines", error.otherLines},
               {"message", withoutPasswords(error.sMessage)},
               {"count", error.lCount}};
    addPart(entry, error.sPart);
    return entry;
}

void addEvents(Json& report, const ExportLog& log, bool bHasMap) {
    for (const auto& [lPosition, record] : log.records()) {
        for (const NodeEvent& event : record.events)
            if (event.notice)
                report["notices"].push_back(noticeJson(record.facts, event, bHasMap));
            else
                report["failures"].push_back(failureJson(record.facts, event, bHasMap));
    }
}

} // namespace

std::string reportJson(const ReportFacts& facts, const ExportLog* pLog) {
    const auto repairs = pLog == nullptr ? dom::CharacterRepairs{} : pLog->repairs();
    Json report{{"version", 1},
                {"program", "halvane " + std::string(version())},
                {"outcome", outcome(facts)},
                {"exitCode", static_cast<int>(facts.exitCode)},
                {"document", textOrNull(facts.sDocument)},
                {"control", withoutPasswords(facts.sControl)},
                {"map", textOrNull(facts.sMap)},
                {"items", pLog == nullptr ? 0 : pLog->items()},
                {"characterRepairs", {{"dropped", repairs.dropped}, {"replaced", repairs.replaced}}},
                {"problems", texts(facts.problems)},
                {"warnings", texts(facts.warnings)},
                {"lostShapes", lostShapes(facts.lostShapes)},
                {"failures", Json::array()},
                {"schema", textOrNull(facts.sSchema)},
                {"schemaErrors", Json::array()},
                {"notices", Json::array()},
                {"sources", sources(facts.sources)},
                {"durationSeconds", facts.duration.count()}};
    for (const SchemaError& error : facts.schemaErrors)
        report["schemaErrors"].push_back(schemaErrorJson(error));
    for (const Finding& finding : facts.findings)
        report["notices"].push_back(findingJson(finding));
    if (pLog != nullptr)
        addEvents(report, *pLog, !facts.sMap.empty());
    return withoutSteering(report.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

} // namespace halvane
