#include "xml/dom/MarkupScanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace halvane::test {
namespace {

using dom::Markup;
using dom::MarkupScanner;
using testing::ElementsAre;
using What = Markup::What;

std::vector<Markup> scanned(std::string_view sText) {
    std::vector<Markup> aAll;
    MarkupScanner scanner(sText);
    for (Markup markup; scanner.next(markup);)
        aAll.push_back(markup);
    return aAll;
}

std::vector<std::string_view> piecesOf(std::string_view sText) {
    std::vector<std::string_view> aPieces;
    for (const Markup& markup : scanned(sText))
        aPieces.push_back(markup.sText);
    return aPieces;
}

TEST(MarkupScanner, CutsATextIntoItsMarkupAndItsTexts) {
    EXPECT_THAT(piecesOf("<?p?><r a='>'>t<!-- <b> --><![CDATA[<c>]]]]><d/></r>"),
                ElementsAre("<?p?>", "<r a='>'>", "t", "<!-- <b> -->", "<![CDATA[<c>]]]]>", "<d/>", "</r>"));
}

TEST(MarkupScanner, TakesADocumentTypeWithItsSubsetAsOnePiece) {
    constexpr std::string_view sType =
        "<!DOCTYPE r SYSTEM \"]>\" [<!ENTITY e '>]'><!-- ]> ' --><?p ]> ?><!ELEMENT r ANY>]>";
    EXPECT_THAT(piecesOf(std::string(sType) + "<r/>"), ElementsAre(sType, "<r/>"));
}

TEST(MarkupScanner, TellsTheLineAndTheDepthOfEachPiece) {
    const auto aAll = scanned("<r\n>\n<a\nb='\n'>x</a><c/>\n</r>");
    std::vector<std::pair<std::uint32_t, std::uint32_t>> aPlaces;
    for (const Markup& markup : aAll)
        if (markup.what != What::Text)
            aPlaces.emplace_back(markup.nLine, markup.nDepth);
    EXPECT_THAT(aPlaces, ElementsAre(std::pair{1U, 0U}, std::pair{3U, 1U}, std::pair{5U, 1U},
                                     std::pair{5U, 1U}, std::pair{6U, 0U}));
    EXPECT_EQ(aAll[0].what, What::Start);
    EXPECT_EQ(aAll[5].what, What::Empty);
}

TEST(MarkupScanner, EndsWithWhateverIsNotFinished) {
    for (const std::string_view sText :
         {"<", "<r a='", "<!-- ", "<![CDATA[", "<?p", "<!DOCTYPE r [", "</", "<!"}) {
        const auto aPieces = piecesOf(sText);
        ASSERT_EQ(aPieces.size(), 1U) << sText;
        EXPECT_EQ(aPieces[0], sText);
    }
}

TEST(TakeAttribute, TakesOneAfterTheOtherInEitherKindOfQuotes) {
    std::string_view sRest = " a='1\"' \n b:c = \"2'\" d";
    dom::WrittenAttribute attribute;
    ASSERT_TRUE(dom::takeAttribute(sRest, attribute));
    EXPECT_EQ(attribute.sName, "a");
    EXPECT_EQ(attribute.sValue, "1\"");
    ASSERT_TRUE(dom::takeAttribute(sRest, attribute));
    EXPECT_EQ(attribute.sName, "b:c");
    EXPECT_EQ(attribute.sValue, "2'");
    EXPECT_FALSE(dom::takeAttribute(sRest, attribute));
}

TEST(TakeAttribute, TakesNothingThatIsNoAttribute) {
    for (const std::string_view sText :
         {"", " ", "a", "a 'b'", "='b'", "a=", "a=b", "'a'=b", "a='b", "a=\"b'"}) {
        std::string_view sRest = sText;
        dom::WrittenAttribute attribute;
        EXPECT_FALSE(dom::takeAttribute(sRest, attribute)) << sText;
        EXPECT_EQ(sRest, sText);
    }
}

TEST(ReferredCode, IsNothingForWhatIsNoNumber) {
    for (const std::string_view sName :
         {"a", "#", "#x", "#a", "#1a", "#xG", "#-1", "#0", "#x110000", "#99999999999"})
        EXPECT_EQ(dom::referredCode(sName), std::nullopt) << sName;
    EXPECT_EQ(dom::referredCode("#x10FFFF"), 0x10FFFF);
    EXPECT_EQ(dom::referredCode("#9"), 9);
}

TEST(WithoutReferences, ReplacesCharactersAndTheFiveEntitiesAndKeepsOthers) {
    EXPECT_EQ(dom::withoutReferences("a&lt;&gt;&amp;&quot;&apos;&#65;&#x42;&e;&#0;&#x110000;&"),
              "a<>&\"'AB&e;&#0;&#x110000;&");
}

TEST(DeclaredValue, IsFoundInEitherKindOfQuotes) {
    EXPECT_EQ(dom::declaredValue("<?xml version='1.0' encoding = \"UTF-8\"?>", "encoding"), "UTF-8");
    EXPECT_EQ(dom::declaredValue("<?xml version='1.0'?>", "version"), "1.0");
    EXPECT_EQ(dom::declaredValue("<?xml version='1.0'?>", "standalone"), "");
}

TEST(DeclaredValue, IsNothingWhereTheQuotesAreNotFinished) {
    EXPECT_EQ(dom::declaredValue("<?xml version='1.0' encoding", "encoding"), "");
    EXPECT_EQ(dom::declaredValue("<?xml version='1.0' encoding='UTF-8", "encoding"), "");
}

} // namespace
} // namespace halvane::test
