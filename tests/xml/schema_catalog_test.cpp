#include "SchemaFolder.h"

#include <optional>

namespace halvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SchemaCatalogs : public SchemaFolder {
protected:
    [[nodiscard]] std::optional<std::string> at(std::string_view sName) const { return path(sName); }

    /// The problems of a catalogue, whose path is written as "PATH".
    std::vector<std::string> problemsOf(std::string_view sXml) {
        problems.clear();
        folder.write("catalog.xml", sXml);
        static_cast<void>(catalogIn("catalog.xml"));
        for (std::string& sProblem : problems)
            if (sProblem.starts_with(path("catalog.xml")))
                sProblem.replace(0, path("catalog.xml").size(), "PATH");
        return problems;
    }
};

TEST_F(SchemaCatalogs, OfNothingKnowNoAddress) {
    EXPECT_EQ(dom::SchemaCatalog().fileFor("http://a/a.xsd"), std::nullopt);
    EXPECT_THAT(dom::SchemaCatalog().files(), IsEmpty());
}

TEST_F(SchemaCatalogs, MapWholeAddresses) {
    const auto catalog = catalogWith(R"(<system systemId="http://a/s.xsd" uri="s.xsd"/>
<uri name="http://a/u.xsd" uri="in/u.xsd"/>)");
    EXPECT_EQ(catalog.fileFor("http://a/s.xsd"), at("s.xsd"));
    EXPECT_EQ(catalog.fileFor("http://a/u.xsd"), at("in/u.xsd"));
    EXPECT_EQ(catalog.fileFor("http://a/u.xsd2"), std::nullopt);
    EXPECT_EQ(catalog.fileFor("x/http://a/u.xsd"), std::nullopt);
}

TEST_F(SchemaCatalogs, MapBeginningsOfAddresses) {
    const auto catalog = catalogWith(R"(<rewriteSystem systemIdStartString="http://a/" rewritePrefix="a/"/>
<rewriteURI uriStartString="http://b/" rewritePrefix="b/x/"/>)");
    EXPECT_EQ(catalog.fileFor("http://a/c%20d.xsd"), at("a/c d.xsd"));
    EXPECT_EQ(catalog.fileFor("http://b/../e.xsd"), at("b/e.xsd"));
    EXPECT_EQ(catalog.fileFor("http://c/e.xsd"), std::nullopt);
}

TEST_F(SchemaCatalogs, MapEndingsOfAddresses) {
    const auto catalog = catalogWith(R"(<systemSuffix systemIdSuffix="/s.xsd" uri="s.xsd"/>
<uriSuffix uriSuffix="/u.xsd" uri="u.xsd"/>)");
    EXPECT_EQ(catalog.fileFor("http://a/s.xsd"), at("s.xsd"));
    EXPECT_EQ(catalog.fileFor("http://a/u.xsd"), at("u.xsd"));
    EXPECT_EQ(catalog.fileFor("http://a/u.xsd#x"), std::nullopt);
}

TEST_F(SchemaCatalogs, PreferWholeAddressesToBeginningsAndThoseToEndings) {
    constexpr const char* pWhole = R"(<uri name="http://a/b/c.xsd" uri="whole.xsd"/>)";
    constexpr const char* pBeginning = R"(<rewriteURI uriStartString="h" rewritePrefix="beginning-"/>)";
    constexpr const char* pEnding = R"(<uriSuffix uriSuffix="/b/c.xsd" uri="ending.xsd"/>)";
    const auto fileFor = [&](const std::string& sEntries) {
        return catalogWith(sEntries).fileFor("http://a/b/c.xsd");
    };
    for (const std::string& sEntries :
         {std::string(pWhole) + pBeginning + pEnding, std::string(pEnding) + pBeginning + pWhole})
        EXPECT_EQ(fileFor(sEntries), at("whole.xsd"));
    EXPECT_EQ(fileFor(std::string(pEnding) + pBeginning), at("beginning-ttp:/a/b/c.xsd"));
    EXPECT_EQ(fileFor(std::string(pBeginning) + pEnding), at("beginning-ttp:/a/b/c.xsd"));
    EXPECT_EQ(fileFor(pEnding), at("ending.xsd"));
}

TEST_F(SchemaCatalogs, PreferTheLongestOfAKindAndTheFirstOfALength) {
    const auto catalog = catalogWith(R"(<rewriteURI uriStartString="http://a/" rewritePrefix="short/"/>
<rewriteURI uriStartString="http://a/b/" rewritePrefix="long/"/>
<rewriteURI uriStartString="http://" rewritePrefix="shortest/"/>
<uriSuffix uriSuffix=".xsd" uri="first.xsd"/><uriSuffix uriSuffix=".xsd" uri="second.xsd"/>)");
    EXPECT_EQ(catalog.fileFor("http://a/b/c.xsd"), at("long/c.xsd"));
    EXPECT_EQ(catalog.fileFor("http://a/c.xsd"), at("short/c.xsd"));
    EXPECT_EQ(catalog.fileFor("urn:c.xsd"), at("first.xsd"));
}

