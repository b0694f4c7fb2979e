// How a leaf writes its value, what it binds, and what external processors do.

#include "ElementPropertyTest.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace halvane::test {
namespace {

TEST_F(ElementPropertyTest, WritesTheValueAsTheTextOfTheElement) {
    EXPECT_EQ(leaf("DataSource='Time'"), "<Out><V>11/21/2026</V></Out>");
}

TEST_F(ElementPropertyTest, WritesTheValueIntoTheAttributeMadeForIt) {
    EXPECT_EQ(leaf("DataSource='Time' Target='Attribute'"), "<Out V=\"11/21/2026\"/>");
}

TEST_F(ElementPropertyTest, NeverCreatesTheAttribute) {
    state.oOutputManager = std::make_unique<ClsXMLManager>();
    const ControlText control(state, "<v Name='V' DataSource='Time' Target='Attribute'/>");
    auto oOutput = dom::Document::create();
    ASSERT_TRUE(oOutput->loadXML("<Out/>"));
    ExportElementProperty(state, control.root(), oOutput->documentElement(), nullptr, nullptr);
    EXPECT_EQ(oOutput->xml(), "<Out/>");
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(ElementPropertyTest, TellsAnUnknownPropertyAsItIsWritten) {
    for (const std::string sProperty : {"Reference.XMin", "SpatialReference"}) {
        observer.aNotices.clear();
        EXPECT_EQ(leafBelowRoads("DataProperty='" + sProperty + "'"), "<Out><L><V/></L></Out>");
        ASSERT_EQ(observer.aNotices.size(), 1U);
        EXPECT_EQ(observer.aNotices[0].notice, Notice::UnknownProperty);
        EXPECT_EQ(observer.aNotices[0].sDetail, sProperty);
    }
}

TEST_F(ElementPropertyTest, LeavesTheElementEmptyForAnUnknownKind) {
    EXPECT_EQ(leaf("DataSource='Nothing' DataProperty='LayerName'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, WritesWhatAnExternalProcessorReturns) {
    world.registerSpy("Test.Processor", "computed");
    EXPECT_EQ(leaf("DataSource='External' IdentityValue='Test.Processor'"), "<Out><V>computed</V></Out>");
}

TEST_F(ElementPropertyTest, FailsForAComponentThatCannotBeCreated) {
    EXPECT_EQ(leaf("DataSource='External' IdentityValue='No.Such'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 429);
}

TEST_F(ElementPropertyTest, WritesNothingForAComponentThatIsNoProcessor) {
    world.registerComponentWithoutRole("Test.Other");
    EXPECT_EQ(leaf("DataSource='External' IdentityValue='Test.Other'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, WritesTodayWithTwoDigitsForMonthAndDay) {
    world.pHost->setToday({2027, 3, 4, 0, 0, 0});
    EXPECT_EQ(leaf("DataSource='Time'"), "<Out><V>03/04/2027</V></Out>");
}

/// Leaves of a repeated feature do not pass through the walker: what they bind they bind themselves.
class DirectLeaf : public ElementPropertyTest {
protected:
    std::vector<std::string> keysAfter(const std::string& sLeaf) {
        const std::string sProgId = "Spy.Component" + std::to_string(++nSpies_);
        const auto pSpy = world.registerSpy(sProgId);
        world.pRoadsLayer->select({1});
        run(group("<r Name='R' DataSource='Feature' Entries='Multiple'>" + sLeaf +
                  "<x Name='X' DataSource='External' IdentityValue='" + sProgId + "'/></r>"));
        return pSpy->keysInOrder();
    }

private:
    int nSpies_ = 0;
};

TEST_F(DirectLeaf, BindsEachKindAndFilesItBehindTheOthersUnderItsKey) {
    const std::vector<std::string> aBefore{"FeatureLayer", "FeatureClass", "DataFrame"};
    const auto with = [&](const std::string& sKey) {
        auto aKeys = aBefore;
        aKeys.push_back(sKey);
        return aKeys;
    };
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'/>"),
              with("Table"));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS'/>"),
              with("RelatedTable"));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='Workspace'/>"), with("Workspace"));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'/>"),
              with("TinLayer"));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='Map' IdentityValue='Harbour Map' DataProperty='A.B'/>"),
              (std::vector<std::string>{"FeatureLayer", "FeatureClass", "DataFrame"}));
    EXPECT_EQ(
        keysAfter("<t Name='T' DataSource='MapLayer' Identity='LayerName' IdentityValue='Base:Roads'/>"),
        (std::vector<std::string>{"DataFrame", "FeatureLayer", "FeatureClass"}));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'/>"),
              aBefore);
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='FeatureTable'/>"), aBefore);
}

TEST_F(DirectLeaf, WritesThePropertyOfWhatItBoundItself) {
    EXPECT_EQ(
        leafOfEachRoad(
            "DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo' DataProperty='LayerName'"),
        "<Out><L><R><V>Photo</V></R><R><V>Photo</V></R><R><V>Photo</V></R></L></Out>");
}

TEST_F(ElementPropertyTest, TellsTheObserverOfAKindThatGivesNoSingleValue) {
    leaf("DataSource='Featur' IdentityValue='NAME'");
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownKind));
    observer.aNotices.clear();
    leaf("DataSource='' IdentityValue='NAME'");
    EXPECT_TRUE(observer.aNotices.empty()) << "a node without a kind is only an element";
}

