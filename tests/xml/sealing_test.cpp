#include "XmlSupport.h"
#include "support/FileSizeLimit.h"
#include "support/Platform.h"
#include "support/TemporaryFolder.h"

#include "base/Text.h"

#include <random>

namespace halvane::test {
namespace {

using dom::Node;
using dom::NodeType;
using testing::ElementsAre;

enum class Sealed { No, Yes };

/// Builds the same document with and without sealing.
class Builder {
public:
    explicit Builder(Sealed sealed) : sealed_(sealed), oDocument_(documentOf("<root/>")) {}

    [[nodiscard]] dom::Document& document() { return *oDocument_; }
    [[nodiscard]] Node root() { return oDocument_->documentElement(); }

    Node open(Node oParent, std::string_view sName) {
        return oParent.appendChild(element(*oDocument_, sName));
    }
    void leaf(Node oParent, std::string_view sName, std::string_view sText) {
        open(oParent, sName).setText(sText);
    }
    void complete(Node oItem) {
        if (sealed_ == Sealed::Yes)
            oDocument_->markComplete(oItem);
    }
    void item(Node oParent, int n) {
        Node oItem = open(oParent, "item");
        oItem.setAttribute("n", std::to_string(n));
        leaf(oItem, "name", "item " + std::to_string(n) + " & <more>");
        leaf(oItem, "empty", "");
        complete(oItem);
    }
    /// As it is saved.
    std::string saved() {
        const TemporaryFolder folder;
        oDocument_->breakBetweenTags();
        oDocument_->save(folder.file("a.xml"));
        return folder.read("a.xml").value_or("");
    }

private:
    Sealed sealed_;
    dom::DocumentPtr oDocument_;
};

template<class Build>
void expectSameDocument(Build&& build) {
    Builder whole(Sealed::No);
    Builder inParts(Sealed::Yes);
    build(whole);
    build(inParts);
    EXPECT_GT(inParts.document().memoryUse().spooledBytes, 0U);
    EXPECT_EQ(inParts.saved(), whole.saved());
    EXPECT_EQ(inParts.document().xml(), whole.document().xml());
}

TEST(Sealing, KeepsMemoryFlatOverManyItems) {
    Builder builder(Sealed::Yes);
    constexpr int many = 200000;
    std::size_t nMostNodes = 0;
    std::size_t nReservedEarly = 0;
    for (int n = 0; n < many; ++n) {
        builder.item(builder.root(), n);
        nMostNodes = std::max(nMostNodes, builder.document().memoryUse().nodes);
        if (n == many / 100)
            nReservedEarly = builder.document().memoryUse().reservedBytes;
    }
    EXPECT_LT(nMostNodes, 3000U);
    EXPECT_EQ(builder.document().memoryUse().reservedBytes, nReservedEarly);
    EXPECT_LT(nReservedEarly, 1U << 20U);
    EXPECT_LT(builder.document().memoryUse().textBytes, 200000U);
}

TEST(Sealing, SavesTheSameDocumentAsWithoutIt) {
    expectSameDocument([](Builder& builder) {
        builder.leaf(builder.root(), "before", "text");
        for (int n = 0; n < 20000; ++n)
            builder.item(builder.root(), n);
        builder.leaf(builder.root(), "after", "text");
    });
}

TEST(Sealing, SavesTheSameDocumentWhenEverythingIsSealed) {
    expectSameDocument([](Builder& builder) {
        for (int n = 0; n < 3000; ++n)
            builder.item(builder.root(), n);
    });
}

TEST(Sealing, SavesTheSameDocumentForItemsWithinItems) {
    expectSameDocument([](Builder& builder) {
        for (int n = 0; n < 6; ++n) {
            const Node oOuter = builder.open(builder.root(), "outer");
            builder.leaf(oOuter, "first", std::to_string(n));
            for (int m = 0; m < 2000; ++m)
                builder.item(oOuter, m);
            builder.leaf(oOuter, "between", "x");
            const Node oGroup = builder.open(oOuter, "group");
            for (int m = 0; m < 1500; ++m)
                builder.item(oGroup, m);
            builder.complete(oOuter);
        }
    });
}

TEST(Sealing, SavesTheSameDocumentForItemsAmongTexts) {
    expectSameDocument([](Builder& builder) {
        Node oRoot = builder.root();
        for (int n = 0; n < 4000; ++n) {
            if (n % 7 == 0)
                oRoot.appendChild(nodeOf(builder.document(), NodeType::Text, "", "text"));
            if (n % 5 == 0)
                oRoot.appendChild(nodeOf(builder.document(), NodeType::Comment, "", "a><b"));
            builder.item(oRoot, n);
        }
    });
}

TEST(Sealing, SavesTheSameDocumentForItemsThatHoldMarkup) {
    expectSameDocument([](Builder& builder) {
        for (int n = 0; n < 3000; ++n) {
            Node oItem = builder.open(builder.root(), "item");
            for (const auto type : {NodeType::Comment, NodeType::CDataSection})
                for (const std::string_view sData : {"a", "a><b", "><]]>-->", "a>"})
                    oItem.appendChild(nodeOf(builder.document(), type, "", sData));
            oItem.appendChild(nodeOf(builder.document(), NodeType::ProcessingInstruction, "p", "a><b?><"));
            builder.complete(oItem);
        }
    });
}

TEST(Sealing, SavesTheSameDocumentForItemsThatHaveTheirBreaks) {
    expectSameDocument([](Builder& builder) {
        std::vector<Node> aItems;
        for (int n = 0; n < 10; ++n) {
            aItems.push_back(builder.open(builder.root(), "broken"));
            builder.leaf(aItems.back(), "name", "x");
            builder.leaf(aItems.back(), "empty", "");
        }
        builder.document().breakBetweenTags();
        for (const Node& oItem : aItems)
            builder.complete(oItem);
        for (int n = 0; n < 3000; ++n)
            builder.item(builder.root(), n);
    });
}

TEST(Sealing, SavesTheSameDocumentForItemsThatCameInAFragment) {
    expectSameDocument([](Builder& builder) {
        const Node oFragment = builder.document().createNode(11, "", "");
        builder.leaf(oFragment, "before", "x");
        for (int n = 0; n < 3000; ++n)
            builder.item(oFragment, n);
        builder.root().appendChild(oFragment);
        EXPECT_FALSE(oFragment.hasChildNodes());
    });
}

TEST(Sealing, DoesNotLetItemsOfAFragmentBecomeTheRoot) {
    Builder builder(Sealed::Yes);
    const Node oFragment = builder.document().createNode(11, "", "");
    for (int n = 0; n < 3000; ++n)
        builder.item(oFragment, n);
    Node oDocumentNode = builder.document().asNode();
    oDocumentNode.removeChild(builder.root());
    EXPECT_EQ(failureOf([&] { oDocumentNode.appendChild(oFragment); }),
              number(FailureNumber::DocumentFailure));
    EXPECT_FALSE(oDocumentNode.hasChildNodes());
}

TEST(Sealing, SavesTheSameDocumentForItemsCompletedBackwards) {
    expectSameDocument([](Builder& builder) {
        std::vector<Node> aItems;
        for (int n = 0; n < 3000; ++n)
            aItems.push_back(builder.open(builder.root(), "item" + std::to_string(n)));
        for (auto p = aItems.rbegin(); p != aItems.rend(); ++p)
            builder.complete(*p);
        for (int n = 0; n < 3000; ++n)
            builder.item(builder.root(), n);
    });
}

void growAtRandom(Builder& builder, Node oParent, std::mt19937& random, int lDepth) {
    const auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    for (int n = pick(14); n > 0; --n) {
        switch (lDepth > 0 ? pick(4) : pick(2)) {
        case 0:
            builder.item(oParent, n);
            break;
        case 1:
            builder.leaf(oParent, "leaf", pick(2) == 0 ? "" : "t\x01>");
            break;
        default:
            const Node oChild = builder.open(oParent, "node");
            growAtRandom(builder, oChild, random, lDepth - 1);
            if (pick(2) == 0)
                builder.complete(oChild);
        }
    }
}

TEST(Sealing, SavesTheSameDocumentForRandomTrees) {
    for (unsigned nSeed = 1; nSeed <= 20; ++nSeed)
        expectSameDocument([nSeed](Builder& builder) {
            std::mt19937 random(nSeed);
            for (int n = 0; n < 3; ++n)
                growAtRandom(builder, builder.root(), random, 4);
            for (int n = 0; n < 800; ++n)
                builder.item(builder.root(), n);
        });
}

/// A root with live elements around a row of sealed ones.
class SealedRow : public testing::Test {
protected:
    SealedRow() {
        builder.leaf(builder.root(), "first", "1");
        seal(1000);
        builder.leaf(builder.root(), "last", "2");
    }

