#include "oracle/Coverage.h"

#include <ostream>
#include <set>

namespace halvane::oracle {

namespace {

/// What failures of a kind have in common.
std::string kindOf(const std::string& sDescription) {
    const std::string sKind = sDescription.substr(0, sDescription.find_first_of("\":0123456789"));
    return sKind.rfind("There is no dataset", 0) == 0 ? "There is no dataset" : sKind;
}

void countEach(std::map<std::string, std::size_t>& cases, const std::map<std::string, std::size_t>& reached) {
    for (const auto& [sWhat, nTimes] : reached)
        cases[sWhat] += nTimes > 0 ? 1U : 0U;
}

void tellEach(std::ostream& out, const char* sTitle, const std::map<std::string, std::size_t>& cases) {
    out << sTitle << '\n';
    for (const auto& [sWhat, nCount] : cases)
        out << "  " << nCount << '\t' << sWhat << '\n';
}

} // namespace

std::size_t Coverage::casesOfKind(const std::string& sKind) const {
    const auto found = casesByKind.find(sKind);
    return found == casesByKind.end() ? 0 : found->second;
}

std::size_t Coverage::casesOfTurn(const std::string& sTurn) const {
    const auto found = casesByTurn.find(sTurn);
    return found == casesByTurn.end() ? 0 : found->second;
}

void Coverage::add(const Outcome& outcome, const Reach& reach) {
    ++nCases;
    nSaved += outcome.sFile.has_value() ? 1U : 0U;
    nFailing += outcome.aFailures.empty() ? 0U : 1U;
    nManyFailures += outcome.aFailures.size() >= 5 ? 1U : 0U;
    nFiveNodes += reach.nOutputNodes >= 5 ? 1U : 0U;
    nTwentyNodes += reach.nOutputNodes >= 20 ? 1U : 0U;
    nNodes += reach.nOutputNodes;
    countEach(casesByKind, reach.writtenByKind);
    countEach(casesByTurn, reach.turns);
    std::set<std::string> failures;
    for (const ToldFailure& failure : outcome.aFailures)
        failures.insert(kindOf(failure.sDescription));
    for (const std::string& sFailure : failures)
        ++casesByFailure[sFailure];
}

Coverage coverageOf(std::uint64_t nCases) {
    Coverage coverage;
    for (std::uint64_t nSeed = 1; nSeed <= nCases; ++nSeed) {
        Case testCase = makeCase(nSeed);
        Reach reach;
        const Outcome outcome = interpreted(testCase, &reach);
        coverage.add(outcome, reach);
    }
    return coverage;
}

std::ostream& operator<<(std::ostream& out, const Coverage& coverage) {
    out << coverage.nCases << " cases: " << coverage.nSaved << " saved, " << coverage.nFailing
        << " with failures, " << coverage.nManyFailures << " with five or more, " << coverage.nFiveNodes
        << " with 5 output nodes or more, " << coverage.nTwentyNodes << " with 20 or more, "
        << coverage.nNodes << " output nodes in all\n";
    tellEach(out, "cases that write a value of", coverage.casesByKind);
    tellEach(out, "cases that come to", coverage.casesByTurn);
    tellEach(out, "cases that fail by", coverage.casesByFailure);
    return out;
}

} // namespace halvane::oracle
