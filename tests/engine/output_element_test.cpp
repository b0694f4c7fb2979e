// The elements that output goes to: of the tree, written straight to the spool, or held back.

#include "engine/output/HeldElement.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

namespace halvane::test {

namespace {

/// An element of the tree and one that is streamed, in two documents that must become the same.
class OutputElements : public ::testing::TestWithParam<bool> {
protected:
    OutputElements() {
        EXPECT_TRUE(oDocument->loadXML("<a/>"));
        if (GetParam())
            stream.emplace(oDocument->documentElement());
    }

    [[nodiscard]] const dom::Name& name(std::string_view sName) const { return *oDocument->findName(sName); }
    /// Appended to the root.
    [[nodiscard]] OutputElement append(std::string_view sName) {
        const OutputElement oRoot = stream ? OutputElement(*stream, 0) : oDocument->documentElement();
        return oRoot.appendElement(name(sName));
    }
    /// What the root holds.
    [[nodiscard]] std::string written() {
        stream.reset();
        const std::string sXml =
            replaceAll(replaceAll(oDocument->documentElement().xml(), "\r", ""), "\n", "");
        return sXml == "<a/>" ? "" : sXml.substr(3, sXml.size() - 7);
    }
    static std::int32_t numberOf(const std::function<void()>& fnAct) {
        try {
            fnAct();
        } catch (const Failure& failure) {
            return failure.number();
        }
        return 0;
    }

