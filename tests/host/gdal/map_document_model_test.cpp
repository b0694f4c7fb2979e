#include "SampleData.h"

#include "host/gdal/map/MapDocumentReader.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;
using namespace host::gdal;

// The XML samples of the documentation, in their order.
std::vector<std::string> samples() {
    std::ifstream stream(HALVANE_SOURCE_DIR "/docs/map-document.md");
    const std::string sText(std::istreambuf_iterator<char>(stream), {});
    std::vector<std::string> all;
    for (std::size_t nStart = sText.find("```xml\n"); nStart != std::string::npos;
         nStart = sText.find("```xml\n", nStart)) {
        nStart += 7;
        all.push_back(sText.substr(nStart, sText.find("```", nStart) - nStart));
    }
    return all;
}

MapDocumentModel readSample(std::size_t nIndex) {
    const TemporaryFolder folder;
    MapDocumentModel model = readMapDocument(folder.write("map.xml", samples().at(nIndex)));
    EXPECT_EQ(model.sFolder, folder.path());
    return model;
}

TEST(MapDocumentSamples, OfTheDocumentationAreValidForTheSchemaFile) {
    const TemporaryFolder folder;
    ASSERT_THAT(samples(), SizeIs(3));
    for (const std::string& sSample : samples()) {
        const std::string sCommand = "xmllint --noout --schema '" HALVANE_SOURCE_DIR
                                     "/docs/map-document.xsd' '" +
                                     folder.write("map.xml", sSample) + "' 2>/dev/null";
        EXPECT_EQ(std::system(sCommand.c_str()), 0);
    }
}

TEST(MapDocumentModel, HoldsTheShortSample) {
    const MapDocumentModel model = readSample(0);
    ASSERT_THAT(model.maps, SizeIs(1));
    EXPECT_TRUE(model.maps[0].bShown);
    ASSERT_THAT(model.maps[0].layers, SizeIs(2));
    EXPECT_EQ(model.maps[0].layers[0].data.sLocation, model.sFolder + "/data/city.gpkg");
    EXPECT_EQ(model.maps[0].layers[1].sName, "districts");
    EXPECT_THAT(model.maps[0].tables, SizeIs(1));
}

class LongSample : public ::testing::Test {
protected:
    MapDocumentModel model = readSample(1);
};

TEST_F(LongSample, HasItsConnectionsAndMaps) {
    ASSERT_THAT(model.connections, SizeIs(1));
    EXPECT_EQ(model.connections[0].sName, "assets");
    EXPECT_EQ(model.connections[0].sDatabase, "PG:host=db.example dbname=assets user=reader");
    ASSERT_THAT(model.maps, SizeIs(2));
    EXPECT_EQ(model.maps[1].sName, "Overview");
    EXPECT_FALSE(model.maps[1].bShown);
    EXPECT_EQ(model.maps[0].spatialReference->sDefinition, "EPSG:25832");
    EXPECT_TRUE(model.maps[0].tables[1].bConnection);
}

TEST_F(LongSample, HasItsLayersFieldsAndSubtypes) {
    const LayerModel& layer = model.maps[0].layers[0];
    EXPECT_THAT(layer.selection->ids, ElementsAre(7, 3, 12));
    EXPECT_EQ(layer.data.sFilter, "CLASS <= 2");
    ASSERT_THAT(layer.data.fields, SizeIs(2));
    EXPECT_EQ(layer.data.fields[1].sDomain, "Road class");
    EXPECT_EQ(layer.data.fields[1].bEditable, false);
    const SubtypesFacts& subtypes = *layer.data.subtypes;
    EXPECT_EQ(subtypes.sField, "KIND");
    EXPECT_EQ(subtypes.lDefault, 1);
    ASSERT_THAT(subtypes.subtypes, SizeIs(2));
    EXPECT_EQ(subtypes.subtypes[1].lCode, 2);
    EXPECT_EQ(subtypes.subtypes[0].fields[0].sDomain, "Lanes");
    EXPECT_EQ(subtypes.subtypes[0].fields[0].sDefault, "2");
    const LayerModel& group = model.maps[0].layers[1];
    EXPECT_EQ(group.kind, LayerKind::Group);
    EXPECT_EQ(group.layers[0].kind, LayerKind::Tin);
    EXPECT_EQ(group.layers[1].kind, LayerKind::Raster);
}

TEST_F(LongSample, HasItsDomainsAndRelationshipClasses) {
    ASSERT_THAT(model.workspaces, SizeIs(1));
    const WorkspaceModel& workspace = model.workspaces[0];
    ASSERT_THAT(workspace.domains, SizeIs(2));
    EXPECT_EQ(workspace.domains[0].kind, DomainKind::CodedValue);
    EXPECT_EQ(workspace.domains[0].fieldType, host::FieldType::SmallInteger);
    ASSERT_THAT(workspace.domains[0].codes, SizeIs(2));
    EXPECT_EQ(workspace.domains[0].codes[1].sName, "Main road");
    EXPECT_EQ(workspace.domains[1].kind, DomainKind::Range);
    EXPECT_EQ(toText(workspace.domains[1].vMax), "8");
    const RelationshipFacts& relationship = workspace.relationships.at(0);
    EXPECT_EQ(relationship.lCardinality, 2);
    EXPECT_EQ(relationship.lNotification, 1);
    EXPECT_TRUE(relationship.bComposite);
    EXPECT_FALSE(relationship.bAttributed);
    EXPECT_EQ(relationship.sBackwardLabel, "inspects");
}

TEST(MapDocumentModel, ReadsNumbersIndependentlyOfTheLocale) {
    const TemporaryFolder folder;
    const std::string sPath = folder.write(
        "map.xml",
        "<MapDocument><Map name='M'><SpatialReference>"
        "<XYDomain xMin='-1.5' yMin='+2' xMax='1e3' yMax='4' scale='1000.25'/><ZDomain min='0' max='9' "
        "falseOrigin='-5'/></SpatialReference></Map></MapDocument>");
    const MapDocumentModel model = readMapDocument(sPath);
    const ReferenceOverride& reference = *model.maps.at(0).spatialReference;
    EXPECT_EQ(reference.xy->dXMin, -1.5);
    EXPECT_EQ(reference.xy->dYMin, 2);
    EXPECT_EQ(reference.xy->dXMax, 1000);
    EXPECT_EQ(reference.xy->dFalseX, -1.5);
    EXPECT_EQ(reference.xy->dScale, 1000.25);
    EXPECT_EQ(reference.z->dFalseOrigin, -5);
    EXPECT_FALSE(reference.m.has_value());
}

} // namespace
} // namespace halvane::tests
