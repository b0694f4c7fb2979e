#include "host/gdal/rows/NumberCheck.h"

#include "host/gdal/source/Queries.h"
#include "host/gdal/source/StoredText.h"

#include <cpl_string.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

namespace halvane::host::gdal {

namespace {

template<class Number>
bool isLimit(Number number) {
    return number == std::numeric_limits<Number>::min() || number == std::numeric_limits<Number>::max();
}

// Drivers put the limit where a number is beyond it.
bool isAtLimit(const OGRFeature& feature, int lColumn) {
    if (!feature.IsFieldSetAndNotNull(lColumn))
        return false;
    const OGRField& raw = *feature.GetRawFieldRef(lColumn);
    return feature.GetFieldDefnRef(lColumn)->GetType() == OFTInteger64 ? isLimit(raw.Integer64)
                                                                       : isLimit(raw.Integer);
}

/// Looks for whole numbers of more than 64 bits in JSON, or in the XML of a sheet.
class LargeNumbers {
public:
    /// @param bHasTexts whether what stands in quotation marks is a text, and no number.
    explicit LargeNumbers(bool bHasTexts) : bHasTexts_(bHasTexts) {}

    void take(char c) {
        if (bText_) {
            bText_ = c != '"' || bEscaped_;
            bEscaped_ = c == '\\' && !bEscaped_;
        } else if ((c >= '0' && c <= '9') || (c == '-' && sDigits_.empty())) {
            sDigits_ += c;
        } else if (c == '.' || c == 'e' || c == 'E') {
            sDigits_ = "x"; // no whole number, nor are the digits that follow
        } else {
            test();
            bText_ = bHasTexts_ && c == '"';
        }
    }
    [[nodiscard]] bool found() const { return bFound_; }

private:
    void test() {
        constexpr std::size_t nSafeDigits = 18;
        if (sDigits_.size() > nSafeDigits) {
            std::int64_t lNumber = 0;
            const auto result = std::from_chars(sDigits_.data(), sDigits_.data() + sDigits_.size(), lNumber);
            bFound_ = bFound_ || result.ec == std::errc::result_out_of_range;
        }
        sDigits_.clear();
    }

