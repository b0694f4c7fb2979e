#include "XmlSupport.h"
#include "support/Platform.h"
#include "support/TemporaryFolder.h"

#include "io/OutputBuffer.h"
#include "xml/ClsXMLManager.h"

namespace halvane::test {
namespace {

namespace fs = std::filesystem;

class ManagerFiles : public testing::Test {
protected:
    TemporaryFolder folder;
    ClsXMLManager manager;
};

TEST_F(ManagerFiles, StartsWithAnEmptyDocumentAndNoError) {
    EXPECT_EQ(manager.GetErrNum(), 0);
    EXPECT_EQ(manager.GetErrMsg(), "");
    EXPECT_EQ(manager.fileName(), "");
    ASSERT_NE(manager.DOMDoc(), nullptr);
    EXPECT_EQ(manager.DOMDoc()->xml(), "");
    EXPECT_EQ(manager.saveFailure(), std::nullopt);
}

TEST_F(ManagerFiles, KeepsTheErrorThatItIsGiven) {
    manager.SetErrNum(-7);
    manager.SetErrMsg("text");
    EXPECT_EQ(manager.GetErrNum(), -7);
    EXPECT_EQ(manager.GetErrMsg(), "text");
}

TEST_F(ManagerFiles, HoldsTheDocumentThatItIsGiven) {
    const auto oDocument = documentOf("<r/>");
    manager.setDOMDoc(oDocument);
    EXPECT_EQ(manager.DOMDoc(), oDocument);
    manager.setDOMDoc(nullptr);
    EXPECT_EQ(manager.DOMDoc(), nullptr);
}

// ---- LoadXml

TEST_F(ManagerFiles, LoadsAFileIntoANewDocument) {
    const auto oOld = manager.DOMDoc();
    std::string sName = folder.write("a.xml", "<r> <a/> </r>");
    EXPECT_EQ(manager.LoadXml(sName, false), 0);
    EXPECT_NE(manager.DOMDoc(), oOld);
    EXPECT_EQ(manager.DOMDoc()->xml(), "<r><a/></r>");
    EXPECT_EQ(manager.fileName(), folder.file("a.xml"));
    EXPECT_EQ(sName, folder.file("a.xml"));
}

TEST_F(ManagerFiles, LoadsNothingForTheEmptyNameAndTellsTheCurrentError) {
    std::string sNone;
    EXPECT_EQ(manager.LoadXml(sNone, false), 0);
    const auto oDocument = manager.DOMDoc();
    EXPECT_FALSE(oDocument->loadXML("<bad"));
    const std::int32_t lCode = oDocument->parseError().errorCode;
    EXPECT_NE(lCode, 0);
    // The codes of some parsers are larger than the result can be.
    if (lCode == static_cast<std::int16_t>(lCode))
        EXPECT_EQ(manager.LoadXml(sNone, false), lCode);
    else
        EXPECT_EQ(failureOf([&] { manager.LoadXml(sNone, false); }), number(FailureNumber::Overflow));
    EXPECT_EQ(manager.DOMDoc(), oDocument);
}

TEST_F(ManagerFiles, FailsToTellTheErrorOfADocumentThatIsNotThere) {
    manager.setDOMDoc(nullptr);
    std::string sNone;
    EXPECT_EQ(failureOf([&] { manager.LoadXml(sNone, false); }), number(FailureNumber::ObjectVariableNotSet));
}

TEST_F(ManagerFiles, ReturnsZeroForAMalformedFileAndDoesNotKeepItsName) {
    std::string sGood = folder.write("good.xml", "<r/>");
    std::string sBad = folder.write("bad.xml", "<r>");
    EXPECT_EQ(manager.LoadXml(sGood, false), 0);
    EXPECT_EQ(manager.LoadXml(sBad, false), 0);
    EXPECT_NE(manager.DOMDoc()->parseError().errorCode, 0);
    EXPECT_EQ(manager.fileName(), sGood);
}

TEST_F(ManagerFiles, LoadsAFileUrlInAnyLetterCaseAsItStands) {
    folder.write("a.xml", "<r/>");
    const std::string sUrl = folder.url("a.xml");
    for (const std::string sScheme : {"file", "FILE"}) {
        const std::string sGiven = sScheme + sUrl.substr(4);
        std::string sName = sGiven;
        manager.LoadXml(sName, false);
        EXPECT_EQ(manager.DOMDoc()->xml(), "<r/>");
        EXPECT_EQ(sName, sGiven);
    }
}

TEST_F(ManagerFiles, CutsANameAfterThreeSlashesInTheCallersVariableToo) {
    std::string sName = "C:///data/a.xml";
    manager.LoadXml(sName, false);
    EXPECT_EQ(sName, "data/a.xml");
    EXPECT_EQ(manager.DOMDoc()->parseError().url, "file:///data/a.xml");
}

TEST_F(ManagerFiles, CutsAtTheFirstThreeSlashesOnly) {
    std::string sName = "a///b///c";
    manager.LoadXml(sName, false);
    EXPECT_EQ(sName, "b///c");
    std::string sFour = "C:///" + folder.write("a.xml", "<r/>");
    manager.LoadXml(sFour, false);
    EXPECT_EQ(manager.DOMDoc()->xml(), "<r/>");
    EXPECT_EQ(manager.fileName(), folder.file("a.xml"));
}

TEST_F(ManagerFiles, LoadsANameThatHoldsTheBeginningOfAnAddressAnywhereAsItStands) {
    for (const std::string sGiven : {"C:///none/http://a.xml", "C:///none/HTTP://a.xml",
                                     "C:///none/file:///a.xml", "C:///none/File:///a.xml"}) {
        std::string sName = sGiven;
        manager.LoadXml(sName, false);
        EXPECT_EQ(sName, sGiven);
        EXPECT_EQ(manager.DOMDoc()->parseError().url, sGiven);
    }
}

TEST_F(ManagerFiles, ValidatesWhenAsked) {
    std::string sName = folder.write("a.xml", "<!DOCTYPE r [<!ELEMENT r EMPTY>]><r>x</r>");
    manager.LoadXml(sName, false);
    EXPECT_EQ(manager.DOMDoc()->parseError().errorCode, 0);
    manager.LoadXml(sName, true);
    EXPECT_NE(manager.DOMDoc()->parseError().errorCode, 0);
}

TEST_F(ManagerFiles, SaysWhenADocumentIsReady) {
    std::vector<dom::DocumentPtr> aReady;
    manager.onDOMReady([&](const dom::DocumentPtr& oDocument) { aReady.push_back(oDocument); });
    std::string sName = folder.write("a.xml", "<r/>");
    manager.LoadXml(sName, false);
    ASSERT_EQ(aReady.size(), 1U);
    EXPECT_EQ(aReady[0], manager.DOMDoc());
    const auto oOld = manager.DOMDoc();
    const auto oNew = dom::Document::create();
    manager.setDOMDoc(oNew);
    oNew->loadXML("<s/>");
    EXPECT_EQ(aReady.size(), 2U);
    oOld->loadXML("<s/>"); // no longer the manager's
    EXPECT_EQ(aReady.size(), 2U);
}

TEST_F(ManagerFiles, DoesNotDisturbAnotherManagerOfTheSameDocument) {
    int nReady = 0;
    manager.onDOMReady([&](const dom::DocumentPtr&) { ++nReady; });
    {
        ClsXMLManager second;
        second.setDOMDoc(manager.DOMDoc());
    }
    manager.DOMDoc()->loadXML("<r/>");
    EXPECT_EQ(nReady, 1);
}

// ---- Save

TEST_F(ManagerFiles, SavesWithALineBreakBetweenAdjacentTags) {
    manager.setDOMDoc(documentOf("<r><a/><b>t</b></r>"));
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), "<r>\r\n<a/>\r\n<b>t</b>\r\n</r>");
    EXPECT_EQ(manager.saveFailure(), std::nullopt);
}

