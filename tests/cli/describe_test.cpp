#include "cli/Program.h"
#include "cli/SchemaCheck.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace halvane::test {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

void addField(OGRLayer& layer, const char* sName, OGRFieldType type, int lWidth = 0) {
    OGRFieldDefn definition(sName, type);
    definition.SetWidth(lWidth);
    if (layer.CreateField(&definition) != OGRERR_NONE)
        throw std::runtime_error("cannot create a field");
}

void addRoad(OGRLayer& layer, const char* sName, double dEast) {
    OGRFeature feature(layer.GetLayerDefn());
    feature.SetField("NAME", sName);
    OGRLineString line;
    line.addPoint(dEast, 5000000);
    line.addPoint(dEast + 10, 5000010);
    feature.SetGeometry(&line);
    if (layer.CreateFeature(&feature) != OGRERR_NONE)
        throw std::runtime_error("cannot create a feature");
}

constexpr const char* const aStatements[] = {
    "INSERT INTO gpkg_data_column_constraints (constraint_name, constraint_type, value, min, "
    "min_is_inclusive, max, max_is_inclusive, description) VALUES "
    "('Lanes', 'range', NULL, 1, 1, 8, 1, 'how many'), "
    "('Class', 'enum', '2', NULL, NULL, NULL, NULL, 'Main road'), "
    "('Class', 'enum', '1', NULL, NULL, NULL, NULL, 'Motorway')",
    "INSERT INTO gpkg_data_columns (table_name, column_name, name, constraint_name) VALUES "
    "('roads', 'CLASS', 'Class of road', 'Class'), ('roads', 'NAME', 'Street', NULL)",
    "CREATE TABLE halvane_subtypes (id INTEGER PRIMARY KEY, table_name TEXT NOT NULL, field_name TEXT NOT "
    "NULL, code INTEGER NOT NULL, name TEXT NOT NULL, is_default INTEGER NOT NULL DEFAULT 0)",
    "CREATE TABLE halvane_subtype_fields (id INTEGER PRIMARY KEY, table_name TEXT NOT NULL, code INTEGER NOT "
    "NULL, field_name TEXT NOT NULL, domain_name TEXT, default_value TEXT)",
    "INSERT INTO halvane_subtypes (table_name, field_name, code, name, is_default) VALUES "
    "('roads', 'KIND', 1, 'Asphalt', 0), ('roads', 'KIND', 2, 'Gravel', 1)",
    "INSERT INTO halvane_subtype_fields (table_name, code, field_name, domain_name, default_value) VALUES "
    "('roads', 2, 'LANES', 'Lanes', '3')"};

/// A GeoPackage with the lines "roads" (domains, aliases, subtypes) and the table "notes".
void makeCity(const std::string& sPath) {
    GDALAllRegister();
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
    const GDALDatasetUniquePtr pDataset(pDriver->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRSpatialReference reference;
    reference.importFromEPSG(25832);
    OGRLayer& roads = *pDataset->CreateLayer("roads", &reference, wkbLineString, nullptr);
    addField(roads, "NAME", OFTString, 30);
    addField(roads, "CLASS", OFTInteger);
    addField(roads, "KIND", OFTInteger);
    addField(roads, "LANES", OFTInteger);
    addRoad(roads, "Ringstraße", 500000);
    addRoad(roads, "Am Wall", 500100);
    OGRLayer& notes = *pDataset->CreateLayer("notes", nullptr, wkbNone, nullptr);
    addField(notes, "TEXT", OFTString);
    // The library writes the tables of domains with the first one.
    std::string sReason;
    std::vector<OGRCodedValue> codes{{CPLStrdup("y"), CPLStrdup("yes")}};
    if (!pDataset->AddFieldDomain(
            std::make_unique<OGRCodedFieldDomain>("Answer", "", OFTString, OFSTNone, std::move(codes)),
            sReason))
        throw std::runtime_error(sReason);
    for (const char* sStatement : aStatements)
        pDataset->ReleaseResultSet(pDataset->ExecuteSQL(sStatement, nullptr, nullptr));
}

class Describe : public ::testing::Test {
protected:
    Describe() {
        makeCity(program.file("city.gpkg"));
        program.write("map.xml", R"(<MapDocument>
  <Map name="City"><FeatureLayer name="Streets" source="city.gpkg" dataset="roads"><Selection fids="2"/></FeatureLayer>
    <GroupLayer name="More"><FeatureLayer name="Lost" source="gone.gpkg"/></GroupLayer>
    <Table source="city.gpkg" dataset="notes"/></Map>
  <Map name="Second" shown="true"/>
  <Workspace source="city.gpkg">
    <RelationshipClass name="road_notes" origin="roads" destination="notes" originPrimaryKey="ID"
                       originForeignKey="ROAD" cardinality="oneToMany"/></Workspace>
</MapDocument>)");
    }

    /// Standard output; expects success and nothing on standard error.
    [[nodiscard]] std::string page(const std::string& sMap) const {
        const auto result = program.run({"describe", sMap});
        EXPECT_EQ(result.lExitCode, 0);
        EXPECT_EQ(result.sErr, "");
        return result.sOut;
    }

    [[nodiscard]] json toJson(const std::string& sMap) const {
        const auto result = program.run({"describe", sMap, "--json"});
        EXPECT_EQ(result.lExitCode, 0) << result.sErr;
        const auto schema = json::parse(std::ifstream(HALVANE_SOURCE_DIR "/docs/describe.schema.json"));
        const auto value = json::parse(result.sOut);
        EXPECT_THAT(breaches(schema, value), IsEmpty());
        return value;
    }

    Program program;
};

/// The member of that name; null when there is none.
json named(const json& list, const std::string& sName) {
    for (const auto& item : list) {
        if (item["name"] == sName)
            return item;
    }
    return nullptr;
}

} // namespace

