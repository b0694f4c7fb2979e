#include "SampleData.h"

#include "host/Subtypes.h"
#include "host/Workspace.h"
#include "host/gdal/facts/Values.h"
#include "host/gdal/objects/Table.h"

#include <gmock/gmock.h>

namespace halvane::tests {
namespace {

TEST(Defaults, AreReadFromTheirSql) {
    using host::FieldType;
    using host::gdal::parseDefault;
    EXPECT_EQ(std::get<std::string>(parseDefault("'it''s'", FieldType::String)), "it's");
    EXPECT_EQ(std::get<std::int32_t>(parseDefault("5", FieldType::Integer)), 5);
    EXPECT_EQ(std::get<Date>(parseDefault("'2024/01/02'", FieldType::Date)), (Date{2024, 1, 2, 0, 0, 0}));
    EXPECT_TRUE(std::holds_alternative<Null>(parseDefault("CURRENT_TIMESTAMP", FieldType::Date)));
    EXPECT_TRUE(std::holds_alternative<Null>(parseDefault("NULL", FieldType::Integer)));
}

TEST(Defaults, OfAServerLoseTheTypeBehindThem) {
    using host::FieldType;
    using host::gdal::parseDefault;
    EXPECT_EQ(std::get<Date>(parseDefault("'2020-01-02'::date", FieldType::Date)),
              (Date{2020, 1, 2, 0, 0, 0}));
    EXPECT_EQ(std::get<std::int32_t>(parseDefault("'-3'::integer", FieldType::SmallInteger)), -3);
    EXPECT_EQ(std::get<std::string>(parseDefault("'it''s'::character varying(5)", FieldType::String)),
              "it's");
    EXPECT_EQ(std::get<std::string>(parseDefault("'a::b'", FieldType::String)), "a::b");
    EXPECT_EQ(std::get<std::string>(parseDefault("5", FieldType::String)), "5");
    EXPECT_EQ(std::get<std::int32_t>(parseDefault("true", FieldType::SmallInteger)), 1);
    EXPECT_EQ(std::get<std::int32_t>(parseDefault("FALSE", FieldType::SmallInteger)), 0);
    EXPECT_TRUE(std::holds_alternative<Null>(parseDefault("upper('q'::text)", FieldType::String)));
    EXPECT_TRUE(
        std::holds_alternative<Null>(parseDefault("nextval('t_id_seq'::regclass)", FieldType::Integer)));
}

class DefaultsOfDatabases : public ::testing::TestWithParam<const char*> {
protected:
    // One line for each column of a table with such columns, its default's text; "null" without one.
    std::vector<std::string> defaultsOf(const std::vector<std::string>& columns) {
        const std::string sCity = makeCity(folder);
        const std::string sPath = folder.file(GetParam());
        if (sPath != sCity)
            convertLayer(sCity, "notes", sPath, "SQLite");
        std::string sColumns;
        for (std::size_t nColumn = 0; nColumn < columns.size(); ++nColumn)
            sColumns += ", c" + std::to_string(nColumn) + " " + columns[nColumn];
        runSql(sPath, {"CREATE TABLE defaults (id INTEGER PRIMARY KEY" + sColumns + ")",
                       "INSERT INTO defaults DEFAULT VALUES"});
        if (sPath == sCity) {
            runSql(sPath,
                   {"INSERT INTO gpkg_contents (table_name, data_type, identifier) VALUES ('defaults', "
                    "'attributes', 'defaults')"});
        }
        pTable = openWorkspace(sPath)->openTable("defaults");
        const auto& reader = std::dynamic_pointer_cast<host::gdal::GdalTable>(pTable)->reader();
        const auto pSubtypes = reader.subtypes();
        std::vector<std::string> all;
        for (std::size_t nColumn = 0; nColumn < columns.size(); ++nColumn) {
            const Value value = pSubtypes->defaultValue(0, "c" + std::to_string(nColumn));
            all.push_back(isNull(toView(value)) ? "null" : toText(value));
        }
        return all;
    }

