// Addresses in schemas and catalogues, and the files that they lead to.

#include "SchemaFolder.h"
#include "XmlSupport.h"
#include "xml/schema/SchemaAddress.h"

#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace halvane::test {
namespace {

using dom::addressBeside;
using dom::hasScheme;
using dom::localFile;

constexpr std::string_view sBase = "/schemas/gml/base.xsd";

TEST(SchemaAddresses, HaveASchemeOfLettersDigitsAndThreeSigns) {
    for (const char* sAddress : {"http://h/a", "urn:a", "A+b-1.z:x", "9:", "Z:"})
        EXPECT_TRUE(hasScheme(sAddress)) << sAddress;
    for (const char* sAddress :
         {"", "a", ":a", "/a:b", "a/b:c", "a b:c", "a%20:b", "[a]:b", "{:a", "@:a", ",:a"})
        EXPECT_FALSE(hasScheme(sAddress)) << sAddress;
}

TEST(SchemaAddresses, AreWithoutDots) {
    EXPECT_EQ(dom::normalPath("/a/./b/../c"), "/a/c");
    EXPECT_EQ(dom::normalPath("/a/b/"), "/a/b/");
    EXPECT_EQ(dom::normalPath("/../a"), "/a");
}

TEST(SchemaAddresses, LeadFromTheFolderOfTheFileTheyStandIn) {
    EXPECT_EQ(localFile("a.xsd", sBase), "/schemas/gml/a.xsd");
    EXPECT_EQ(localFile("../a%20b.xsd", sBase), "/schemas/a b.xsd");
    EXPECT_EQ(localFile("/a.xsd", sBase), "/a.xsd");
    EXPECT_EQ(localFile("a.xsd", "/schemas/"), "/schemas/a.xsd");
    EXPECT_EQ(localFile("a.xsd", "base.xsd"), "a.xsd");
    EXPECT_EQ(localFile("a.xsd#type", sBase), "/schemas/gml/a.xsd");
}

TEST(SchemaAddresses, OfTheFileSchemeAreFilesOfThisMachine) {
    for (const char* sAddress :
         {"file:/a.xsd", "file:///a.xsd", "FILE:///a.xsd", "file://localhost/a.xsd", "file:///b/../a.xsd"})
        EXPECT_EQ(localFile(sAddress, sBase), "/a.xsd") << sAddress;
    for (const char* sAddress : {"file:a.xsd", "file:", "file://host/a.xsd", "file:////host/a.xsd",
                                 "file:%2F%2Fhost/a.xsd", "file://localhost//host/a.xsd"})
        EXPECT_EQ(localFile(sAddress, sBase), std::nullopt) << sAddress;
}

TEST(SchemaAddresses, OfOtherPlacesAreNoFiles) {
    for (const char* sAddress : {"", "#type", "//host/a.xsd", "http://host/a.xsd", "urn:a", "files:/a.xsd"})
        EXPECT_EQ(localFile(sAddress, sBase), std::nullopt) << sAddress;
}

TEST(SchemaAddresses, WithANulAreNoFiles) {
    EXPECT_EQ(localFile("a.xsd%00.txt", sBase), std::nullopt);
    EXPECT_EQ(localFile("file:///a.xsd%00", sBase), std::nullopt);
}

TEST(SchemaAddresses, LeadFromAnotherAddress) {
    EXPECT_EQ(addressBeside("b.xsd", "http://host/gml/a.xsd"), "http://host/gml/b.xsd");
    EXPECT_EQ(addressBeside("../b.xsd", "http://host/gml/a.xsd"), "http://host/b.xsd");
    EXPECT_EQ(addressBeside("/b.xsd", "http://host/gml/a.xsd"), "http://host/b.xsd");
    EXPECT_EQ(addressBeside("b.xsd", "http://host/"), "http://host/b.xsd");
}

TEST(SchemaAddresses, LeadNowhereFromOneWithoutAPath) {
    EXPECT_EQ(addressBeside("b.xsd", "urn:a"), "b.xsd");
    EXPECT_EQ(addressBeside("b.xsd", "http://host"), "b.xsd");
}

TEST(SchemaNamespaces, AreThoseOfTheRootsOwnPrefix) {
    const auto namespaceOf = [](std::string_view sXml) {
        return std::string(dom::namespaceOfRoot(documentOf(sXml)->documentElement()));
    };
    EXPECT_EQ(namespaceOf("<a xmlns='urn:d' xmlns:p='urn:p'/>"), "urn:d");
    EXPECT_EQ(namespaceOf("<p:a xmlns='urn:d' xmlns:p='urn:p'/>"), "urn:p");
    EXPECT_EQ(namespaceOf("<a xmlns:p='urn:p'/>"), "");
    EXPECT_EQ(namespaceOf("<a><b xmlns='urn:d'/></a>"), "");
}

class SchemaLoading : public SchemaFolder {
protected:
    /// The problem that is told of a file that cannot be loaded.
    std::string problemOf(std::string_view sName) {
        problems.clear();
        std::string sBytes = "untouched";
        EXPECT_EQ(dom::loadLocalFile(path(sName), "shown", problems, &sBytes), nullptr);
        EXPECT_EQ(sBytes, "untouched");
        EXPECT_EQ(problems.size(), 1U);
        return problems.empty() ? "" : problems.front();
    }
};

TEST_F(SchemaLoading, GivesTheDocumentAndItsBytes) {
    const std::string sXml = "<?xml version='1.0'?>\n<a> <b/> </a>\n";
    folder.write("a.xml", sXml);
    std::string sBytes;
    const auto oDocument = dom::loadLocalFile(path("a.xml"), "shown", problems, &sBytes);
    ASSERT_NE(oDocument, nullptr);
    EXPECT_EQ(oDocument->documentElement().nodeName(), "a");
    EXPECT_EQ(sBytes, sXml);
    EXPECT_NE(dom::loadLocalFile(path("a.xml"), "shown", problems), nullptr);
    EXPECT_THAT(problems, testing::IsEmpty());
}

TEST_F(SchemaLoading, TellsWhatIsNoFile) {
    EXPECT_EQ(problemOf("no.xml"), "shown: there is no such file");
    std::filesystem::create_directory(path("folder"));
    EXPECT_EQ(problemOf("folder"), "shown: this is no file");
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(problemOf("pipe"), "shown: this is no file") << "nobody waits for it";
    folder.write("file", "");
    EXPECT_EQ(problemOf("file/a.xml"), "shown: there is no such file");
}

TEST_F(SchemaLoading, TellsThePlaceOfAnError) {
    folder.write("a.xml", "<a>\n<b></a>");
    EXPECT_THAT(problemOf("a.xml"), testing::StartsWith("shown:2:8: Opening and ending tag mismatch: b"));
}

TEST_F(SchemaLoading, TellsNoColumnThatIsNotKnown) {
    std::string sXml = "<a>\n<b";
    for (int n = 0; n < 1001; ++n)
        sXml += " a" + std::to_string(n) + "=''";
    folder.write("a.xml", sXml + "/></a>");
    EXPECT_EQ(problemOf("a.xml"),
              "shown:2: an element has more attributes than 1000; make elements of some attributes");
}

TEST_F(SchemaLoading, TellsWhyTheSystemDoesNotLetItBeRead) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the administrator may act as another user";
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    folder.write("a.xml", "<a/>");
    ASSERT_EQ(::chmod(path("a.xml").c_str(), 0), 0);
    ASSERT_EQ(::seteuid(65534), 0);
    const std::string sProblem = problemOf("a.xml");
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_EQ(sProblem, path("a.xml") + ": Permission denied; change the rights of the file and its folder, "
                                        "or choose another place");
}

} // namespace
} // namespace halvane::test