TEST_F(ManagerFiles, LeavesTheBreaksInTheDocumentAlsoInACallers) {
    const auto oDocument = documentOf("<r><a/></r>");
    manager.Save(folder.file("a.xml"), oDocument->asNode());
    EXPECT_EQ(folder.read("a.xml"), "<r>\r\n<a/>\r\n</r>");
    EXPECT_EQ(oDocument->xml(), "<r>\r\n<a/>\r\n</r>");
    EXPECT_EQ(oDocument->documentElement().childNodes().length(), 3);
    EXPECT_EQ(manager.DOMDoc()->xml(), "");
}

TEST_F(ManagerFiles, SaysWhenTheDocumentIsReadyAgainSinceSavingReloadsIt) {
    manager.setDOMDoc(documentOf("<r><a/></r>"));
    std::vector<std::string> aReady;
    manager.onDOMReady([&](const dom::DocumentPtr& oDocument) {
        EXPECT_EQ(oDocument, manager.DOMDoc());
        aReady.push_back(oDocument->xml());
    });
    std::vector<std::int32_t> aStates;
    manager.DOMDoc()->onReadyStateChange([&] { aStates.push_back(manager.DOMDoc()->readyState()); });
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(aReady, std::vector<std::string>{"<r>\r\n<a/>\r\n</r>"});
    EXPECT_EQ(aStates, (std::vector<std::int32_t>{1, 4}));
    manager.Save(folder.file("b.xml"), {}, true);
    EXPECT_EQ(aReady.size(), 2U);
    manager.Save(folder.file("missing/a.xml"));
    EXPECT_EQ(aReady.size(), 3U) << "the reloading comes before the writing";
}

