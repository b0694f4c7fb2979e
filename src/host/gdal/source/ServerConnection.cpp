#include "host/gdal/source/ServerConnection.h"

#include "base/Text.h"
#include "host/gdal/source/Queries.h"

#include <array>
#include <string_view>
#include <utility>

namespace halvane::host::gdal {

namespace {

// What the data library takes out of a connection before the server's own library sees it.
constexpr std::array<std::string_view, 3> aOthersWords{"SCHEMAS=", "ACTIVE_SCHEMA=", "TABLES="};

/// As the server's own library understands it; nothing where that may not be what the data library does.
std::optional<std::string> connectionText(const Source& source) {
    constexpr std::string_view sPrefix = "PG:";
    std::string_view sText = source.sOpenName;
    if (!source.openOptions.empty())
        return std::nullopt;
    for (const std::string_view sWord : aOthersWords)
        if (containsIgnoringCase(sText, sWord))
            return std::nullopt;
    if (equalIgnoringCase(sText.substr(0, sPrefix.size()), sPrefix))
        sText.remove_prefix(sPrefix.size());
    return std::string(sText);
}

/// The statements after which a connection reads as a handle of the data library does.
std::optional<std::string> joiningStatements(const LayerHandle& layer) {
    const std::string sState = layer.heldState();
    if (sState.empty())
        return std::nullopt;
    // From this version on the text of a number is the shortest that is its value, unless fewer digits are
    // asked for.
    constexpr const char* pSession = "SELECT current_setting('server_version_num')::int >= 120000 AND "
                                     "current_setting('extra_float_digits')::int > 0 AS exact, "
                                     "current_setting('client_encoding') AS encoding, "
                                     "current_setting('TimeZone') AS zone, current_setting('search_path') AS "
                                     "path FROM (VALUES (1)) AS v (one)";
    std::optional<std::string> statements;
    query(layer.dataset(), pSession, [&](const QueryRow& row) {
        if (row.whole(0) == 0)
            return;
        const auto setting = [&row](const char* pName, int lColumn) {
            return std::string(", set_config('") + pName + "', " + quotedText(row.text(lColumn)) + ", true)";
        };
        statements = "BEGIN ISOLATION LEVEL REPEATABLE READ, READ ONLY; SET TRANSACTION SNAPSHOT " +
                     quotedText(sState) + "; SELECT set_config('DateStyle', 'ISO', true)" +
                     setting("client_encoding", 1) + setting("TimeZone", 2) + setting("search_path", 3);
    });
    return statements;
}

} // namespace

std::unique_ptr<ServerConnection> ServerConnection::tryOpen(const LayerHandle& layer) {
    const auto sConnection = connectionText(layer.source());
    const auto sStatements = sConnection ? joiningStatements(layer) : std::nullopt;
    if (!sStatements)
        return nullptr;
    std::unique_ptr<ServerConnection> pOpened(new ServerConnection(*sConnection));
    return pOpened->run(*sStatements) == nullptr ? nullptr : std::move(pOpened);
}

ServerConnection::ServerConnection(const std::string& sConnection)
    : pConnection_(PQconnectdb(sConnection.c_str())), pCancel_(PQgetCancel(pConnection_.get())),
      watch_([this] { cancel(); }) {
    // What a server notes in passing would be written to standard error.
    const PQnoticeProcessor fnSilent = [](void*, const char*) {};
    PQsetNoticeProcessor(pConnection_.get(), fnSilent, nullptr);
}

ServerResult ServerConnection::run(const std::string& sStatement) {
    return begin(sStatement) ? finish() : nullptr;
}

bool ServerConnection::begin(const std::string& sStatement) {
    return PQsendQuery(pConnection_.get(), sStatement.c_str()) != 0;
}

// All results are waited for, since the connection takes no further statement before.
ServerResult ServerConnection::finish() {
    ServerResult pLast;
    bool bFailed = false;
    while (ServerResult pResult{PQgetResult(pConnection_.get())}) {
        const ExecStatusType status = PQresultStatus(pResult.get());
        bFailed = bFailed || (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK);
        pLast = std::move(pResult);
    }
    return bFailed ? nullptr : std::move(pLast);
}

void ServerConnection::cancel() const noexcept {
    std::array<char, 256> aWhyNot{};
    if (pCancel_ != nullptr)
        static_cast<void>(PQcancel(pCancel_.get(), aWhyNot.data(), static_cast<int>(aWhyNot.size())));
}

} // namespace halvane::host::gdal
