#include "XmlSupport.h"
#include "support/LoopbackServer.h"

#include "xml/ClsXMLManager.h"

#include <cstdlib>

namespace halvane::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class Http : public testing::Test {
protected:
    // The server is on this machine: no proxy knows it.
    static void SetUpTestSuite() {
#ifndef _WIN32
        ::setenv("no_proxy", "127.0.0.1", 1);
#endif
    }

    dom::DocumentPtr oDocument = dom::Document::create();
};

TEST_F(Http, LoadsADocument) {
    const LoopbackServer server(
        [](const std::string& sPath) { return LoopbackServer::ok("<r path='" + sPath + "'/>"); });
    EXPECT_TRUE(oDocument->load(server.url("/a.xml?b=c"))) << oDocument->parseError().reason;
    EXPECT_EQ(oDocument->documentElement().getAttribute("path"), "/a.xml?b=c");
}

TEST_F(Http, ManagerLoadsAUrlOfAnyLetterCaseAsItStands) {
    const LoopbackServer server([](const std::string&) { return LoopbackServer::ok("<r/>"); });
    ClsXMLManager manager;
    std::string sName = "HTTP" + server.url("/a.xml").substr(4);
    const std::string sAsGiven = sName;
    EXPECT_EQ(manager.LoadXml(sName, false), 0);
    EXPECT_EQ(manager.DOMDoc()->xml(), "<r/>");
    EXPECT_EQ(sName, sAsGiven);
    EXPECT_EQ(manager.fileName(), sAsGiven);
}

TEST_F(Http, EndsInAParseErrorThatNamesTheUrl) {
    const LoopbackServer server(
        [](const std::string&) { return "HTTP/1.0 404 Not Found\r\nContent-Length: 4\r\n\r\n<r/>"; });
    EXPECT_FALSE(oDocument->load(server.url("/missing.xml")));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr(server.url("/missing.xml") + ": "));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("404"));
}

TEST_F(Http, NamesNoPasswordInAnError) {
    const LoopbackServer server(
        [](const std::string&) { return "HTTP/1.0 403 Forbidden\r\nContent-Length: 0\r\n\r\n"; });
    EXPECT_FALSE(oDocument->load("http://user:secret@" + server.url("/a.xml").substr(7)));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr(server.url("/a.xml")));
    EXPECT_THAT(oDocument->parseError().reason, Not(HasSubstr("secret")));
    EXPECT_EQ(oDocument->parseError().url, server.url("/a.xml"));
}

} // namespace
} // namespace halvane::test
