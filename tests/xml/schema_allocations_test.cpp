// What reading a schema and validating by it does when memory runs out at any of their allocations: it says
// so, and what it says is otherwise what it always says.

#include "AllocationSteps.h"
#include "SchemaFolder.h"
#include "xml/schema/Schema.h"
#include "xml/schema/SchemaAddress.h"

#include <memory>
#include <optional>

namespace halvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Counts without taking memory.
class SchemaCounts final : public dom::SchemaListener {
public:
    void elementBegins(std::string_view /*sName*/) noexcept override { ++nElements; }
    void elementEnds() noexcept override { ++nEnds; }
    void schemaError(std::uint64_t /*nLine*/, std::string_view /*sAttribute*/,
                     std::string_view /*sMessage*/) noexcept override {
        ++nErrors;
    }

    std::size_t nElements = 0;
    std::size_t nEnds = 0;
    std::size_t nErrors = 0;
};

class SchemaAllocations : public SchemaFolder {
protected:
    static void SetUpTestSuite() { AllocationFaults::install(); }

    /// Each allocation of a function fails once: it throws then, or yields what it always does.
    template<class Result>
    static void expectSame(const Result& expected, const std::function<Result()>& fnDo) {
        forEachAllocation([&] {
            const auto result = std::make_shared<std::optional<Result>>();
            return Step{[=] { *result = fnDo(); },
                        [=](bool bThrown) {
                            EXPECT_EQ(result->has_value(), !bThrown);
                            EXPECT_EQ(result->value_or(expected), expected);
                        }};
        });
    }
};

// Longer than what a text has at hand.
constexpr std::string_view sLongFolder = "/a-folder-of-a-long-name/beside/";

TEST_F(SchemaAllocations, OfAPath) {
    using Path = std::optional<std::string>;
    expectSame<Path>(std::string(sLongFolder) + "a schema of a long name.xsd", [] {
        return dom::localFile("a%20schema%20of%20a%20long%20name.xsd#part", sLongFolder);
    });
    expectSame<Path>(std::string(sLongFolder) + "a.xsd", [] {
        return dom::localFile("file://localhost/a-folder-of-a-long-name/beside/a.xsd", "");
    });
}

TEST_F(SchemaAllocations, OfAnAddress) {
    expectSame<std::string>("http://a-host.example/a-folder-of-a-long-name/another-schema.xsd", [] {
        return dom::addressBeside("another-schema.xsd",
                                  "http://a-host.example/a-folder-of-a-long-name/schema.xsd");
    });
    expectSame<std::string>("http://a-host.example/another-folder/schema.xsd", [] {
        return dom::addressBeside("/another-folder/schema.xsd", "http://a-host.example/folder/schema.xsd");
    });
}

/// What is told instead of what is read: that it cannot be.
void expectToldOf(const std::vector<std::string>& problems) {
    EXPECT_THAT(problems, testing::SizeIs(1));
    for (const std::string& sProblem : problems)
        EXPECT_THAT(sProblem, testing::HasSubstr(".x")) << "it names the file";
}