TEST_F(ElementPropertyTest, LetsAnExternalProcessorAddToTheResolvedObjects) {
    class Adding : public IExternalProcessor {
        std::string Process(dCollection& dColSpatialVariables) override {
            dColSpatialVariables.Add(std::string("added"), "Note");
            return dColSpatialVariables.GetValueString("Note");
        }
    };
    world.pHost->registerComponent("Test.Adding", [] { return std::make_shared<Adding>(); });
    const auto pSpy = world.registerSpy("Spy.Component");
    run("<a Name='Out'><v Name='V' DataSource='External' IdentityValue='Test.Adding'/>"
        "<x Name='X' DataSource='External' IdentityValue='Spy.Component'/></a>");
    EXPECT_EQ(pSpy->keysInOrder().front(), "Note");
}

/// Does something to the host's objects, and returns "".
class Changing : public IExternalProcessor {
public:
    explicit Changing(std::function<void()> fnChange) : fnChange_(std::move(fnChange)) {}
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        fnChange_();
        return {};
    }

private:
    std::function<void()> fnChange_;
};

TEST_F(ElementPropertyTest, CountsFeaturesAnewAfterAProcessorHasActed) {
    const auto pBare = host::memory::MemoryFeatureClass::make(
        "Bare", host::ShapeType::Point, {host::memory::field("A", host::FieldType::String)});
    pBare->addRow({std::string("one")});
    world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make("Bare", pBare));
    world.pHost->registerComponent("Test.Changing", [&] {
        return std::make_shared<Changing>([&] { pBare->addRow({std::string("two")}); });
    });
    EXPECT_EQ(run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Bare'>"
                  "<c Name='C' DataProperty='FeatureCount'/><d Name='D' DataProperty='FeatureCount'/>"
                  "<e Name='E' DataSource='External' IdentityValue='Test.Changing'/>"
                  "<f Name='F' DataProperty='FeatureCount'/></l></a>"),
              "<Out><L><C>1</C><D>1</D><E/><F>2</F></L></Out>");
}

TEST_F(ElementPropertyTest, FindsALayerAnewAfterAProcessorHasActed) {
    world.pHost->registerComponent("Test.Changing", [&] {
        return std::make_shared<Changing>(
            [&] { world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make("Late", world.pRoads)); });
    });
    EXPECT_EQ(
        run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Late'>"
            "<c Name='C' DataProperty='LayerName'/>"
            "<e Name='E' DataSource='External' IdentityValue='Test.Changing'/>"
            "<f Name='F' DataSource='MapLayer' IdentityValue='Late' DataProperty='LayerName'/></l></a>"),
        "<Out><L><C/><E/><F>Late</F></L></Out>");
}

} // namespace
} // namespace halvane::test
