#pragma once

#include "cli/jobs/JobRows.h"
#include "cli/jobs/JobsArguments.h"
#include "run/ExportArguments.h"

#include <set>
#include <string>
#include <vector>

namespace halvane::cli {

/// An export of a list.
struct Job {
    std::size_t nLine = 0; ///< of the list
    ExportArguments arguments;
};

/// A list of exports, found fit to begin with: what the jobs lack each of them tells when its turn comes.
struct JobList {
    std::vector<Job> jobs;
    std::set<std::string> written; ///< absolute: where all jobs, also those of other shards, may write
};

/// A file that the run writes beside the documents: no job may read or write it.
struct OwnFile {
    std::string sWhat;
    std::string sPath; ///< absolute
};

/// Reads a list.
/// @param common holds for each export, whose own options come on top.
/// @param problems gets a line for each reason why nothing can be begun.
[[nodiscard]] JobList readJobList(const std::string& sList, const ExportArguments& common,
                                  const std::vector<OwnFile>& ownFiles, std::vector<std::string>& problems);

/// Leaves a shard's jobs alone in the list.
void keepShard(const Shard& shard, JobList& list);

} // namespace halvane::cli
