#include "host/gdal/rows/StoredRows.h"

#include "base/Text.h"
#include "host/gdal/rows/RowCount.h"
#include "host/gdal/source/Locations.h"
#include "host/gdal/source/StoredText.h"

#include <gdal_version.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace halvane::host::gdal {

namespace {

// Whether a quoted value of a CSV file may begin behind blanks, for the driver: measured of both releases.
constexpr bool bQuotesBehindBlanks = GDAL_VERSION_NUM < GDAL_COMPUTE_VERSION(3, 10, 0);

/// Walks a text of values with separators. A quoted value begins with the quotation mark, a doubled one
/// stands for itself, and ends of lines inside are the value's.
class ValueTable {
public:
    ValueTable(char cSeparator, bool bSkipsBlanks) : cSeparator_(cSeparator), bSkipsBlanks_(bSkipsBlanks) {}

    void take(char c) {
        lLine_ += c == '\n' ? 1 : 0;
        if (bQuoted_) {
            bQuoted_ = c != '"';
            bJustClosed_ = !bQuoted_;
            return;
        }
        const bool bDoubled = bJustClosed_;
        bJustClosed_ = false;
        if (c == '\n' || c == '\r') {
            lRecords_ += bRecord_ ? 1 : 0;
            bRecord_ = false;
            bValue_ = false;
        } else if (c == '"' && (bDoubled || !bValue_)) {
            lQuoteLine_ = bDoubled ? lQuoteLine_ : lLine_;
            bQuoted_ = true;
            bRecord_ = true;
            bValue_ = true;
        } else if (c == cSeparator_) {
            bRecord_ = true;
            bValue_ = false;
        } else {
            bRecord_ = bRecord_ || c != ' ';
            bValue_ = bValue_ || c != ' ' || !bSkipsBlanks_;
        }
    }

    /// Those of blanks apart.
    [[nodiscard]] std::int64_t records() const { return lRecords_ + (bRecord_ ? 1 : 0); }
    /// The line where a quoted value begins that does not end; 0 for none.
    [[nodiscard]] std::int64_t openLine() const { return bQuoted_ ? lQuoteLine_ : 0; }

private:
    char cSeparator_;
    bool bSkipsBlanks_;
    std::int64_t lRecords_ = 0;
    std::int64_t lLine_ = 1;
    std::int64_t lQuoteLine_ = 0;
    bool bRecord_ = false;
    bool bValue_ = false;
    bool bQuoted_ = false;
    bool bJustClosed_ = false; // a quoted value, by the last character
};

// @param sSeparators those that may be the text's: it holds no fewer records than by any one of them.
StoredRows rowsOfText(const std::string& sFile, std::string_view sSeparators, bool bSkipsBlanks,
                      std::int64_t lHeadings) {
    std::vector<ValueTable> tables;
    for (const char cSeparator : sSeparators)
        tables.emplace_back(cSeparator, bSkipsBlanks);
    readBlocks(sFile, [&](std::string_view sBlock) {
        for (ValueTable& table : tables)
            for (const char c : sBlock)
                table.take(c);
    });
    const auto fewer = [](const ValueTable& left, const ValueTable& right) {
        return left.records() < right.records();
    };
    const ValueTable& least = *std::min_element(tables.begin(), tables.end(), fewer);
    StoredRows rows{std::max<std::int64_t>(least.records() - lHeadings, 0), {}};
    if (std::all_of(tables.begin(), tables.end(),
                    [](const ValueTable& table) { return table.openLine() > 0; })) {
        rows.sFault =
            "the quoted text that begins in line " + std::to_string(least.openLine()) + " does not end";
    }
    return rows;
}

std::string firstLine(const std::string& sFile, std::string_view sPrefix) {
    constexpr std::size_t nMost = 4096;
    std::string sHead(nMost, '\0');
    const FilePtr pFile(VSIFOpenL(sFile.c_str(), "rb"));
    sHead.resize(pFile == nullptr ? 0 : VSIFReadL(sHead.data(), 1, nMost, pFile.get()));
    for (std::size_t nBegin = 0; nBegin < sHead.size();) {
        const std::size_t nEnd = std::min(sHead.find_first_of("\r\n", nBegin), sHead.size());
        std::string sLine = sHead.substr(nBegin, nEnd - nBegin);
        if (!sLine.empty() && equalIgnoringCase(sLine.substr(0, sPrefix.size()), sPrefix))
            return sLine;
        nBegin = nEnd + 1;
    }
    return {};
}

// Those of the headings. Which one of several it is differs among versions of the driver.
std::string separatorsOfCsv(const std::string& sFile) {
    const std::string sHeadings = firstLine(sFile, "");
    std::string sFound;
    for (const char cSeparator : std::string_view(",;\t|")) {
        bool bQuoted = false;
        if (std::any_of(sHeadings.begin(), sHeadings.end(), [&](char c) {
                bQuoted = bQuoted != (c == '"');
                return !bQuoted && c == cSeparator;
            }))
            sFound += cSeparator;
    }
    return sFound.empty() ? std::string(" \0", 2) : sFound; // blanks, or one column
}

// The rows stand in a file of their own, the shapes in the other.
std::optional<StoredRows> rowsOfMif(const std::string& sFile) {
    const std::string sStem = sFile.substr(0, sFile.size() - 3);
    const auto aNames = std::array{sStem + "mid", sStem + "MID", sStem + "Mid"};
    const auto* const pFound = std::find_if(aNames.begin(), aNames.end(), &isFile);
    if (pFound == aNames.end())
        return std::nullopt;
    const std::string sDelimiter = firstLine(sFile, "Delimiter");
    const std::size_t nQuote = sDelimiter.find('"');
    const bool bTold = nQuote != std::string::npos && nQuote + 1 < sDelimiter.size();
    return rowsOfText(*pFound, std::string(1, bTold ? sDelimiter[nQuote + 1] : '\t'), true, 0);
}

StoredRows rowsOfRecords(const std::string& sFile) {
    StoredRows rows;
    readJsonRecords(sFile, [&](std::string_view) { ++rows.lCount; });
    return rows;
}

/// Walks JSON to the end of its first object.
class FirstObject {
public:
    void take(char c) {
        lLine_ += c == '\n' ? 1 : 0;
        if (bText_) {
            bText_ = c != '"' || bEscaped_;
            bEscaped_ = c == '\\' && !bEscaped_;
        } else if (bEnded_) {
            // The object may stand as the argument of a function.
            constexpr std::string_view sNothing(" \t\r\n\0);", 7);
            const bool bBlank = sNothing.find(c) != std::string_view::npos;
            lNextLine_ = !bBlank && lNextLine_ == 0 ? lLine_ : lNextLine_;
        } else if (c == '"') {
            bText_ = true;
        } else if (c == '{' || c == '[') {
            ++lDepth_;
        } else if (c == '}' || c == ']') {
            bEnded_ = --lDepth_ == 0;
        }
    }

