// Whether the shapes of features are read.

#include "MultipleTest.h"

#include <string>

namespace halvane::test {
namespace {

/// What a repeated node over the three roads writes; the shape of a row searched for without its shape cannot
/// be read.
class ShapesOfFeatures : public MultipleTest {
protected:
    bool areLeftUnread(const std::string& sChildren, const std::string& sBeside = "") {
        run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
            "<r Name='R' DataSource='Feature' Entries='Multiple'>" +
            sChildren + "</r></l>" + sBeside + "</a>");
        EXPECT_EQ(observer.lItems, 3);
        return world.pRoads->searchesWithoutShapes() > 0;
    }
};

TEST_F(ShapesOfFeatures, AreLeftUnreadWhereOnlyFieldsAreWritten) {
    EXPECT_TRUE(areLeftUnread("<n Name='N' IdentityValue='NAME'/><o Name='O' IdentityValue='OID'/>"));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ShapesOfFeatures, AreReadForAGeometryInside) {
    EXPECT_FALSE(areLeftUnread("<g Name='G'><v Name='V' DataSource='geometry.length' Entries='Multiple'>"
                               "<x Name='X'/></v></g>"));
}

TEST_F(ShapesOfFeatures, AreReadForAFieldThatIsTheShape) {
    EXPECT_FALSE(areLeftUnread("<n Name='N' IdentityValue='shape'/>"));
}

TEST_F(ShapesOfFeatures, AreReadForAShapeThatIsTheFirstField) {
    const auto pClass = host::memory::MemoryFeatureClass::make(
        "ROADS", host::ShapeType::Polyline, {host::memory::field("SHAPE", host::FieldType::Geometry)});
    world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make("ShapesFirst", pClass));
    run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='ShapesFirst'>"
        "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' "
        "IdentityValue='SHAPE'/></r></l></a>");
    EXPECT_EQ(pClass->searchesWithoutShapes(), 0);
}

TEST_F(ShapesOfFeatures, AreReadForALinkThatIsTheShape) {
    EXPECT_FALSE(areLeftUnread("<n Name='N' DataSource='RelatedRecord' LinkField='SHAPE'/>"));
}

TEST_F(ShapesOfFeatures, AreReadForAFieldNamedByItsAlias) {
    EXPECT_FALSE(areLeftUnread("<n Name='N' Identity='TagName' IdentityValue='T'/>"));
}

TEST_F(ShapesOfFeatures, AreReadInsideALayerNamedByItsTag) {
    run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='TagName' IdentityValue='Roads'>"
        "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/></r></l></a>");
    EXPECT_EQ(observer.lItems, 3);
    EXPECT_EQ(world.pRoads->searchesWithoutShapes(), 0) << "the identity is inherited";
}

TEST_F(ShapesOfFeatures, AreReadWhereverAProcessorIsAsked) {
    world.registerSpy("Spy.Component");
    EXPECT_FALSE(areLeftUnread("<n Name='N' IdentityValue='NAME'/>",
                               "<e Name='E' DataSource='External' IdentityValue='Spy.Component'/>"));
}

TEST_F(ShapesOfFeatures, AreReadWhereTheFieldsCannotBeAskedFor) {
    world.pHost->faults().failAt("GisTable.fields");
    EXPECT_FALSE(areLeftUnread("<n Name='N' IdentityValue='NAME'/>"));
    EXPECT_EQ(state.lModErrNum, 1004);
}

} // namespace
} // namespace halvane::test
