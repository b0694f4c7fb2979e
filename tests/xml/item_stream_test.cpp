// Items that are written straight to the spool.

#include "XmlSupport.h"
#include "support/Platform.h"
#include "support/TemporaryFolder.h"

#include "base/Text.h"
#include "xml/dom/ItemStream.h"

#include <array>
#include <filesystem>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace halvane::test {
namespace {

using dom::ItemStream;
using dom::Node;

/// Appends the same elements to a parent: as nodes, or through a stream.
class Target {
public:
    explicit Target(dom::Document& oDocument) : oDocument_(oDocument) {}

    void attach(Node oParent, bool bStream) {
        aNodes_ = {oParent};
        if (bStream)
            stream_.emplace(oParent);
    }
    void detach() { stream_.reset(); }

    std::uint32_t append(std::uint32_t depth, std::string_view sName) {
        if (stream_)
            return stream_->appendElement(depth, *oDocument_.findName(sName));
        aNodes_.resize(depth + 1);
        aNodes_.push_back(aNodes_.back().appendChild(element(oDocument_, sName)));
        return depth + 1;
    }
    void attribute(std::uint32_t depth, std::string_view sName, std::string_view sValue) {
        if (stream_) {
            stream_->addAttribute(depth, *oDocument_.findName(sName));
            stream_->fillAttribute(depth, sName, sValue);
        } else {
            aNodes_.at(depth).setAttribute(sName, sValue);
        }
    }
    void text(std::uint32_t depth, std::string_view sText) {
        if (stream_)
            stream_->setText(depth, sText);
        else
            aNodes_.at(depth).setText(sText);
    }

private:
    dom::Document& oDocument_;
    std::vector<Node> aNodes_;
    std::optional<ItemStream> stream_;
};

struct Saved {
    std::string sBytes;
    dom::CharacterRepairs repairs;
};

Saved saved(dom::Document& oDocument) {
    const TemporaryFolder folder;
    oDocument.breakBetweenTags();
    oDocument.save(folder.file("a.xml"));
    return {folder.read("a.xml").value_or(""), oDocument.characterRepairs()};
}

/// What a document is when `build` appends to its root, as nodes or through a stream.
template<class Build>
Saved built(const Build& build, bool bStream) {
    const auto oDocument = documentOf("<root><before/></root>");
    Target target(*oDocument);
    build(*oDocument, target, bStream);
    target.detach();
    return saved(*oDocument);
}

template<class Build>
void expectSameDocument(const Build& build) {
    const Saved nodes = built(build, false);
    const Saved streamed = built(build, true);
    EXPECT_EQ(streamed.sBytes, nodes.sBytes);
    EXPECT_EQ(streamed.repairs.dropped, nodes.repairs.dropped);
    EXPECT_EQ(streamed.repairs.replaced, nodes.repairs.replaced);
}

TEST(ItemStream, WritesWhatTheTreeWouldWrite) {
    expectSameDocument([](dom::Document& oDocument, Target& target, bool bStream) {
        target.attach(oDocument.documentElement(), bStream);
        for (int n = 0; n < 3; ++n) {
            const auto item = target.append(0, "item");
            target.attribute(item, "n", std::to_string(n));
            target.attribute(item, "m", "a \"quoted\" & <odd>\tvalue");
            target.text(target.append(item, "name"), "a & b <c>");
            target.append(item, "empty");
            const auto group = target.append(item, "group");
            target.text(target.append(group, "deep"), "x");
            target.text(target.append(item, "last"), "y");
        }
    });
}

TEST(ItemStream, KeepsAStartTagOpenOverATextOfWhichNothingIsLeft) {
    expectSameDocument([](dom::Document& oDocument, Target& target, bool bStream) {
        target.attach(oDocument.documentElement(), bStream);
        target.text(target.append(0, "a"), "");
        target.text(target.append(0, "b"), "\x01\x02");
        target.text(target.append(0, "c"), "\xFF!");
    });
}

TEST(ItemStream, WritesTheSameDocumentForRandomItems) {
    for (unsigned nSeed = 0; nSeed < 300; ++nSeed) {
        expectSameDocument([nSeed](dom::Document& oDocument, Target& target, bool bStream) {
            std::mt19937 random(nSeed);
            constexpr std::array<std::string_view, 5> texts{"", "t", "<&>\"", "a\r\nb", "\x03"};
            const auto pick = [&](std::uint32_t n) { return static_cast<std::uint32_t>(random() % n); };
            target.attach(oDocument.documentElement(), bStream);
            std::uint32_t depth = 0;
            for (int n = 0; n < 40; ++n) {
                depth = target.append(pick(depth + 1), "e" + std::to_string(pick(4)));
                if (pick(2) == 0)
                    target.attribute(depth, "a", texts.at(pick(5)));
                if (pick(3) == 0) {
                    target.text(depth, texts.at(pick(5)));
                    --depth; // nothing follows a text inside its element
                }
            }
        });
    }
}

TEST(ItemStream, FollowsSealedItemsAndIsFollowedByOthers) {
    expectSameDocument([](dom::Document& oDocument, Target& target, bool bStream) {
        Node oRoot = oDocument.documentElement();
        for (int n = 0; n < 3000; ++n) {
            Node oItem = oRoot.appendChild(element(oDocument, "sealed"));
            if (bStream)
                oDocument.markComplete(oItem);
        }
        for (int nStream = 0; nStream < 2; ++nStream) {
            target.attach(oRoot, bStream);
            target.append(0, "streamed");
            target.detach();
        }
        for (int n = 0; n < 3000; ++n) {
            Node oItem = oRoot.appendChild(element(oDocument, "after"));
            if (bStream)
                oDocument.markComplete(oItem);
        }
    });
}

TEST(ItemStream, LeavesNoTraceWhenNothingWasAppended) {
    const auto oDocument = documentOf("<root/>");
    static_cast<void>(ItemStream(oDocument->documentElement()));
    EXPECT_EQ(oDocument->xml(), "<root/>");
    EXPECT_FALSE(oDocument->documentElement().hasChildNodes());
}

TEST(ItemStream, LeavesAnAttributeEmptyWhoseValueIsNeverTold) {
    const auto oDocument = documentOf("<root/>");
    {
        ItemStream stream(oDocument->documentElement());
        const auto item = stream.appendElement(0, *oDocument->findName("item"));
        stream.addAttribute(item, *oDocument->findName("a"));
        stream.addAttribute(item, *oDocument->findName("b"));
        stream.appendElement(item, *oDocument->findName("c"));
    }
    oDocument->breakBetweenTags();
    EXPECT_EQ(oDocument->xml(), "<root>\r\n<item a=\"\" b=\"\">\r\n<c/>\r\n</item>\r\n</root>");
}

TEST(ItemStream, RefusesWhatComesTooLate) {
    const auto oDocument = documentOf("<root/>");
    const dom::Name& name = *oDocument->findName("n");
    ItemStream stream(oDocument->documentElement());
    const auto item = stream.appendElement(0, name);
    EXPECT_EQ(failureOf([&] { stream.fillAttribute(item, "n", "v"); }),
              number(FailureNumber::ObjectVariableNotSet));
    stream.addAttribute(item, name);
    EXPECT_EQ(failureOf([&] { stream.fillAttribute(item, "other", "v"); }),
              number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { stream.fillAttribute(item + 1, "n", "v"); }),
              number(FailureNumber::ObjectVariableNotSet));
    stream.setText(item, "text");
    EXPECT_EQ(failureOf([&] { stream.fillAttribute(item, "n", "v"); }),
              number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { stream.addAttribute(item, name); }), number(FailureNumber::ActionNotSupported));
}

