#include "run/check/CheckForms.h"

#include "base/Redaction.h"
#include "telling/Text.h"
#include "telling/Version.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstddef>

namespace halvane {

namespace {

using Json = nlohmann::ordered_json;

std::string fileOf(const CheckFinding& finding, std::string_view sControl) {
    return shownFile(sControl, finding.sPart);
}

std::string placed(const CheckFinding& finding, std::string_view sControl) {
    std::string sPlace = fileOf(finding, sControl);
    if (finding.place.lLine > 0)
        sPlace += fmt::format(":{}", finding.place.lLine);
    if (finding.place.lColumn > 0)
        sPlace += fmt::format(":{}", finding.place.lColumn);
    return sPlace;
}

std::string finished(const Json& json) {
    return withoutSteering(json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

Json textOrNull(const std::string& sText) {
    return sText.empty() ? Json(nullptr) : Json(withoutPasswords(sText));
}

Json numberOrNull(std::uint32_t lNumber) {
    return lNumber == 0 ? Json(nullptr) : Json(lNumber);
}

Json findingJson(const CheckFinding& finding, std::string_view sControl) {
    return {{"file", withoutPasswords(fileOf(finding, sControl))},
            {"line", numberOrNull(finding.place.lLine)},
            {"column", numberOrNull(finding.place.lColumn)},
            {"severity", wordOf(finding.pRule->severity)},
            {"rule", idOf(*finding.pRule)},
            {"element", textOrNull(finding.sElement)},
            {"name", textOrNull(finding.sName)},
            {"detail", textOrNull(finding.sDetail)},
            {"message", withoutPasswords(finding.explanation.sWhat)},
            {"fix", textOrNull(finding.explanation.sRemedy)},
            {"why", finding.pRule->sWhy}};
}

// ---- SARIF

/// A path as a reference of a URI: relative ones stay relative.
std::string uriOf(std::string_view sPath) {
    constexpr std::string_view sPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/!$&'()*+,;=@";
    if (sPath.find("://") != std::string_view::npos)
        return std::string(sPath);
    std::string sUri = sPath.starts_with('/') ? "file://" : "";
    for (const char c : sPath)
        if (sPlain.find(c) != std::string_view::npos)
            sUri += c;
        else
            sUri += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    return sUri;
}

Json sarifRule(const CheckRule& rule) {
    return {{"id", idOf(rule)},
            {"name", rule.sKind},
            {"shortDescription", {{"text", rule.sWhy}}},
            {"defaultConfiguration", {{"level", wordOf(rule.severity)}}}};
}

Json sarifResult(const CheckFinding& finding, std::string_view sControl) {
    Json place{{"artifactLocation", {{"uri", uriOf(withoutPasswords(fileOf(finding, sControl)))}}}};
    if (finding.place.lLine > 0)
        place["region"]["startLine"] = finding.place.lLine;
    if (finding.place.lLine > 0 && finding.place.lColumn > 0)
        place["region"]["startColumn"] = finding.place.lColumn;
    return {{"ruleId", idOf(*finding.pRule)},
            {"ruleIndex", finding.pRule - checkRules().data()},
            {"level", wordOf(finding.pRule->severity)},
            {"message", {{"text", withoutPasswords(message(finding))}}},
            {"locations", Json::array({{{"physicalLocation", std::move(place)}}})}};
}

} // namespace

std::string checkLines(const CheckOutcome& outcome, std::string_view sControl) {
    std::string sLines;
    for (const auto& finding : outcome.findings) {
        const std::string sName = finding.sName.empty() ? "" : fmt::format("\"{}\": ", finding.sName);
        sLines += printable(fmt::format("{}: {}: {}{} [{}]", placed(finding, sControl),
                                        wordOf(finding.pRule->severity), sName, message(finding),
                                        idOf(*finding.pRule))) +
                  "\n";
    }
    return sLines;
}

std::string checkJson(const CheckOutcome& outcome, std::string_view sControl) {
    Json json{{"version", 1},
              {"program", "halvane " + std::string(version())},
              {"control", withoutPasswords(outcome.sControl)},
              {"map", textOrNull(outcome.sMap)},
              {"exitCode", static_cast<int>(outcome.exitCode)},
              {"withoutMap", outcome.bWithoutMap},
              {"findings", Json::array()},
              {"problems", Json::array()},
              {"warnings", Json::array()}};
    for (const auto& finding : outcome.findings)
        json["findings"].push_back(findingJson(finding, sControl));
    for (const auto& sProblem : outcome.problems)
        json["problems"].push_back(withoutPasswords(sProblem));
    for (const auto& sWarning : outcome.warnings)
        json["warnings"].push_back(withoutPasswords(sWarning));
    return finished(json);
}

std::string checkSarif(const CheckOutcome& outcome, std::string_view sControl) {
    Json driver{{"name", "halvane"}, {"version", version()}, {"rules", Json::array()}};
    for (const auto& rule : checkRules())
        driver["rules"].push_back(sarifRule(rule));
    Json results = Json::array();
    for (const auto& finding : outcome.findings)
        results.push_back(sarifResult(finding, sControl));
    Json notifications = Json::array();
    for (const auto& sProblem : outcome.problems)
        notifications.push_back({{"level", "error"}, {"message", {{"text", withoutPasswords(sProblem)}}}});
    for (const auto& sWarning : outcome.warnings)
        notifications.push_back({{"level", "warning"}, {"message", {{"text", withoutPasswords(sWarning)}}}});
    const Json invocation{{"executionSuccessful", outcome.problems.empty()},
                          {"exitCode", static_cast<int>(outcome.exitCode)},
                          {"toolExecutionNotifications", std::move(notifications)}};
    return finished({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                     {"version", "2.1.0"},
                     {"runs", Json::array({{{"tool", {{"driver", std::move(driver)}}},
                                            {"invocations", Json::array({invocation})},
                                            {"columnKind", "unicodeCodePoints"},
                                            {"results", std::move(results)}}})}});
}

} // namespace halvane
