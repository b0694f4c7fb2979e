// Attributes whose names make their element unreadable, or take each other's place.

#include "support/ExportTest.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

/// Of layers named like namespaces.
class AttributeNamesTest : public ExportTest {
protected:
    /// An attribute whose value is the layer's name.
    static std::string declaration(const std::string& sPrefix, const std::string& sLayer) {
        return "<d Name='xmlns:" + sPrefix +
               "' Target='Attribute' DataSource='MapLayer' DataProperty='LayerName' Identity='LayerName' "
               "IdentityValue='" +
               sLayer + "'/>";
    }

    void expectOneFailure(const std::string& sName, FailureNumber number, const std::string& sDescription) {
        ASSERT_EQ(observer.aFailures.size(), 1U);
        EXPECT_EQ(observer.aFailures[0].sName, sName);
        EXPECT_EQ(observer.aFailures[0].lNumber, static_cast<std::int32_t>(number));
        EXPECT_EQ(observer.aFailures[0].sDescription, sDescription);
        EXPECT_EQ(state.lModErrNum, 0) << "the component knows no such failure";
    }
};

constexpr const char* sSameTwice =
    "another node writes the attribute \"x\" of the same element, too; only the "
    "value written last stays";

TEST_F(AttributeNamesTest, OfTheSameNameAreAnErrorOfTheLaterNode) {
    EXPECT_EQ(run("<a Name='Out'><b Name='x' Target='Attribute' DataSource='Time'/>"
                  "<b Name='y' Target='Attribute'/><b Name='x ' Target='Attribute'/></a>"),
              "<Out x=\"\" y=\"\"/>");
    expectOneFailure("x", FailureNumber::DuplicateKey, sSameTwice);
}

TEST_F(AttributeNamesTest, OfOneElementMayStandInsideAnAttributesNode) {
    run("<a Name='Out'><b Name='x' Target='Attribute'/>"
        "<b Name='y' Target='Attribute'><c Name='x' Target='Attribute'/></b></a>");
    expectOneFailure("x", FailureNumber::DuplicateKey, sSameTwice);
}

TEST_F(AttributeNamesTest, OfDifferentElementsMayBeTheSame) {
    run("<a Name='Out'><b Name='x' Target='Attribute'/>"
        "<c Name='C'><b Name='x' Target='Attribute'/></c><c Name='x'/></a>");
    EXPECT_TRUE(observer.aFailures.empty());
}

TEST_F(AttributeNamesTest, AreCheckedOnEachItem) {
    run(group("<e Name='Each' DataSource='Feature' Entries='Multiple'>"
              "<f Name='x' Target='Attribute' IdentityValue='NAME'/>"
              "<f Name='x' Target='Attribute' IdentityValue='NAME'/></e>"));
    EXPECT_EQ(observer.aFailures.size(), static_cast<std::size_t>(observer.lItems));
    EXPECT_GT(observer.lItems, 1);
}

TEST_F(AttributeNamesTest, WithTwoPrefixesOfOneNamespaceAreTheSameAttribute) {
    EXPECT_EQ(run("<a Name='Out'>" + declaration("g", "Roads") + "<b Name='B'>" + declaration("h", "Roads") +
                  "<c Name='g:x' Target='Attribute' DataSource=' '/>"
                  "<c Name='h:x' Target='Attribute' DataSource=' '/></b></a>"),
              "<Out xmlns:g=\"Roads\"><B xmlns:h=\"Roads\" g:x=\"\" h:x=\"\"/></Out>");
    expectOneFailure("h:x", FailureNumber::DuplicateKey,
                     "it is the same attribute as \"g:x\" of the same element: both prefixes are bound to "
                     "\"Roads\", so no parser that knows namespaces reads the document");
}

TEST_F(AttributeNamesTest, AreFoundToBeTheSameWhereTheirPrefixesAreDeclaredBehindThem) {
    run("<a Name='Out'><c Name='g:x' Target='Attribute'/><c Name='h:x' Target='Attribute'/>" +
        declaration("g", "Roads") + declaration("h", "Roads") + "</a>");
    expectOneFailure(
        "xmlns:h", FailureNumber::DuplicateKey,
        "\"h:x\" is the same attribute as \"g:x\" of the same element: both prefixes are bound to "
        "\"Roads\", so no parser that knows namespaces reads the document");
}

