#include "run/SecondEditionKit.h"

#include "engine/second/NodeExpression.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace halvane {

/// A point in time, and where its clock stands.
struct SecondEditionKit::Moment {
    std::int64_t nSeconds = 0; ///< since 1970-01-01 UTC
    std::tm clock{};
    long lOffset = 0; ///< seconds east of UTC

    static Moment now() {
        Moment moment;
        if (const char* sEpoch = std::getenv("SOURCE_DATE_EPOCH"); sEpoch != nullptr && moment.read(sEpoch))
            return moment;
        const std::time_t nNow = std::time(nullptr);
        moment.nSeconds = nNow;
        localtime_r(&nNow, &moment.clock);
        moment.lOffset = moment.clock.tm_gmtoff;
        return moment;
    }

    [[nodiscard]] std::string date() const { return fmt::format("{:%Y-%m-%d}", clock); }
    [[nodiscard]] std::string dateTime() const {
        const long lMinutes = std::abs(lOffset) / 60;
        return fmt::format("{:%Y-%m-%dT%H:%M:%S}", clock) +
               (lOffset == 0
                    ? "Z"
                    : fmt::format("{}{:02}:{:02}", lOffset < 0 ? '-' : '+', lMinutes / 60, lMinutes % 60));
    }

private:
    bool read(std::string_view sEpoch) {
        const auto [pEnd, code] = std::from_chars(sEpoch.data(), sEpoch.data() + sEpoch.size(), nSeconds);
        const std::time_t nMoment = nSeconds;
        return code == std::errc() && pEnd == sEpoch.data() + sEpoch.size() &&
               gmtime_r(&nMoment, &clock) != nullptr;
    }
};

SecondEditionKit::SecondEditionKit() : SecondEditionKit(Moment::now()) {}

SecondEditionKit::SecondEditionKit(const Moment& moment)
    : pEvaluator_(std::make_unique<expression::sqlite::SqliteEvaluator>(moment.nSeconds)),
      pParts_(std::make_unique<PartFiles>()),
      edition_{*pEvaluator_, moment.date(), moment.dateTime(), {}, pParts_.get(), {}, {}},
      pLeft_(std::make_shared<std::set<std::string, std::less<>>>()) {}

std::vector<std::string> SecondEditionKit::setValues(const std::vector<std::string>& values) {
    std::vector<std::string> problems;
    for (const std::string_view sGiven : values) {
        const auto nEquals = sGiven.find('=');
        const std::string_view sName = sGiven.substr(0, nEquals);
        const auto isLetter = [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
        };
        const bool bName =
            nEquals != std::string_view::npos && !sName.empty() && isLetter(sName.front()) &&
            std::ranges::all_of(sName, [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); });
        if (!bName)
            problems.push_back(
                fmt::format("--set: \"{}\" is not NAME=VALUE, as in author=Jo; a name is made of "
                            "letters, digits and \"_\"",
                            sGiven));
        else if (isKnownVariable(sName))
            problems.push_back(fmt::format("--set: \"${}\" has a meaning already; use another name", sName));
        else
            edition_.values.insert_or_assign(std::string(sName), std::string(sGiven.substr(nEquals + 1)));
    }
    for (const auto& [sName, sValue] : edition_.values)
        pLeft_->insert(sName);
    edition_.fnValueAsked = [pLeft = pLeft_](std::string_view sName) {
        if (const auto found = pLeft->find(sName); found != pLeft->end())
            pLeft->erase(found);
    };
    return problems;
}

} // namespace halvane
