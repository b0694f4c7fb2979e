// Where documents have their line breaks when they stand between tags alone.

#include "XmlSupport.h"
#include "xml/dom/ItemStream.h"
#include "xml/dom/Layout.h"

#include "io/OutputBuffer.h"

namespace halvane::test {
namespace {

using dom::ItemStream;
using dom::Layout;
using dom::Node;

std::string written(dom::Document& document) {
    std::string sText;
    io::StringSink sink(sText);
    document.saveTo(sink);
    return sText;
}

dom::DocumentPtr laidOut(std::string_view sXml, std::uint32_t nIndent, std::string_view sBreak = "\n") {
    auto oDocument = documentOf(sXml);
    oDocument->setLayout({true, std::string(sBreak), nIndent});
    return oDocument;
}

TEST(Layouts, IndentEachDepthBehindTheBreak) {
    const Layout layout{true, "\n", 4};
    EXPECT_EQ(layout.at(0), "\n");
    EXPECT_EQ(layout.at(1), "\n    ");
    EXPECT_EQ(layout.at(8), "\n" + std::string(32, ' '));
    EXPECT_EQ(layout.at(9), "\n" + std::string(36, ' ')) << "further than the blanks at hand";
    EXPECT_EQ((Layout{true, "", 4}.at(3)), "") << "without breaks there is nothing to indent";
    EXPECT_EQ((Layout{true, "\r\n", 0}.at(3)), "\r\n");
}

TEST(Layouts, StandBetweenTagsAndNotBesideTexts) {
    EXPECT_EQ(written(*laidOut("<r><a>t</a><b><c/></b><!--d--><?p q?><e>t<f/></e></r>", 2)),
              "<r>\n  <a>t</a>\n  <b>\n    <c/>\n  </b>\n  <!--d-->\n  <?p q?>\n  <e>t<f/>\n  </e>\n</r>");
}

TEST(Layouts, LeaveElementsInOneLineThatAreMarkedSo) {
    const auto oDocument = laidOut("<r><a><b><c/></b><d/></a><e/></r>", 1);
    oDocument->documentElement().firstChild().setInline();
    EXPECT_EQ(written(*oDocument), "<r>\n <a><b><c/></b><d/></a>\n <e/>\n</r>");
}

/// Items below <r><g/><h/></r>, whose first group is in one line.
class LaidOutItems : public testing::Test {
protected:
    static constexpr int nItems = 3000;

    LaidOutItems() : oDocument_(laidOut("<r><g/><h/></r>", 1)) {
        oDocument_->documentElement().firstChild().setInline();
    }
    [[nodiscard]] static std::string expected() {
        std::string sInline = "<r>\n <g>";
        std::string sBroken;
        for (int n = 0; n < nItems; ++n) {
            sInline += "<i><n>" + std::to_string(n) + "</n></i>";
            sBroken += "  <i>\n   <n>" + std::to_string(n) + "</n>\n  </i>\n";
        }
        return sInline + "</g>\n <h>\n" + sBroken + " </h>\n</r>";
    }

    dom::DocumentPtr oDocument_;
};

TEST_F(LaidOutItems, LookAlikeOnceTheyAreSealed) {
    for (Node oGroup = oDocument_->documentElement().firstChild(); oGroup; oGroup = oGroup.nextSibling())
        for (int n = 0; n < nItems; ++n) {
            Node oItem = oGroup.appendChild(element(*oDocument_, "i"));
            oItem.appendChild(element(*oDocument_, "n")).setText(std::to_string(n));
            oDocument_->markComplete(oItem);
        }
    EXPECT_GT(oDocument_->memoryUse().spooledBytes, 0U);
    EXPECT_EQ(written(*oDocument_), expected());
}

TEST_F(LaidOutItems, LookAlikeWhenTheyAreStreamed) {
    for (const char* pName : {"i", "n"})
        static_cast<void>(element(*oDocument_, pName)); // their names are known then
    for (Node oGroup = oDocument_->documentElement().firstChild(); oGroup; oGroup = oGroup.nextSibling()) {
        ItemStream stream(oGroup);
        for (int n = 0; n < nItems; ++n) {
            const auto item = stream.appendElement(0, *oDocument_->findName("i"));
            stream.setText(stream.appendElement(item, *oDocument_->findName("n")), std::to_string(n));
        }
    }
    EXPECT_EQ(written(*oDocument_), expected());
}

TEST_F(LaidOutItems, AreInOneLineFromWhereTheStreamSays) {
    for (const char* pName : {"i", "n"})
        static_cast<void>(element(*oDocument_, pName));
    {
        ItemStream stream(oDocument_->documentElement().lastChild());
        for (int n = 0; n < 2; ++n) {
            const auto item = stream.appendElement(0, *oDocument_->findName("i"));
            stream.setInline(item);
            stream.setText(stream.appendElement(item, *oDocument_->findName("n")), "\x7F");
            stream.appendElement(item, *oDocument_->findName("n"));
        }
    }
    EXPECT_EQ(written(*oDocument_),
              "<r>\n <g/>\n <h>\n  <i><n>\x7F</n><n/></i>\n  <i><n>\x7F</n><n/></i>\n </h>\n</r>");
}

} // namespace
} // namespace halvane::test