TEST_F(AttributeNamesTest, WithPrefixesOfTwoNamespacesDiffer) {
    EXPECT_EQ(run("<a Name='Out'>" + declaration("g", "Roads") + declaration("h", "Water") +
                  "<c Name='x' Target='Attribute'/><c Name='g:x' Target='Attribute'/>"
                  "<c Name='h:x' Target='Attribute'/></a>"),
              "<Out xmlns:g=\"Roads\" xmlns:h=\"Water\" x=\"\" g:x=\"\" h:x=\"\"/>");
    EXPECT_TRUE(observer.aFailures.empty());
}

TEST_F(AttributeNamesTest, OfItemsAreToldApartByWhatTheItemDeclares) {
    run(group("<e Name='Each' DataSource='Feature' Entries='Multiple'>"
              "<f Name='xmlns:g' Target='Attribute' IdentityValue='NAME'/>"
              "<f Name='xmlns:h' Target='Attribute' IdentityValue='NAME'/>"
              "<f Name='g:x' Target='Attribute' IdentityValue='NAME'/>"
              "<f Name='h:x' Target='Attribute' IdentityValue='NAME'/></e>"));
    EXPECT_EQ(observer.aFailures.size(), static_cast<std::size_t>(observer.lItems));
    EXPECT_GT(observer.lItems, 1);
}

TEST_F(AttributeNamesTest, ThatDeclareAPrefixNeedAValue) {
    EXPECT_EQ(run("<a Name='Out'>" + declaration("g", "Nowhere") + "</a>"), "<Out xmlns:g=\"\"/>");
    expectOneFailure(
        "xmlns:g", FailureNumber::DocumentFailure,
        "the prefix \"g\" is bound to an empty text, so no parser that knows namespaces reads the "
        "document");
}

TEST_F(AttributeNamesTest, ThatDeclareXmlNeedItsNamespace) {
    run("<a Name='Out'>" + declaration("xml", "Roads") + "</a>");
    expectOneFailure("xmlns:xml", FailureNumber::DocumentFailure,
                     "the prefix \"xml\" is bound to \"Roads\", so no parser that knows namespaces reads the "
                     "document");
}

TEST_F(AttributeNamesTest, BindThePrefixXmlAndItsNamespaceOnlyToEachOther) {
    const std::string sXml = "http://www.w3.org/XML/1998/namespace";
    const std::string sDeclarations = "http://www.w3.org/2000/xmlns/";
    world.registerSpy("Xml", sXml);
    world.registerSpy("Declarations", sDeclarations);
    const auto declared = [&](const std::string& sName, const std::string& sProcessor) {
        observer.aFailures.clear();
        run("<a Name='Out'><d Name='" + sName + "' Target='Attribute' DataSource='External' IdentityValue='" +
            sProcessor + "'/></a>");
    };
    const auto expectUnreadable = [&](const std::string& sName, const std::string& sWhat) {
        expectOneFailure(sName, FailureNumber::DocumentFailure,
                         sWhat + "\", so no parser that knows namespaces reads the document");
    };
    declared("xmlns:xml", "Xml");
    EXPECT_TRUE(observer.aFailures.empty());
    declared("xmlns:g", "Xml");
    expectUnreadable("xmlns:g", "the prefix \"g\" is bound to \"" + sXml);
    declared("xmlns:g", "Declarations");
    expectUnreadable("xmlns:g", "the prefix \"g\" is bound to \"" + sDeclarations);
    declared("xmlns", "Xml");
    expectUnreadable("xmlns", "the default namespace is \"" + sXml);
}

