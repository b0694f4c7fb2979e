#include "host/gdal/map/project/SourceTexts.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <utility>

namespace halvane::host::gdal {

namespace {

/// Reads a text from its front.
class TextReader {
public:
    explicit TextReader(std::string_view sText) : sRest_(sText) {}

    [[nodiscard]] bool atEnd() const { return sRest_.empty(); }
    [[nodiscard]] char next() const { return sRest_.empty() ? '\0' : sRest_.front(); }
    [[nodiscard]] std::string rest() const { return std::string(sRest_); }
    void skip(std::size_t nCount) { sRest_.remove_prefix(std::min(nCount, sRest_.size())); }
    void skipBlanks() { skip(std::min(sRest_.find_first_not_of(' '), sRest_.size())); }
    std::string takeUntil(std::string_view sMarks) {
        std::string sTaken(sRest_.substr(0, sRest_.find_first_of(sMarks)));
        skip(sTaken.size());
        return sTaken;
    }
    /// What stands between two marks; a backslash takes the next character with it.
    std::string takeQuoted() {
        const char cMark = next();
        skip(1);
        std::string sTaken;
        for (; !atEnd() && next() != cMark; skip(1)) {
            if (next() == '\\')
                skip(1);
            if (!atEnd())
                sTaken += next();
        }
        skip(1);
        return sTaken;
    }
    std::string takeValue() { return next() == '\'' || next() == '"' ? takeQuoted() : takeUntil(" "); }

private:
    std::string_view sRest_;
};

void takeTable(TextReader& reader, DatabaseText& database) {
    database.sTable = reader.takeValue();
    if (reader.next() != '.')
        return;
    reader.skip(1);
    database.sSchema = std::exchange(database.sTable, reader.takeValue());
}

std::string percentDecoded(std::string_view sText) {
    std::string sDecoded;
    for (std::size_t nAt = 0; nAt < sText.size(); ++nAt) {
        unsigned nCode = 0;
        const char* pDigits = sText.data() + nAt + 1;
        const bool bCode = sText[nAt] == '%' && nAt + 2 < sText.size() &&
                           std::from_chars(pDigits, pDigits + 2, nCode, 16).ptr == pDigits + 2;
        sDecoded += bCode ? static_cast<char>(nCode) : sText[nAt];
        nAt += bCode ? 2 : 0;
    }
    return sDecoded;
}

} // namespace

std::string DatabaseText::value(std::string_view sKey) const {
    const auto pFound = values.find(sKey);
    return pFound == values.end() ? std::string() : pFound->second;
}

DatabaseText parseDatabaseText(std::string_view sText) {
    DatabaseText database;
    TextReader reader(sText);
    for (reader.skipBlanks(); !reader.atEnd(); reader.skipBlanks()) {
        if (reader.next() == '(') {
            reader.skip(1);
            database.sShapes = reader.takeUntil(")");
            reader.skip(1);
            continue;
        }
        const std::string sKey = reader.takeUntil("= ");
        reader.skip(1);
        if (sKey == "sql") {
            database.sSql = reader.rest();
            return database;
        }
        if (sKey == "table")
            takeTable(reader, database);
        else
            database.values[sKey] = reader.takeValue();
    }
    return database;
}

std::map<std::string, std::string, std::less<>> parseQueryText(std::string_view sText, std::string& sPath) {
    const std::size_t nQuery = std::min(sText.find('?'), sText.size());
    sPath = sText.substr(0, nQuery);
    if (sPath.starts_with("file:")) {
        sPath = percentDecoded(std::string_view(sPath).substr(5));
        sPath.erase(0, sPath.starts_with("//") ? 2 : 0);
    }
    std::map<std::string, std::string, std::less<>> values;
    TextReader reader(sText.substr(nQuery));
    for (reader.skip(1); !reader.atEnd(); reader.skip(1)) {
        const std::string sKey = reader.takeUntil("=&");
        reader.skip(reader.next() == '=' ? 1 : 0);
        values.emplace(sKey, percentDecoded(reader.takeUntil("&")));
    }
    return values;
}

} // namespace halvane::host::gdal
