// The public class.

#include "component/clsExport.h"
#include "support/ExportTest.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

class ExportComponent : public ::testing::Test {
protected:
    ExportComponent() : component(world.pHost, {.pObserver = &observer}) { moduleState().release(); }
    ~ExportComponent() override { moduleState() = ExportState(); }

    void exportTo(const std::string& sFolder, std::string& sName, const dom::DocumentPtr& oXMLDom = nullptr,
                  const std::string& sNodePath = {}) {
        component.Export2XML(world.pMapDocument, sControlPath, sFolder, sName, oXMLDom, sNodePath, lErrNum,
                             sErrMsg);
    }
    static dom::DocumentPtr parse(std::string_view sXml) {
        auto oDocument = dom::Document::create();
        EXPECT_TRUE(oDocument->loadXML(sXml));
        return oDocument;
    }

    TownWorld world;
    TemporaryFolder folder;
    RecordingObserver observer;
    clsExport component;
    std::string sControlPath =
        folder.write("control.xml", "<a Name='Out'><b Name='T' DataSource='Time'/></a>");
    std::int32_t lErrNum = 17;
    std::string sErrMsg = "as the caller left it";
};

TEST_F(ExportComponent, WritesTheDocumentAndTellsOfNoError) {
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    EXPECT_EQ(folder.read("out.xml"), "<Out>\r\n<T>11/21/2026</T>\r\n</Out>");
    EXPECT_EQ(lErrNum, 0);
    EXPECT_EQ(sErrMsg, "");
}

TEST_F(ExportComponent, TakesAFolderWithAndWithoutItsTrailingBackslashForTheSame) {
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    EXPECT_EQ(moduleState().sOutputPath, folder.path().string() + "\\out.xml");
    EXPECT_TRUE(folder.read("out.xml").has_value());
    std::filesystem::remove(folder.file("out.xml"));
    exportTo(folder.path().string() + "\\", sName);
    EXPECT_EQ(moduleState().sOutputPath, folder.path().string() + "\\out.xml");
    EXPECT_TRUE(folder.read("out.xml").has_value());
}

TEST_F(ExportComponent, AppendsXmlToANameWithoutTheseLetters) {
    std::string sName = "roads.txt";
    exportTo(folder.path().string(), sName);
    EXPECT_EQ(sName, "roads.txt.xml");
    EXPECT_TRUE(folder.read("roads.txt.xml").has_value());
}

TEST_F(ExportComponent, LeavesANameAloneThatHoldsTheLettersXmlAnywhereInAnyCase) {
    for (const std::string sGiven : {"out.XML", "xmlout", "my-xMl-file.txt", "out.xml"}) {
        std::string sName = sGiven;
        exportTo(folder.path().string(), sName);
        EXPECT_EQ(sName, sGiven);
        EXPECT_TRUE(folder.read(sGiven).has_value()) << sGiven;
    }
}

TEST_F(ExportComponent, ExportsNothingForADocumentWithABlankNodePath) {
    std::string sName = "out";
    exportTo(folder.path().string(), sName, parse("<v/>"), "   ");
    EXPECT_EQ(folder.read("out.xml"), std::nullopt);
    EXPECT_EQ(lErrNum, 17);
    EXPECT_EQ(sErrMsg, "as the caller left it");
    EXPECT_EQ(sName, "out.xml") << "the name is completed before";
    EXPECT_EQ(moduleState().pMapDoc, world.pMapDocument);
    EXPECT_EQ(moduleState().sControlPath, sControlPath);
    EXPECT_TRUE(observer.sNotSavedReason.has_value());
}

TEST_F(ExportComponent, ExportsWithoutTagNamesWhenThePathSelectsNoNode) {
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName, parse("<v/>"), "//q");
    EXPECT_TRUE(folder.read("out.xml").has_value());
    EXPECT_EQ(lErrNum, 0);
    EXPECT_EQ(moduleState().sExternalNodePath, "") << "no document is kept";
}