TEST(ItemStream, WritesElementsOfOneTextAsTheTreeWould) {
    const auto oDocument = documentOf("<root/>");
    {
        ItemStream stream(oDocument->documentElement());
        for (const auto* sText : {"a<b", "\u00e9", "\nline", "\x01 x", "\x01", ""})
            stream.appendElement(0, *oDocument->findName("n"), sText, dom::TextKind::Any);
    }
    const auto oTree = documentOf("<root/>");
    for (const auto* sText : {"a<b", "\u00e9", "\nline", "\x01 x", "\x01", ""})
        oTree->documentElement().appendChild(element(*oTree, "n")).setText(sText);
    oTree->breakBetweenTags();
    oDocument->breakBetweenTags();
    EXPECT_EQ(oDocument->xml(), oTree->xml());
}

TEST(ItemStream, GoesOnWhereEarlierOnesOfTheParentEnded) {
    const auto oDocument = documentOf("<root/>");
    for (int n = 0; n < 5; ++n) {
        ItemStream stream(oDocument->documentElement());
        stream.appendElement(0, *oDocument->findName("n" + std::to_string(n)));
    }
    oDocument->breakBetweenTags();
    EXPECT_EQ(oDocument->xml(), "<root>\r\n<n0/>\r\n<n1/>\r\n<n2/>\r\n<n3/>\r\n<n4/>\r\n</root>");
}

