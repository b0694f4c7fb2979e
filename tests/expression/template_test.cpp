#include "expression/Template.h"

#include "base/Failure.h"
#include "expression/SqlText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace halvane::test {
namespace {

using expression::Template;
using ::testing::HasSubstr;

/// Each value as "<sql>".
std::string shown(const std::string& sText) {
    std::string sShown;
    const Template pieces(sText);
    for (const auto& piece : pieces.pieces()) {
        sShown += piece.sText;
        if (piece.expression)
            sShown += "<" + sqlText(piece.expression->root()) + ">";
    }
    return sShown;
}

TEST(Templates, AreTextsWithValuesInBraces) {
    EXPECT_EQ(shown("PS_{site_code}"), "PS_<?1>");
    EXPECT_EQ(shown("{a}{b} and {upper(c)}."), "<?1><?1> and <upper(?1)>.");
    EXPECT_EQ(shown(""), "");
    EXPECT_EQ(shown("plain"), "plain");
}

TEST(Templates, TakeADoubledBraceForOneOfTheText) {
    EXPECT_EQ(shown("{{a}"), "{a}");
    EXPECT_EQ(shown("a } b"), "a } b");
    EXPECT_EQ(shown("{{{a}}"), "{<?1>}");
}

TEST(Templates, EndAValueAtTheBraceThatIsInNoText) {
    EXPECT_EQ(shown("{'}' || \"b}\"}!"), "<('}' || ?1)>!");
}

TEST(Templates, AreConstantWithoutAValue) {
    EXPECT_TRUE(Template("").isConstant());
    EXPECT_TRUE(Template("{{").isConstant());
    EXPECT_FALSE(Template("a{b}").isConstant());
    EXPECT_FALSE(Template("{b}").isConstant());
}

TEST(Templates, AreRefusedWhereABraceIsOpen) {
    for (const auto* sText : {"{", "{a", "{a b}", "{}"})
        EXPECT_THROW((void)Template(sText), Failure) << sText;
    try {
        (void)Template("{a b}");
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.description(), "an operator or the closing brace is missing before \"b}\"");
    }
}

} // namespace
} // namespace halvane::test
