#include "host/gdal/rows/Clause.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"

#include <algorithm>
#include <optional>

namespace halvane::host::gdal {

namespace {

[[noreturn]] void refuseClause(const std::string& sWhere, const std::string& sLayer,
                               const std::string& sWhy) {
    throw Failure(FailureNumber::HostFailure,
                  "The filter \"" + sWhere + "\" is not valid for \"" + sLayer + "\": " + sWhy);
}

// Where a quoted text or name that begins at a place ends; the text's end when it does not.
std::size_t endOfQuoted(const std::string& sWhere, std::size_t lBegin) {
    const std::size_t lEnd = sWhere.find(sWhere[lBegin], lBegin + 1);
    return lEnd == std::string::npos ? sWhere.size() : lEnd;
}

// A clause must stay within the brackets that it is put into, and nothing may stand behind it: a database
// would ignore a second statement.
void requireOneExpression(const std::string& sWhere, const std::string& sLayer) {
    int lDepth = 0;
    for (std::size_t lAt = 0; lAt < sWhere.size(); ++lAt) {
        const char c = sWhere[lAt];
        if (c == '\'' || c == '"' || c == '`')
            lAt = endOfQuoted(sWhere, lAt);
        else if (c == '-' && sWhere.compare(lAt, 2, "--") == 0)
            lAt = std::min(sWhere.find('\n', lAt), sWhere.size());
        else if (c == ';')
            refuseClause(sWhere, sLayer, "it holds more than one expression");
        else if (c == '/' && sWhere.compare(lAt, 2, "/*") == 0)
            refuseClause(sWhere, sLayer, "it holds a comment");
        else if (c == '(')
            ++lDepth;
        else if (c == ')' && --lDepth < 0)
            break;
    }
    if (lDepth != 0)
        refuseClause(sWhere, sLayer, "its brackets do not match");
}

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
std::optional<std::string> whyNotPrepared(const LayerHandle& layer, const std::string& sWhere) {
    const std::string& sDriver = layer.source().sDriver;
    const bool bServer = sDriver == "PostgreSQL";
    if (sWhere.empty() || (sDriver != "GPKG" && sDriver != "SQLite" && !bServer))
        return std::nullopt;
    const std::string sLayer = layer.layer().GetName();
    const std::string sTable = bServer ? serverTable(sLayer) : quotedName(sLayer);
    const std::string sReason = whyRefused(layer, sTable + " WHERE (" + sWhere + "\n)");
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
    for (std::size_t lAt = 0; lAt < sWhere.size(); ++lAt) {
        const char c = sWhere[lAt];
        if (c != '\'' && c != '"')
            continue;
        lAt = endOfQuoted(sWhere, lAt);
        if (c == '\'' &&
            (lAt == sWhere.size() || (lAt + 1 < sWhere.size() && isLetterOrDigit(sWhere[lAt + 1]))))
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

void setFilter(OGRLayer& layer, const std::string& sWhere, const RowOrder& order) {
    requireOneExpression(sWhere, layer.GetName());
    const std::string sFilter = order.filter(sWhere);
    if (sFilter.empty())
        return; // a handle on loan has none
    const ErrorScope errors;
    const OGRErr code = layer.SetAttributeFilter(sFilter.c_str());
    if (code != OGRERR_NONE || errors.failed())
        errors.raise("The filter \"" + sWhere + "\" is not valid for \"" + layer.GetName() + "\"");
}

std::string bothClauses(const std::string& sLeft, const std::string& sRight, const std::string& sLayer) {
    requireOneExpression(sLeft, sLayer);
    requireOneExpression(sRight, sLayer);
    if (sLeft.empty() || sRight.empty())
        return sLeft.empty() ? sRight : sLeft;
    // The line breaks keep a comment at the end of a clause from swallowing the bracket.
    return "(" + sLeft + "\n) AND (" + sRight + "\n)";
}

void testClause(const LayerHandle& layer, const std::string& sWhere) {
    const std::string sTable = layer.layer().GetName();
    setFilter(layer.layer(), sWhere);
    if (const auto sReason = whyNotPrepared(layer, sWhere))
        refuseClause(sWhere, sTable, *sReason);
}

// Reading tells only that the whole statement failed; preparing one for the clause alone tells why.
void raiseRejected(const LayerHandle& layer, const std::string& sWhere, const Failure& failure) {
    if (const auto sReason = whyNotPrepared(layer, sWhere))
        refuseClause(sWhere, layer.layer().GetName(), *sReason);
    throw failure;
}

} // namespace halvane::host::gdal