TEST_F(AttributeNamesTest, ThatDeclareTheDefaultNamespaceNeedOneThatIsNotReserved) {
    const auto inNamespace = [&](const std::string& sNamespace) {
        const std::string sProcessor = "Test." + std::to_string(sNamespace.size());
        world.registerSpy(sProcessor, sNamespace);
        return run("<a Name='Out'><b Name='x' Target='Attribute'/><d Name='xmlns' Target='Attribute' "
                   "DataSource='External' IdentityValue='" +
                   sProcessor + "'/></a>");
    };
    EXPECT_EQ(inNamespace("urn:roads"), "<Out x=\"\" xmlns=\"urn:roads\"/>");
    EXPECT_EQ(inNamespace(""), "<Out x=\"\" xmlns=\"\"/>");
    EXPECT_TRUE(observer.aFailures.empty());
    const std::string sReserved = "http://www.w3.org/2000/xmlns/";
    inNamespace(sReserved);
    expectOneFailure("xmlns", FailureNumber::DocumentFailure,
                     "the default namespace is \"" + sReserved +
                         "\", so no parser that knows namespaces reads the document");
}

TEST_F(AttributeNamesTest, ThatDeclareAnotherPrefixTakeNoReservedNamespace) {
    for (const std::string sReserved :
         {"http://www.w3.org/XML/1998/namespace", "http://www.w3.org/2000/xmlns/"}) {
        observer.aFailures.clear();
        const std::string sProcessor = "Test." + std::to_string(sReserved.size());
        world.registerSpy(sProcessor, sReserved);
        run("<a Name='Out'><d Name='xmlns:g' Target='Attribute' DataSource='External' IdentityValue='" +
            sProcessor + "'/></a>");
        expectOneFailure("xmlns:g", FailureNumber::DocumentFailure,
                         "the prefix \"g\" is bound to \"" + sReserved +
                             "\", so no parser that knows namespaces reads the document");
    }
}

TEST_F(AttributeNamesTest, OfXmlsOwnPrefixDifferFromThoseOfOthers) {
    EXPECT_EQ(run("<a Name='Out'>" + declaration("g", "Roads") +
                  "<b Name='xml:x' Target='Attribute'/><c Name='g:x' Target='Attribute'/>"
                  "<e Name='h:x' Target='Attribute'/></a>"),
              "<Out xmlns:g=\"Roads\" xml:x=\"\" g:x=\"\" h:x=\"\"/>");
    EXPECT_TRUE(observer.aFailures.empty());
}

TEST_F(AttributeNamesTest, WithAnotherPrefixOfXmlsNamespaceAreTheSameAttributeAsWithXmls) {
    world.registerSpy("Xml", "http://www.w3.org/XML/1998/namespace");
    run("<a Name='Out'><d Name='xmlns:g' Target='Attribute' DataSource='External' IdentityValue='Xml'/>"
        "<b Name='xml:x' Target='Attribute'/><c Name='g:x' Target='Attribute'/></a>");
    ASSERT_EQ(observer.aFailures.size(), 2U);
    EXPECT_EQ(observer.aFailures[0].sName, "xmlns:g");
    EXPECT_EQ(observer.aFailures[1].sName, "g:x");
    EXPECT_TRUE(observer.aFailures[1].sDescription.starts_with("it is the same attribute as \"xml:x\""));
}

TEST_F(AttributeNamesTest, AreCheckedOnASubtypeAndInAGroupOfIt) {
    const auto pSubtypes = host::memory::MemorySubtypes::make("LANES", 1);
    pSubtypes->addSubtype(1, "Narrow");
    world.pRoads->setSubtypes(pSubtypes);
    EXPECT_EQ(run(group("<s Name='S' DataSource='SubType' Entries='Multiple'>"
                        "<b Name='x' Target='Attribute' DataProperty='SubTypeName'/>"
                        "<b Name='x' Target='Attribute' DataProperty='SubTypeCode'/></s>")),
              "<Out><L><S x=\"1\"/></L></Out>");
    expectOneFailure("x", FailureNumber::DuplicateKey, sSameTwice);
    observer.aFailures.clear();
    EXPECT_EQ(run(group("<s Name='S' DataSource='SubType' Entries='Multiple'><g Name='G'>"
                        "<b Name='x' Target='Attribute'/><b Name='x' Target='Attribute'/></g></s>")),
              "<Out><L><S><G x=\"\"/></S></L></Out>");
    expectOneFailure("x", FailureNumber::DuplicateKey, sSameTwice);
}

} // namespace
} // namespace halvane::test
