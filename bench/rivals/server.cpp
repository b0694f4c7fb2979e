// Writes the document of control/server.xml, and nothing else, block by block from a binary cursor of the
// server.

#include "Output.h"
#include "RunProgram.h"

#include <libpq-fe.h>

#include <bit>
#include <memory>
#include <string>

namespace {

using namespace halvane::bench;

struct Close {
    void operator()(PGconn* pConnection) const { PQfinish(pConnection); }
    void operator()(PGresult* pResult) const { PQclear(pResult); }
};
using Connection = std::unique_ptr<PGconn, Close>;
using Result = std::unique_ptr<PGresult, Close>;

Result run(PGconn* pConnection, const char* pSql, ExecStatusType expected) {
    Result pResult(PQexec(pConnection, pSql));
    if (PQresultStatus(pResult.get()) != expected)
        throw std::runtime_error(PQerrorMessage(pConnection));
    return pResult;
}

std::uint32_t whole32(const char* p) {
    std::uint32_t n = 0;
    std::memcpy(&n, p, sizeof(n));
    return __builtin_bswap32(n);
}

double real64(const char* p) {
    std::uint64_t n = 0;
    std::memcpy(&n, p, sizeof(n));
    return std::bit_cast<double>(__builtin_bswap64(n));
}

/// The civil date of a day counted from 2000-01-01.
void putDay(Output& out, int lDays) {
    const int lShifted = lDays + 730'425; // from the first of March of year 0
    const int lEra = lShifted / 146'097;
    const int lOfEra = lShifted % 146'097;
    const int lYearOfEra = (lOfEra - lOfEra / 1460 + lOfEra / 36'524 - lOfEra / 146'096) / 365;
    const int lOfYear = lOfEra - (365 * lYearOfEra + lYearOfEra / 4 - lYearOfEra / 100);
    const int lMonth = (5 * lOfYear + 2) / 153;
    const int lCivilMonth = lMonth < 10 ? lMonth + 3 : lMonth - 9;
    putDate(out, lYearOfEra + lEra * 400 + (lCivilMonth <= 2 ? 1 : 0), lCivilMonth,
            lOfYear - (153 * lMonth + 2) / 5 + 1);
}

/// A point of well-known binary, with the number of its reference in between.
void putPlace(Output& out, const char* pShape) {
    std::uint32_t nType = 0;
    std::memcpy(&nType, pShape + 1, sizeof(nType));
    if (*pShape != 1 || (nType & 0xFFU) != 1)
        throw std::runtime_error("A shape is no point in the order of bytes that was expected");
    const char* pPlace = pShape + ((nType & 0x20000000U) != 0 ? 9 : 5);
    double dX = 0;
    double dY = 0;
    std::memcpy(&dX, pPlace, sizeof(dX));
    std::memcpy(&dY, pPlace + sizeof(dX), sizeof(dY));
    out.put("<X>");
    putReal(out, dX);
    out.put("</X>\r\n<Y>");
    putReal(out, dY);
    out.put("</Y>\r\n");
}

void putRow(Output& out, const PGresult* pRows, int lRow) {
    const auto value = [&](int lColumn) { return PQgetvalue(pRows, lRow, lColumn); };
    out.put("<Point id=\"");
    putWhole(out, static_cast<std::int32_t>(whole32(value(0))));
    out.put("\">\r\n<Number>");
    putWhole(out, static_cast<std::int32_t>(whole32(value(1))));
    out.put("</Number>\r\n<Title>");
    putText(out, {value(2), static_cast<std::size_t>(PQgetlength(pRows, lRow, 2))});
    out.put("</Title>\r\n<Height>");
    putReal(out, real64(value(3)));
    if (PQgetisnull(pRows, lRow, 4) != 0) {
        out.put("</Height>\r\n<Built/>\r\n");
    } else {
        out.put("</Height>\r\n<Built>");
        putDay(out, static_cast<std::int32_t>(whole32(value(4))));
        out.put("</Built>\r\n");
    }
    putPlace(out, value(5));
    out.put("</Point>\r\n");
}

void writePoints(const char* pData, const char* pDocument) {
    const Connection pConnection(PQconnectdb(pData));
    run(pConnection.get(), "BEGIN ISOLATION LEVEL REPEATABLE READ, READ ONLY", PGRES_COMMAND_OK);
    run(pConnection.get(),
        "DECLARE points BINARY CURSOR FOR SELECT ogc_fid, number, name, height, built, wkb_geometry FROM "
        "points "
        "ORDER BY ogc_fid",
        PGRES_COMMAND_OK);
    Output out(pDocument);
    out.put("<Points>\r\n<Layer>\r\n");
    for (int lRows = 1; lRows > 0;) {
        const Result pRows = run(pConnection.get(), "FETCH 1000 FROM points", PGRES_TUPLES_OK);
        lRows = PQntuples(pRows.get());
        for (int lRow = 0; lRow < lRows; ++lRow)
            putRow(out, pRows.get(), lRow);
    }
    out.put("</Layer>\r\n</Points>");
    out.flush();
}

} // namespace

int main(int argc, char** argv) {
    return runAlone(argc, argv, writePoints);
}
