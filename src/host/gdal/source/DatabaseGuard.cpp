#include "host/gdal/source/DatabaseGuard.h"

#include "base/Text.h"
#include "host/gdal/source/DataInUse.h"
#include "host/gdal/source/DatabaseFunctions.h"
#include "host/gdal/source/Interruption.h"
#include "host/gdal/source/LostDefinitions.h"
#include "host/gdal/source/Queries.h"
#include "host/gdal/source/Sqlite.h"
#include "host/gdal/source/SystemTables.h"

#include <cpl_error.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

namespace {

// What indexes and searches inside the database itself.
constexpr std::array<const char*, 11> aKeptModules{
    "rtree",     "rtree_i32",           "geopoly",           "fts3", "fts4", "fts5", "json_each",
    "json_tree", "VirtualSpatialIndex", "VirtualElementary", nullptr};

std::string refusal(std::string_view sFunction) {
    return "the function \"" + std::string(sFunction) + "\" is not allowed in views and filters";
}

// What a driver itself calls while it opens a file.
bool isOfDriver(std::string_view sFunction) {
    return equalIgnoringCase(sFunction, "EnableGpkgAmphibiousMode");
}

// No authorizer is asked for the functions of a table's checks, which these run.
bool computesChecks(const char* pPragma) {
    return pPragma != nullptr &&
           (equalIgnoringCase(pPragma, "integrity_check") || equalIgnoringCase(pPragma, "quick_check"));
}

int decide(int lAction, const char* pName, const char* pFunction, bool bOpening) {
    if (lAction == SQLITE_ATTACH || (lAction == SQLITE_PRAGMA && computesChecks(pName)))
        return SQLITE_DENY;
    if (lAction != SQLITE_FUNCTION || pFunction == nullptr)
        return SQLITE_OK;
    try {
        if (isAllowedFunction(pFunction) || (bOpening && isOfDriver(pFunction)))
            return SQLITE_OK;
        // Drivers do not pass on all that the database tells them.
        CPLError(CE_Failure, CPLE_NotSupported, "%s", refusal(pFunction).c_str());
    } catch (const std::exception&) {
        // Without memory nothing is allowed.
    }
    return SQLITE_DENY;
}

int authorizeOpening(void* /*pData*/, int lAction, const char* pFirst, const char* pSecond,
                     const char* /*pDatabase*/, const char* /*pTrigger*/) {
    return decide(lAction, pFirst, pSecond, true);
}

int authorize(void* /*pData*/, int lAction, const char* pFirst, const char* pSecond,
              const char* /*pDatabase*/, const char* /*pTrigger*/) {
    return decide(lAction, pFirst, pSecond, false);
}

/// Why a query was refused first; "" for not at all.
struct Refusals {
    std::string sFirst;
};

// What the database shows of itself and of the process as tables.
bool isInternalTable(std::string_view sTable) {
    constexpr std::array<std::string_view, 7> aInternal{
        "dbstat", "sqlite_dbpage", "bytecode", "tables_used", "sqlite_stmt", "completion", "fts3tokenize"};
    const std::string sLower = lowerCase(sTable);
    return sLower.starts_with("pragma_") || std::ranges::find(aInternal, sLower) != aInternal.end();
}

std::string whyDeniedInQuery(int lAction, const char* pName, const char* pFunction) {
    const std::string sName = pName == nullptr ? "" : pName;
    switch (lAction) {
    case SQLITE_SELECT:
    case SQLITE_RECURSIVE:
        return {};
    case SQLITE_READ:
        return isInternalTable(sName) ? "the table \"" + sName + "\" is none of the data's" : "";
    case SQLITE_FUNCTION:
        return pFunction != nullptr && isAllowedFunction(pFunction) && !isOwnFunction(pFunction)
                   ? ""
                   : "the function \"" + std::string(pFunction == nullptr ? "" : pFunction) +
                         "\" is not allowed";
    default:
        return "it must be a SELECT that only reads";
    }
}

int authorizeQuery(void* pRefusals, int lAction, const char* pFirst, const char* pSecond,
                   const char* /*pDatabase*/, const char* /*pTrigger*/) {
    try {
        const std::string sWhy = whyDeniedInQuery(lAction, pFirst, pSecond);
        if (sWhy.empty())
            return SQLITE_OK;
        if (std::string& sFirst = static_cast<Refusals*>(pRefusals)->sFirst; sFirst.empty())
            sFirst = sWhy;
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): without memory nothing is allowed
    }
    return SQLITE_DENY;
}

void refuseCall(sqlite3_context* pContext, int /*lCount*/, sqlite3_value** /*ppValues*/) noexcept {
    const auto& sName = *static_cast<const std::string*>(sqlite3_user_data(pContext));
    try {
        sqlite3_result_error(pContext, refusal(sName).c_str(), -1);
    } catch (const std::exception&) {
        sqlite3_result_error_nomem(pContext);
    }
}

