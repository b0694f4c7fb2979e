// What the tree's operations leave behind when memory runs out at any of their allocations: what was there
// before, or what they are to make, and a document that can be used. Each test tries every allocation in
// turn.

#include "AllocationSteps.h"
#include "XmlSupport.h"
#include "support/TemporaryFolder.h"

#include "xml/ClsXMLManager.h"

namespace halvane::test {
namespace {

using dom::Node;

/// One change of a document: all of it or nothing, and it can be made afterwards.
void expectAllOrNothing(const std::string& sBefore, const std::function<void(dom::Document&)>& fnChange,
                        const std::string& sAfter) {
    forEachAllocation([&] {
        const auto oDocument = documentOf(sBefore);
        return Step{[=] { fnChange(*oDocument); },
                    [=](bool bThrown) {
                        EXPECT_EQ(oDocument->xml(), bThrown ? sBefore : sAfter);
                        if (bThrown)
                            fnChange(*oDocument);
                        EXPECT_EQ(oDocument->xml(), sAfter);
                    }};
    });
}

/// Longer than what the tree has at hand: it takes memory of its own.
const std::string sLong(20000, 'x');

TEST_F(Allocations, OfANewElement) {
    expectAllOrNothing(
        "<r><a/></r>",
        [](dom::Document& document) {
            document.documentElement().appendChild(element(document, "a-name-that-is-new-and-long"));
        },
        "<r><a/><a-name-that-is-new-and-long/></r>");
}

TEST_F(Allocations, OfAnAttribute) {
    expectAllOrNothing(
        "<r old=\"1\"/>",
        [](dom::Document& document) { document.documentElement().setAttribute("name-that-is-new", sLong); },
        "<r old=\"1\" name-that-is-new=\"" + sLong + "\"/>");
    expectAllOrNothing(
        "<r old=\"1\"/>",
        [](dom::Document& document) { document.documentElement().setAttribute("old", sLong); },
        "<r old=\"" + sLong + "\"/>");
}

TEST_F(Allocations, OfTheAttributesOfAWideElement) {
    std::string sBefore = "<r";
    for (int n = 0; n < 200; ++n)
        sBefore.append(" a").append(std::to_string(n)).append("=\"\"");
    expectAllOrNothing(
        sBefore + "/>", [](dom::Document& document) { document.documentElement().setAttribute("b", "1"); },
        sBefore + " b=\"1\"/>");
}

TEST_F(Allocations, OfATextInThePlaceOfChildren) {
    expectAllOrNothing(
        "<r><a>1</a><b/></r>", [](dom::Document& document) { document.documentElement().setText(sLong); },
        "<r>" + sLong + "</r>");
    expectAllOrNothing(
        "<r>1</r>", [](dom::Document& document) { document.documentElement().setText(sLong); },
        "<r>" + sLong + "</r>");
}

TEST_F(Allocations, OfACopy) {
    const std::string sBranch = "<a b=\"1\"><c d=\"" + sLong + "\">" + sLong + "</c><!--d--></a>";
    expectAllOrNothing(
        "<r>" + sBranch + "</r>",
        [](dom::Document& document) {
            Node oRoot = document.documentElement();
            oRoot.appendChild(oRoot.firstChild().cloneNode(true));
        },
        "<r>" + sBranch + sBranch + "</r>");
}

TEST_F(Allocations, OfAMoveToAnotherDocument) {
    const std::string sFrom = "<r><a b=\"1\"><item>1</item>text</a></r>";
    forEachAllocation([&] {
        const auto oFrom = documentOf("<r><a b=\"1\"><item>1</item>text</a></r>");
        const auto oTo = documentOf("<t/>");
        const auto fnMove = [=] {
            oTo->documentElement().appendChild(oFrom->documentElement().firstChild());
        };
        return Step{fnMove, [=](bool bThrown) {
                        EXPECT_EQ(oFrom->xml(), bThrown ? sFrom : "<r/>");
                        EXPECT_EQ(oTo->xml(), bThrown ? "<t/>" : "<t><a b=\"1\"><item>1</item>text</a></t>");
                        if (bThrown)
                            fnMove();
                        EXPECT_EQ(oTo->xml(), "<t><a b=\"1\"><item>1</item>text</a></t>");
                    }};
    });
}

std::string items(int nCount) {
    std::string sItems;
    for (int n = 0; n < nCount; ++n)
        sItems.append("<item>").append(std::to_string(n)).append("</item>");
    return sItems;
}

/// Adds items that are sealed once there are enough of them.
void addSealedItems(dom::Document& document, int nItems) {
    for (int n = 0; n < nItems; ++n) {
        Node oItem = document.getElementsByTagName("a").item(0).appendChild(element(document, "item"));
        oItem.setText(std::to_string(n));
        document.markComplete(oItem);
    }
    document.breakBetweenTags();
}

/// What a document is as text; nothing when it tells that it has lost a part.
std::optional<std::string> wholeText(const dom::Document& document) {
    try {
        return document.xml();
    } catch (const Failure&) {
        return std::nullopt;
    }
}

TEST_F(Allocations, OfAMoveOfSealedParts) {
    forEachAllocation([&] {
        const auto oFrom = documentOf("<r><a/></r>");
        const auto oTo = documentOf("<t/>");
        addSealedItems(*oFrom, 1500);
        const Node oMoved = oFrom->getElementsByTagName("a").item(0);
        return Step{[=] { oTo->documentElement().appendChild(oMoved); },
                    [=](bool bThrown) {
                        EXPECT_EQ(oMoved.parentNode(), (bThrown ? oFrom : oTo)->documentElement());
                        EXPECT_EQ(&oMoved.ownerDocument(), (bThrown ? oFrom : oTo).get());
                        const auto sText = wholeText(*(bThrown ? oFrom : oTo));
                        EXPECT_TRUE(bThrown || sText);
                        EXPECT_THAT(sText.value_or("<item>1499</item>"),
                                    testing::HasSubstr("<item>1499</item>"));
                    }};
    });
}

TEST_F(Allocations, OfLookingForAnAttributeAmongMany) {
    constexpr int nAttributes = 200;
    std::string sXml = "<r";
    for (int n = 0; n < nAttributes; ++n)
        sXml += " a" + std::to_string(n) + "='" + std::to_string(n) + "'";
    forEachAllocation([&] {
        const auto oDocument = documentOf(sXml + "/>");
        const auto lFound = std::make_shared<std::size_t>(0);
        const Node oRoot = oDocument->documentElement();
        const auto isFound = [oRoot](const std::string& sName) {
            return oRoot.getAttribute(sName).has_value();
        };
        // What is looked for has its memory before.
        const std::string sLast = "a" + std::to_string(nAttributes - 1);
        return Step{[=] { *lFound = (isFound(sLast) ? 1U : 0U) + (isFound("b") ? 2U : 0U); },
                    [=](bool bThrown) {
                        EXPECT_FALSE(bThrown) << "without memory it takes longer";
                        EXPECT_EQ(*lFound, 1U);
                        EXPECT_TRUE(isFound(sLast)) << "the document stays: " << oDocument->xml().size();
                    }};
    });
}

TEST_F(Allocations, OfSealing) {
    constexpr int nItems = 1100;
    const TemporaryFolder folder;
    const std::string sPath = folder.file("a.xml");
    const auto oWhole = documentOf("<r><a/></r>");
    addSealedItems(*oWhole, nItems);
    oWhole->save(sPath);
    const std::string sWhole = folder.read("a.xml").value_or("");
    forEachAllocation([&] {
        folder.write("a.xml", "old");
        const auto oDocument = documentOf("<r><a/></r>");
        return Step{[=] {
                        addSealedItems(*oDocument, nItems);
                        oDocument->save(sPath);
                    },
                    [&](bool bThrown) { EXPECT_EQ(folder.read("a.xml"), bThrown ? "old" : sWhole); }};
    });
}

TEST_F(Allocations, OfSaving) {
    const TemporaryFolder folder;
    const std::string sXml = "<r>" + items(50) + "</r>";
    forEachAllocation([&] {
        const auto oDocument = documentOf(sXml);
        folder.write("a.xml", "old");
        return Step{[=, sPath = folder.file("a.xml")] { oDocument->save(sPath); },
                    [&](bool bThrown) {
                        EXPECT_EQ(folder.read("a.xml"), bThrown ? "old" : sXml);
                        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
                    }};
    });
}

/// A document loads whole, or it tells why and is empty; it loads afterwards.
void expectLoaded(const std::string& sXml, bool bValidate) {
    const std::string sLoaded = documentOf(sXml)->xml();
    forEachAllocation([&] {
        const auto oDocument = documentOf("<old/>");
        oDocument->setValidateOnParse(bValidate);
        const auto bLoaded = std::make_shared<bool>(false);
        return Step{[=] { *bLoaded = oDocument->loadXML(sXml); },
                    [=](bool bThrown) {
                        EXPECT_FALSE(bThrown);
                        EXPECT_EQ(*bLoaded, oDocument->parseError().errorCode == 0);
                        EXPECT_EQ(oDocument->xml(), *bLoaded ? sLoaded : "");
                        EXPECT_TRUE(oDocument->loadXML(sXml)) << oDocument->parseError().reason;
                        EXPECT_EQ(oDocument->xml(), sLoaded);
                    }};
    });
}

TEST_F(Allocations, OfLoading) {
    expectLoaded("<?xml version=\"1.0\"?>\n<r a=\"1\" xmlns:p=\"u\">text &amp; <p:b c='2'><![CDATA[d]]></p:b>"
                 "<!-- c --><?i d?></r>",
                 false);
}

TEST_F(Allocations, OfLoadingWithADocumentType) {
    const std::string sType =
        "<!DOCTYPE r [<!ELEMENT r (#PCDATA|b)*><!ELEMENT b EMPTY><!ATTLIST b c CDATA 'd'>"
        "<!ENTITY e '<b/>text'>]>";
    expectLoaded(sType + "<r>1 &e; 2 &e;<b c='x'/></r>", false);
    expectLoaded(sType + "<r>1 &e; 2 &e;<b c='x'/></r>", true);
}

// Declarations are kept by a hash that differs each time; where two of them meet, more is allocated.
TEST_F(Allocations, OfLoadingWithManyDeclarations) {
    std::string sType = "<!DOCTYPE r [<!ELEMENT r ANY>";
    for (int l = 0; l < 40; ++l) {
        const std::string sName = "e" + std::to_string(l);
        sType += "<!ELEMENT " + sName + " EMPTY><!ATTLIST " + sName + " c CDATA 'd'>";
    }
    expectLoaded(sType + "]><r><e0/></r>", false);
}

TEST_F(Allocations, OfARefusal) {
    for (const std::string sXml :
         {"<!DOCTYPE r [<!ENTITY external-entity SYSTEM 'outside'>]><r>&external-entity;</r>",
          "<r>&no-such-entity;</r>", "<r><element-of-a-long-name></another-element></r>"})
        forEachAllocation([&] {
            const auto oDocument = documentOf("<old/>");
            const auto bLoaded = std::make_shared<bool>(true);
            return Step{[=] { *bLoaded = oDocument->loadXML(sXml); },
                        [=](bool bThrown) {
                            EXPECT_FALSE(bThrown || *bLoaded);
                            EXPECT_NE(oDocument->parseError().errorCode, 0);
                            EXPECT_EQ(oDocument->xml(), "");
                        }};
        });
}

TEST_F(Allocations, OfASelection) {
    forEachAllocation([&] {
        const auto oDocument = documentOf("<r xmlns:p='u'><a k='1'/><p:a k='2'>t</p:a><a k='3'/></r>");
        oDocument->documentElement().setAttribute("changed", "1");
        const auto nFound = std::make_shared<std::int32_t>(-1);
        return Step{[=] { *nFound = oDocument->asNode().selectNodes("//a[@k > 0] | //p:a").length(); },
                    [=](bool bThrown) {
                        EXPECT_EQ(*nFound, bThrown ? -1 : 3);
                        EXPECT_EQ(oDocument->asNode().selectNodes("//a").length(), 2);
                    }};
    });
}

/// Every node is in the one document or the other, and both can be written and read.
void expectNothingLost(const dom::DocumentPtr& oTarget, const dom::DocumentPtr& oSource) {
    const std::string sBoth = documentOf(oTarget->xml())->xml() + documentOf(oSource->xml())->xml();
    EXPECT_THAT(sBoth, testing::HasSubstr("<z/>"));
    EXPECT_THAT(sBoth, testing::HasSubstr("<w/>"));
}

TEST_F(Allocations, OfMerging) {
    const std::string sMerged = "<r a=\"1\" b=\"2\"><x key=\"1\" c=\"3\"><z/></x><y>new</y><w/></r>";
    forEachAllocation([&] {
        const auto oTarget = documentOf("<r a='1'><x key='1'/><y>old</y></r>");
        const auto oSource = documentOf("<r b='2'><x key='1' c='3'><z/></x><y>new</y><w/></r>");
        const auto fnMerge = [=] {
            const ClsXMLManager manager;
            manager.UpdateAllNodes(oTarget->documentElement(), oSource->documentElement(), "key");
        };
        const auto fnCheck = [=, &sMerged](bool bThrown) {
            expectNothingLost(oTarget, oSource);
            EXPECT_EQ(oTarget->xml() == sMerged, !bThrown);
        };
        return Step{fnMerge, fnCheck};
    });
}

TEST_F(Allocations, OfTheManager) {
    forEachAllocation([&] {
        const auto pManager = std::make_shared<ClsXMLManager>();
        pManager->setDOMDoc(documentOf("<r><a/></r>"));
        const auto oNode = std::make_shared<Node>();
        return Step{[=] {
                        std::string sPath = "r/a";
                        *oNode = pManager->InsertNode(sPath, "new-and-with-a-long-name", false, 1, nullptr);
                    },
                    [=](bool bThrown) {
                        const std::string sAfter = "<r><a><new-and-with-a-long-name/></a></r>";
                        EXPECT_EQ(pManager->DOMDoc()->xml(), *oNode ? sAfter : "<r><a/></r>");
                        EXPECT_TRUE(bThrown || *oNode || pManager->GetErrNum() != 0);
                    }};
    });
}

} // namespace
} // namespace halvane::test
