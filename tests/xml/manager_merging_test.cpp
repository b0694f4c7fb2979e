#include "XmlSupport.h"
#include "xml/dom/Depth.h"

#include "base/Text.h"
#include "xml/ClsXMLManager.h"

namespace halvane::test {
namespace {

using dom::Node;

class Merging : public testing::Test {
protected:
    /// The target after merging, and what the source is left with.
    std::pair<std::string, std::string> updated(std::string_view sTarget, std::string_view sSource) {
        const auto oTarget = documentOf(sTarget);
        const auto oSource = documentOf(sSource);
        manager.UpdateNodes(oTarget->documentElement(), oSource->documentElement(), "key");
        return {oTarget->xml(), oSource->xml()};
    }
    std::pair<std::string, std::string> updatedAll(std::string_view sTarget, std::string_view sSource) {
        const auto oTarget = documentOf(sTarget);
        const auto oSource = documentOf(sSource);
        manager.UpdateAllNodes(oTarget->documentElement(), oSource->documentElement(), "key");
        return {oTarget->xml(), oSource->xml()};
    }

    ClsXMLManager manager;
};

TEST_F(Merging, DoesNothingToNoTarget) {
    const auto oSource = documentOf("<s><a/></s>");
    manager.UpdateNodes({}, oSource->documentElement(), "key");
    manager.UpdateAllNodes({}, oSource->documentElement(), "key");
    EXPECT_EQ(oSource->xml(), "<s><a/></s>");
}

/// Elements `a`, one inside the other, the last one with an attribute.
std::string nested(std::size_t nDepth, const std::string& sName) {
    std::string sXml;
    for (std::size_t n = 1; n < nDepth; ++n)
        sXml += "<a>";
    sXml += "<a " + sName + "=\"1\"/>";
    for (std::size_t n = 1; n < nDepth; ++n)
        sXml += "</a>";
    return sXml;
}

TEST_F(Merging, ReachesTheDeepestElementsThatAreParsed) {
    const std::string sTarget = nested(dom::deepestElement, "b");
    const std::string sMerged = replaceAll(sTarget, "b=\"1\"", "b=\"1\" c=\"1\"");
    EXPECT_EQ(updated(sTarget, nested(dom::deepestElement, "c")).first, sMerged);
    EXPECT_EQ(updatedAll(sTarget, nested(dom::deepestElement, "c")).first, sMerged);
}

/// The same beyond what is parsed.
dom::DocumentPtr nestedDocument(std::size_t nDepth, std::string_view sName) {
    auto oDocument = documentOf("<a/>");
    Node oLast = oDocument->documentElement();
    for (std::size_t n = 1; n < nDepth; ++n)
        oLast = oLast.appendChild(element(*oDocument, "a"));
    oLast.setAttribute(sName, "1");
    return oDocument;
}

TEST_F(Merging, ReachesElementsAtAnyDepth) {
    constexpr std::size_t nDepth = 200'000;
    const std::string sMerged = replaceAll(nested(nDepth, "b"), "b=\"1\"", "b=\"1\" c=\"1\"");
    const auto oSource = nestedDocument(nDepth, "c");
    const auto oKeyed = nestedDocument(nDepth, "b");
    manager.UpdateNodes(oKeyed->documentElement(), oSource->documentElement(), "key");
    EXPECT_TRUE(oKeyed->xml() == sMerged);
    const auto oNamed = nestedDocument(nDepth, "b");
    manager.UpdateAllNodes(oNamed->documentElement(), oSource->documentElement(), "key");
    EXPECT_TRUE(oNamed->xml() == sMerged);
}

TEST_F(Merging, CopiesManyAttributesWithoutComparingEachWithAll) {
    constexpr int nMany = 100'000;
    const auto oTarget = documentOf("<r/>");
    const auto oSource = documentOf("<r/>");
    for (int n = 0; n < nMany; ++n) {
        oTarget->documentElement().setAttribute("a" + std::to_string(n), "old");
        oSource->documentElement().setAttribute("a" + std::to_string(n + nMany / 2), "new");
    }
    manager.UpdateNodes(oTarget->documentElement(), oSource->documentElement(), "key");
    const auto oMerged = oTarget->documentElement().attributes();
    EXPECT_EQ(oMerged.length(), nMany + nMany / 2);
    EXPECT_EQ(oMerged.getNamedItem("a" + std::to_string(nMany / 2 - 1)).text(), "old");
    EXPECT_EQ(oMerged.getNamedItem("a" + std::to_string(nMany / 2)).text(), "new");
}

TEST_F(Merging, FailsForNoSource) {
    const auto oTarget = documentOf("<t/>");
    EXPECT_EQ(failureOf([&] { manager.UpdateNodes(oTarget->documentElement(), {}, "key"); }),
              number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { manager.UpdateAllNodes(oTarget->documentElement(), {}, "key"); }),
              number(FailureNumber::ObjectVariableNotSet));
}

TEST_F(Merging, CopiesAttributesOverEqualNamesAndAddsTheOthers) {
    EXPECT_EQ(updated("<t a='0'/>", "<s a='1' b='2'/>").first, "<t a=\"1\" b=\"2\"/>");
    EXPECT_EQ(updatedAll("<t a='0'/>", "<s a='1' b='2'/>").first, "<t a=\"1\" b=\"2\"/>");
    EXPECT_EQ(updated("<t/>", "<s a='1' b='2'/>").first, "<t a=\"1\" b=\"2\"/>");
}

TEST_F(Merging, TakesAttributesOfAnotherLetterCaseForOthers) {
    EXPECT_EQ(updated("<t a='0'/>", "<s A='1'/>").first, "<t a=\"0\" A=\"1\"/>");
}

TEST_F(Merging, SourceWithoutChildrenGivesItsAttributesOnly) {
    EXPECT_EQ(updated("<t><x/></t>", "<s a='1'/>").first, "<t a=\"1\"><x/></t>");
    EXPECT_EQ(updatedAll("<t><x/></t>", "<s a='1'/>").first, "<t a=\"1\"><x/></t>");
}

TEST_F(Merging, TargetWithoutChildrenTakesAllChildrenOfTheSource) {
    const auto [sTarget, sSource] = updated("<t/>", "<s>x<a/><b/></s>");
    EXPECT_EQ(sTarget, "<t>x<a/><b/></t>");
    EXPECT_EQ(sSource, "<s/>");
    EXPECT_EQ(updatedAll("<t/>", "<s>x<a/><b/></s>"), std::pair(sTarget, sSource));
}

TEST_F(Merging, MergesChildrenWithTheSameKeyAndAppendsTheOthers) {
    const auto [sTarget, sSource] =
        updated("<t><a key='1'><x key='x'/></a><a key='2'/></t>",
                "<s><a key='2' n='new'/><a key='3'/><b key='1'><x key='x' n='1'/><x key='y'/></b></s>");
    EXPECT_EQ(sTarget, "<t><a key=\"1\"><x key=\"x\" n=\"1\"/><x key=\"y\"/></a><a key=\"2\" n=\"new\"/>"
                       "<a key=\"3\"/></t>");
    EXPECT_EQ(sSource, "<s><a key=\"2\" n=\"new\"/><b key=\"1\"><x key=\"x\" n=\"1\"/></b></s>");
}

TEST_F(Merging, FindsTheKeyInAnyLetterCaseButComparesItsValueExactly) {
    EXPECT_EQ(updated("<t><a KEY='v'/></t>", "<s><a Key='v' n='1'/></s>").first,
              "<t><a KEY=\"v\" Key=\"v\" n=\"1\"/></t>");
    EXPECT_EQ(updated("<t><a key='v'/></t>", "<s><a key='V'/></s>").first,
              "<t><a key=\"v\"/><a key=\"V\"/></t>");
}

TEST_F(Merging, MatchesChildrenWithoutTheKeyWithTheFirstThatLacksItToo) {
    // The text of the source meets the element "a", which has no key either, and is lost in it.
    EXPECT_EQ(updated("<t><k key='1'/><a/></t>", "<s>text<b n='1'/></s>").first,
              "<t><k key=\"1\"/><a n=\"1\"/></t>");
}

TEST_F(Merging, SeesChildrenThatItAppendedItself) {
    EXPECT_EQ(updated("<t><z key='z'/></t>", "<s><a key='1'/><a key='1' n='2'/></s>").first,
              "<t><z key=\"z\"/><a key=\"1\" n=\"2\"/></t>");
}

TEST_F(Merging, VisitsEveryChildOfTheSource) {
    EXPECT_EQ(
        updated("<t><z key='z'/></t>", "<s><a key='1'/><a key='2'/><a key='3'/><a key='4'/></s>").second,
        "<s/>");
}

TEST_F(Merging, MatchesByNameWhereNoNameRepeats) {
    const auto [sTarget, sSource] =
        updatedAll("<t><a><x/></a><b/></t>", "<s><b n='1'/><c/><a><x m='2'/><y/></a></s>");
    EXPECT_EQ(sTarget, "<t><a><x m=\"2\"/><y/></a><b n=\"1\"/><c/></t>");
    EXPECT_EQ(sSource, "<s><b n=\"1\"/><a><x m=\"2\"/></a></s>");
}

TEST_F(Merging, ComparesNamesExactly) {
    EXPECT_EQ(updatedAll("<t><a/></t>", "<s><A/></s>").first, "<t><a/><A/></t>");
}

TEST_F(Merging, TakesOverTexts) {
    EXPECT_EQ(updatedAll("<t><a>old</a></t>", "<s><a>new</a></s>").first, "<t><a>new</a></t>");
}

TEST_F(Merging, TakesOverATextOnlyIntoAText) {
    // The repeated name switches to the key, which the text and the first element both lack.
    const auto [sTarget, sSource] = updatedAll("<t><k key='1'/><a>old</a><k key='2'/></t>", "<s>new</s>");
    EXPECT_EQ(sTarget, "<t><k key=\"1\"/><a>old</a><k key=\"2\"/></t>");
    EXPECT_EQ(sSource, "<s>new</s>");
    EXPECT_EQ(updatedAll("<t>old<k key='1'/><k key='2'/></t>", "<s><a/></s>").first,
              "<t>old<k key=\"1\"/><k key=\"2\"/></t>");
}

TEST_F(Merging, TakesNoCDataSectionForAText) {
    EXPECT_EQ(updatedAll("<t><a><![CDATA[old]]></a></t>", "<s><a><![CDATA[new]]></a></s>").first,
              "<t><a><![CDATA[old]]></a></t>");
    EXPECT_EQ(updatedAll("<t><a>old</a></t>", "<s><a><![CDATA[new]]></a></s>").first,
              "<t><a>old<![CDATA[new]]></a></t>");
    EXPECT_EQ(updatedAll("<t>old<k key='1'/><k key='2'/></t>", "<s><![CDATA[new]]></s>").first,
              "<t>old<k key=\"1\"/><k key=\"2\"/></t>");
    EXPECT_EQ(updatedAll("<t><![CDATA[old]]><k key='1'/><k key='2'/></t>", "<s>new</s>").first,
              "<t><![CDATA[old]]><k key=\"1\"/><k key=\"2\"/></t>");
}

TEST_F(Merging, RepeatedNamesSwitchALevelToTheKey) {
    EXPECT_EQ(updatedAll("<t><a key='1'/></t>", "<s><a key='1' n='1'/><a key='2'/></s>").first,
              "<t><a key=\"1\" n=\"1\"/><a key=\"2\"/></t>");
    EXPECT_EQ(updatedAll("<t><a key='1'/><a key='2'/></t>", "<s><b key='2' n='1'/></s>").first,
              "<t><a key=\"1\"/><a key=\"2\" n=\"1\"/></t>");
}

TEST_F(Merging, MatchByNameHandsItsOwnKeyDown) {
    // Below "g", which matched by name, repeated names are told apart by "TagName", no longer by "key".
    EXPECT_EQ(updatedAll("<t><g><a key='1' TagName='p'/><a key='2' TagName='q'/></g></t>",
                         "<s><g><a key='1' TagName='q' n='1'/><a key='3' TagName='r'/></g></s>")
                  .first,
              "<t><g><a key=\"1\" TagName=\"p\"/><a key=\"1\" TagName=\"q\" n=\"1\"/>"
              "<a key=\"3\" TagName=\"r\"/></g></t>");
}

TEST_F(Merging, MatchByKeyHandsTheCallersKeyDown) {
    EXPECT_EQ(updatedAll("<t><g key='g'><a key='1'/><a key='2'/></g><g key='h'/></t>",
                         "<s><g key='g'><a key='2' n='1'/><a key='3'/></g><g key='i'/></s>")
                  .first,
              "<t><g key=\"g\"><a key=\"1\"/><a key=\"2\" n=\"1\"/><a key=\"3\"/></g><g key=\"h\"/>"
              "<g key=\"i\"/></t>");
}

TEST_F(Merging, AttributesForATargetThatCannotHaveThemFailOnlyWhenMergingByName) {
    const auto oTarget = documentOf("<t>text</t>");
    const auto oSource = documentOf("<s a='1'/>");
    const Node oText = oTarget->documentElement().firstChild();
    manager.UpdateNodes(oText, oSource->documentElement(), "key");
    EXPECT_EQ(oTarget->xml(), "<t>text</t>");
    EXPECT_EQ(failureOf([&] { manager.UpdateAllNodes(oText, oSource->documentElement(), "key"); }),
              number(FailureNumber::PropertyOrMethodNotSupported));
}

TEST_F(Merging, WorksOnWholeDocuments) {
    const auto oSource = documentOf("<s a='1'><x key='1'/></s>");
    const auto oTarget = documentOf("<t/>");
    manager.Merge(oSource->asNode(), oTarget->asNode(), "key");
    EXPECT_EQ(oTarget->xml(), "<t a=\"1\"><x key=\"1\"/></t>");
    manager.setDOMDoc(documentOf("<own/>"));
    manager.Merge(oTarget->asNode(), {}, "key");
    EXPECT_EQ(manager.DOMDoc()->xml(), "<own a=\"1\"><x key=\"1\"/></own>");
    EXPECT_EQ(oTarget->xml(), "<t a=\"1\"/>");
}

TEST_F(Merging, OfWholeDocumentsByNameLikewise) {
    const auto oTarget = documentOf("<t><a/></t>");
    manager.MergeAll(documentOf("<s><a n='1'/></s>")->asNode(), oTarget->asNode(), "key");
    EXPECT_EQ(oTarget->xml(), "<t><a n=\"1\"/></t>");
    manager.setDOMDoc(oTarget);
    manager.MergeAll(documentOf("<s><b/></s>")->asNode(), {}, "key");
    EXPECT_EQ(oTarget->xml(), "<t><a n=\"1\"/><b/></t>");
}

TEST_F(Merging, MergesNothingWithoutADocument) {
    const auto oDocument = documentOf("<r/>");
    EXPECT_EQ(failureOf([&] { manager.Merge({}, oDocument->asNode(), "key"); }),
              number(FailureNumber::ObjectVariableNotSet));
    manager.MergeAll({}, oDocument->asNode(), "key");
    manager.setDOMDoc(nullptr);
    manager.MergeAll(oDocument->asNode(), {}, "key");
    EXPECT_EQ(oDocument->xml(), "<r/>");
    EXPECT_EQ(failureOf([&] { manager.Merge(oDocument->asNode(), {}, "key"); }),
              number(FailureNumber::ObjectVariableNotSet));
}

TEST_F(Merging, MergesNothingIntoADocumentWithoutARoot) {
    const auto oSource = documentOf("<s><a/></s>");
    manager.Merge(oSource->asNode(), {}, "key");
    EXPECT_EQ(manager.DOMDoc()->xml(), "");
    EXPECT_EQ(oSource->xml(), "<s><a/></s>");
}

// ---- HasDuplicateNodeNames

TEST_F(Merging, SeesDuplicateNamesIgnoringCaseAndTextsAmongThem) {
    EXPECT_FALSE(manager.HasDuplicateNodeNames(documentOf("<r/>")->documentElement()));
    EXPECT_FALSE(manager.HasDuplicateNodeNames(documentOf("<r>t<a/><b/></r>")->documentElement()));
    EXPECT_TRUE(manager.HasDuplicateNodeNames(documentOf("<r><a/><b/><a/></r>")->documentElement()));
    EXPECT_TRUE(manager.HasDuplicateNodeNames(documentOf("<r><a/><A/></r>")->documentElement()));
    EXPECT_TRUE(manager.HasDuplicateNodeNames(documentOf("<r>t<a/>u</r>")->documentElement()));
    EXPECT_FALSE(
        manager.HasDuplicateNodeNames(documentOf("<r><a><b/></a><c><b/></c></r>")->documentElement()));
}

} // namespace
} // namespace halvane::test
