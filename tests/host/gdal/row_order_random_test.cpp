// Random tables with random indexes, read in every way, beside a plain reading of them.

#include "SampleData.h"

#include "host/Fields.h"
#include "host/Geometry.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"
#include "host/gdal/source/Drivers.h"

#include <cpl_string.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <array>
#include <random>

namespace halvane::tests {
namespace {

struct Row {
    std::int64_t lId = 0;
    int lFew = 0;  ///< of few values
    int lMany = 0; ///< of many values, in no order
    std::string sKind;

    [[nodiscard]] std::string text() const {
        return std::to_string(lId) + "|" + std::to_string(lFew) + "|" + std::to_string(lMany) + "|" + sKind;
    }
};

struct Clause {
    const char* pSql;
    bool (*isTrue)(const Row&);
};

const std::array aClauses{
    Clause{"MANY < 700", [](const Row& row) { return row.lMany < 700; }},
    Clause{"FEW = 3", [](const Row& row) { return row.lFew == 3; }},
    Clause{"FEW=3", [](const Row& row) { return row.lFew == 3; }},
    Clause{"KIND='k2'", [](const Row& row) { return row.sKind == "k2"; }},
    Clause{"KIND = 'k1' OR FEW = 5", [](const Row& row) { return row.sKind == "k1" || row.lFew == 5; }},
    Clause{"FEW IN (6, 2, 4)",
           [](const Row& row) { return row.lFew == 2 || row.lFew == 4 || row.lFew == 6; }},
    Clause{"FEW > 1 AND MANY > 100", [](const Row& row) { return row.lFew > 1 && row.lMany > 100; }},
    Clause{"KIND >= 'k2' AND FEW < 6", [](const Row& row) { return row.sKind >= "k2" && row.lFew < 6; }},
    Clause{"MANY < -1", [](const Row&) { return false; }},
    Clause{"MANY >= 0", [](const Row&) { return true; }}};

class RandomData {
public:
    RandomData(const TemporaryFolder& folder, const std::string& sFormat, unsigned int lSeed)
        : sFormat_(sFormat), random_(lSeed) {
        static const std::array aCounts{0, 1, 5, 63, 64, 127, 1023, 1024, 1025, 1100, 1279, 1281, 2049, 3300};
        const int lCount = aCounts[random_() % aCounts.size()];
        fill(lCount);
        sPath_ = folder.file("t." + extension());
        write();
        if (isDatabase())
            runSql(sPath_, indexes());
        readPlainly();
    }

    [[nodiscard]] const std::string& path() const { return sPath_; }
    [[nodiscard]] bool isDatabase() const { return sFormat_ == "GPKG" || sFormat_ == "SQLite"; }
    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
    [[nodiscard]] std::vector<std::string> texts(const std::vector<const Clause*>& clauses) const {
        std::vector<std::string> all;
        for (const Row& row : rows_) {
            if (std::all_of(clauses.begin(), clauses.end(),
                            [&](const Clause* pClause) { return pClause->isTrue(row); })) {
                all.push_back(row.text());
            }
        }
        return all;
    }
    [[nodiscard]] const Clause& clause() { return aClauses[random_() % aClauses.size()]; }
    [[nodiscard]] bool coin() { return random_() % 2 == 0; }

private:
    [[nodiscard]] std::string extension() const {
        return sFormat_ == "GPKG"             ? "gpkg"
               : sFormat_ == "SQLite"         ? "sqlite"
               : sFormat_ == "ESRI Shapefile" ? "shp"
               : sFormat_ == "FlatGeobuf"     ? "fgb"
                                              : "geojson";
    }

    // Identifiers with gaps; the rows go in in no order.
    void fill(int lCount) {
        std::int64_t lId = 0;
        for (int lRow = 0; lRow < lCount; ++lRow) {
            lId += 1 + static_cast<std::int64_t>(random_() % 3);
            rows_.push_back({lId, static_cast<int>(random_() % 8), static_cast<int>(random_() % 1000),
                             "k" + std::to_string(random_() % 4)});
        }
        std::shuffle(rows_.begin(), rows_.end(), random_);
    }