TEST_F(ExportComponent, FindsLayersAndFieldsByTheTagsOfTheDocument) {
    sControlPath = folder.write(
        "tags.xml",
        "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='TagName' IdentityValue='street'>"
        "<r Name='R' DataSource='Feature' Entries='Multiple'>"
        "<n Name='N' Identity='TagName' IdentityValue='title'/></r></l></a>");
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName,
             parse("<v><q TagName='Street' Alias='Roads'><QvFields><QvField TagName='Title' Alias='street "
                   "NAME'/></QvFields></q></v>"),
             "//q/");
    EXPECT_EQ(replaceAll(folder.read("out.xml").value_or(""), ">\r\n<", "><"),
              "<Out><L><R><N>High Street</N></R><R><N>Mill Lane</N></R><R><N>Quay</N></R></L></Out>");
    EXPECT_EQ(moduleState().dTagNames, nullptr);
    EXPECT_EQ(moduleState().oExternalDom, nullptr);
}

TEST_F(ExportComponent, RunsWithoutAMapDocument) {
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    sControlPath =
        folder.write("map.xml", "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' "
                                "IdentityValue='Roads' DataProperty='LayerName'/></a>");
    component.Export2XML(nullptr, sControlPath, folder.path().string(), sName, nullptr, "", lErrNum, sErrMsg);
    EXPECT_EQ(folder.read("out.xml"), "<Out>\r\n<L/>\r\n</Out>") << "the map of the export before is gone";
    EXPECT_EQ(lErrNum, 0);
}

TEST_F(ExportComponent, UsesTheControlFileOfTheExportBeforeForAnEmptyPath) {
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    sControlPath.clear();
    std::string sSecondName = "second.xml";
    exportTo(folder.path().string(), sSecondName);
    EXPECT_EQ(folder.read("second.xml"), folder.read("out.xml"));
}

TEST_F(ExportComponent, TellsTheCallerOfNoFailureInsideTheWalk) {
    sControlPath = folder.write(
        "failing.xml", "<a Name='Out'><b Name='X' DataSource='External' IdentityValue='No.Such'/></a>");
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    EXPECT_EQ(lErrNum, 0);
    EXPECT_EQ(sErrMsg, "");
    EXPECT_EQ(moduleState().lModErrNum, 429);
    EXPECT_EQ(observer.aFailures.size(), 1U);
}

TEST_F(ExportComponent, TellsTheCallerOfNoFailureOfTheExportsOwnSteps) {
    sControlPath = folder.file("no such control.xml");
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    EXPECT_EQ(lErrNum, 0);
    EXPECT_TRUE(observer.sNotSavedReason.has_value());
}

TEST_F(ExportComponent, TellsTheCallerOfAFailureOfItsOwnSteps) {
    world.pHost->faults().failAt("focusMap");
    moduleState().dTagNames = dCollection::create();
    moduleState().oExternalDom = parse("<v/>");
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    EXPECT_EQ(lErrNum, 1004);
    EXPECT_EQ(sErrMsg, "focusMap failed by request");
    EXPECT_EQ(observer.sNotSavedReason, sErrMsg);
    EXPECT_EQ(moduleState().dTagNames, nullptr);
    EXPECT_EQ(moduleState().oExternalDom, nullptr);
}

TEST_F(ExportComponent, CollectsTagNamesAndAliasesUpperCased) {
    const auto dTagNames = component.GetTagNames(
        parse("<v><q TagName='Straße' Alias='Über'/><q TagName='b' Alias='c'/></v>"), "//q/");
    ASSERT_EQ(dTagNames->Count(), 2);
    EXPECT_EQ(dTagNames->ReturnKeys()[0], "STRAßE");
    EXPECT_EQ(dTagNames->GetValueString("straße"), "ÜBER");
    EXPECT_EQ(dTagNames->GetValueString("B"), "C");
}

TEST_F(ExportComponent, CollectsNoTagNamesForABlankPath) {
    EXPECT_EQ(component.GetTagNames(parse("<v><q TagName='A' Alias='B'/></v>"), "  ")->Count(), 0);
}

TEST_F(ExportComponent, ReturnsTheTagNamesCollectedBeforeAFailure) {
    EXPECT_EQ(
        component
            .GetTagNames(parse("<v><q TagName='A' Alias='B'/><q TagName='C'/><q TagName='D' Alias='E'/></v>"),
                         "//q")
            ->Count(),
        1);
    EXPECT_EQ(component.GetTagNames(parse("<v/>"), "//q[")->Count(), 0);
    EXPECT_EQ(component.GetTagNames(nullptr, "//q")->Count(), 0);
}