TEST_F(SchemaAllocations, OfACatalogue) {
    folder.write("catalog.xml", catalogOf(R"(
<group xml:base="a-folder-of-a-long-name/"><uri name="http://a-host.example/a.xsd" uri="a.xsd"/></group>
<rewriteURI uriStartString="http://another-host.example/" rewritePrefix="local/"/>
<nextCatalog catalog="next.xml"/>)"));
    folder.write("next.xml",
                 catalogOf(R"(<uriSuffix uriSuffix="/the-schema-of-a-long-name.xsd" uri="c.xsd"/>)"));
    const std::string sPath = path("catalog.xml");
    const std::string sShown = "catalog.xml";
    forEachAllocation([&] {
        const auto told = std::make_shared<std::vector<std::string>>();
        const auto found = std::make_shared<std::vector<std::optional<std::string>>>();
        found->reserve(3);
        return Step{[=] {
                        const dom::SchemaCatalog catalog(sPath, sShown, *told);
                        for (const char* pAddress :
                             {"http://a-host.example/a.xsd", "http://another-host.example/in/b.xsd",
                              "http://a.example/the-schema-of-a-long-name.xsd"})
                            found->push_back(catalog.fileFor(pAddress));
                    },
                    [=, this](bool bThrown) {
                        if (!told->empty())
                            expectToldOf(*told);
                        if (told->empty() && !bThrown) {
                            EXPECT_THAT(*found, ElementsAre(path("a-folder-of-a-long-name/a.xsd"),
                                                            path("local/in/b.xsd"), path("c.xsd")));
                        }
                    }};
    });
}

TEST_F(SchemaAllocations, OfTheFilesOfASchema) {
    std::filesystem::create_directory(path("local"));
    const auto catalog =
        catalogWith(R"(<rewriteURI uriStartString="http://a-host.example/" rewritePrefix="local/"/>)");
    folder.write("local/root-of-a-long-name.xsd", schemaOf("<xs:include schemaLocation=\"b.xsd\"/>"));
    folder.write("local/b.xsd", schemaOf("<xs:include schemaLocation=\"" + folder.url("c.xsd") + "\"/>"));
    folder.write("c.xsd", schemaOf("<xs:element name=\"c\"/>"));
    forEachAllocation([&] {
        const auto told = std::make_shared<std::vector<std::string>>();
        const auto files = std::make_shared<std::vector<std::string>>();
        return Step{[=, &catalog] {
                        *files = dom::SchemaFiles("http://a-host.example/root-of-a-long-name.xsd",
                                                  "shown.xsd", catalog, *told)
                                     .paths();
                    },
                    [=, this](bool bThrown) {
                        if (!told->empty())
                            expectToldOf(*told);
                        if (told->empty() && !bThrown) {
                            EXPECT_THAT(*files, ElementsAre(path("c.xsd"), path("local/b.xsd"),
                                                            path("local/root-of-a-long-name.xsd")));
                        }
                    }};
    });
}

TEST_F(SchemaAllocations, OfACompiledSchema) {
    folder.write("root.xsd",
                 schemaOf("<xs:include schemaLocation=\"part.xsd\"/><xs:element name=\"r\" type=\"T\"/>"));
    folder.write("part.xsd", schemaOf(R"(<xs:simpleType name="T"><xs:restriction base="xs:string">
<xs:maxLength value="3"/></xs:restriction></xs:simpleType>)"));
    const auto files = filesFrom("root.xsd");
    ASSERT_THAT(problems, IsEmpty());
    forEachAllocation([&] {
        const auto told = std::make_shared<std::vector<std::string>>();
        const auto pSchema = std::make_shared<std::unique_ptr<dom::Schema>>();
        return Step{[=, &files] { *pSchema = dom::Schema::compile(files, *told); },
                    [=](bool bThrown) {
                        EXPECT_EQ(*pSchema != nullptr, !bThrown && told->empty());
                        if (*pSchema == nullptr)
                            return;
                        SchemaCounts counts;
                        const auto pValidation = (*pSchema)->validate(counts);
                        pValidation->write("<r>long</r>");
                        pValidation->finish();
                        EXPECT_EQ(counts.nErrors, 1U);
                    }};
    });
}

TEST_F(SchemaAllocations, OfTheProblemsOfASchema) {
    const std::string sWrong = "<xs:element name=\"a\" type=\"NoSuchType\"/>";
    for (const std::string& sContent : {sWrong, sWrong + sWrong}) {
        folder.write("root.xsd", schemaOf(sContent));
        const auto files = filesFrom("root.xsd");
        forEachAllocation([&] {
            const auto told = std::make_shared<std::vector<std::string>>();
            const auto pSchema = std::make_shared<std::unique_ptr<dom::Schema>>();
            return Step{[=, &files] { *pSchema = dom::Schema::compile(files, *told); },
                        [=](bool bThrown) {
                            EXPECT_EQ(*pSchema, nullptr);
                            if (!bThrown)
                                expectToldOf(*told);
                        }};
        });
    }
}

class ValidationAllocations : public SchemaAllocations {
protected:
    ValidationAllocations() {
        folder.write("root.xsd",
                     schemaOf(R"(<xs:element name="root-of-a-long-name"><xs:complexType><xs:sequence>
<xs:element name="element-of-a-long-name" type="xs:integer" maxOccurs="unbounded"/></xs:sequence>
<xs:attribute name="k" type="xs:integer"/></xs:complexType></xs:element>)"));
        pSchema = dom::Schema::compile(filesFrom("root.xsd"), problems);
    }

    static constexpr std::string_view sXml =
        "<root-of-a-long-name k='x'><element-of-a-long-name>1</element-of-a-long-name>"
        "<element-of-a-long-name>x</element-of-a-long-name>"
        "<element-of-a-long-name>2</element-of-a-long-name></root-of-a-long-name>";

    std::unique_ptr<dom::Schema> pSchema;
};

TEST_F(ValidationAllocations, OfItsBeginning) {
    forEachAllocation([&] {
        const auto counts = std::make_shared<SchemaCounts>();
        const auto pValidation = std::make_shared<std::unique_ptr<dom::Schema::Validation>>();
        return Step{[=, this] { *pValidation = pSchema->validate(*counts); },
                    [=](bool bThrown) {
                        EXPECT_EQ(*pValidation == nullptr, bThrown);
                        if (bThrown)
                            return;
                        (*pValidation)->write(sXml);
                        (*pValidation)->finish();
                        EXPECT_EQ(counts->nErrors, 2U);
                    }};
    });
}

TEST_F(ValidationAllocations, OfADocument) {
    for (const auto& [sDocument, nErrors] : {std::pair(sXml, 2U), std::pair(sXml.substr(0, 40), 3U)}) {
        const auto fnPrepare = [&, this] {
            const auto counts = std::make_shared<SchemaCounts>();
            return Step{[=, this] {
                            const auto pValidation = pSchema->validate(*counts);
                            pValidation->write(sDocument);
                            pValidation->finish();
                        },
                        [=](bool bThrown) { EXPECT_TRUE(bThrown || counts->nErrors == nErrors); }};
        };
        forEachAllocation(fnPrepare, AllocationFaults::Library::Spared);
    }
}

} // namespace
} // namespace halvane::test