TEST_F(ManagerFiles, ReloadsACallersDocumentForThoseWhoListenToIt) {
    int nReady = 0;
    manager.onDOMReady([&](const dom::DocumentPtr&) { ++nReady; });
    ClsXMLManager second;
    second.setDOMDoc(documentOf("<r/>"));
    int nReadyOfSecond = 0;
    second.onDOMReady([&](const dom::DocumentPtr&) { ++nReadyOfSecond; });
    manager.Save(folder.file("a.xml"), second.DOMDoc()->asNode());
    EXPECT_EQ(nReady, 0);
    EXPECT_EQ(nReadyOfSecond, 1);
}

TEST_F(ManagerFiles, HasTheParseErrorOfTheReloadAfterASave) {
    const auto oDocument = dom::Document::create();
    manager.setDOMDoc(oDocument);
    std::string sBad = folder.write("bad.xml", "<r>");
    manager.LoadXml(sBad, false);
    ASSERT_NE(manager.DOMDoc()->parseError().errorCode, 0);
    manager.DOMDoc()->asNode().appendChild(element(*manager.DOMDoc(), "r"));
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(manager.DOMDoc()->parseError().errorCode, 0);
    EXPECT_EQ(manager.DOMDoc()->parseError().reason, "");
    EXPECT_EQ(manager.DOMDoc()->parseError().url, "") << "it was loaded from a text";
    std::string sNone;
    EXPECT_EQ(manager.LoadXml(sNone, false), 0);
}

TEST_F(ManagerFiles, EmptiesADocumentWithoutARootSinceItsTextDoesNotParse) {
    const auto oEmpty = dom::Document::create();
    EXPECT_FALSE(oEmpty->loadXML("<!--c-->"));
    const auto oDocument = manager.DOMDoc();
    oDocument->asNode().appendChild(nodeOf(*oDocument, dom::NodeType::Comment, "", "c"));
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(manager.saveFailure(), std::nullopt);
    EXPECT_EQ(oDocument->xml(), "");
    EXPECT_EQ(oDocument->parseError().errorCode, oEmpty->parseError().errorCode);
    EXPECT_EQ(oDocument->readyState(), 4);
    EXPECT_EQ(folder.read("a.xml"), "");
}