    bool bHasTexts_;
    std::string sDigits_;
    bool bText_ = false;
    bool bEscaped_ = false;
    bool bFound_ = false;
};

bool isSheet(const std::string& sDriver) {
    return sDriver == "XLSX" || sDriver == "ODS";
}

/// The files that hold the numbers of a data file: those inside it of a sheet, else itself.
std::vector<std::string> filesOfNumbers(const std::string& sDriver, const std::string& sPath) {
    const std::string sInside = "/vsizip/{" + sPath + "}/";
    if (sDriver == "ODS")
        return {sInside + "content.xml"};
    if (sDriver != "XLSX")
        return {sPath};
    const std::string sFolder = sInside + "xl/worksheets/";
    const CPLStringList names(VSIReadDir(sFolder.c_str()));
    std::vector<std::string> files;
    files.reserve(static_cast<std::size_t>(names.size()));
    for (int i = 0; i < names.size(); ++i)
        files.push_back(sFolder + names[i]);
    return files;
}

// Whether the database finds the rows of a query without looking at others.
bool isSearched(sqlite3* pDatabase, const std::string& sSql) {
    constexpr int lDetail = 3;
    const StatementPtr pPlan = prepare(pDatabase, "EXPLAIN QUERY PLAN " + sSql);
    bool bSearched = false;
    while (pPlan != nullptr && sqlite3_step(pPlan.get()) == SQLITE_ROW) {
        const void* pText = sqlite3_column_text(pPlan.get(), lDetail);
        const std::string_view sStep(pText == nullptr ? "" : static_cast<const char*>(pText));
        if (sStep.starts_with("SCAN"))
            return false;
        bSearched = bSearched || sStep.starts_with("SEARCH");
    }
    return bSearched;
}

} // namespace

NumberCheck::NumberCheck(const LayerHandle& layer) : layer_(layer) {
    OGRFeatureDefn& definition = *layer.layer().GetLayerDefn();
    for (int lColumn = 0; lColumn < definition.GetFieldCount(); ++lColumn) {
        const OGRFieldDefn& field = *definition.GetFieldDefn(lColumn);
        const OGRFieldType type = field.GetType();
        if (type == OFTInteger && field.GetSubType() != OFSTBoolean)
            integers_.push_back(lColumn);
        else if (type == OFTInteger64)
            longs_.push_back(lColumn);
    }
    // This driver takes the lower half of a number without a word.
    bAsksDatabase_ = layer.source().sDriver == "GPKG" && !integers_.empty();
}

bool NumberCheck::hasLimit(const OGRFeature& feature) const {
    return std::any_of(longs_.begin(), longs_.end(),
                       [&](int lColumn) { return isLimit(feature.GetRawFieldRef(lColumn)->Integer64); });
}

std::vector<int> NumberCheck::find(const OGRFeature& feature, const ErrorScope& errors) {
    const std::string& sDriver = layer_.source().sDriver;
    const bool bDatabase = sDriver == "GPKG" || sDriver == "SQLite";
    if (bDatabase && !bPrepared_)
        prepareQuestions();
    if (pOfRow_ != nullptr)
        return askDatabase(feature);
    // In JSON and in sheets the numbers of a whole file are told of at once, if at all.
    const bool bJson = sDriver == "GeoJSON" || sDriver == "GeoJSONSeq" || sDriver == "TopoJSON";
    std::vector<int> columns;
    if (bJson || isSheet(sDriver) ? !fileHasLargerNumbers() : !errors.warned())
        return columns;
    const auto atLimit = [&](int lColumn) { return isAtLimit(feature, lColumn); };
    if (!bJson)
        std::copy_if(integers_.begin(), integers_.end(), std::back_inserter(columns), atLimit);
    std::copy_if(longs_.begin(), longs_.end(), std::back_inserter(columns), atLimit);
    return columns;
}

bool NumberCheck::fileHasLargerNumbers() {
    if (!largerNumbers_) {
        const std::string& sDriver = layer_.source().sDriver;
        LargeNumbers numbers(!isSheet(sDriver));
        for (const std::string& sPath : filesOfNumbers(sDriver, layer_.source().sOpenName)) {
            readBlocks(sPath, [&](std::string_view sBlock) {
                for (const char c : sBlock)
                    numbers.take(c);
            });
        }
        largerNumbers_ = numbers.found();
    }
    return *largerNumbers_;
}

// What is no number is cut to one on purpose.
std::string NumberCheck::conditionOf(int lColumn) const {
    const OGRFieldDefn& field = *layer_.layer().GetLayerDefn()->GetFieldDefn(lColumn);
    const std::string sName = quotedName(field.GetNameRef());
    const bool bLong = field.GetType() == OFTInteger64;
    return bLong ? "(typeof(" + sName + ") = 'real' AND NOT (" + sName + " >= -9223372036854775808.0 AND " +
                       sName + " < 9223372036854775808.0))"
                 : "(typeof(" + sName + ") IN ('integer', 'real') AND NOT (" + sName + " > -2147483649 AND " +
                       sName + " < 2147483648))";
}

void NumberCheck::prepareQuestions() {
    bPrepared_ = true;
    sqlite3* pDatabase = databaseOf(layer_.dataset());
    const std::string sKey = layer_.layer().GetFIDColumn();
    if (pDatabase == nullptr || sKey.empty()) {
        bAsksDatabase_ = false;
        return;
    }
    std::string sColumns;
    std::string sAny;
    constexpr int lGroup = 100;
    int lConditions = 0;
    for (const std::vector<int>* pColumns : {&integers_, &longs_}) {
        for (const int lColumn : *pColumns) {
            const std::string sCondition = conditionOf(lColumn);
            sColumns += (sColumns.empty() ? "" : ", ") + sCondition;
            // In groups: the database limits how deep an expression is.
            sAny += (sAny.empty() ? "(" : ++lConditions % lGroup == 0 ? ") OR (" : " OR ") + sCondition;
        }
    }
    sAny += ")";
    const std::string sFrom = " FROM " + quotedName(layer_.layer().GetName()) + " WHERE ";
    const std::string sOfRow = "SELECT " + sColumns + sFrom + quotedName(sKey) + " = ?1 AND (" + sAny + ")";
    pOfRow_ = prepare(pDatabase, sOfRow);
    bByKey_ = isSearched(pDatabase, sOfRow);
    sOfAll_ = "SELECT " + quotedName(sKey) + sFrom + sAny;
    bAsksDatabase_ = bAsksDatabase_ && pOfRow_ != nullptr;
}

void NumberCheck::readAll() {
    ids_.emplace();
    const StatementPtr pOfAll = prepare(databaseOf(layer_.dataset()), sOfAll_);
    while (pOfAll != nullptr && sqlite3_step(pOfAll.get()) == SQLITE_ROW)
        ids_->insert(sqlite3_column_int64(pOfAll.get(), 0));
    bAsksDatabase_ = bAsksDatabase_ && !ids_->empty();
}

// Row by row while they are few: no more than a scan reads before its columns take over, who need no check.
// All at once takes much less time for each, and a view may need as long for one as for all.
std::vector<int> NumberCheck::askDatabase(const OGRFeature& feature) {
    constexpr std::int64_t lManyRows = 2048;
    if (!ids_ && (lRows_ > lManyRows || !bByKey_))
        readAll();
    if (ids_ && !ids_->contains(feature.GetFID()))
        return {};
    std::vector<int> columns;
    sqlite3_bind_int64(pOfRow_.get(), 1, feature.GetFID());
    if (sqlite3_step(pOfRow_.get()) == SQLITE_ROW) {
        int lPlace = 0;
        for (const std::vector<int>* pColumns : {&integers_, &longs_}) {
            for (const int lColumn : *pColumns)
                if (sqlite3_column_int(pOfRow_.get(), lPlace++) != 0)
                    columns.push_back(lColumn);
        }
    }
    sqlite3_reset(pOfRow_.get());
    return columns;
}

} // namespace halvane::host::gdal