TEST(ItemStream, LeavesCompletedItemsInTheTreeUntilItEnds) {
    const auto oDocument = documentOf("<root><stream/><tree/></root>");
    Node oTree = oDocument->documentElement().lastChild();
    const auto addItem = [&] { oDocument->markComplete(oTree.appendChild(element(*oDocument, "item"))); };
    constexpr int many = 5000;
    {
        ItemStream stream(oDocument->documentElement().firstChild());
        stream.appendElement(0, *oDocument->findName("n"));
        for (int n = 0; n < many; ++n)
            addItem();
        EXPECT_EQ(oTree.childNodes().length(), many);
    }
    addItem();
    EXPECT_EQ(oTree.childNodes().length(), 0);
    oDocument->breakBetweenTags();
    const std::string sXml = oDocument->xml();
    EXPECT_TRUE(sXml.starts_with("<root>\r\n<stream>\r\n<n/>\r\n</stream>\r\n<tree>\r\n<item/>"))
        << sXml.substr(0, 90);
    EXPECT_TRUE(sXml.ends_with("<item/>\r\n</tree>\r\n</root>"));
}

TEST(ItemStream, IsTheOnlyOneOfItsDocument) {
    const auto oDocument = documentOf("<root><a/></root>");
    const ItemStream stream(oDocument->documentElement());
    EXPECT_EQ(failureOf([&] { const ItemStream other(oDocument->documentElement().firstChild()); }),
              number(FailureNumber::ActionNotSupported));
}

TEST(ItemStream, FailsWhenTheSpoolCannotBeWrittenAndSoDoesTheSave) {
    const TemporaryFolder folder;
    const auto oDocument = documentOf("<root/>");
    oDocument->setSpoolFolder(folder.file("missing"));
    const std::string sLarge(1U << 20U, 'x');
    {
        ItemStream stream(oDocument->documentElement());
        EXPECT_EQ(failureOf([&] {
                      for (int n = 0; n < 12; ++n)
                          stream.setText(stream.appendElement(0, *oDocument->findName("n")), sLarge);
                  }),
                  number(FailureNumber::DeviceIo));
        EXPECT_EQ(failureOf([&] { stream.requireWhole(); }), number(FailureNumber::DeviceIo));
    }
    EXPECT_EQ(failureOf([&] { oDocument->save(folder.file("a.xml")); }), number(FailureNumber::DeviceIo));
}

// ---- The spool as the file ----

/// A document with more streamed items than a spool keeps in memory.
/// Temporary files of Windows go with their handles.
constexpr bool bSpoolCanBeKept = !bWindows;

