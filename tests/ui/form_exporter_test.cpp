// The form "Export to XML" without its window.

#include "ui/FormExporter.h"

#include "support/ExportTest.h"
#include "ui/ScriptedView.h"

#include <gmock/gmock.h>

#include <functional>

namespace halvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ui::Box;

constexpr const char* sTown = "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' "
                              "IdentityValue='roads' DataProperty='LayerName'/></a>";
constexpr const char* sCommented =
    "<a Name='Out'><!-- --><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' "
    "DataProperty='LayerName'/></a>";
constexpr const char* sTagged =
    "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='TagName' IdentityValue='street'>"
    "<c Name='Layer' DataProperty='LayerName'/></l></a>";
constexpr const char* sRoads =
    "<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
    "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='Street "
    "Name'/></r></l></a>";
constexpr const char* sTags = "<v><q TagName='Street' Alias='Roads'/></v>";

/// The town's application; a test can have it fail, or look on while it is asked.
class TownApplication : public ui::HostApplication {
public:
    explicit TownApplication(const TownWorld& world) : pOpen(world.pMapDocument), world_(world) {}

    [[nodiscard]] host::GisMapDocumentPtr mapDocument() override {
        if (fnAsked)
            fnAsked();
        return pOpen;
    }
    [[nodiscard]] host::GisHostPtr objects() override { return world_.pHost; }

    host::GisMapDocumentPtr pOpen;
    std::function<void()> fnAsked;

private:
    const TownWorld& world_;
};

/// Listens to the exports of a form.
class RecordingWatch : public ui::ExportWatch {
public:
    [[nodiscard]] ExportObserver* exportBegins(const ui::ExportRequest& request) override {
        requests.push_back(request);
        return pObserver;
    }
    void optionalDocumentLoaded(const dom::DocumentPtr& oDocument) override {
        documents.push_back(oDocument);
        loadingErrors.push_back(oDocument->parseError().errorCode);
    }
    void exportEnds() override { ++lEnded; }

    RecordingObserver observer;
    ExportObserver* pObserver = &observer;
    std::vector<ui::ExportRequest> requests;
    std::vector<dom::DocumentPtr> documents;
    std::vector<std::int32_t> loadingErrors;
    int lEnded = 0;
};

/// Clicks every button of a form at the first item that is written.
class ClickingObserver : public RecordingObserver {
public:
    bool itemWritten(dom::Node oControlNode) override {
        if (lItems == 0) {
            bExporting = pForm->exporting();
            pForm->Command1_Click();
            pForm->Command2_Click();
            pForm->Command3_Click();
            pForm->Command4_Click();
            pForm->Command5_Click();
        }
        return RecordingObserver::itemWritten(oControlNode);
    }
    ui::FormExporter* pForm = nullptr;
    bool bExporting = false;
};

class Form : public ::testing::Test {
protected:
    Form() {
        moduleState().release();
        form.Load(pApplication);
    }
    ~Form() override { moduleState() = ExportState(); }

    /// Fills the boxes of an export of a layer's name.
    void fill() {
        view.boxes[Box::Text1] = folder.write("control.xml", sTown);
        view.boxes[Box::Text2] = folder.path().string();
        view.boxes[Box::Text3] = "out.xml";
    }
    [[nodiscard]] std::string output(const char* sName = "out.xml") const {
        return replaceAll(folder.read(sName).value_or("(no file)"), ">\r\n<", "><");
    }

    TownWorld world;
    TemporaryFolder folder;
    ScriptedView view;
    RecordingWatch watch;
    std::shared_ptr<TownApplication> pApplication = std::make_shared<TownApplication>(world);
    ui::FormExporter form{view, {}, &watch};
};

// ---- Loading

TEST_F(Form, BeginsWithEmptyBoxesAndANodePath) {
    EXPECT_EQ(view.boxes,
              (std::map<Box, std::string>{{Box::Text1, ""},
                                          {Box::Text2, ""},
                                          {Box::Text3, ""},
                                          {Box::Text4, ""},
                                          {Box::Text5, "//VandraConfig/TemplateView/QvLayers/QvLayer"}}));
}

// ---- OK: the checks

TEST_F(Form, AsksForTheControlFileFirst) {
    view.boxes[Box::Text1] = "   ";
    view.boxes[Box::Text3] = "a\\b";
    form.Command1_Click();
    EXPECT_THAT(view.messages, ElementsAre("Please select the control XML file."));
    EXPECT_EQ(view.text(Box::Text3), "a\\b") << "later checks are not made";
    EXPECT_THAT(view.focused, ElementsAre(Box::Text1));
}

