// References to entities as they are replaced before MSXML sees a text.

#include "XmlSupport.h"

#include "xml/dom/msxml/MsxmlEntities.h"
#include "xml/dom/msxml/MsxmlSource.h"

namespace halvane::test {
namespace {

using dom::msxml::Entities;

std::string expanded(std::string_view sType, std::string_view sContent) {
    Entities entities(sType);
    std::string sResult = entities.expand(std::string(sType) + std::string(sContent));
    EXPECT_EQ(entities.error().errorCode, 0) << entities.error().reason;
    return sResult.substr(sType.size());
}

std::string reasonOf(std::string_view sType, std::string_view sContent) {
    Entities entities(sType);
    (void)entities.expand(std::string(sType) + std::string(sContent));
    EXPECT_NE(entities.error().errorCode, 0);
    return entities.error().reason;
}

TEST(Entities, AreReplacedInContentWithTheirMarkup) {
    EXPECT_EQ(expanded("<!DOCTYPE r [<!ENTITY e '<a k=\"&f;\">&f;</a>'><!ENTITY f 'x'>]>", "<r>&e;</r>"),
              "<r><a k=\"x\">x</a></r>");
}

TEST(Entities, DoNotEndTheValueThatTheyStandIn) {
    const auto oDocument = documentOf("<!DOCTYPE r [<!ENTITY e '\"&#39;'>]><r a='&e;' b=\"&e;\"/>");
    EXPECT_EQ(oDocument->documentElement().getAttribute("a"), "\"'");
    EXPECT_EQ(oDocument->documentElement().getAttribute("b"), "\"'");
}

TEST(Entities, AreNoReferencesInSectionsCommentsAndInstructions) {
    constexpr std::string_view sContent = "<r><![CDATA[&e;]]><!--&e;--><?p &e;?></r>";
    EXPECT_EQ(expanded("<!DOCTYPE r [<!ENTITY e 'x'>]>", sContent), sContent);
}

TEST(Entities, ThatXmlKnowsStayAsTheyAre) {
    constexpr std::string_view sContent = "<r a='&quot;'>&amp;&lt;&#65;&#x41;</r>";
    EXPECT_EQ(expanded("", sContent), sContent);
}

TEST(Entities, MoveNoLine) {
    const auto oDocument = documentOf("<!DOCTYPE r [\n<!ENTITY e 'a\nb'>\n]>\n<r k='&e;'>&e;\n<a/></r>");
    EXPECT_EQ(oDocument->documentElement().lastChild().line(), 6U);
    EXPECT_EQ(oDocument->documentElement().firstChild().text(), "a\nb\n");
    EXPECT_EQ(oDocument->documentElement().getAttribute("k"), "a b");
}

TEST(Entities, FirstDeclarationCounts) {
    EXPECT_EQ(expanded("<!DOCTYPE r [<!ENTITY e '1'><!ENTITY e '2'>]>", "<r>&e;</r>"), "<r>1</r>");
}

TEST(Entities, AreRefusedWhereTheyWouldHaveToComeFromElsewhere) {
    EXPECT_EQ(reasonOf("", "<r>&e;</r>"), "Entity 'e' not defined");
    EXPECT_EQ(reasonOf("<!DOCTYPE r [<!ENTITY e PUBLIC 'a' 'b'>]>", "<r k='&e;'/>"),
              "the external entity \"e\" is not loaded");
    EXPECT_EQ(reasonOf("<!DOCTYPE r [<!ENTITY % p '<!ENTITY e \"x\">'> %p;]>", "<r/>"),
              "the parameter entity \"p\" is not expanded");
}

TEST(Entities, AreRefusedWhenTheyAreTooManyEvenIfTheyAddNothing) {
    std::string sType = "<!DOCTYPE r [<!ENTITY e0 ''>";
    for (int nLevel = 1; nLevel <= 38; ++nLevel) {
        sType += "<!ENTITY e" + std::to_string(nLevel) + " '";
        for (int n = 0; n < 10; ++n)
            sType += "&e" + std::to_string(nLevel - 1) + ";";
        sType += "'>";
    }
    sType += "]>";
    EXPECT_EQ(expanded(sType, "<r>&e5;</r>"), "<r></r>");
    EXPECT_THAT(reasonOf(sType, "<r>&e38;</r>"), testing::HasSubstr("more references"));
    EXPECT_THAT(reasonOf(sType, "<r k='&e38;'/>"), testing::HasSubstr("more references"));
}

TEST(Entities, AreRefusedInDefaultValues) {
    EXPECT_THAT(reasonOf("<!DOCTYPE r [<!ENTITY e 'x'><!ATTLIST r k CDATA '&e;'>]>", "<r/>"),
                testing::HasSubstr("default value"));
}

TEST(Namespaces, AreRefusedWhereMoreAreInForceThanTheLimit) {
    const auto declared = [](std::size_t nOutside, std::size_t nInside) {
        std::string sText = "<r";
        for (std::size_t n = 0; n < nOutside; ++n)
            sText.append(" xmlns:p").append(std::to_string(n)).append("='u'");
        sText += ">";
        std::string sInside = "\n<a";
        for (std::size_t n = 0; n < nInside; ++n)
            sInside.append(" xmlns:q").append(std::to_string(n)).append("='u'");
        return sText + sInside + "/>" + sInside + "/></r>";
    };
    EXPECT_EQ(dom::msxml::Source(declared(500, 500), true).refusal().errorCode, 0);
    const dom::msxml::Source refused(declared(500, 501), true);
    EXPECT_EQ(refused.refusal().reason,
              "more namespace declarations are in force than 1000; make elements of "
              "some attributes");
    EXPECT_EQ(refused.refusal().line, 2U);
}

} // namespace
} // namespace halvane::test