    /// The line where something follows it; 0 for nowhere.
    [[nodiscard]] std::int64_t nextLine() const { return lNextLine_; }

private:
    std::int64_t lLine_ = 1;
    std::int64_t lNextLine_ = 0;
    std::int64_t lDepth_ = 0;
    bool bText_ = false;
    bool bEscaped_ = false;
    bool bEnded_ = false;
};

// The driver reads one object, and says nothing of what follows.
StoredRows rowsOfObject(const std::string& sFile) {
    FirstObject object;
    readBlocks(sFile, [&](std::string_view sBlock) {
        for (const char c : sBlock)
            object.take(c);
    });
    return {0, object.nextLine() == 0
                   ? ""
                   : "what begins in line " + std::to_string(object.nextLine()) + " stands behind its end"};
}

/// Whether the data's header says how many rows there are; the drivers say nothing where fewer can be found.
bool hasHeaderCount(const Source& source) {
    return source.sDriver == "FlatGeobuf" || source.sDriver == "OpenFileGDB";
}

bool isMif(const Source& source) {
    return source.sDriver == "MapInfo File" && extensionOf(source.sOpenName) == "mif";
}

} // namespace

bool tellsStoredRows(const Source& source) {
    return hasHeaderCount(source) || source.sDriver == "CSV" || source.sDriver == "GeoJSON" ||
           source.sDriver == "GeoJSONSeq" || isMif(source);
}

std::optional<StoredRows> storedRowsOf(const LayerHandle& layer) {
    const Source& source = layer.source();
    if (hasHeaderCount(source)) {
        const auto lCount = knownRowCount(layer, {});
        return lCount ? std::optional(StoredRows{*lCount, {}}) : std::nullopt;
    }
    if (source.sDriver == "CSV")
        return rowsOfText(source.sOpenName, separatorsOfCsv(source.sOpenName), bQuotesBehindBlanks, 1);
    if (source.sDriver == "GeoJSON")
        return rowsOfObject(source.sOpenName);
    if (source.sDriver == "GeoJSONSeq")
        return rowsOfRecords(source.sOpenName);
    return isMif(source) ? rowsOfMif(source.sOpenName) : std::nullopt;
}

} // namespace halvane::host::gdal
