#include "XmlSupport.h"
#include "support/Platform.h"
#include "support/TemporaryFolder.h"

#include "base/Text.h"

namespace halvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Loading : public testing::Test {
protected:
    TemporaryFolder folder;
    std::string sPath = folder.write("a.xml", "<r/>");
    dom::DocumentPtr oDocument = dom::Document::create();
};

TEST_F(Loading, ReadsAPathAndAFileUrl) {
    EXPECT_TRUE(oDocument->load(sPath));
    EXPECT_TRUE(oDocument->load(folder.url("a.xml")));
    EXPECT_TRUE(oDocument->load("file:///" + sPath));
    EXPECT_TRUE(oDocument->load(replaceAll(sPath, "/", "\\")));
    EXPECT_EQ(oDocument->xml(), "<r/>");
    EXPECT_EQ(oDocument->parseError().errorCode, 0);
}

TEST_F(Loading, EndsInAParseErrorThatNamesTheFile) {
    EXPECT_TRUE(oDocument->load(sPath));
    EXPECT_FALSE(oDocument->load(folder.file("missing.xml")));
    EXPECT_NE(oDocument->parseError().errorCode, 0);
    EXPECT_EQ(oDocument->parseError().reason, folder.file("missing.xml") + ": " + textOfMissingFile());
    EXPECT_EQ(oDocument->parseError().url, folder.file("missing.xml"));
    EXPECT_EQ(oDocument->parseError().line, 0U);
    EXPECT_FALSE(oDocument->documentElement());
}

TEST_F(Loading, EndsInAParseErrorForAFolderAndForNoName) {
    EXPECT_FALSE(oDocument->load(folder.path().string()));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr(textOfFolder()));
    EXPECT_FALSE(oDocument->load(""));
    EXPECT_FALSE(oDocument->parseError().reason.empty());
}

TEST_F(Loading, PassesTheReadyStatesAndEndsCompleted) {
    std::vector<std::int32_t> aStates;
    oDocument->onReadyStateChange([&] { aStates.push_back(oDocument->readyState()); });
    oDocument->load(sPath);
    EXPECT_THAT(aStates, ElementsAre(1, 4));
    oDocument->loadXML("<bad");
    EXPECT_THAT(aStates, ElementsAre(1, 4, 1, 4));
    oDocument->onReadyStateChange({});
    oDocument->load(sPath);
    EXPECT_EQ(aStates.size(), 4U);
}

TEST_F(Loading, TellsEveryListenerUntilItIsDisconnected) {
    int nFirst = 0;
    int nSecond = 0;
    const auto nConnection = oDocument->connectReadyState([&] { ++nFirst; });
    oDocument->connectReadyState([&] { ++nSecond; });
    oDocument->loadXML("<r/>");
    oDocument->disconnectReadyState(nConnection);
    oDocument->loadXML("<r/>");
    EXPECT_EQ(nFirst, 2);
    EXPECT_EQ(nSecond, 4);
}

TEST_F(Loading, LetsAListenerLoadInBetween) {
    std::vector<std::string> aSeen;
    bool bNested = false;
    oDocument->onReadyStateChange([&] {
        aSeen.push_back(std::to_string(oDocument->readyState()) + oDocument->xml());
        if (!bNested) {
            bNested = true;
            oDocument->loadXML("<inner/>");
        }
    });
    EXPECT_TRUE(oDocument->loadXML("<outer/>"));
    EXPECT_EQ(oDocument->xml(), "<outer/>");
    EXPECT_EQ(oDocument->readyState(), 4);
    EXPECT_THAT(aSeen, ElementsAre("1", "4<inner/>"));
}

TEST_F(Loading, RefusesATextLargerThanTheLargestDocument) {
    std::string sXml = "<r>" + std::string(64U << 20U, ' ') + "</r>";
    EXPECT_FALSE(oDocument->loadXML(sXml));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("larger than the largest document"));
    EXPECT_FALSE(oDocument->documentElement());
}

} // namespace
} // namespace halvane::test