/// A function as a handle has it: one name may have several numbers of arguments and encodings.
struct RegisteredFunction {
    const std::string* pName; ///< stays as long as the process
    int lArguments;
    int lEncoding;
};

const std::string* kept(const std::string& sName) {
    static std::mutex mutex;
    static std::set<std::string> names;
    const std::lock_guard lock(mutex);
    return &*names.insert(sName).first;
}

int encodingNamed(std::string_view sEncoding) {
    if (sEncoding == "utf16le")
        return SQLITE_UTF16LE;
    return sEncoding == "utf16be" ? SQLITE_UTF16BE : SQLITE_UTF8;
}

/// @returns false when they cannot be told.
bool readForbiddenFunctions(sqlite3* pDatabase, std::vector<RegisteredFunction>& functions) {
    // name, builtin, type, enc, narg, flags: as a table the same list takes ten times as long.
    const StatementPtr pRows = prepare(pDatabase, "PRAGMA function_list");
    int lCode = pRows == nullptr ? SQLITE_ERROR : sqlite3_step(pRows.get());
    for (; lCode == SQLITE_ROW; lCode = sqlite3_step(pRows.get())) {
        const std::string sName = textOf(pRows.get(), 0);
        if (!isAllowedFunction(sName)) {
            functions.push_back(
                {kept(sName), sqlite3_column_int(pRows.get(), 4), encodingNamed(textOf(pRows.get(), 3))});
        }
    }
    return lCode == SQLITE_DONE && !functions.empty();
}

// Generated columns are taken as they are: no authorizer is asked for the functions that they call. So the
// functions themselves refuse.
bool replaceForbiddenFunctions(sqlite3* pDatabase) {
    std::vector<RegisteredFunction> functions;
    if (!readForbiddenFunctions(pDatabase, functions))
        return false;
    for (const RegisteredFunction& function : functions) {
        // The database hands the pointer back as it was given.
        auto* pName = const_cast<std::string*>(function.pName);
        if (sqlite3_create_function_v2(pDatabase, pName->c_str(), function.lArguments,
                                       function.lEncoding | SQLITE_DETERMINISTIC, pName, &refuseCall, nullptr,
                                       nullptr, nullptr) != SQLITE_OK)
            return false;
    }
    return true;
}

// Whether the database is a file of the data, not one of the library's own.
bool isData(sqlite3* pDatabase) {
    const char* pFile = sqlite3_db_filename(pDatabase, "main");
    const DataInUse data = dataInUse();
    if (data.pPath == nullptr || pFile == nullptr)
        return false;
    std::error_code error;
    const bool bSame = std::filesystem::equivalent(data.pPath, pFile, error);
    return error ? true : bSame;
}

// Modules of the tables that every GeoPackage and SpatiaLite database has.
constexpr std::array<const char*, 5> aSystemModules{"rtree", "VirtualSpatialIndex", "VirtualElementary",
                                                    "VirtualKNN", "VirtualKNN2"};

// Reads a table's definition as SQLite itself writes it: no other way of writing it is trusted.
bool isOfSystemModule(const std::string& sDefinition, const std::string& sTable) {
    const std::string sLower = lowerCase(sDefinition);
    for (const std::string& sName : {sTable, quotedName(sTable), quotedText(sTable)}) {
        for (const char* pModule : aSystemModules) {
            const std::string sUsing = lowerCase("CREATE VIRTUAL TABLE " + sName + " USING " + pModule);
            if (sLower == sUsing || sLower.starts_with(sUsing + "("))
                return true;
        }
    }
    return false;
}

bool hasGeneratedColumns(sqlite3* pDatabase, const std::string& sTable) {
    const StatementPtr pColumn =
        prepare(pDatabase, "SELECT 1 FROM pragma_table_xinfo(?1) WHERE hidden IN (2, 3)");
    return pColumn == nullptr ||
           sqlite3_bind_text(pColumn.get(), 1, sTable.c_str(), -1, SQLITE_TRANSIENT) != SQLITE_OK ||
           sqlite3_step(pColumn.get()) != SQLITE_DONE;
}

bool isSystemTable(const std::string& sTable) {
    return isGeoPackageTable(sTable) || isSpatialiteTable(sTable);
}

// A word without which a definition has no generated column.
constexpr const char* pMayCompute = "lower(sql) GLOB '*[^a-z0-9_]as[^a-z0-9_]*'";

