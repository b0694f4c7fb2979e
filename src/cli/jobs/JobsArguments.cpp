#include "cli/jobs/JobsArguments.h"

#include "cli/Arguments.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <charconv>
#include <string_view>

namespace halvane::cli {

namespace {

constexpr std::size_t mostProcesses = 512;
constexpr std::size_t mostShards = 1'000'000;

/// @returns 0 where it is no whole number from 1 on.
std::size_t countIn(std::string_view sText) {
    std::size_t nCount = 0;
    const char* pEnd = sText.data() + sText.size();
    const auto [pStop, code] = std::from_chars(sText.data(), pEnd, nCount);
    return code == std::errc() && pStop == pEnd ? nCount : 0;
}

std::size_t processesIn(const std::string& sText) {
    const std::size_t nCount = countIn(sText);
    if (nCount == 0 || nCount > mostProcesses)
        throw CLI::ValidationError("--processes", "\"" + sText + "\" is not a whole number from 1 to " +
                                                      std::to_string(mostProcesses));
    return nCount;
}

Shard shardIn(const std::string& sText) {
    const auto nSlash = sText.find('/');
    const Shard shard{countIn(std::string_view(sText).substr(0, nSlash)),
                      nSlash == std::string::npos ? 0 : countIn(std::string_view(sText).substr(nSlash + 1))};
    if (shard.nNumber == 0 || shard.nNumber > shard.nShards || shard.nShards > mostShards)
        throw CLI::ValidationError("--shard", "\"" + sText + "\" is not I/N, a part of N, as in 1/8 to 8/8");
    return shard;
}

} // namespace

void declareJobsArguments(CLI::App& app, JobsArguments& arguments) {
    auto* const pControl = app.get_option("CONTROL");
    auto* const pOutput = app.get_option("OUTPUT");
    auto* const pList = app.add_option_function<std::string>(
        "--jobs",
        [&arguments, pControl, pOutput](const std::string& sText) {
            arguments.sList = sText;
            pControl->required(false);
            pOutput->required(false);
        },
        "Many exports: a CSV file with the columns map, control, output and options, or JSON Lines");
    pList->type_name("LIST")->excludes(pControl)->excludes(pOutput);
    const auto add = [&](const char* sName, const auto& take, const char* sDescription) {
        return app.add_option_function<std::string>(sName, take, sDescription)->needs(pList);
    };
    add(
        "--processes", [&arguments](const std::string& sText) { arguments.nProcesses = processesIn(sText); },
        "So many exports of the list at a time; without it as many as there are processors")
        ->type_name("N");
    add(
        "--shard", [&arguments](const std::string& sText) { arguments.shard = shardIn(sText); },
        "Only the I-th of N parts of the list: for several machines that share it")
        ->type_name("I/N");
    add(
        "--state", [&arguments](const std::string& sText) { arguments.sState = sText; },
        "Where it is kept what is done; without it LIST.state")
        ->type_name("FILE");
    app.add_flag("--resume", arguments.bResume, "Skip what is done and unchanged")->needs(pList);
}

} // namespace halvane::cli