TEST_F(Form, AsksForTheOutputPathNext) {
    fill();
    view.boxes[Box::Text2] = " ";
    view.boxes[Box::Text3] = "";
    form.Command1_Click();
    EXPECT_THAT(view.messages, ElementsAre("Please select the output path."));
    EXPECT_THAT(view.focused, ElementsAre(Box::Text2));
}

TEST_F(Form, AsksForTheOutputFileNameNext) {
    fill();
    view.boxes[Box::Text3] = "  ";
    form.Command1_Click();
    EXPECT_THAT(view.messages, ElementsAre("Please type the output file name."));
    EXPECT_EQ(view.text(Box::Text3), "  ");
    EXPECT_THAT(view.focused, ElementsAre(Box::Text3));
}

TEST_F(Form, RefusesAFileNameWithAFolderAndThenEmptiesItsBox) {
    for (const char* sName : {"sub\\out.xml", "\\", "out.xml\\"}) {
        fill();
        view.messages.clear();
        view.boxes[Box::Text3] = sName;
        form.Command1_Click();
        EXPECT_THAT(view.messages, ElementsAre("Invalid output file name."));
        EXPECT_EQ(view.boxesAtMessage[Box::Text3], sName) << "the name stands while the message is read";
        EXPECT_EQ(view.text(Box::Text3), "");
        EXPECT_EQ(view.focused.back(), Box::Text3);
    }
    EXPECT_THAT(watch.requests, IsEmpty());
}

TEST_F(Form, TakesOnlyBlanksForNothing) {
    fill();
    view.boxes[Box::Text1] = "\t";
    form.Command1_Click();
    EXPECT_THAT(view.messages, IsEmpty()) << "a tab is a name, if a strange one";
    EXPECT_EQ(watch.requests.size(), 1U);
}

TEST_F(Form, NeitherExportsNorWaitsWhenACheckFails) {
    fill();
    view.boxes[Box::Text2] = "";
    form.Command1_Click();
    EXPECT_THAT(view.pointers, IsEmpty());
    EXPECT_THAT(watch.requests, IsEmpty());
    EXPECT_EQ(folder.read("out.xml"), std::nullopt);
    EXPECT_EQ(view.lUnloaded, 0) << "the dialog stays open";
}

TEST_F(Form, ExportsOnceTheBoxesAreMended) {
    form.Command1_Click();
    fill();
    form.Command1_Click();
    EXPECT_EQ(view.messages.size(), 1U);
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
}

// ---- OK: the export

TEST_F(Form, ExportsTheMapDocumentOfTheApplication) {
    fill();
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
    EXPECT_THAT(view.messages, IsEmpty());
    EXPECT_FALSE(watch.observer.sNotSavedReason.has_value());
}

TEST_F(Form, AsksTheApplicationForItsDocumentAnewAtEachExport) {
    fill();
    form.Command1_Click();
    pApplication->pOpen = nullptr;
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L/></Out>") << "no document is open any more";
}

TEST_F(Form, DoesNotCloseAfterASuccessfulExport) {
    fill();
    form.Command1_Click();
    ASSERT_EQ(output(), "<Out><L>Roads</L></Out>");
    EXPECT_EQ(view.lUnloaded, 0);
    view.boxes[Box::Text3] = "again.xml";
    form.Command1_Click();
    EXPECT_EQ(output("again.xml"), "<Out><L>Roads</L></Out>");
}

TEST_F(Form, HandsOverTheBoxesWithoutTheBlanksAroundThem) {
    fill();
    const auto boxes = view.boxes;
    view.boxes[Box::Text1] = "  " + boxes.at(Box::Text1) + " ";
    view.boxes[Box::Text2] = " " + boxes.at(Box::Text2) + "  ";
    view.boxes[Box::Text3] = "  town.xml ";
    view.boxes[Box::Text4] = "   ";
    form.Command1_Click();
    EXPECT_EQ(output("town.xml"), "<Out><L>Roads</L></Out>");
    ASSERT_EQ(watch.requests.size(), 1U);
    EXPECT_EQ(watch.requests[0].sControlXML, boxes.at(Box::Text1));
    EXPECT_EQ(watch.requests[0].sOutPath, boxes.at(Box::Text2));
    EXPECT_EQ(watch.requests[0].SOutXML, "town.xml");
    EXPECT_EQ(view.text(Box::Text3), "  town.xml ") << "the boxes stay as they were typed";
}