    /// Seals so many items and more, until none is left in the tree: items are given back in batches.
    void seal(int nItems) {
        std::size_t nBefore = 0;
        for (int n = 0; n < nItems || builder.document().memoryUse().nodes > nBefore; ++n) {
            nBefore = builder.document().memoryUse().nodes;
            builder.item(builder.root(), n);
        }
    }

    Builder builder{Sealed::Yes};
};

TEST_F(SealedRow, DoesNotShowInListsSiblingsOrSelections) {
    const Node oRoot = builder.root();
    EXPECT_EQ(oRoot.childNodes().length(), 2);
    EXPECT_THAT(namesOf(oRoot.childNodes()), ElementsAre("first", "last"));
    EXPECT_EQ(oRoot.childNodes().item(1), oRoot.lastChild());
    EXPECT_EQ(oRoot.firstChild().nextSibling(), oRoot.lastChild());
    EXPECT_EQ(oRoot.lastChild().previousSibling(), oRoot.firstChild());
    EXPECT_THAT(namesOf(builder.document().getElementsByTagName("*")), ElementsAre("root", "first", "last"));
    EXPECT_EQ(oRoot.selectNodes("*").length(), 2);
    EXPECT_EQ(oRoot.text(), "12");
}

TEST_F(SealedRow, DoesNotCountAsAChild) {
    Node oRoot = builder.root();
    oRoot.removeChild(oRoot.firstChild());
    oRoot.removeChild(oRoot.lastChild());
    EXPECT_FALSE(oRoot.hasChildNodes());
    EXPECT_FALSE(oRoot.firstChild());
    EXPECT_FALSE(oRoot.lastChild());
    EXPECT_EQ(oRoot.childNodes().length(), 0);
    EXPECT_NE(oRoot.xml(), "<root/>");
}

TEST_F(SealedRow, StaysWhereItIsWhenNodesAreInsertedAroundIt) {
    Node oRoot = builder.root();
    oRoot.insertBefore(element(builder.document(), "x"), oRoot.lastChild());
    const std::string sXml = oRoot.xml();
    EXPECT_LT(sXml.find("<item"), sXml.find("<x/>"));
    EXPECT_GT(sXml.find("<item"), sXml.find("<first>"));
    EXPECT_LT(sXml.find("<x/>"), sXml.find("<last>"));
}

TEST_F(SealedRow, GoesWhenAllChildrenAreReplaced) {
    builder.root().setText("new");
    EXPECT_EQ(builder.document().xml(), "<root>new</root>");
    EXPECT_EQ(builder.document().memoryUse().nodes, 2U + 2U + 2U); // and two detached leaves with their texts
}

TEST_F(SealedRow, IsClonedWithItsParent) {
    EXPECT_EQ(builder.root().cloneNode(true).xml(), builder.root().xml());
    EXPECT_EQ(builder.root().cloneNode(false).xml(), "<root/>");
}

TEST_F(SealedRow, MovesIntoAnotherDocument) {
    const std::string sXml = builder.root().xml();
    const auto oOther = documentOf("<other/>");
    oOther->documentElement().appendChild(builder.root());
    EXPECT_EQ(oOther->xml(), "<other>" + sXml + "</other>");
    builder = Builder(Sealed::Yes);
    EXPECT_EQ(oOther->xml(), "<other>" + sXml + "</other>");
}

TEST_F(SealedRow, IsReleasedWithItsParent) {
    const Node oRoot = builder.document().asNode().removeChild(builder.root());
    builder.document().release(oRoot);
    EXPECT_EQ(builder.document().memoryUse().nodes, 0U);
    EXPECT_EQ(builder.document().xml(), "");
}

TEST(MarkComplete, RefusesNothingOthersAndDetachedNodes) {
    const auto oDocument = documentOf("<r>t<a/></r>");
    const auto oOther = documentOf("<s><b/></s>");
    const auto invalid = number(FailureNumber::InvalidProcedureCall);
    EXPECT_EQ(failureOf([&] { oDocument->markComplete({}); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { oDocument->markComplete(element(*oDocument, "x")); }), invalid);
    EXPECT_EQ(failureOf([&] { oDocument->markComplete(oDocument->documentElement().firstChild()); }),
              invalid);
    EXPECT_EQ(failureOf([&] { oDocument->markComplete(oOther->documentElement().firstChild()); }), invalid);
    EXPECT_EQ(failureOf([&] { oDocument->markComplete(oDocument->asNode()); }), invalid);
}

TEST(MarkComplete, LeavesTheRootElementInTheTree) {
    Builder builder(Sealed::Yes);
    builder.document().markComplete(builder.root());
    for (int n = 0; n < 3000; ++n)
        builder.item(builder.root(), n);
    EXPECT_EQ(builder.document().documentElement().nodeName(), "root");
}

TEST(MarkComplete, ForgetsItemsThatAreTakenOutReleasedOrMoved) {
    Builder builder(Sealed::Yes);
    const auto oOther = documentOf("<other/>");
    Node oTakenOut = builder.open(builder.root(), "takenOut");
    const Node oReleased = builder.open(builder.root(), "released");
    const Node oMoved = builder.open(builder.root(), "moved");
    for (const Node& oItem : {oTakenOut, oReleased, oMoved})
        builder.complete(oItem);
    builder.root().removeChild(oTakenOut);
    builder.root().removeChild(oReleased);
    builder.document().release(oReleased);
    oOther->documentElement().appendChild(oMoved);
    for (int n = 0; n < 3000; ++n)
        builder.item(builder.root(), n);
    EXPECT_EQ(oTakenOut.xml(), "<takenOut/>");
    EXPECT_EQ(oOther->xml(), "<other><moved/></other>");
    EXPECT_EQ(builder.document().xml().find("moved"), std::string::npos);
    // An item that was taken out is an ordinary node again.
    builder.root().appendChild(oTakenOut);
    oTakenOut.setText("used");
    EXPECT_NE(builder.document().xml().find("<takenOut>used</takenOut>"), std::string::npos);
}

TEST(MarkComplete, TakesAnItemTwiceForOnce) {
    expectSameDocument([](Builder& builder) {
        for (int n = 0; n < 3000; ++n) {
            const Node oItem = builder.open(builder.root(), "item");
            builder.complete(oItem);
            if (n % 100 == 50)
                builder.complete(builder.root().lastChild() == oItem ? oItem
                                                                     : builder.open(builder.root(), "x"));
        }
    });
}

TEST(Sealing, CountsTheRepairsOfSealedParts) {
    Builder builder(Sealed::Yes);
    for (int n = 0; n < 5000; ++n) {
        const Node oItem = builder.open(builder.root(), "item");
        builder.leaf(oItem, "bad", "\x01\xFF");
        builder.complete(oItem);
    }
    builder.saved();
    EXPECT_EQ(builder.document().characterRepairs().dropped, 5000U);
    EXPECT_EQ(builder.document().characterRepairs().replaced, 5000U);
}

// ---- The spool on disk

/// More than the spool holds in memory.
void buildLarge(Builder& builder) {
    const std::string sText(1000, 'x');
    for (int n = 0; n < 10000; ++n) {
        const Node oItem = builder.open(builder.root(), "item");
        builder.leaf(oItem, "n", std::to_string(n));
        builder.leaf(oItem, "text", sText);
        builder.complete(oItem);
    }
}

TEST(SpilledSpool, SavesTheSameDocument) {
    const TemporaryFolder folder;
    expectSameDocument([&](Builder& builder) {
        builder.document().setSpoolFolder(folder.path().string());
        buildLarge(builder);
    });
}

TEST(SpilledSpool, LeavesNoFileInItsFolder) {
    const TemporaryFolder folder;
    {
        Builder builder(Sealed::Yes);
        builder.document().setSpoolFolder(folder.path().string());
        buildLarge(builder);
        EXPECT_GT(builder.document().memoryUse().spooledBytes, 8U << 20U);
        // Files without a name are not Windows's: its file goes with the spool.
        EXPECT_EQ(std::filesystem::is_empty(folder.path()), !bWindows);
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(SpilledSpool, ReadsBackslashesInTheNameOfItsFolder) {
    const TemporaryFolder folder;
    Builder builder(Sealed::Yes);
    builder.document().setSpoolFolder(replaceAll(folder.path().string(), "/", "\\"));
    buildLarge(builder);
    EXPECT_FALSE(builder.saved().empty());
}

TEST(SpilledSpool, FailsWhenItsFolderIsMissingAndSoDoesEveryLaterSave) {
    const TemporaryFolder folder;
    Builder builder(Sealed::Yes);
    builder.document().setSpoolFolder(folder.file("missing"));
    EXPECT_EQ(failureOf([&] { buildLarge(builder); }), number(FailureNumber::DeviceIo));
    EXPECT_EQ(failureOf([&] { builder.document().save(folder.file("a.xml")); }),
              number(FailureNumber::DeviceIo));
    EXPECT_EQ(failureOf([&] { builder.item(builder.root(), 1); }), number(FailureNumber::DeviceIo));
    EXPECT_EQ(failureOf([&] { (void)builder.document().xml(); }), number(FailureNumber::DeviceIo));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(SpilledSpool, LeavesATreeWhereItIsWhenAnotherDocumentCannotTakeItsSealedParts) {
    const TemporaryFolder folder;
    Builder builder(Sealed::Yes);
    builder.document().setSpoolFolder(folder.path().string());
    buildLarge(builder);
    const std::string sWhole = builder.document().xml();
    const auto oTarget = documentOf("<t/>");
    oTarget->setSpoolFolder(folder.file("missing"));
    EXPECT_EQ(failureOf([&] { oTarget->documentElement().appendChild(builder.root()); }),
              number(FailureNumber::DeviceIo));
    EXPECT_EQ(builder.document().documentElement(), builder.root());
    EXPECT_EQ(&builder.root().ownerDocument(), &builder.document());
    EXPECT_TRUE(builder.document().xml() == sWhole);
}

TEST(SpilledSpool, FailsOnAFullDiskAndNeverWritesADocumentWithPartsMissing) {
    if (!FileSizeLimit::isPossible)
        GTEST_SKIP() << FileSizeLimit::whyNot;
    const TemporaryFolder folder;
    folder.write("a.xml", "old");
    Builder builder(Sealed::Yes);
    builder.document().setSpoolFolder(folder.path().string());
    {
        const FileSizeLimit limit(9U << 20U);
        EXPECT_EQ(failureOf([&] { buildLarge(builder); }), number(FailureNumber::DeviceIo));
    }
    EXPECT_EQ(failureOf([&] { builder.document().save(folder.file("a.xml")); }),
              number(FailureNumber::DeviceIo));
    EXPECT_EQ(folder.read("a.xml"), "old");
}

} // namespace
} // namespace halvane::test
