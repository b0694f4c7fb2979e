#include "XmlSupport.h"
#include "support/Platform.h"
#include "support/TemporaryFolder.h"

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
}

} // namespace
} // namespace halvane::test