class LargeStream : public ::testing::Test {
protected:
    LargeStream() {
        oDocument_->setSpoolFolder(folder_.path().string());
        Node oRoot = oDocument_->documentElement();
        oGroup_ = oRoot.appendChild(element(*oDocument_, "group"));
        streamInto(oGroup_);
    }

    /// More than a spool keeps in memory.
    void streamInto(Node oParent) {
        ItemStream stream(oParent);
        for (int n = 0; n < 12; ++n)
            stream.setText(stream.appendElement(0, *oDocument_->findName("n")), sLarge_);
    }
    void streamOneInto(Node oParent) {
        ItemStream stream(oParent);
        stream.appendElement(0, *oDocument_->findName("one"));
    }
    /// More nodes than are written twice to see what surrounds the spooled items.
    void fill(Node oParent) {
        for (int n = 0; n < 100'001; ++n)
            oParent.appendChild(element(*oDocument_, "a"));
    }

    [[nodiscard]] std::string expected(std::string_view sGroup) const {
        std::string sText = "<root>\r\n<before/>\r\n" + std::string(sGroup);
        for (int n = 0; n < 12; ++n)
            sText += "\r\n<n>" + sLarge_ + "</n>";
        return sText + "\r\n</group>\r\n</root>";
    }
    std::string savedLast() {
        oDocument_->breakBetweenTags();
        oDocument_->saveLast(folder_.file("a.xml"));
        return folder_.read("a.xml").value_or("");
    }
    /// Whether the sealed items went into the file, and out of the document.
    [[nodiscard]] bool isGone() const {
        return failureOf([&] { (void)oDocument_->xml(); }) == number(FailureNumber::DeviceIo);
    }

    TemporaryFolder folder_;
    std::string sLarge_ = std::string(1U << 20U, 'x');
    dom::DocumentPtr oDocument_ = documentOf("<root><before/></root>");
    Node oGroup_;
};

TEST_F(LargeStream, BecomesTheFileWithoutBeingCopied) {
    EXPECT_EQ(savedLast(), expected("<group>"));
    EXPECT_EQ(isGone(), bSpoolCanBeKept);
    oDocument_.reset();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1)
        << "only the document is left";
}