    void write() const {
        host::gdal::prepareLibrary();
        const GDALDatasetUniquePtr pDataset(GetGDALDriverManager()
                                                ->GetDriverByName(sFormat_.c_str())
                                                ->Create(sPath_.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRLayer& layer = *pDataset->CreateLayer("t", nullptr, wkbPoint, nullptr);
        for (const auto& [pName, type] :
             {std::pair{"FEW", OFTInteger}, {"MANY", OFTInteger}, {"KIND", OFTString}}) {
            OGRFieldDefn field(pName, type);
            layer.CreateField(&field);
        }
        pDataset->StartTransaction();
        for (const Row& row : rows_) {
            OGRFeature feature(layer.GetLayerDefn());
            if (isDatabase())
                feature.SetFID(row.lId);
            feature.SetField("FEW", row.lFew);
            feature.SetField("MANY", row.lMany);
            feature.SetField("KIND", row.sKind.c_str());
            feature.SetGeometryDirectly(new OGRPoint(row.lMany, row.lFew)); // the feature's
            EXPECT_EQ(layer.CreateFeature(&feature), OGRERR_NONE);
        }
        pDataset->CommitTransaction();
    }

    std::vector<std::string> indexes() {
        const std::string sShape = sFormat_ == "GPKG" ? "geom" : "GEOMETRY";
        std::vector<std::string> statements;
        for (unsigned int lIndex = random_() % 4; lIndex > 0; --lIndex) {
            std::vector<std::string> columns{"few", "many", "kind", "kind DESC", "many DESC", sShape};
            std::shuffle(columns.begin(), columns.end(), random_);
            columns.resize(1 + random_() % columns.size());
            std::string sColumns;
            for (const std::string& sColumn : columns)
                sColumns += (sColumns.empty() ? "" : ", ") + sColumn;
            statements.push_back("CREATE INDEX i" + std::to_string(lIndex) + " ON t (" + sColumns + ")");
        }
        if (coin())
            statements.emplace_back("ANALYZE");
        return statements;
    }

    // Row by row, of a file in its order, of a database by the key.
    void readPlainly() {
        const GDALDatasetUniquePtr pDataset(GDALDataset::Open(sPath_.c_str(), GDAL_OF_VECTOR));
        OGRLayer& layer = *pDataset->GetLayer(0);
        rows_.clear();
        while (const OGRFeatureUniquePtr pFeature{layer.GetNextFeature()}) {
            rows_.push_back({pFeature->GetFID(), pFeature->GetFieldAsInteger("FEW"),
                             pFeature->GetFieldAsInteger("MANY"), pFeature->GetFieldAsString("KIND")});
        }
        if (isDatabase()) {
            std::sort(rows_.begin(), rows_.end(),
                      [](const Row& left, const Row& right) { return left.lId < right.lId; });
        }
    }

    std::string sFormat_;
    std::string sPath_;
    std::mt19937 random_;
    std::vector<Row> rows_;
};

// The rows of a cursor; shapes that are there must be those of their rows.
std::vector<std::string> textsOf(host::GisCursor& cursor, bool bShapes) {
    std::vector<std::string> all;
    while (const host::GisRowPtr pRow = cursor.nextRow()) {
        const auto text = [&](const char* pField) {
            return toText(pRow->value(pRow->fields().findField(pField)));
        };
        all.push_back(std::to_string(pRow->objectId()) + "|" + text("FEW") + "|" + text("MANY") + "|" +
                      text("KIND"));
        if (bShapes) {
            const auto pShape = pRow->shape();
            EXPECT_EQ(pShape == nullptr ? "none" : std::to_string(static_cast<int>(pShape->fromPoint()->x())),
                      text("MANY"));
        }
    }
    return all;
}

class RandomRows : public ::testing::TestWithParam<std::tuple<const char*, unsigned int>> {
protected:
    [[nodiscard]] host::GisFeatureLayerPtr layer(const std::string& sFilter, const std::string& sSelection) {
        const auto inMarkup = [](const std::string& sText) {
            const std::unique_ptr<char, decltype(&VSIFree)> pEscaped(
                CPLEscapeString(sText.c_str(), -1, CPLES_XML), &VSIFree);
            return std::string(pEscaped.get());
        };
        const std::string sMap = folder.write(
            "map.xml", "<MapDocument><Map name='M'><FeatureLayer source='" + data.path() + "'" +
                           (sFilter.empty() ? "" : " filter=\"" + inMarkup(sFilter) + "\"") + ">" +
                           (sSelection.empty() ? "" : "<Selection where=\"" + inMarkup(sSelection) + "\"/>") +
                           "</FeatureLayer></Map></MapDocument>");
        const auto pMap = pHost->openMapDocument(sMap)->focusMap();
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(0));
    }

    TemporaryFolder folder;
    RandomData data{folder, std::get<0>(GetParam()), std::get<1>(GetParam())};
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
};

INSTANTIATE_TEST_SUITE_P(Databases, RandomRows,
                         ::testing::Combine(::testing::Values("GPKG", "SQLite"), ::testing::Range(0U, 12U)));
INSTANTIATE_TEST_SUITE_P(Files, RandomRows,
                         ::testing::Combine(::testing::Values("ESRI Shapefile", "FlatGeobuf", "GeoJSON"),
                                            ::testing::Range(0U, 6U)));

TEST_P(RandomRows, AreThoseOfAPlainReadingInItsOrder) {
    const auto pTable = openWorkspace(data.path())->openFeatureClass("t");
    EXPECT_EQ(textsOf(*pTable->search(nullptr), true), data.texts({}));
    EXPECT_EQ(textsOf(*pTable->searchWithoutShapes(), false), data.texts({}));
    EXPECT_EQ(pTable->featureCount(), static_cast<std::int64_t>(data.rows().size()));
}

TEST_P(RandomRows, ThatSatisfyAClauseKeepTheirOrderHoweverOftenTheyAreAskedFor) {
    const auto pTable = openWorkspace(data.path())->openFeatureClass("t");
    for (int lTime = 0; lTime < 12; ++lTime) {
        const Clause& clause = data.clause();
        const host::GisQueryFilter filter{clause.pSql};
        EXPECT_EQ(textsOf(*pTable->search(&filter), data.coin()), data.texts({&clause})) << clause.pSql;
    }
}

TEST_P(RandomRows, OfALayerWithAFilterAndASelectionKeepTheirOrder) {
    for (int lTime = 0; lTime < 4; ++lTime) {
        const Clause& filter = data.clause();
        const Clause& selection = data.clause();
        const Clause& asked = data.clause();
        SCOPED_TRACE(std::string(filter.pSql) + "; " + selection.pSql + "; " + asked.pSql);
        const auto pLayer = layer(filter.pSql, selection.pSql);
        const auto pClass = pLayer->featureClass();
        EXPECT_EQ(textsOf(*pClass->search(nullptr), true), data.texts({&filter}));
        EXPECT_EQ(textsOf(*pClass->searchWithoutShapes(), false), data.texts({&filter}));
        EXPECT_EQ(pClass->featureCount(), static_cast<std::int64_t>(data.texts({&filter}).size()));
        const host::GisQueryFilter query{asked.pSql};
        EXPECT_EQ(textsOf(*pClass->search(&query), true), data.texts({&filter, &asked}));
        EXPECT_EQ(pLayer->selectionCount(),
                  static_cast<std::int32_t>(data.texts({&filter, &selection}).size()));
        EXPECT_EQ(textsOf(*pLayer->searchSelection(), true), data.texts({&filter, &selection}));
    }
}

} // namespace
} // namespace halvane::tests
