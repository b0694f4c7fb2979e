#include "host/gdal/source/ServerSnapshots.h"

#include "host/gdal/source/Errors.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/MissingRows.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"

namespace halvane::host::gdal {

namespace {

constexpr const char* pReadOneState = "SET TRANSACTION ISOLATION LEVEL REPEATABLE READ, READ ONLY";

void run(GDALDataset& dataset, const std::string& sStatement) {
    const ResultSet result(dataset, sStatement);
}

// Without "FROM" the driver would ask outside the transaction.
bool answers(GDALDataset& dataset) {
    bool bAnswers = false;
    query(dataset, "SELECT one FROM (VALUES (1)) AS v (one)", [&](const QueryRow&) { bAnswers = true; });
    return bAnswers;
}

} // namespace

ServerSnapshots::States::~States() {
    const ErrorScope errors; // closing may report
    byConnection.clear();
}

std::shared_ptr<void> ServerSnapshots::hold() {
    std::shared_ptr<States> pStates = states_.lock();
    if (pStates == nullptr)
        states_ = pStates = std::make_shared<States>();
    return pStates;
}

void ServerSnapshots::join(const Source& source, GDALDataset& dataset) {
    if (!isServer(source) || states_.expired())
        return;
    const State& state = stateFor(source);
    const ErrorScope errors;
    dataset.StartTransaction(FALSE);
    run(dataset, pReadOneState);
    run(dataset, "SET TRANSACTION SNAPSHOT " + quotedText(state.sName));
    errors.raiseIfFailed("\"" + source.sDisplayName + "\" cannot be read as it was when the export began");
}

bool ServerSnapshots::leave(const Source& source, GDALDataset& dataset) {
    return isServer(source) && dataset.RollbackTransaction() == OGRERR_NONE;
}

std::string ServerSnapshots::stateOf(const Source& source) const {
    const auto pStates = states_.lock();
    if (pStates == nullptr || !isServer(source))
        return {};
    const auto found = pStates->byConnection.find(source.sOpenName);
    return found == pStates->byConnection.end() ? std::string() : found->second.sName;
}

void ServerSnapshots::letGo(const Source& source, GDALDataset& dataset) {
    const auto pStates = states_.lock();
    if (leave(source, dataset) || pStates == nullptr || !isServer(source))
        return;
    if (const auto found = pStates->byConnection.find(source.sOpenName); found != pStates->byConnection.end())
        found->second.bLost = found->second.bLost || !answers(dataset);
}

std::string ServerSnapshots::lost() const {
    const auto pStates = states_.lock();
    if (pStates == nullptr)
        return {};
    for (const auto& [sConnection, state] : pStates->byConnection)
        if (state.bLost || !answers(*state.pConnection))
            return state.sDisplayName;
    return {};
}

const ServerSnapshots::State& ServerSnapshots::stateFor(const Source& source) {
    const auto pStates = states_.lock();
    if (const auto found = pStates->byConnection.find(source.sOpenName); found != pStates->byConnection.end())
        return found->second;
    MissingRows missing;
    State state{openDataset(source, missing), {}, source.sDisplayName};
    const ErrorScope errors;
    state.pConnection->StartTransaction(FALSE);
    run(*state.pConnection, pReadOneState);
    // Without "FROM" the driver asks outside the transaction.
    query(*state.pConnection, "SELECT name FROM pg_export_snapshot() AS name",
          [&](const QueryRow& row) { state.sName = row.text(0); });
    if (state.sName.empty())
        errors.raise("\"" + source.sDisplayName + "\" does not hold its state for the export");
    return pStates->byConnection.emplace(source.sOpenName, std::move(state)).first->second;
}

} // namespace halvane::host::gdal
