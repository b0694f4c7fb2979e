#include "LoopbackServer.h"
#include "XmlSupport.h"
#include "support/TemporaryFolder.h"

#include "io/FileReading.h"
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

TEST_F(Http, EndsInAParseErrorWhenNobodyAnswers) {
    std::string sUrl;
    {
        const LoopbackServer server([](const std::string&) { return std::string(); });
        sUrl = server.url("/");
    }
    EXPECT_FALSE(oDocument->load(sUrl));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr(sUrl));
}

TEST_F(Http, FollowsAFewRedirections) {
    const LoopbackServer server([](const std::string& sPath) {
        return sPath == "/3"
                   ? LoopbackServer::ok("<r/>")
                   : LoopbackServer::redirection("/" + std::to_string(std::stoi(sPath.substr(1)) + 1));
    });
    EXPECT_TRUE(oDocument->load(server.url("/0"))) << oDocument->parseError().reason;
}

/// The server's answer to whoever does not tell who he is.
std::string unauthorized() {
    return "HTTP/1.0 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"r\"\r\nContent-Length: 0\r\n\r\n";
}

std::string urlWithPassword(const LoopbackServer& server, std::string_view sPath) {
    return "http://user:secret@" + server.url(sPath).substr(7);
}

constexpr std::string_view userAndPassword = "Authorization: Basic dXNlcjpzZWNyZXQ=";

TEST_F(Http, TellsNameAndPasswordToTheHostOfTheUrl) {
    int nRequests = 0;
    const LoopbackServer server([&](const std::string& sPath) {
        if (sPath == "/moved.xml")
            return LoopbackServer::redirection("a.xml");
        return ++nRequests == 1 ? unauthorized() : LoopbackServer::ok("<r/>");
    });
    // Who tells them at once needs no second request.
    static_cast<void>(oDocument->load(urlWithPassword(server, "/moved.xml")));
    EXPECT_THAT(server.requests(), HasSubstr("GET /a.xml "));
    EXPECT_THAT(server.requests().substr(server.requests().find("GET /a.xml ")), HasSubstr(userAndPassword));
}

TEST_F(Http, TellsNameAndPasswordToNoOtherHost) {
    const LoopbackServer other([](const std::string&) { return unauthorized(); });
    const LoopbackServer server(
        [&](const std::string&) { return LoopbackServer::redirection(other.url("/a.xml")); });
    EXPECT_FALSE(oDocument->load(urlWithPassword(server, "/")));
    EXPECT_THAT(other.requests(), HasSubstr("GET /a.xml "));
    EXPECT_THAT(other.requests(), Not(HasSubstr("Authorization")));
}

TEST_F(Http, TellsNameAndPasswordToNoOtherHostOnceTheyWereAskedFor) {
    const LoopbackServer other([](const std::string&) { return unauthorized(); });
    int nRequests = 0;
    const LoopbackServer server([&](const std::string&) {
        return ++nRequests == 1 ? unauthorized() : LoopbackServer::redirection(other.url("/a.xml"));
    });
    EXPECT_FALSE(oDocument->load(urlWithPassword(server, "/")));
    EXPECT_THAT(other.requests(), Not(HasSubstr("Authorization")));
}

TEST_F(Http, DoesNotFollowRedirectionsForEver) {
    const LoopbackServer server([](const std::string&) { return LoopbackServer::redirection("/again"); });
    EXPECT_FALSE(oDocument->load(server.url("/")));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("redirect"));
}

TEST_F(Http, DoesNotFollowARedirectionToAFile) {
    const TemporaryFolder folder;
    const std::string sFile = folder.write("a.xml", "<secret/>");
    const LoopbackServer server(
        [&](const std::string&) { return LoopbackServer::redirection("file://" + sFile); });
    EXPECT_FALSE(oDocument->load(server.url("/")));
    EXPECT_FALSE(oDocument->documentElement());
}

TEST_F(Http, StopsAtTheLimit) {
    const LoopbackServer server([](const std::string&) { return LoopbackServer::ok("0123456789"); });
    std::string sContent;
    EXPECT_FALSE(io::readUrl(server.url("/"), 10, sContent));
    EXPECT_EQ(sContent, "0123456789");
    EXPECT_TRUE(io::readUrl(server.url("/"), 9, sContent).bTooLarge);
}

} // namespace
} // namespace halvane::test
