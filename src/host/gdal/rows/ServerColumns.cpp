#include "host/gdal/rows/ServerColumns.h"

#include "host/gdal/source/Errors.h"
#include "host/gdal/source/Queries.h"

#include <algorithm>
#include <map>
#include <system_error>
#include <utility>

namespace halvane::host::gdal {

namespace {

/// The columns of a table's rows, by the names that the server knows them by.
std::vector<std::string> columnsOf(OGRLayer& layer, const GdalFields& fields) {
    OGRFeatureDefn& definition = *layer.GetLayerDefn();
    std::vector<std::string> columns;
    for (const Column& column : fields.columns()) {
        if (column.kind == ColumnKind::ObjectId)
            columns.push_back(quotedName(layer.GetFIDColumn()));
        else if (column.kind == ColumnKind::Shape)
            columns.push_back(quotedName(layer.GetGeometryColumn()));
        else if (column.lColumn < definition.GetFieldCount())
            columns.push_back(quotedName(definition.GetFieldDefn(column.lColumn)->GetNameRef()));
    }
    return columns;
}

std::string listed(const std::vector<std::string>& items) {
    std::string sList;
    for (const std::string& sItem : items)
        sList += (sList.empty() ? "" : ", ") + sItem;
    return sList;
}

/// The server's names of types, by their numbers.
std::map<std::string, std::string> typeNames(ServerConnection& connection,
                                             const std::vector<std::string>& numbers) {
    std::map<std::string, std::string> names;
    const ServerResult pTypes = connection.run("SELECT oid, CASE WHEN typtype = 'e' THEN 'enum' WHEN "
                                               "typnamespace = 'pg_catalog'::regnamespace OR typname = "
                                               "'geometry' THEN typname END FROM pg_type WHERE oid IN (" +
                                               listed(numbers) + ")");
    for (int lRow = 0; lRow < PQntuples(pTypes.get()); ++lRow)
        names.emplace(PQgetvalue(pTypes.get(), lRow, 0), PQgetvalue(pTypes.get(), lRow, 1));
    return names;
}

/// How the values of each column are read, as far as that is sure. Of a domain the server tells the type
/// beneath it.
std::vector<ServerValue> valuesOf(ServerConnection& connection, const std::string& sTable,
                                  const std::vector<std::string>& columns, const GdalFields& fields) {
    const ServerResult pNone = connection.run("SELECT " + listed(columns) + " FROM " + sTable + " LIMIT 0");
    if (pNone == nullptr)
        return {};
    std::vector<std::string> numbers;
    for (int lColumn = 0; lColumn < PQnfields(pNone.get()); ++lColumn)
        numbers.push_back(std::to_string(PQftype(pNone.get(), lColumn)));
    const auto names = typeNames(connection, numbers);
    std::vector<ServerValue> values;
    for (std::size_t nColumn = 0; nColumn < numbers.size(); ++nColumn) {
        const auto pName = names.find(numbers[nColumn]);
        if (pName == names.end())
            break;
        const ServerValue* pValue = ServerValue::find(fields.columns()[nColumn].kind, pName->second);
        if (pValue == nullptr)
            break;
        values.push_back(*pValue);
    }
    return values;
}

std::string queryOf(OGRLayer& layer, std::vector<std::string> columns, const std::vector<ServerValue>& values,
                    std::int64_t lLastId, const std::string& sCondition) {
    const std::string sKey = columns.front();
    for (std::size_t nColumn = 0; nColumn < columns.size(); ++nColumn) {
        if (values[nColumn].bAsText)
            columns[nColumn] += "::text";
        else if (values[nColumn].kind == ColumnKind::Shape && layer.GetLayerDefn()->IsGeometryIgnored() != 0)
            columns[nColumn] = "NULL::bytea";
    }
    return "SELECT " + listed(columns) + " FROM " + serverTable(layer.GetName()) + " WHERE " + sKey + " > " +
           std::to_string(lLastId) + (sCondition.empty() ? "" : " AND " + sCondition) + " ORDER BY " + sKey;
}

/// How many rows to ask for: as many as take about so many bytes, found step by step.
class BlockSize {
public:
    [[nodiscard]] int rows() const { return lRows_; }
    void learn(const PGresult& rows) {
        constexpr std::size_t nMostRows = 2048;
        constexpr std::size_t nMostBytes = 1U << 20U;
        const auto lRead = static_cast<std::size_t>(std::max(PQntuples(&rows), 1));
        const std::size_t nBytesOfRow = std::max(PQresultMemorySize(&rows) / lRead, std::size_t{1});
        const std::size_t nNext = std::min({4 * lRead, nMostRows, nMostBytes / nBytesOfRow});
        lRows_ = static_cast<int>(std::max(nNext, std::size_t{1}));
    }

private:
    int lRows_ = 64;
};

} // namespace

std::unique_ptr<ServerColumns> ServerColumns::tryOpen(const LayerHandle& rows, const GdalFields& fields,
                                                      std::int64_t lLastId, const std::string& sCondition) {
    const ErrorScope errors;
    OGRLayer& layer = rows.layer();
    std::vector<std::string> columns = columnsOf(layer, fields);
    if (layer.GetFIDColumn()[0] == '\0' || columns.size() != fields.columns().size())
        return nullptr;
    auto pConnection = ServerConnection::tryOpen(rows);
    if (pConnection == nullptr)
        return nullptr;
    auto values = valuesOf(*pConnection, serverTable(layer.GetName()), columns, fields);
    if (values.size() != columns.size())
        return nullptr;
    const std::string sQuery = queryOf(layer, std::move(columns), values, lLastId, sCondition);
    std::unique_ptr<ServerColumns> pReader(new ServerColumns(std::move(pConnection), std::move(values)));
    return pReader->start(sQuery, lLastId) ? std::move(pReader) : nullptr;
}

ServerColumns::ServerColumns(std::unique_ptr<ServerConnection> pConnection, std::vector<ServerValue> values)
    : pConnection_(std::move(pConnection)), values_(std::move(values)) {}

// The thread may wait for a server that computes long.
ServerColumns::~ServerColumns() {
    if (!bReachedEnd_)
        pConnection_->cancel();
}

bool ServerColumns::start(const std::string& sQuery, std::int64_t lLastId) {
    if (pConnection_->run("DECLARE halvane_rows BINARY NO SCROLL CURSOR FOR " + sQuery) == nullptr)
        return false;
    try {
        ahead_.emplace([this, lLastId](Ahead& ahead) { read(ahead, lLastId); });
    } catch (const std::system_error&) {
        return false; // no thread can be had
    }
    return true;
}

// Runs on the thread. The server computes the next block while this one is read.
void ServerColumns::read(Ahead& ahead, std::int64_t lLastId) {
    const ErrorScope errors;
    ServerFilling filling(values_, lLastId, exchangeWith(ahead));
    BlockSize size;
    const auto ask = [&] {
        return pConnection_->begin("FETCH " + std::to_string(size.rows()) + " FROM halvane_rows");
    };
    bool bMore = ask();
    while (bMore) {
        const ServerResult pRows = pConnection_->finish();
        if (pRows == nullptr)
            break;
        bReachedEnd_ = PQntuples(pRows.get()) == 0;
        size.learn(*pRows);
        bMore = !bReachedEnd_ && ask() && filling.add(*pRows);
        filling.finish(); // the next block may take the server long
    }
}

ColumnBatchPtr ServerColumns::next(ColumnBatchPtr pUsed) {
    return ahead_->next(std::move(pUsed)).value_or(nullptr);
}

} // namespace halvane::host::gdal