TEST_F(Form, LeavesTheFileNameInItsBoxWhenTheExportCompletesIt) {
    fill();
    view.boxes[Box::Text3] = "town";
    form.Command1_Click();
    EXPECT_EQ(output("town.xml"), "<Out><L>Roads</L></Out>");
    EXPECT_EQ(view.text(Box::Text3), "town");
}

TEST_F(Form, TakesPathsWithEitherSlash) {
    fill();
    view.boxes[Box::Text1] = replaceAll(view.boxes[Box::Text1], "/", "\\");
    view.boxes[Box::Text2] = replaceAll(view.boxes[Box::Text2], "/", "\\") + "\\";
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
}

TEST_F(Form, ShowsTheHourglassWhileItExports) {
    fill();
    std::vector<int> seen;
    pApplication->fnAsked = [&] { seen = view.pointers; };
    form.Command1_Click();
    EXPECT_THAT(seen, ElementsAre(11));
    EXPECT_THAT(view.pointers, ElementsAre(11, 0));
}

TEST_F(Form, TakesTheHourglassAwayWhenTheApplicationFails) {
    fill();
    pApplication->fnAsked = [] { throw Failure(FailureNumber::InternalError, "the host has gone"); };
    form.Command1_Click();
    EXPECT_THAT(view.pointers, ElementsAre(11, 0));
    EXPECT_THAT(view.messages, IsEmpty()) << "the form reports no failure of an export";
    EXPECT_EQ(watch.observer.sNotSavedReason, "the host has gone");
    EXPECT_EQ(watch.lEnded, 1);
    pApplication->fnAsked = nullptr;
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>") << "the form works on";
}

TEST_F(Form, ShowsNothingOfAnExportThatFails) {
    fill();
    view.boxes[Box::Text1] = folder.file("missing.xml");
    form.Command1_Click();
    EXPECT_THAT(view.messages, IsEmpty());
    EXPECT_THAT(view.pointers, ElementsAre(11, 0));
    EXPECT_EQ(view.lUnloaded, 0);
    EXPECT_EQ(folder.read("out.xml"), std::nullopt);
    EXPECT_TRUE(watch.observer.sNotSavedReason.has_value());
}

TEST_F(Form, DoesTheSameWithoutAWatch) {
    ui::FormExporter alone(view);
    alone.Load(pApplication);
    fill();
    view.boxes[Box::Text4] = folder.file("missing.xml");
    alone.Command1_Click();
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
    pApplication->fnAsked = [] { throw Failure(FailureNumber::InternalError, "the host has gone"); };
    alone.Command1_Click();
    EXPECT_THAT(view.pointers, ElementsAre(11, 0, 11, 0));
}

TEST_F(Form, KeepsToTheComponentsLimitsUnlessToldOtherwise) {
    fill();
    folder.write("control.xml", sCommented);
    form.Command1_Click();
    EXPECT_EQ(output(), "(no file)") << "a comment is a control element without a name";
    ui::FormExporter relaxed(view, {.bIgnoreComments = true});
    relaxed.Load(pApplication);
    fill();
    folder.write("control.xml", sCommented);
    relaxed.Command1_Click();
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
}

TEST_F(Form, DoesNothingAtAnyButtonWhileItExports) {
    ClickingObserver observer;
    observer.pForm = &form;
    watch.pObserver = &observer;
    fill();
    folder.write("control.xml", sRoads);
    view.sChosenFile = "/chosen";
    view.chosenItem = {"/chosen", true};
    form.Command1_Click();
    EXPECT_EQ(observer.lItems, 3U) << "the export went on";
    EXPECT_TRUE(observer.bExporting);
    EXPECT_FALSE(form.exporting());
    EXPECT_EQ(watch.requests.size(), 1U);
    EXPECT_EQ(view.lUnloaded, 0);
    EXPECT_THAT(view.filters, IsEmpty());
    EXPECT_THAT(view.browseTitles, IsEmpty());
    EXPECT_THAT(view.pointers, ElementsAre(11, 0));
}

// ---- OK: the optional document

TEST_F(Form, FindsLayersByTheTagsOfTheOptionalDocument) {
    fill();
    folder.write("control.xml", sTagged);
    view.boxes[Box::Text4] = "  " + folder.write("tags.xml", sTags) + " ";
    view.boxes[Box::Text5] = " //q ";
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L><Layer>Roads</Layer></L></Out>");
    EXPECT_EQ(watch.requests.at(0).sOptionalXML, folder.file("tags.xml"));
    EXPECT_EQ(watch.requests.at(0).sNodePath, "//q");
}