TEST_F(LargeStream, IsCopiedWhenSomethingInFrontOfItHasChangedSince) {
    oGroup_.setAttribute("late", "1");
    EXPECT_EQ(savedLast(), expected("<group late=\"1\">"));
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, IsCopiedWhenOtherItemsWereSealedToo) {
    Node oRoot = oDocument_->documentElement();
    {
        ItemStream stream(oRoot);
        stream.appendElement(0, *oDocument_->findName("after"));
    }
    const std::string sSaved = savedLast();
    EXPECT_TRUE(sSaved.ends_with("</group>\r\n<after/>\r\n</root>"));
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, IsCopiedWhenItemsInFrontOfItWereStreamedLater) {
    streamOneInto(oDocument_->documentElement().firstChild());
    const std::string sSaved = savedLast();
    EXPECT_TRUE(sSaved.starts_with("<root>\r\n<before>\r\n<one/>\r\n</before>\r\n<group>\r\n<n>xx"));
    EXPECT_TRUE(sSaved.ends_with("xx</n>\r\n</group>\r\n</root>"));
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, IsCopiedWhenItsParentGoesOnBehindAnothers) {
    streamOneInto(oDocument_->documentElement().firstChild());
    streamOneInto(oGroup_);
    oDocument_->documentElement().removeChild(oDocument_->documentElement().firstChild());
    const std::string sSaved = savedLast();
    EXPECT_TRUE(sSaved.starts_with("<root>\r\n<group>\r\n<n>xx"));
    EXPECT_TRUE(sSaved.ends_with("xx</n>\r\n<one/>\r\n</group>\r\n</root>"));
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, IsCopiedWhenItStandsInTheDocumentTwice) {
    oDocument_->documentElement().appendChild(oGroup_.cloneNode(true));
    const std::string sOnce = expected("<group>");
    const std::string sGroup = sOnce.substr(sOnce.find("<group>"));
    EXPECT_EQ(savedLast(), sOnce.substr(0, sOnce.size() - std::string_view("</root>").size()) + sGroup);
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, IsCopiedWhenTheTreeAroundItIsLarge) {
    fill(oDocument_->documentElement());
    const std::string sSaved = savedLast();
    EXPECT_TRUE(sSaved.starts_with(expected("<group>").substr(0, sLarge_.size())));
    EXPECT_TRUE(sSaved.ends_with("</group>" + replaceAll(std::string(100'001, 'a'), "a", "\r\n<a/>") +
                                 "\r\n</root>"));
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, IsCopiedWhenTheTreeAroundItWasLarge) {
    oDocument_ = documentOf("<root><before/></root>");
    oDocument_->setSpoolFolder(folder_.path().string());
    oGroup_ = oDocument_->documentElement().appendChild(element(*oDocument_, "group"));
    Node oBefore = oDocument_->documentElement().firstChild();
    fill(oBefore);
    streamInto(oGroup_);
    while (oBefore.hasChildNodes())
        oDocument_->release(oBefore.removeChild(oBefore.firstChild()));
    EXPECT_EQ(savedLast(), expected("<group>"));
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, IsCopiedWhenSmallOnesStandInFrontOfIt) {
    oDocument_ = documentOf("<root><before/></root>");
    oDocument_->setSpoolFolder(folder_.path().string());
    oGroup_ = oDocument_->documentElement().appendChild(element(*oDocument_, "group"));
    streamOneInto(oDocument_->documentElement().firstChild());
    streamInto(oGroup_);
    const std::string sSaved = savedLast();
    EXPECT_TRUE(sSaved.starts_with("<root>\r\n<before>\r\n<one/>\r\n</before>\r\n<group>\r\n<n>xx"));
    EXPECT_TRUE(sSaved.ends_with("xx</n>\r\n</group>\r\n</root>"));
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, IsLeftOutWhenItsParentHasBeenTakenOut) {
    oDocument_->documentElement().removeChild(oGroup_);
    EXPECT_EQ(savedLast(), "<root>\r\n<before/>\r\n</root>");
}

TEST_F(LargeStream, StaysInTheDocumentAtAnOrdinarySave) {
    oDocument_->breakBetweenTags();
    oDocument_->save(folder_.file("a.xml"));
    EXPECT_EQ(folder_.read("a.xml"), expected("<group>"));
    EXPECT_FALSE(isGone());
}

TEST_F(LargeStream, KeepsThePermissionsOfTheFileThatItReplaces) {
    if (bWindows)
        GTEST_SKIP() << "a new file of Windows has the access rights of its folder";
    folder_.write("a.xml", "old");
    std::filesystem::permissions(folder_.file("a.xml"), std::filesystem::perms(0640));
    EXPECT_EQ(savedLast(), expected("<group>"));
    EXPECT_EQ(std::filesystem::status(folder_.file("a.xml")).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(isGone(), bSpoolCanBeKept);
}

TEST_F(LargeStream, HasThePermissionsOfAnyNewFile) {
    const auto permissionsOf = [&](const std::string& sName) {
        return std::filesystem::status(folder_.file(sName)).permissions();
    };
    folder_.write("other", "");
    savedLast();
    EXPECT_EQ(permissionsOf("a.xml"), permissionsOf("other"));
}

TEST_F(LargeStream, LeavesTheOldFileWhenTheTargetCannotBeReplaced) {
    std::filesystem::create_directory(folder_.file("a.xml"));
    EXPECT_NE(failureOf([&] { savedLast(); }), 0);
    EXPECT_TRUE(std::filesystem::is_directory(folder_.file("a.xml")));
}

} // namespace
} // namespace halvane::test