TEST_F(ManagerFiles, KeepsADocumentWhoseTextNoParserWouldTake) {
    const auto oDocument = dom::Document::create();
    oDocument->asNode().appendChild(element(*oDocument, "nobody:declares"));
    manager.Save(folder.file("a.xml"), oDocument->asNode());
    EXPECT_EQ(folder.read("a.xml"), "<nobody:declares/>");
    EXPECT_EQ(oDocument->xml(), "<nobody:declares/>");
}

TEST_F(ManagerFiles, SavesWhatAListenerLeavesOfTheDocument) {
    manager.setDOMDoc(documentOf("<r/>"));
    manager.onDOMReady([&](const dom::DocumentPtr& oDocument) {
        oDocument->documentElement().setText("ready");
        manager.setDOMDoc(nullptr); // the document being saved lives on
    });
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), "<r>ready</r>");
    EXPECT_EQ(manager.DOMDoc(), nullptr);
    EXPECT_EQ(manager.saveFailure(), std::nullopt);
}

TEST_F(ManagerFiles, ReloadsSealedItemsWithoutTakingMemoryForThem) {
    const auto oDocument = documentOf("<r/>");
    for (int n = 0; n < 3000; ++n)
        oDocument->markComplete(oDocument->documentElement().appendChild(element(*oDocument, "item")));
    const dom::MemoryUse before = oDocument->memoryUse();
    ASSERT_GT(before.spooledBytes, 0U);
    int nReady = 0;
    manager.setDOMDoc(oDocument);
    manager.onDOMReady([&](const dom::DocumentPtr&) { ++nReady; });
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(nReady, 1);
    EXPECT_EQ(oDocument->memoryUse().spooledBytes, before.spooledBytes);
    EXPECT_EQ(oDocument->memoryUse().reservedBytes, before.reservedBytes);
}

TEST_F(ManagerFiles, SavesTheSameTextTwice) {
    manager.setDOMDoc(documentOf("<r><a/></r>"));
    manager.Save(folder.file("a.xml"));
    const auto sOnce = folder.read("a.xml");
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), sOnce);
}

TEST_F(ManagerFiles, SavesUnderAFixedNameInTheCurrentFolderForTheEmptyName) {
    manager.setDOMDoc(documentOf("<r/>"));
    const fs::path old = fs::current_path();
    fs::current_path(folder.path());
    manager.Save("");
    fs::current_path(old);
    EXPECT_EQ(folder.read("XMLTest.xml"), "<r/>");
}

TEST_F(ManagerFiles, EndsSilentlyButRemembersWhenASaveFails) {
    manager.setDOMDoc(documentOf("<r/>"));
    manager.Save(folder.file("missing/a.xml"));
    ASSERT_NE(manager.saveFailure(), std::nullopt);
    EXPECT_EQ(manager.saveFailure()->description(),
              folder.file("missing/a.xml") + ": " + textOfMissingFolder());
    EXPECT_EQ(manager.GetErrNum(), 0);
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(manager.saveFailure(), std::nullopt);
}

TEST_F(ManagerFiles, EndsSilentlyWithoutADocument) {
    manager.setDOMDoc(nullptr);
    manager.Save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), std::nullopt);
    ASSERT_NE(manager.saveFailure(), std::nullopt);
    EXPECT_EQ(manager.saveFailure()->number(), number(FailureNumber::ObjectVariableNotSet));
    std::string sText;
    io::StringSink sink(sText);
    manager.SaveTo(sink);
    EXPECT_EQ(sText, "");
    ASSERT_NE(manager.saveFailure(), std::nullopt);
    EXPECT_EQ(manager.saveFailure()->number(), number(FailureNumber::ObjectVariableNotSet));
}

} // namespace
} // namespace halvane::test
