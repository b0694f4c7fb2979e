#include "cli/jobs/JobRows.h"

#include "base/NearestName.h"
#include "base/Text.h"
#include "cli/jobs/Csv.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <optional>

namespace halvane::cli {

namespace {

using Problems = std::vector<JobProblem>;
using Json = nlohmann::json;

constexpr std::array<const char*, 4> aNames{"map", "control", "output", "options"};

bool isKnown(std::string_view sName) {
    return std::ranges::find(aNames, sName) != aNames.end();
}

std::string unknown(std::string_view sName) {
    return fmt::format("\"{}\" is not known; there are map, control, output and options{}", sName,
                       NearestName(sName).offerAll(aNames).question("; "));
}

/// Where a member or column of the name goes; nothing for the options.
std::string* placeIn(JobRow& row, std::string_view sName) {
    if (sName == "map")
        return &row.sMap;
    return sName == "control" ? &row.sControl : sName == "output" ? &row.sOutput : nullptr;
}

void checkRow(const JobRow& row, Problems& problems) {
    if (row.sControl.empty())
        problems.push_back({row.nLine, "the control file is missing"});
    if (row.sOutput.empty())
        problems.push_back({row.nLine, "the output is missing"});
}

std::vector<std::string> readHeader(CsvReader& csv, Problems& problems) {
    std::vector<std::string> names;
    static_cast<void>(csv.next(names));
    for (auto& sName : names) {
        sName = std::string(trimBlanks(sName));
        if (!isKnown(sName))
            problems.push_back({csv.line(), unknown(sName)});
        if (std::ranges::count(names, sName) > 1)
            problems.push_back({csv.line(), fmt::format("there are two columns \"{}\"", sName)});
    }
    for (const char* sNeeded : {"control", "output"})
        if (std::ranges::find(names, sNeeded) == names.end())
            problems.push_back({csv.line(), fmt::format("the first line names no column \"{}\"", sNeeded)});
    return names;
}

JobRow rowOf(const std::vector<std::string>& names, const std::vector<std::string>& values, std::size_t nLine,
             Problems& problems) {
    JobRow row;
    row.nLine = nLine;
    for (std::size_t i = 0; i < std::min(names.size(), values.size()); ++i) {
        if (std::string* const pPlace = placeIn(row, names[i]))
            *pPlace = values[i];
        else if (!splitWords(values[i], row.options))
            problems.push_back({nLine, "the options leave a quote open"});
    }
    if (values.size() > names.size())
        problems.push_back({nLine, fmt::format("there are {} values for {} columns; quote a value that holds "
                                               "a separator",
                                               values.size(), names.size())});
    return row;
}

std::vector<JobRow> readCsv(std::string_view sText, Problems& problems) {
    CsvReader csv(sText);
    const auto names = readHeader(csv, problems);
    std::vector<JobRow> rows;
    std::vector<std::string> values;
    const bool bNamed = problems.empty();
    while (bNamed && rows.size() <= mostJobs && csv.next(values)) {
        Problems ofRow;
        rows.push_back(rowOf(names, values, csv.line(), ofRow));
        if (csv.leftOpen())
            ofRow.push_back({csv.line(), "a quote is left open"});
        if (ofRow.empty())
            checkRow(rows.back(), ofRow);
        problems.insert(problems.end(), ofRow.begin(), ofRow.end());
    }
    return rows;
}

void takeMember(const std::string& sName, const Json& value, JobRow& row, Problems& problems) {
    std::string* const pPlace = placeIn(row, sName);
    const auto isText = [](const Json& item) { return item.is_string(); };
    if (!isKnown(sName))
        problems.push_back({row.nLine, unknown(sName)});
    else if (pPlace != nullptr && value.is_string())
        *pPlace = value.get<std::string>();
    else if (pPlace != nullptr)
        problems.push_back({row.nLine, fmt::format("\"{}\" is not a text", sName)});
    else if (value.is_array() && std::ranges::all_of(value, isText))
        row.options = value.get<std::vector<std::string>>();
    else
        problems.push_back({row.nLine, "\"options\" is not a list of texts"});
}

JobRow readObject(std::string_view sLine, std::size_t nLine, Problems& problems) {
    JobRow row;
    row.nLine = nLine;
    const Json object = Json::parse(sLine, nullptr, false);
    if (!object.is_object()) {
        problems.push_back({nLine, "this is not a JSON object on a line of its own"});
        return row;
    }
    const std::size_t nBefore = problems.size();
    for (const auto& [sName, value] : object.items())
        takeMember(sName, value, row, problems);
    if (problems.size() == nBefore)
        checkRow(row, problems);
    return row;
}

std::vector<JobRow> readJsonLines(std::string_view sText, Problems& problems) {
    std::vector<JobRow> rows;
    for (std::size_t nLine = 1; !sText.empty() && rows.size() <= mostJobs; ++nLine) {
        const std::size_t nEnd = std::min(sText.find('\n'), sText.size());
        const std::string_view sLine = sText.substr(0, nEnd);
        if (sLine.find_first_not_of(" \t\r") != std::string_view::npos)
            rows.push_back(readObject(sLine, nLine, problems));
        sText.remove_prefix(std::min(nEnd + 1, sText.size()));
    }
    return rows;
}

} // namespace

bool splitWords(std::string_view sText, std::vector<std::string>& words) {
    std::optional<std::string> sWord;
    char cQuote = '\0';
    for (const char c : sText) {
        if (cQuote == '\0' && (c == ' ' || c == '\t' || c == '\n' || c == '\r')) {
            if (sWord)
                words.push_back(*sWord);
            sWord.reset();
            continue;
        }
        if (!sWord)
            sWord.emplace();
        if (cQuote == c)
            cQuote = '\0';
        else if (cQuote == '\0' && (c == '\'' || c == '"'))
            cQuote = c;
        else
            *sWord += c;
    }
    if (sWord)
        words.push_back(*sWord);
    return cQuote == '\0';
}

std::vector<JobRow> readJobRows(std::string_view sText, Problems& problems) {
    if (sText.starts_with("\xEF\xBB\xBF"))
        sText.remove_prefix(3);
    const auto nFirst = sText.find_first_not_of(" \t\r\n");
    if (nFirst == std::string_view::npos) {
        problems.push_back({0, "the list is empty"});
        return {};
    }
    auto rows = sText[nFirst] == '{' ? readJsonLines(sText, problems) : readCsv(sText, problems);
    if (rows.size() > mostJobs)
        problems.push_back({0, fmt::format("the list has more than {} exports; divide it", mostJobs)});
    else if (rows.empty() && problems.empty())
        problems.push_back({0, "the list has no export"});
    return rows;
}

} // namespace halvane::cli