    TemporaryFolder folder;
    host::GisTablePtr pTable;
};

INSTANTIATE_TEST_SUITE_P(Formats, DefaultsOfDatabases, ::testing::Values("city.gpkg", "notes.sqlite"),
                         [](const auto& test) {
                             const std::string sFile = test.param;
                             return sFile.substr(sFile.find('.') + 1);
                         });

TEST_P(DefaultsOfDatabases, AreWhatTheDatabaseInserts) {
    const std::vector<std::string> columns{
        "TEXT DEFAULT 5",           "TEXT DEFAULT -5",      "TEXT DEFAULT 0x10",    "TEXT DEFAULT \"dq\"",
        "TEXT DEFAULT bare",        "TEXT DEFAULT 'it''s'", "TEXT DEFAULT ''",      "TEXT DEFAULT 5.0",
        "TEXT DEFAULT TRUE",        "INTEGER DEFAULT 0x10", "INTEGER DEFAULT '7'",  "INTEGER DEFAULT +3",
        "INTEGER DEFAULT (1 + 2)",  "INTEGER DEFAULT 4.0",  "BOOLEAN DEFAULT TRUE", "BOOLEAN DEFAULT false",
        "BOOLEAN DEFAULT 1",        "REAL DEFAULT 5",       "DOUBLE DEFAULT 1e3",   "DOUBLE DEFAULT 0.1",
        "DATE DEFAULT '2020-01-02'"};
    EXPECT_THAT(defaultsOf(columns),
                ::testing::ElementsAre("5", "-5", "16", "dq", "bare", "it's", "", "5.0", "1", "16", "7", "3",
                                       "3", "4", "1", "0", "1", "5", "1000", "0.1", "01/02/2020"));
    // The database itself agrees.
    const auto pRow = pTable->search(nullptr)->nextRow();
    for (std::size_t nColumn = 0; nColumn < columns.size(); ++nColumn) {
        const std::string sField = "c" + std::to_string(nColumn);
        const Value value =
            std::dynamic_pointer_cast<host::gdal::GdalTable>(pTable)->reader().subtypes()->defaultValue(
                0, sField);
        EXPECT_EQ(toText(value), toText(pRow->value(pRow->fields().findField(sField)))) << columns[nColumn];
    }
}

TEST_P(DefaultsOfDatabases, AreNoneWhereThereIsNoConstant) {
    EXPECT_THAT(defaultsOf({"TEXT", "TEXT DEFAULT NULL", "DATE DEFAULT CURRENT_DATE",
                            "TIMESTAMP DEFAULT current_timestamp", "TEXT DEFAULT (lower('A'))",
                            "INTEGER DEFAULT (random())", "INTEGER DEFAULT (1 + abs(-1))"}),
                ::testing::Each("null"));
}

TEST_P(DefaultsOfDatabases, OfBytesAreWrittenAsBytesAre) {
    const std::vector<std::string> columns{"BLOB DEFAULT x'0001ff'", "TEXT DEFAULT x'4142'",
                                           "BLOB DEFAULT 'abc'", "BLOB DEFAULT 5", "BLOB DEFAULT 'é'"};
    const auto defaults = defaultsOf(columns);
    EXPECT_THAT(defaults, ::testing::ElementsAre("AAH/", "AB", "YWJj", "NQ==", "w6k="));
    const auto pRow = pTable->search(nullptr)->nextRow();
    for (std::size_t nColumn = 0; nColumn < columns.size(); ++nColumn) {
        EXPECT_EQ(defaults[nColumn],
                  toText(pRow->value(pRow->fields().findField("c" + std::to_string(nColumn)))))
            << columns[nColumn];
    }
}

TEST_P(DefaultsOfDatabases, ThatAreInfiniteAreWrittenAsTheDatabaseWritesThem) {
    EXPECT_THAT(defaultsOf({"REAL DEFAULT 1e999", "REAL DEFAULT -1e999", "INTEGER DEFAULT 1e999",
                            "TEXT DEFAULT 1e999"}),
                ::testing::ElementsAre("Inf", "-Inf", "Inf", "Inf"));
}

} // namespace
} // namespace halvane::tests
