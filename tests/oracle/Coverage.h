#pragma once

#include "oracle/Comparison.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>

namespace halvane::oracle {

/// How far a number of cases reach.
struct Coverage {
    std::size_t nCases = 0;
    std::size_t nSaved = 0;        ///< cases that end with a file
    std::size_t nFailing = 0;      ///< cases with at least one failure
    std::size_t nManyFailures = 0; ///< cases with at least five
    std::size_t nFiveNodes = 0;    ///< cases with at least 5 output nodes
    std::size_t nTwentyNodes = 0;
    std::size_t nNodes = 0;                         ///< output nodes of all cases
    std::map<std::string, std::size_t> casesByKind; ///< cases that write a value other than "" of that kind
    std::map<std::string, std::size_t> casesByTurn;
    std::map<std::string, std::size_t> casesByFailure; ///< by what they have in common

    [[nodiscard]] std::size_t casesOfKind(const std::string& sKind) const;
    [[nodiscard]] std::size_t casesOfTurn(const std::string& sTurn) const;
    void add(const Outcome& outcome, const Reach& reach);
};

/// Of the seeds 1 to nCases.
[[nodiscard]] Coverage coverageOf(std::uint64_t nCases);

std::ostream& operator<<(std::ostream& out, const Coverage& coverage);

} // namespace halvane::oracle