TEST_F(Describe, ListsTheWorkspacesThatOnlyTheDocumentNames) {
    program.write("only.xml", R"(<MapDocument><Map name="Empty"/>
  <Workspace source="city.gpkg"><TextDomain name="Free"/></Workspace>
  <Workspace source="gone.gpkg"><TextDomain name="Lost"/></Workspace></MapDocument>)");
    const json description = toJson("only.xml");
    ASSERT_EQ(description.at("workspaces").size(), 1U);
    const auto& domains = description.at("workspaces").at(0).at("domains");
    EXPECT_EQ(domains.back().at("name"), "Free");
    EXPECT_EQ(toJson("map.xml").at("workspaces").size(), 1U); // not once more than a layer leads to it
}

TEST_F(Describe, ListsSubtypesUpToTheFirstWithoutANameAsAnExportDoes) {
    {
        const GDALDatasetUniquePtr pDataset(
            GDALDataset::Open(program.file("city.gpkg").c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        pDataset->ReleaseResultSet(
            pDataset->ExecuteSQL("INSERT INTO halvane_subtypes (table_name, field_name, code, name) VALUES "
                                 "('roads', 'KIND', 3, ''), "
                                 "('roads', 'KIND', 4, 'Behind')",
                                 nullptr, nullptr));
    }
    const json description = toJson("map.xml");
    const auto& subtypes =
        description.at("maps").at(0).at("layers").at(0).at("featureClass").at("subtypes").at("subtypes");
    ASSERT_EQ(subtypes.size(), 2U);
    EXPECT_EQ(subtypes.at(0).at("name"), "Asphalt");
    EXPECT_EQ(subtypes.at(1).at("name"), "Gravel");
}

TEST_F(Describe, WritesAPageOfTheWholeMap) {
    const auto sPage = page("map.xml");
    EXPECT_THAT(sPage, ::testing::StartsWith(program.file("map.xml") + "\n\nMAP City\n"));
    EXPECT_THAT(sPage, HasSubstr("    Datum         EUROPEAN TERRESTRIAL REFERENCE SYSTEM 1989\n"));
    EXPECT_THAT(sPage, HasSubstr("  LAYER Streets: feature layer\n"));
    EXPECT_THAT(sPage, HasSubstr("    Workspace               " + program.file("city.gpkg") +
                                 "\n"
                                 "    Shapes                  polyline\n"
                                 "    Features                2\n"
                                 "    Selected                1\n"));
    EXPECT_THAT(sPage, HasSubstr("\nMAP Second (shown)\n"));
    EXPECT_THAT(sPage, HasSubstr("\n  TABLE notes\n"));
    EXPECT_THAT(sPage, HasSubstr("    Subtypes by the field KIND\n"
                                 "      1  Asphalt\n"));
    EXPECT_THAT(sPage, HasSubstr("      2  Gravel (default)\n"));
    EXPECT_THAT(sPage, HasSubstr("    road_notes: roads to notes, one to many\n"));
}

TEST_F(Describe, AlignsTheFieldsInColumns) {
    EXPECT_THAT(
        page("city.gpkg"),
        HasSubstr(
            R"(      Name   Type               Literal               Length  Nullable  Editable  Alias          Domain  Default
      fid    object identifier  vemiFieldTypeOID              no        no
      geom   geometry           vemiGeometryPolyline          yes       no
      NAME   text               vemiFieldTypeString   30      yes       yes       Street
      CLASS  integer            vemiFieldTypeInteger          yes       yes       Class of road  Class
      KIND   integer            vemiFieldTypeInteger          yes       yes
      LANES  integer            vemiFieldTypeInteger          yes       yes                      Lanes   3
)"));
}

TEST_F(Describe, SaysOfDataThatCannotBeOpenedWhyAndGoesOn) {
    const auto sPage = page("map.xml");
    EXPECT_THAT(sPage, HasSubstr("    MEMBER Lost: feature layer\n"));
    EXPECT_THAT(sPage, ::testing::ContainsRegex("Feature class +not readable: .*gone.gpkg"));
    const auto lost = toJson("map.xml")["maps"][0]["layers"][1]["layers"][0];
    EXPECT_EQ(lost["name"], "Lost");
    EXPECT_EQ(lost["featureClass"], nullptr);
    EXPECT_THAT(lost["notReadable"].dump(), HasSubstr("gone.gpkg"));
}

TEST_F(Describe, WritesJsonOfFieldsAndSubtypes) {
    const auto value = toJson("map.xml");
    EXPECT_EQ(value["map"], program.file("map.xml"));
    EXPECT_EQ(value["program"], "halvane " HALVANE_VERSION);
    EXPECT_EQ(value["maps"][0]["shown"], false);
    EXPECT_EQ(value["maps"][1]["shown"], true);
    const auto streets = value["maps"][0]["layers"][0];
    EXPECT_EQ(streets["kind"], "feature");
    EXPECT_EQ(streets["selected"], 1);
    const auto roads = streets["featureClass"];
    EXPECT_EQ(roads["features"], 2);
    EXPECT_EQ(roads["shapeType"], "polyline");
    EXPECT_EQ(named(roads["fields"], "NAME"),
              json::parse(R"({"name": "NAME", "alias": "Street", "type": "vemiFieldTypeString",
                "typeWord": "text", "typeCode": 4, "length": 30, "precision": 0, "nullable": true,
                "editable": true, "domain": null, "default": null})"));
    EXPECT_EQ(named(roads["fields"], "CLASS")["domain"], "Class");
    EXPECT_EQ(roads["subtypes"]["field"], "KIND");
    EXPECT_EQ(roads["subtypes"]["defaultCode"], 2);
    EXPECT_EQ(named(named(roads["subtypes"]["subtypes"], "Gravel")["fields"], "LANES"),
              (json{{"name", "LANES"}, {"domain", "Lanes"}, {"default", "3"}}));
}

TEST_F(Describe, WritesJsonOfTheWorkspace) {
    const auto value = toJson("map.xml");
    ASSERT_EQ(value["workspaces"].size(), 1);
    const auto workspace = value["workspaces"][0];
    EXPECT_EQ(workspace["path"], program.file("city.gpkg"));
    EXPECT_EQ(workspace["type"], "local database");
    EXPECT_EQ(workspace["typeCode"], 1);
    EXPECT_EQ(named(workspace["domains"], "Class")["codes"],
              (json{{{"code", "2"}, {"name", "Main road"}}, {{"code", "1"}, {"name", "Motorway"}}}));
    EXPECT_EQ(named(workspace["domains"], "Lanes")["kind"], "range");
    EXPECT_EQ(named(workspace["domains"], "Lanes")["min"], "1");
    EXPECT_EQ(named(workspace["domains"], "Lanes")["max"], "8");
    EXPECT_EQ(named(workspace["relationshipClasses"], "road_notes")["cardinality"], "one to many");
    EXPECT_EQ(value["maps"][0]["tables"][0]["workspace"], 0);
}

TEST_F(Describe, TellsDomainsAndDefaultsOfTheFieldsOfTables) {
    {
        const GDALDatasetUniquePtr pDataset(
            GDALDataset::Open(program.file("city.gpkg").c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        for (const char* sStatement : {"ALTER TABLE notes ADD COLUMN STATE TEXT DEFAULT 'open'",
                                       "INSERT INTO gpkg_data_columns (table_name, column_name, name, "
                                       "constraint_name) VALUES ('notes', 'STATE', NULL, 'Answer')"})
            pDataset->ReleaseResultSet(pDataset->ExecuteSQL(sStatement, nullptr, nullptr));
    }
    const json notes = toJson("city.gpkg")["maps"][0]["tables"][0];
    EXPECT_EQ(notes["dataset"], "notes");
    EXPECT_EQ(named(notes["fields"], "STATE")["domain"], "Answer");
    EXPECT_EQ(named(notes["fields"], "STATE")["default"], "open");
    EXPECT_EQ(named(notes["fields"], "TEXT")["domain"], nullptr);
    EXPECT_THAT(page("city.gpkg"), ::testing::ContainsRegex("STATE +text .* Answer +open\n"));
}

TEST_F(Describe, SaysOfBrokenFilesOfAFolderWhy) {
    std::filesystem::create_directory(program.file("data"));
    program.write("data/a.gpkg", "no database");
    program.write("data/b.xlsx", "no sheets");
    program.write("data/rivers.csv", "NAME,LENGTH\nStyx,9\n");
    const auto reason = [&](const std::string& sFile, const std::string& sDriver) {
        return "not readable: \"" + program.file("data/" + sFile) + "\" cannot be read by the driver \"" +
               sDriver + "\": its contents are not of this format\n";
    };
    const auto sPage = page("data");
    EXPECT_THAT(sPage, HasSubstr("  LAYER a: feature layer\n"));
    EXPECT_THAT(sPage, HasSubstr("    Feature class           " + reason("a.gpkg", "GPKG")));
    EXPECT_THAT(sPage, HasSubstr("  TABLE " + reason("b.xlsx", "XLSX")));
    EXPECT_THAT(sPage, HasSubstr("  TABLE rivers\n"));
}

TEST_F(Describe, SaysHowALayerIsNamedWhoseNameHoldsAColon) {
    program.write("colon.geojson",
                  R"({"type": "FeatureCollection", "name": "a: b", "features": [{"type": "Feature",
"properties": {"N": 1}, "geometry": {"type": "Point", "coordinates": [1, 2]}}]})");
    EXPECT_THAT(page("colon.geojson"),
                HasSubstr("  LAYER a: b: feature layer\n"
                          "    Identity                a name with \":\" is read as Group:Member; give the "
                          "layer another name in a map document\n"));
    EXPECT_THAT(page("city.gpkg"), Not(HasSubstr("Identity")));
}

TEST_F(Describe, AndANoteOfAnExportSayHowALayerWithAColonIsNamed) {
    program.write("colon.geojson",
                  R"({"type": "FeatureCollection", "name": "a: b", "features": [{"type": "Feature",
"properties": {"N": 1}, "geometry": {"type": "Point", "coordinates": [1, 2]}}]})");
    program.write(
        "control.xml",
        R"(<T Name="Map"><L Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="a: b">
<C Name="Count" DataProperty="FeatureCount"/></L></T>)");
    const auto result = program.run({"export", "--map", "colon.geojson", "control.xml", "out.xml"});
    EXPECT_THAT(result.sErr,
                HasSubstr("no MapLayer with LayerName \"a: b\" was found; a \":\" parts a group from its "
                          "member: give the layer another name in a map document"));
    program.write("map.xml",
                  R"(<MapDocument><Map name="M"><FeatureLayer name="c" source="colon.geojson" dataset="a: b"/>
</Map></MapDocument>)");
    program.write("control.xml",
                  R"(<T Name="Map"><L Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="c">
<C Name="Count" DataProperty="FeatureCount"/></L></T>)");
    EXPECT_EQ(program.run({"export", "--map", "map.xml", "control.xml", "out.xml"}).sErr, "");
    EXPECT_THAT(program.read("out.xml").value_or(""), HasSubstr("<Count>1</Count>"));
}

TEST_F(Describe, RefusesAMapThatCannotBeOpened) {
    const auto result = program.run({"describe", "none.gpkg"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr,
              "halvane: MAP: There is no file or folder \"" + program.file("none.gpkg") + "\"\n");
}

TEST_F(Describe, RefusesArgumentsThatItDoesNotKnow) {
    const auto result = program.run({"describe"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_THAT(result.sErr, HasSubstr("MAP"));
    EXPECT_EQ(program.run({"describe", "--xml", "map.xml"}).lExitCode, 2);
}

TEST_F(Describe, NeverTellsAPasswordOfTheMapDocument) {
    program.write("server.xml", R"(<MapDocument>
  <Connection name="town" database="PG:host=127.0.0.1 port=1 dbname=town password=hunter2"/>
  <Map name="Town"><FeatureLayer name="Wells" connection="town" dataset="wells"/></Map></MapDocument>)");
    EXPECT_THAT(page("server.xml"), HasSubstr("Feature class           not readable: "));
    EXPECT_THAT(page("server.xml"), Not(HasSubstr("hunter2")));
    EXPECT_THAT(toJson("server.xml").dump(), Not(HasSubstr("hunter2")));
}

} // namespace halvane::test