TEST_F(ExportComponent, ReturnsAllElementsOfAName) {
    const auto oDocument = parse("<v><q n='1'/><r><q n='2'/></r></v>");
    const auto oNodes = component.GetNodesByName("q", oDocument);
    EXPECT_EQ(oNodes.length(), 2);
    EXPECT_EQ(oNodes.item(1).getAttribute("n"), "2");
    EXPECT_EQ(component.GetNodesByName("Q", oDocument).length(), 0);
    EXPECT_FALSE(component.GetNodesByName("q", nullptr));
}

TEST_F(ExportComponent, DoesNothingAtAllWhenAskedForADialog) {
    // All that an export needs is there, so that one would leave its traces.
    ExportState& state = moduleState();
    state.pHost = world.pHost;
    state.pMapDoc = world.pMapDocument;
    state.options.pObserver = &observer;
    state.sControlPath = sControlPath;
    state.sOutputPath = folder.file("out.xml");
    component.ShowExportGUI();
    EXPECT_EQ(folder.read("out.xml"), std::nullopt);
    EXPECT_EQ(observer.lVisits, 0);
    EXPECT_EQ(observer.sNotSavedReason, std::nullopt);
    EXPECT_EQ(state.pMapDoc, world.pMapDocument);
}

TEST_F(ExportComponent, DeclaresProcessorsThatComputeNothing) {
    IExternalProcessor processor;
    dCollection dVariables;
    EXPECT_EQ(processor.Process(dVariables), "");
    EXPECT_EQ(IExternalProgID().ProgID(), "");
}

TEST_F(ExportComponent, TakesAnEmptyFolderForTheRoot) {
    std::string sName = "xml-that-is-not-written/x.xml";
    exportTo("", sName);
    EXPECT_EQ(moduleState().sOutputPath, "\\xml-that-is-not-written/x.xml");
}

TEST_F(ExportComponent, KeepsTheFirstOfTwoEqualTags) {
    const auto dTagNames =
        component.GetTagNames(parse("<v><q TagName='A' Alias='B'/><q TagName='a' Alias='C'/></v>"), "//q");
    EXPECT_EQ(dTagNames->Count(), 1);
    EXPECT_EQ(dTagNames->GetValueString("A"), "B");
}

TEST_F(ExportComponent, DropsOneTrailingSlashOnly) {
    const auto oDocument = parse("<v><q TagName='A' Alias='B'/></v>");
    EXPECT_EQ(component.GetTagNames(oDocument, "/v/q/")->Count(), 1);
    EXPECT_EQ(component.GetTagNames(oDocument, "/v/q//")->Count(), 0);
    EXPECT_EQ(component.GetTagNames(oDocument, "/")->Count(), 0);
}

/// A processor that starts an export of its own.
class Exporting : public IExternalProcessor {
public:
    explicit Exporting(clsExport& component) : component_(component) {}
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        std::string sName = "inner.xml";
        std::int32_t lErrNum = 0;
        std::string sErrMsg;
        component_.Export2XML(nullptr, "", "", sName, nullptr, "", lErrNum, sErrMsg);
        return sErrMsg;
    }

private:
    clsExport& component_;
};

TEST_F(ExportComponent, RefusesAnExportWhileAnotherRuns) {
    world.pHost->registerComponent("Test.Exporting",
                                   [this] { return std::make_shared<Exporting>(component); });
    sControlPath = folder.write(
        "nested.xml", "<a Name='Out'><b Name='X' DataSource='External' IdentityValue='Test.Exporting'/></a>");
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    EXPECT_EQ(folder.read("out.xml"), "<Out>\r\n<X>an export is running already</X>\r\n</Out>");
}

TEST_F(ExportComponent, LetsGoOfItsHostAndObserverWhenTheExportEnds) {
    std::string sName = "out.xml";
    exportTo(folder.path().string(), sName);
    EXPECT_EQ(moduleState().pHost, nullptr);
    EXPECT_EQ(moduleState().options.pObserver, nullptr);
}

} // namespace
} // namespace halvane::test
