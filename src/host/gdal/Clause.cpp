#include "host/gdal/Clause.h"

#include "collection/Failure.h"
#include "host/gdal/Errors.h"
#include "host/gdal/Queries.h"

#include <algorithm>

namespace halvane::host::gdal {

namespace {

[[noreturn]] void refuseClause(const std::string& sWhere, const std::string& sLayer, const char* sWhy) {
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

} // namespace

void setFilter(OGRLayer& layer, const std::string& sWhere, const RowOrder& order) {
    requireOneExpression(sWhere, layer.GetName());
    const std::string sFilter = order.filter(sWhere);
    if (sFilter.empty()) {
        return; // a handle on loan has none
    }
    const ErrorScope errors;
    const OGRErr code = layer.SetAttributeFilter(sFilter.c_str());
    if (code != OGRERR_NONE || errors.failed()) {
        errors.raise("The filter \"" + sWhere + "\" is not valid for \"" + layer.GetName() + "\"");
    }
}

std::string bothClauses(const std::string& sLeft, const std::string& sRight, const std::string& sLayer) {
    requireOneExpression(sLeft, sLayer);
    requireOneExpression(sRight, sLayer);
    if (sLeft.empty() || sRight.empty()) {
        return sLeft.empty() ? sRight : sLeft;
    }
    // The line breaks keep a comment at the end of a clause from swallowing the bracket.
    return "(" + sLeft + "\n) AND (" + sRight + "\n)";
}

// Reading tells only that the whole statement failed; preparing one for the clause alone tells why.
void raiseRejected(const LayerHandle& layer, const std::string& sWhere, const Failure& failure) {
    const std::string& sDriver = layer.source().sDriver;
    const std::string sTable = layer.layer().GetName();
    if (!sWhere.empty() && (sDriver == "GPKG" || sDriver == "SQLite")) {
        const ErrorScope errors;
        const ResultSet result(layer.dataset(),
                               "SELECT 1 FROM " + quotedName(sTable) + " WHERE " + sWhere + "\n LIMIT 0");
        const std::string sReason = errors.text();
        if (const auto lEnd = sReason.rfind("): "); errors.failed() && lEnd != std::string::npos) {
            throw Failure(FailureNumber::HostFailure, "The filter \"" + sWhere + "\" is not valid for \"" +
                                                          sTable + "\": " + sReason.substr(lEnd + 3));
        }
    }
    throw failure;
}

} // namespace halvane::host::gdal
