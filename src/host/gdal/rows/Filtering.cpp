#include "host/gdal/rows/Filtering.h"

#include "base/Text.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"

#include <optional>

namespace halvane::host::gdal {

namespace {

// What a database says against reading from a table; "" for nothing. It is not read.
std::string whyRefused(const LayerHandle& layer, const std::string& sFrom) {
    const ErrorScope errors;
    const ResultSet result(layer.dataset(), "SELECT 1 FROM " + sFrom + " LIMIT 0");
    return errors.failed() ? errors.text() : "";
}

// The drivers quote the statement before the reason, a server behind it.
std::string reasonIn(const std::string& sReported, bool bServer) {
    if (bServer)
        return std::string(trimBlanks(sReported.substr(0, sReported.find("LINE "))));
    const auto lEnd = sReported.rfind("): ");
    const std::string sReason = lEnd == std::string::npos ? sReported : sReported.substr(lEnd + 3);
    // Of a function that is refused the guard has told before the database does.
    return sReason.starts_with("not authorized") ? sReported.substr(0, sReported.find("; ")) : sReason;
}

// Databases look at a clause only when they prepare a statement; other drivers, when they are given it.
std::optional<std::string> whyNotPrepared(const LayerHandle& layer, const Clause& clause) {
    const std::string& sDriver = layer.source().sDriver;
    const bool bServer = isServer(layer.source());
    if (clause.isEmpty() || (sDriver != "GPKG" && sDriver != "SQLite" && !bServer))
        return std::nullopt;
    const std::string sLayer = layer.layer().GetName();
    const std::string sTable = bServer ? serverTable(sLayer) : quotedName(sLayer);
    const std::string sReason = whyRefused(layer, sTable + clause.condition());
    // A layer that is no table of its name tells nothing about the clause.
    if (sReason.empty() || !whyRefused(layer, sTable).empty())
        return std::nullopt;
    return reasonIn(sReason, bServer);
}

bool isLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           static_cast<unsigned char>(c) >= 0x80;
}

// Whether a text goes on behind its end, or has none: 'O'Hara'.
bool hasApostropheInText(const std::string& sWhere) {
    for (std::size_t nAt = 0; nAt < sWhere.size(); ++nAt) {
        const char c = sWhere[nAt];
        if (c != '\'' && c != '"')
            continue;
        nAt = endOfQuoted(sWhere, nAt);
        if (c == '\'' &&
            (nAt == sWhere.size() || (nAt + 1 < sWhere.size() && isLetterOrDigit(sWhere[nAt + 1]))))
            return true;
    }
    return false;
}

} // namespace

Failure withHint(const Failure& failure, const std::string& sWhere) {
    const bool bOfClause = failure.description().find("\"" + sWhere + "\"") != std::string::npos;
    if (!bOfClause || !hasApostropheInText(sWhere))
        return failure;
    return {failure.number(), std::string(trimBlanks(failure.description())) +
                                  "; an apostrophe inside a text must be doubled: 'O''Hara' for O'Hara"};
}

void setFilter(OGRLayer& layer, const Clause& clause, const RowOrder& order) {
    const std::string sFilter = order.filter(clause);
    if (sFilter.empty())
        return; // a handle on loan has none
    const ErrorScope errors;
    const OGRErr code = layer.SetAttributeFilter(sFilter.c_str());
    if (code != OGRERR_NONE || errors.failed())
        errors.raise("The filter \"" + clause.text() + "\" is not valid for \"" + layer.GetName() + "\"");
}

void testClause(const LayerHandle& layer, const Clause& clause) {
    const std::string sTable = layer.layer().GetName();
    setFilter(layer.layer(), clause);
    if (const auto sReason = whyNotPrepared(layer, clause))
        throw refusedClause(clause.text(), sTable, *sReason);
}

// Reading tells only that the whole statement failed; preparing one for the clause alone tells why.
void raiseRejected(const LayerHandle& layer, const Clause& clause, const Failure& failure) {
    if (const auto sReason = whyNotPrepared(layer, clause))
        throw refusedClause(clause.text(), layer.layer().GetName(), *sReason);
    throw failure;
}

} // namespace halvane::host::gdal