TEST_F(Form, IgnoresTheNodePathWithoutAnOptionalDocument) {
    fill();
    view.boxes[Box::Text5] = "this is [no path";
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
    EXPECT_EQ(watch.requests.at(0).sNodePath, "");
    EXPECT_THAT(watch.documents, IsEmpty()) << "the form's document is made at first use";
}

TEST_F(Form, ExportsNothingForAnOptionalDocumentWithoutANodePath) {
    fill();
    view.boxes[Box::Text4] = folder.write("tags.xml", sTags);
    view.boxes[Box::Text5] = "  ";
    form.Command1_Click();
    EXPECT_EQ(output(), "(no file)");
    EXPECT_THAT(view.messages, IsEmpty());
    EXPECT_TRUE(watch.observer.sNotSavedReason.has_value());
}

TEST_F(Form, ExportsWithoutTagsWhenTheOptionalDocumentCannotBeLoaded) {
    fill();
    view.boxes[Box::Text4] = folder.write("tags.xml", "<v>");
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
    EXPECT_THAT(view.messages, IsEmpty());
    ASSERT_EQ(watch.loadingErrors.size(), 1U);
    EXPECT_NE(watch.loadingErrors[0], 0);
}

TEST_F(Form, LoadsTheOptionalDocumentAnewAtEachExport) {
    fill();
    folder.write("control.xml", sTagged);
    view.boxes[Box::Text4] = folder.write("tags.xml", sTags);
    view.boxes[Box::Text5] = "//q";
    form.Command1_Click();
    ASSERT_EQ(output(), "<Out><L><Layer>Roads</Layer></L></Out>");

    folder.write("tags.xml", "<v><q TagName='Street' Alias='Water'/></v>");
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L><Layer>Water</Layer></L></Out>");

    folder.write("tags.xml", "not a document");
    form.Command1_Click();
    EXPECT_EQ(output(), "<Out><L><Layer/></L></Out>") << "the tags of the document before are gone";
    ASSERT_EQ(watch.documents.size(), 3U);
    EXPECT_EQ(watch.documents[0], watch.documents[2]) << "the form has one document";
}

// ---- The other buttons

TEST_F(Form, UnloadsOnCancel) {
    form.Command2_Click();
    EXPECT_EQ(view.lUnloaded, 1);
    EXPECT_THAT(watch.requests, IsEmpty());
}

TEST_F(Form, PutsTheControlFileChosenIntoItsBox) {
    view.sChosenFile = "/maps/control.xml";
    form.Command3_Click();
    EXPECT_THAT(view.filters, ElementsAre("XML Files (.xml)|*.xml"));
    EXPECT_EQ(view.text(Box::Text1), "/maps/control.xml");
    EXPECT_EQ(view.text(Box::Text4), "");
}

TEST_F(Form, PutsTheOptionalDocumentChosenIntoItsBoxWithAFilterThatHasNoPattern) {
    view.sChosenFile = "/maps/tags.xml";
    form.Command5_Click();
    EXPECT_THAT(view.filters, ElementsAre("XML Files (.xml)"));
    EXPECT_EQ(view.text(Box::Text4), "/maps/tags.xml");
    EXPECT_EQ(view.text(Box::Text1), "");
}

TEST_F(Form, LeavesABoxAloneWhenNothingIsChosen) {
    view.boxes[Box::Text1] = "one";
    view.boxes[Box::Text2] = "two";
    view.boxes[Box::Text4] = "four";
    form.Command3_Click();
    form.Command4_Click();
    form.Command5_Click();
    EXPECT_EQ(view.text(Box::Text1), "one");
    EXPECT_EQ(view.text(Box::Text2), "two");
    EXPECT_EQ(view.text(Box::Text4), "four");
    EXPECT_THAT(view.messages, IsEmpty());
}

TEST_F(Form, PutsTheFolderChosenIntoItsBox) {
    view.chosenItem = {"/maps/out", true};
    form.Command4_Click();
    EXPECT_THAT(view.browseTitles, ElementsAre("Select Output Path"));
    EXPECT_EQ(view.text(Box::Text2), "/maps/out");
    EXPECT_THAT(view.messages, IsEmpty());
}

TEST_F(Form, RefusesAnOutputPathThatIsNoFolder) {
    view.boxes[Box::Text2] = "/before";
    view.chosenItem = {"/maps/map.gpkg", false};
    form.Command4_Click();
    EXPECT_THAT(view.messages, ElementsAre("Please select a file directory."));
    EXPECT_EQ(view.text(Box::Text2), "/before");
}

} // namespace
} // namespace halvane::test