    dom::DocumentPtr oDocument = dom::Document::create();
    std::optional<dom::ItemStream> stream;
};

constexpr auto lNotSet = static_cast<std::int32_t>(FailureNumber::ObjectVariableNotSet);

TEST_P(OutputElements, HoldTextsSectionsAndElementsInTheirOrder) {
    const OutputElement oB = append("b");
    oB.setAttribute(name("x"), "1");
    oB.appendText("");
    oB.appendText("t");
    oB.appendCData("");
    oB.appendCData("<c>");
    oB.appendElement(name("d"), "u", TextKind::Plain);
    EXPECT_EQ(oB.isStreamed(), GetParam());
    EXPECT_FALSE(oB.isNothing());
    EXPECT_FALSE(oB.isHeld());
    EXPECT_EQ(written(), "<b x=\"1\">t<![CDATA[<c>]]><d>u</d></b>");
}

TEST_P(OutputElements, HaveNoAttributeToFillThatNobodyMade) {
    const OutputElement oB = append("b");
    oB.setAttribute(name("x"), "");
    oB.fillAttribute("x", "1");
    EXPECT_EQ(numberOf([&] { oB.fillAttribute("y", "2"); }), lNotSet);
    EXPECT_EQ(written(), "<b x=\"1\"/>");
}

TEST_P(OutputElements, KnowTheElementAround) {
    const OutputElement oB = append("b");
    const OutputElement oC = oB.appendElement(name("c"));
    oC.parent().appendElement(name("d"), "", TextKind::Plain);
    HeldElement held(oB, name("e"));
    HeldElement inside(held.output(), name("f"));
    HeldElement attributes(inside.output());
    attributes.output().parent().appendElement(name("g"), "", TextKind::Plain);
    inside.output().parent().appendElement(name("h"), "", TextKind::Plain);
    EXPECT_EQ(written(), "<b><c/><d/><e><g/><h/></e></b>");
}

TEST_P(OutputElements, AreMadeWithTheirFirstContent) {
    const OutputElement oB = append("b");
    HeldElement held(oB, name("c"));
    EXPECT_TRUE(held.output().isHeld());
    EXPECT_FALSE(held.output().isNothing());
    EXPECT_EQ(held.output().name(), "c");
    held.output().setConstantAttribute(name("x"), "1");
    held.output().setConstantAttribute(name("x"), "2");
    held.output().setAttribute(name("y"), "");
    held.output().setText("");
    held.output().appendText("");
    held.output().appendCData("");
    EXPECT_FALSE(held.isMade());
    EXPECT_EQ(numberOf([&] { held.output().fillAttribute("z", "3"); }), lNotSet);
    held.output().fillAttribute("y", "");
    EXPECT_FALSE(held.isMade()) << "nothing is no content";
    held.output().fillAttribute("y", "4");
    EXPECT_TRUE(held.isMade());
    EXPECT_EQ(written(), "<b><c x=\"2\" y=\"4\"/></b>");
}

TEST_P(OutputElements, AreLeftOutWithoutContent) {
    const OutputElement oB = append("b");
    {
        HeldElement held(oB, name("c"));
        held.output().setConstantAttribute(name("x"), "1");
        HeldElement inside(held.output(), name("d"));
        inside.output().setInline();
    }
    EXPECT_EQ(written(), "<b/>");
}

TEST_P(OutputElements, TakeAttributesWhenTheyAreMadeToo) {
    const OutputElement oB = append("b");
    HeldElement held(oB, name("c"));
    (void)held.output().made();
    held.output().setInline();
    held.output().setAttribute(name("x"), "1");
    held.output().setConstantAttribute(name("y"), "2");
    held.output().setAttribute(name("z"), "");
    held.output().fillAttribute("z", "3");
    held.output().appendCData("d");
    held.output().setText("");
    EXPECT_EQ(written(), GetParam() ? "<b><c x=\"1\" y=\"2\" z=\"3\"><![CDATA[d]]></c></b>"
                                    : "<b><c x=\"1\" y=\"2\" z=\"3\"/></b>")
        << "a text of the tree takes the place of what was there";
}

TEST_P(OutputElements, MayBeAttributesAlone) {
    const OutputElement oB = append("b");
    HeldElement held(oB);
    EXPECT_EQ(GetParam() ? "b" : held.output().name(), "b");
    held.output().setConstantAttribute(name("x"), "1");
    EXPECT_FALSE(held.isMade());
    held.output().appendText("t");
    EXPECT_TRUE(held.isMade());
    EXPECT_EQ(written(), "<b x=\"1\">t</b>");
}

TEST_P(OutputElements, ShareTheElementThatOthersHaveWrittenInto) {
    const OutputElement oB = append("b");
    oB.appendElement(name("c"), "", TextKind::Plain);
    HeldElement held(oB, name("d"));
    held.output().appendElement(name("e"), "", TextKind::Plain);
    if (!GetParam()) {
        held.output().shared().setText("t");
        oB.shared().setText("u");
        EXPECT_EQ(written(), "<b><c/><d><e/>t</d>u</b>");
    } else {
        EXPECT_EQ(written(), "<b><c/><d><e/></d></b>");
    }
}

INSTANTIATE_TEST_SUITE_P(InTreeAndStream, OutputElements, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Stream" : "Tree"; });

class OutputElementsOfTheTree : public ::testing::Test {
protected:
    OutputElementsOfTheTree() { EXPECT_TRUE(oDocument->loadXML("<a/>")); }
    [[nodiscard]] const dom::Name& name(std::string_view sName) const { return *oDocument->findName(sName); }

    dom::DocumentPtr oDocument = dom::Document::create();
};

TEST_F(OutputElementsOfTheTree, AreTakenBackOnce) {
    const OutputElement oRoot = oDocument->documentElement();
    const OutputElement oB = oRoot.appendElement(name("b"));
    oB.setDeclaration(name("xmlns:g"), "urn:g");
    EXPECT_EQ(oDocument->documentElement().xml(), "<a><b xmlns:g=\"urn:g\"/></a>");
    HeldElement held(oB, name("c"));
    held.output().setDeclaration(name("xmlns"), "urn:c");
    held.output().takeBack();
    EXPECT_EQ(held.output().made().name(), "c") << "what is held is not there yet";
    oB.takeBack();
    oB.takeBack();
    EXPECT_EQ(oDocument->documentElement().xml(), "<a/>");
}

TEST_F(OutputElementsOfTheTree, AreNothingWhereThereIsNone) {
    EXPECT_TRUE(OutputElement().isNothing());
    EXPECT_TRUE(OutputElement(dom::Node()).isNothing());
    OutputElement().takeBack();
    OutputElement(oDocument->documentElement()).parent().takeBack();
    EXPECT_EQ(oDocument->documentElement().xml(), "<a/>");
}

TEST_F(OutputElementsOfTheTree, AreNoNodesWhereTheyAreStreamed) {
    dom::ItemStream stream(oDocument->documentElement());
    const OutputElement oB = OutputElement(stream, 0).appendElement(name("b"));
    EXPECT_THROW((void)oB.node(), Failure);
    HeldElement held(oB, name("c"));
    EXPECT_THROW((void)held.output().node(), Failure);
}

} // namespace

} // namespace halvane::test