TEST_F(SchemaCatalogs, HaveGroupsWithBasesOfTheirOwn) {
    const auto catalog = catalogWith(R"(
<group xml:base="outer/"><!-- comment --><group xml:base="inner/"><uri name="a" uri="a.xsd"/></group>
text <uri name="b" uri="b.xsd"/><uri name="c" uri="c.xsd" xml:base="own/"/></group>
<group xml:base="http://remote/"><uri name="d" uri="d.xsd"/></group>)");
    EXPECT_EQ(catalog.fileFor("a"), at("outer/inner/a.xsd"));
    EXPECT_EQ(catalog.fileFor("b"), at("outer/b.xsd"));
    EXPECT_EQ(catalog.fileFor("c"), at("outer/own/c.xsd"));
    EXPECT_EQ(catalog.fileFor("d"), at("d.xsd")) << "a base that is elsewhere changes nothing";
}

TEST_F(SchemaCatalogs, IgnoreWhatTheyDoNotKnow) {
    const auto catalog = catalogWith(R"(<delegateURI uriStartString="http://a/" catalog="http://b/"/>
<public publicId="-//A//B" uri="a.xsd"/><uri uri="a.xsd"/><uri name="" uri="http://a/"/>)");
    EXPECT_EQ(catalog.fileFor("http://a/b.xsd"), std::nullopt);
    EXPECT_EQ(catalog.fileFor(""), std::nullopt);
}

TEST_F(SchemaCatalogs, MayNameEachOther) {
    folder.write("next.xml", R"(<c:catalog xmlns:c="urn:oasis:names:tc:entity:xmlns:xml:catalog">
<c:uri name="n" uri="n.xsd"/><c:nextCatalog catalog="catalog.xml"/><c:nextCatalog catalog="next.xml"/></c:catalog>)");
    const auto catalog = catalogWith(R"(<nextCatalog catalog="next.xml"/><uri name="c" uri="c.xsd"/>)");
    EXPECT_THAT(catalog.files(), ElementsAre(path("catalog.xml"), path("next.xml")));
    EXPECT_EQ(catalog.fileFor("n"), at("n.xsd"));
    EXPECT_EQ(catalog.fileFor("c"), at("c.xsd"));
}

TEST_F(SchemaCatalogs, AreAHundredAtMost) {
    for (int n = 0; n < 120; ++n)
        folder.write("c" + std::to_string(n) + ".xml",
                     catalogOf("<uri name=\"" + std::to_string(n) +
                               "\" uri=\"a.xsd\"/><nextCatalog catalog=\"c" + std::to_string(n + 1) +
                               ".xml\"/>"));
    const auto catalog = catalogIn("c0.xml");
    EXPECT_EQ(catalog.files().size(), 100U);
    EXPECT_EQ(catalog.fileFor("99"), at("a.xsd"));
    EXPECT_EQ(catalog.fileFor("100"), std::nullopt);
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(SchemaCatalogs, TellTheLineOfAnEntryThatLeadsToNoLocalFile) {
    EXPECT_THAT(problemsOf(catalogOf("\n<uri name=\"a\" uri=\"http://b/a\"/>\n<system systemId=\"c\"/>"
                                     "<nextCatalog/><nextCatalog catalog=\"//host/c.xml\"/>")),
                ElementsAre("PATH:2: <uri> leads to \"http://b/a\", which is no local file",
                            "PATH:3: <system> leads to \"\", which is no local file",
                            "PATH:3: <nextCatalog> leads to \"\", which is no local file",
                            "PATH:3: <nextCatalog> leads to \"//host/c.xml\", which is no local file"));
}

TEST_F(SchemaCatalogs, TellWhatIsNoCatalogue) {
    const std::string sNone = "shown:catalog.xml: this is no XML catalogue; its root is <catalog> of the "
                              "namespace urn:oasis:names:tc:entity:xmlns:xml:catalog";
    EXPECT_THAT(problemsOf("<catalog/>"), ElementsAre(sNone));
    EXPECT_THAT(problemsOf("<catalog xmlns='urn:other'/>"), ElementsAre(sNone));
    EXPECT_THAT(problemsOf("<list xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'/>"),
                ElementsAre(sNone));
    EXPECT_THAT(problemsOf("<catalog>"), ElementsAre(testing::StartsWith("shown:catalog.xml:1:")));
}

TEST_F(SchemaCatalogs, TellOfTheCataloguesThatTheyName) {
    EXPECT_THAT(problemsOf(catalogOf("<nextCatalog catalog=\"no.xml\"/>")),
                ElementsAre(path("no.xml") + ": there is no such file"));
}

} // namespace
} // namespace halvane::test
