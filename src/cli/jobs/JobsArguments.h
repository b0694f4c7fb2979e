#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace halvane::cli {

/// Every so many jobs of a list, so that several machines can share it.
struct Shard {
    std::size_t nNumber = 1; ///< from 1 to nShards
    std::size_t nShards = 1;
};

/// What `halvane export` takes for a list of exports, beside what holds for each of them.
struct JobsArguments {
    std::optional<std::string> sList;      ///< nothing: one export
    std::optional<std::size_t> nProcesses; ///< nothing: as many as there are processors
    std::optional<Shard> shard;
    std::optional<std::string> sState; ///< nothing: beside the list
    bool bResume = false;
};

/// Declares them beside those of an export, of which CONTROL and OUTPUT may then be missing.
/// @param arguments outlives the app.
void declareJobsArguments(CLI::App& app, JobsArguments& arguments);

} // namespace halvane::cli
