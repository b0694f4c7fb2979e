#include "SchemaFolder.h"

namespace halvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointee;

class FilesOfASchema : public SchemaFolder {
protected:
    FilesOfASchema() {
        for (const char* pName : {"local", "other"})
            std::filesystem::create_directory(path(pName));
    }

    void write(std::string_view sName, std::string_view sContent = {}) {
        folder.write(sName, schemaOf(sContent));
    }
    [[nodiscard]] static std::string include(std::string_view sLocation) {
        return "<xs:include schemaLocation=\"" + std::string(sLocation) + "\"/>";
    }
    /// The problems of a schema with that content.
    std::vector<std::string> problemsOf(std::string_view sContent) {
        problems.clear();
        write("root.xsd", sContent);
        static_cast<void>(filesFrom("root.xsd"));
        return problems;
    }
};

TEST_F(FilesOfASchema, AreAllThatItImportsIncludesRedefinesAndOverrides) {
    for (const char* pName : {"a.xsd", "b.xsd", "c.xsd", "d.xsd"})
        write(pName);
    write("root.xsd", R"(<!-- comment --> text <xs:import namespace="urn:a" schemaLocation="a.xsd"/>
<xs:include schemaLocation=" b.xsd
"/><xs:redefine schemaLocation="c.xsd"/><xs:override schemaLocation="d.xsd"/>
<xs:element name="e" schemaLocation="no.xsd"/><xs:import namespace="urn:n"/><xs:include schemaLocation="  "/>)");
    const auto files = filesFrom("root.xsd");
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_THAT(files.paths(),
                ElementsAre(path("a.xsd"), path("b.xsd"), path("c.xsd"), path("d.xsd"), path("root.xsd")));
    EXPECT_EQ(files.root(), path("root.xsd"));
    EXPECT_EQ(files.bytesOf(path("a.xsd")), schemaOf(""));
}

TEST_F(FilesOfASchema, AreReadOnceWhoeverNamesThem) {
    write("root.xsd", include("a.xsd") + include("local/../a.xsd") + include("root.xsd"));
    write("a.xsd", include("root.xsd") + include("local/b.xsd"));
    write("local/b.xsd", include("../a.xsd"));
    const auto files = filesFrom("root.xsd");
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_THAT(files.paths(), ElementsAre(path("a.xsd"), path("local/b.xsd"), path("root.xsd")));
}

TEST_F(FilesOfASchema, AreFoundByPathAndAddress) {
    write("root.xsd", include("local/a%20b.xsd"));
    write("local/a b.xsd");
    const auto files = filesFrom("root.xsd");
    EXPECT_THAT(files.pathOf(path("local/a b.xsd")), Pointee(path("local/a b.xsd")));
    EXPECT_THAT(files.pathOf("file://" + path("local/a%20b.xsd")), Pointee(path("local/a b.xsd")));
    EXPECT_EQ(files.pathOf(path("other/a.xsd")), nullptr);
    EXPECT_EQ(files.pathOf("http://a/a.xsd"), nullptr);
    EXPECT_EQ(files.pathOf(""), nullptr);
}

TEST_F(FilesOfASchema, StandInForAddressesOfTheCatalogue) {
    const auto catalog = catalogWith(R"(<uri name="http://a/a.xsd" uri="local/a.xsd"/>
<uri name="http://a/in/b.xsd" uri="other/b.xsd"/>)");
    write("root.xsd", include("http://a/a.xsd"));
    // Its relative locations mean addresses first, then the files beside it.
    write("local/a.xsd", include("in/b.xsd") + include("c.xsd"));
    write("other/b.xsd");
    write("local/c.xsd", include("in/b.xsd"));
    const auto files = filesFrom("root.xsd", catalog);
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_THAT(files.paths(),
                ElementsAre(path("local/a.xsd"), path("local/c.xsd"), path("other/b.xsd"), path("root.xsd")));
    EXPECT_THAT(files.pathOf("http://a/a.xsd"), Pointee(path("local/a.xsd")));
    EXPECT_THAT(files.pathOf(path("local/in/b.xsd")), Pointee(path("other/b.xsd")));
}

