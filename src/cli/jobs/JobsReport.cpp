#include "cli/jobs/JobsReport.h"

#include "base/Redaction.h"
#include "telling/Text.h"
#include "telling/Version.h"

#include <nlohmann/json.hpp>

namespace halvane::cli {

namespace {

using OrderedJson = nlohmann::ordered_json;

std::string dumped(const OrderedJson& value, int nIndent) {
    return withoutSteering(value.dump(nIndent, ' ', false, OrderedJson::error_handler_t::replace));
}

} // namespace

void JobsReport::set(std::size_t nJob, const Entry& entry) {
    const auto report = OrderedJson::parse(entry.sReport, nullptr, false);
    entries_.at(nJob) =
        dumped({{"line", entry.nLine},
                {"output", withoutPasswords(entry.sOutput)},
                {"outcome", wordOf(entry.outcome)},
                {"reason",
                 entry.sReason.empty() ? OrderedJson(nullptr) : OrderedJson(withoutPasswords(entry.sReason))},
                {"report", report.is_object() ? report : OrderedJson(nullptr)}},
               -1);
}

std::string JobsReport::json(const JobCounts& counts, std::chrono::duration<double> duration) const {
    OrderedJson report{{"version", 1},
                       {"program", "halvane " + std::string(version())},
                       {"list", withoutPasswords(sList_)},
                       {"exitCode", static_cast<int>(counts.exitCode())},
                       {"durationSeconds", duration.count()},
                       {"jobs", OrderedJson::array()}};
    std::string sText = dumped(report, 2);
    std::string sJobs;
    for (const auto& sEntry : entries_)
        sJobs += (sJobs.empty() ? "\n    " : ",\n    ") + sEntry;
    constexpr std::string_view sEmpty = "[]";
    return sText.replace(sText.rfind(sEmpty), sEmpty.size(), "[" + sJobs + "\n  ]") + "\n";
}

} // namespace halvane::cli
