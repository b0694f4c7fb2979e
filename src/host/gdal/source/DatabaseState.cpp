#include "host/gdal/source/DatabaseState.h"

namespace halvane::host::gdal {

namespace {

constexpr int lHeaderBytes = 100;
// Source: the file format of SQLite, 1.3 The Database Header. Both are 1 where commits change the header.
constexpr std::size_t nWriteVersion = 18;
constexpr std::size_t nReadVersion = 19;

bool showsChanges(const std::string& sHeader) {
    return sHeader.size() == lHeaderBytes && sHeader[nWriteVersion] == 1 && sHeader[nReadVersion] == 1;
}

} // namespace

DatabaseState::DatabaseState(sqlite3* pDatabase)
    : pDatabase_(pDatabase), pVersion_(prepare(pDatabase, "PRAGMA data_version")) {}

// The counter of changes in the header takes one reading of the file; asking the database takes three calls
// of the system and a lock, which was a third of the time that a search for a few rows took. A file of its
// own would give the database's locks up when it is closed: the database's is read.
std::string DatabaseState::now() {
    std::string sHeader = header();
    return showsChanges(sHeader) ? sHeader : version();
}

std::string DatabaseState::header() const {
    sqlite3_file* pFile = nullptr;
    std::string sHeader(lHeaderBytes, '\0');
    if (sqlite3_file_control(pDatabase_, "main", SQLITE_FCNTL_FILE_POINTER, &pFile) != SQLITE_OK ||
        pFile == nullptr || pFile->pMethods == nullptr ||
        pFile->pMethods->xRead(pFile, sHeader.data(), lHeaderBytes, 0) != SQLITE_OK)
        return "";
    return sHeader;
}

std::string DatabaseState::version() {
    if (pVersion_ == nullptr || sqlite3_step(pVersion_.get()) != SQLITE_ROW)
        return "";
    const std::string sVersion = "version " + textOf(pVersion_.get(), 0);
    sqlite3_reset(pVersion_.get());
    return sVersion;
}

} // namespace halvane::host::gdal
