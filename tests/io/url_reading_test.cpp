#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"

#include "io/FileReading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace halvane::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class UrlReading : public testing::Test {
protected:
    // The server is on this machine: no proxy knows it.
    static void SetUpTestSuite() {
#ifndef _WIN32
        ::setenv("no_proxy", "127.0.0.1", 1);
#endif
    }

    /// @returns the problem; "" when there is none.
    std::string read(const std::string& sUrl) {
        sContent.clear();
        return io::readUrl(sUrl, 1000, sContent).sReason;
    }

    std::string sContent;
};

TEST_F(UrlReading, FollowsAFewRedirections) {
    const LoopbackServer server([](const std::string& sPath) {
        return sPath == "/3"
                   ? LoopbackServer::ok("<r/>")
                   : LoopbackServer::redirection("/" + std::to_string(std::stoi(sPath.substr(1)) + 1));
    });
    EXPECT_EQ(read(server.url("/0")), "");
    EXPECT_EQ(sContent, "<r/>");
}

/// The server's answer to whoever does not tell who he is.
std::string unauthorized() {
    return "HTTP/1.0 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"r\"\r\nContent-Length: 0\r\n\r\n";
}

std::string urlWithPassword(const LoopbackServer& server, std::string_view sPath) {
    return "http://user:secret@" + server.url(sPath).substr(7);
}

constexpr std::string_view userAndPassword = "Authorization: Basic dXNlcjpzZWNyZXQ=";

TEST_F(UrlReading, TellsNameAndPasswordToTheHostOfTheUrl) {
    int nRequests = 0;
    const LoopbackServer server([&](const std::string& sPath) {
        if (sPath == "/moved.xml")
            return LoopbackServer::redirection("a.xml");
        return ++nRequests == 1 ? unauthorized() : LoopbackServer::ok("<r/>");
    });
    // Who tells them at once needs no second request.
    static_cast<void>(read(urlWithPassword(server, "/moved.xml")));
    EXPECT_THAT(server.requests(), HasSubstr("GET /a.xml "));
    EXPECT_THAT(server.requests().substr(server.requests().find("GET /a.xml ")), HasSubstr(userAndPassword));
}

TEST_F(UrlReading, TellsNameAndPasswordToNoOtherHost) {
    const LoopbackServer other([](const std::string&) { return unauthorized(); });
    const LoopbackServer server(
        [&](const std::string&) { return LoopbackServer::redirection(other.url("/a.xml")); });
    EXPECT_NE(read(urlWithPassword(server, "/")), "");
    EXPECT_THAT(other.requests(), HasSubstr("GET /a.xml "));
    EXPECT_THAT(other.requests(), Not(HasSubstr("Authorization")));
}

TEST_F(UrlReading, TellsNameAndPasswordToNoOtherHostOnceTheyWereAskedFor) {
    const LoopbackServer other([](const std::string&) { return unauthorized(); });
    int nRequests = 0;
    const LoopbackServer server([&](const std::string&) {
        return ++nRequests == 1 ? unauthorized() : LoopbackServer::redirection(other.url("/a.xml"));
    });
    EXPECT_NE(read(urlWithPassword(server, "/")), "");
    EXPECT_THAT(other.requests(), Not(HasSubstr("Authorization")));
}

TEST_F(UrlReading, DoesNotFollowRedirectionsForEver) {
    const LoopbackServer server([](const std::string&) { return LoopbackServer::redirection("/again"); });
    EXPECT_THAT(read(server.url("/")), HasSubstr("redirect"));
}

TEST_F(UrlReading, DoesNotFollowARedirectionToAFile) {
    const TemporaryFolder folder;
    const std::string sFile = folder.write("a.xml", "<secret/>");
    const LoopbackServer server(
        [&](const std::string&) { return LoopbackServer::redirection("file://" + sFile); });
    EXPECT_NE(read(server.url("/")), "");
    EXPECT_EQ(sContent, "");
}

TEST_F(UrlReading, StopsAtTheLimit) {
    const LoopbackServer server([](const std::string&) { return LoopbackServer::ok("0123456789"); });
    EXPECT_FALSE(io::readUrl(server.url("/"), 10, sContent));
    EXPECT_EQ(sContent, "0123456789");
    EXPECT_TRUE(io::readUrl(server.url("/"), 9, sContent).bTooLarge);
}

TEST_F(UrlReading, FailsWithTheUrlWhenNobodyAnswers) {
    std::string sUrl;
    {
        const LoopbackServer server([](const std::string&) { return std::string(); });
        sUrl = server.url("/");
    }
    EXPECT_THAT(read(sUrl), HasSubstr(sUrl));
}

} // namespace
} // namespace halvane::test