TEST_F(FilesOfASchema, HaveNoAddressOnceAFileUrlLeadsToThem) {
    const auto catalog = catalogWith(R"(<uri name="http://a/a.xsd" uri="local/a.xsd"/>
<uri name="http://a/b.xsd" uri="other/b.xsd"/>)");
    write("root.xsd", include("http://a/a.xsd"));
    write("local/a.xsd", include(folder.url("local/c.xsd")));
    write("local/c.xsd", include("b.xsd"));
    write("local/b.xsd");
    write("other/b.xsd");
    EXPECT_THAT(filesFrom("root.xsd", catalog).paths(), testing::Contains(path("local/b.xsd")));
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(FilesOfASchema, BeginWithAnAddressOfTheCatalogue) {
    const auto catalog = catalogWith(R"(<rewriteURI uriStartString="http://a/" rewritePrefix="local/"/>)");
    write("local/root.xsd", include("../b.xsd"));
    write("local/b.xsd");
    const dom::SchemaFiles files("http://a/in/../root.xsd", "shown", catalog, problems);
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_EQ(files.root(), path("local/root.xsd"));
    EXPECT_THAT(files.paths(), ElementsAre(path("local/b.xsd"), path("local/root.xsd")))
        << "nothing lies above the address's first folder";
}

TEST_F(FilesOfASchema, BeginWithAFileUrl) {
    write("root.xsd", include("a.xsd"));
    write("a.xsd");
    const dom::SchemaFiles files(folder.url("root.xsd"), "shown", dom::SchemaCatalog(), problems);
    EXPECT_EQ(files.root(), path("root.xsd"));
    EXPECT_THAT(files.paths(), ElementsAre(path("a.xsd"), path("root.xsd")));
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(FilesOfASchema, DoNotBeginElsewhere) {
    const dom::SchemaFiles files("http://a/root.xsd", "shown", dom::SchemaCatalog(), problems);
    EXPECT_THAT(files.paths(), IsEmpty());
    EXPECT_THAT(problems,
                ElementsAre("shown: this is no local file, and nothing else is opened; map it to one "
                            "with --schema-catalog"));
}

TEST_F(FilesOfASchema, AreToldOfWhenTheyAreMissing) {
    EXPECT_THAT(
        problemsOf("\n" + include("no.xsd") + include("urn:a") + include("no.xsd")),
        ElementsAre("shown:root.xsd:2: there is no file \"" + path("no.xsd") + "\"",
                    "shown:root.xsd:2: \"urn:a\" is no local file, and nothing else is opened; map it "
                    "to one with --schema-catalog",
                    "shown:root.xsd:2: there is no file \"" + path("no.xsd") + "\""));
}

TEST_F(FilesOfASchema, HaveNoNulInTheirNames) {
    write("a.xsd");
    EXPECT_THAT(problemsOf(include("a.xsd%00.txt")),
                ElementsAre(testing::StartsWith("shown:root.xsd:1: \"a.xsd%00.txt\" is no local file")));
}

TEST_F(FilesOfASchema, AreSchemas) {
    const std::string sNone =
        ": this is no XML Schema; its root is <schema> of the namespace http://www.w3.org/2001/XMLSchema";
    folder.write("a.xsd", "<schema/>");
    folder.write("b.xsd", "<list xmlns='http://www.w3.org/2001/XMLSchema'/>");
    folder.write("c.xsd", "<schema");
    EXPECT_THAT(problemsOf(include("a.xsd") + include("b.xsd") + include("c.xsd") + include("local")),
                ElementsAre(path("a.xsd") + sNone, path("b.xsd") + sNone,
                            testing::StartsWith(path("c.xsd") + ":1:"), path("local") + ": this is no file"));
}

TEST_F(FilesOfASchema, AreTwoThousandAtMost) {
    std::string sIncludes;
    for (int n = 0; n < 2000; ++n) {
        const std::string sName = "local/s" + std::to_string(n) + ".xsd";
        write(sName);
        sIncludes += include(sName);
    }
    EXPECT_THAT(problemsOf(sIncludes), ElementsAre("shown:root.xsd: the schema has more than 2000 files"));
}

} // namespace
} // namespace halvane::test