/// The table that drivers read while they open the file, and that would compute or reach something then;
/// "" for none.
std::string untrustworthyTable(sqlite3* pDatabase) {
    const StatementPtr pTables = prepare(pDatabase, "SELECT name, sql, rootpage FROM sqlite_master WHERE "
                                                    "type = 'table' AND (rootpage = 0 OR " +
                                                        std::string(pMayCompute) + ")");
    while (pTables != nullptr && sqlite3_step(pTables.get()) == SQLITE_ROW) {
        const std::string sName = textOf(pTables.get(), 0);
        const bool bVirtual = sqlite3_column_int64(pTables.get(), 2) == 0;
        if (isSystemTable(sName) && (bVirtual ? !isOfSystemModule(textOf(pTables.get(), 1), sName)
                                              : hasGeneratedColumns(pDatabase, sName)))
            return sName;
    }
    return {};
}

bool mayComputeInTables(sqlite3* pDatabase) {
    return wholeNumber(pDatabase, "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND " +
                                      std::string(pMayCompute)) != 0;
}

// Steps of a statement: some thousand of them take less than a millisecond.
constexpr int lStepsBetweenTests = 10'000;

int endsNow(void* /*pData*/) {
    return interruptionAsked() ? 1 : 0;
}

/// Runs when a handle has been opened, and nothing is known to it yet but what SQLite itself has.
int guardFromTheStart(sqlite3* pDatabase, char** ppText, const void* /*pRoutines*/) noexcept {
    try {
        if (!isData(pDatabase))
            return SQLITE_OK;
        sqlite3_set_authorizer(pDatabase, &authorizeOpening, nullptr);
        sqlite3_progress_handler(pDatabase, lStepsBetweenTests, &endsNow, nullptr);
        // A view that the driver reads meanwhile reaches no virtual table.
        sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        loadDefinitions(pDatabase);
        const std::string sTable = untrustworthyTable(pDatabase);
        if (sTable.empty()) {
            // What failed here is the driver's to find: the handle must not keep it as the opening's failure.
            static_cast<void>(prepare(pDatabase, "SELECT 1"));
            return SQLITE_OK;
        }
        *ppText = sqlite3_mprintf("its table \"%s\" is none that keeps its rows itself", sTable.c_str());
        return SQLITE_AUTH;
    } catch (const std::exception&) {
        return SQLITE_NOMEM;
    }
}

} // namespace

void guardDatabaseFromTheStart() {
    // Whenever the library closes a database it may take back what runs at the opening of others: it is said
    // anew each time. The function is of the kind that runs; the declaration hides it.
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(&guardFromTheStart));
}

bool guardDatabase(GDALDataset& dataset) {
    const std::string_view sDriver = dataset.GetDriver()->GetDescription();
    if (sDriver != "GPKG" && sDriver != "SQLite")
        return true;
    sqlite3* pDatabase = databaseOf(dataset);
    if (pDatabase == nullptr)
        return true;
    auto aKept = aKeptModules;
    sqlite3_drop_modules(pDatabase, aKept.data());
    // A quoted name that is no column is a mistake, not a text that every row satisfies.
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 1, nullptr);
    sqlite3_set_authorizer(pDatabase, &authorize, nullptr);
    return !mayComputeInTables(pDatabase) || replaceForbiddenFunctions(pDatabase);
}

std::string whyNoQuery(GDALDataset& dataset, const std::string& sSql) {
    const std::string sWord = upperCase(sSql.substr(0, sSql.find_first_of(" \t\r\n(\"'[`*-+")));
    if (sWord != "SELECT" && sWord != "WITH")
        return "it must begin with SELECT, or with WITH for a SELECT";
    sqlite3* pDatabase = databaseOf(dataset);
    if (pDatabase == nullptr)
        return "the data has no SQL";
    Refusals refusals;
    sqlite3_set_authorizer(pDatabase, &authorizeQuery, &refusals);
    sqlite3_stmt* pRaw = nullptr;
    const char* pTail = nullptr;
    const int lCode =
        sqlite3_prepare_v2(pDatabase, sSql.c_str(), static_cast<int>(sSql.size()), &pRaw, &pTail);
    const StatementPtr pStatement(pRaw);
    std::string sWhy = lCode == SQLITE_OK ? "" : sqlite3_errmsg(pDatabase);
    sqlite3_set_authorizer(pDatabase, &authorize, nullptr);
    if (!refusals.sFirst.empty())
        return refusals.sFirst;
    if (!sWhy.empty())
        return sWhy;
    if (pTail != nullptr && !trimBlanks(pTail).empty())
        return "more than one statement; write one SELECT";
    if (sqlite3_stmt_readonly(pRaw) == 0 || sqlite3_column_count(pRaw) == 0)
        return "it must be a SELECT that only reads";
    if (sqlite3_bind_parameter_count(pRaw) != 0)
        return "it has parameters, which nothing gives values to";
    return {};
}

} // namespace halvane::host::gdal
