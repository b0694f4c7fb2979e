#include "base/Text.h"

#include <gtest/gtest.h>

namespace halvane {

TEST(UpperCase, MapsLettersOfEveryScriptByTheirSimpleMapping) {
    EXPECT_EQ(upperCase("Layer name 7"), "LAYER NAME 7");
    EXPECT_EQ(upperCase("größe"), "GRÖßE");
    EXPECT_EQ(upperCase("éàñ"), "ÉÀÑ");
    EXPECT_EQ(upperCase("σς"), "ΣΣ");
    EXPECT_EQ(upperCase("дорога"), "ДОРОГА");
    EXPECT_EQ(upperCase("ﬁ"), "ﬁ");
    EXPECT_EQ(upperCase("ı"), "I");
    EXPECT_EQ(upperCase("𐐨"), "𐐀");
}

TEST(UpperCase, LeavesInvalidBytesAsTheyAre) {
    EXPECT_EQ(upperCase("a\xFF"
                        "b\xC3"),
              "A\xFF"
              "B\xC3");
    EXPECT_EQ(upperCase("\xED\xA0\x80x"), "\xED\xA0\x80X");
}

TEST(LowerCase, MapsLettersOfEveryScriptByTheirSimpleMapping) {
    EXPECT_EQ(lowerCase("LAYER Name 7"), "layer name 7");
    EXPECT_EQ(lowerCase("GRÖSSE ДОРОГА Σ"), "grösse дорога σ");
    EXPECT_EQ(lowerCase("A\xFF"), "a\xFF");
}

TEST(EqualIgnoringCase, ComparesUpperCasedTexts) {
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_TRUE(equalIgnoringCase("Roads", "rOADS"));
    EXPECT_TRUE(equalIgnoringCase("Größe", "GRÖßE"));
    EXPECT_TRUE(equalIgnoringCase("ΣΟΦΟΣ", "σοφος"));
    EXPECT_FALSE(equalIgnoringCase("roads", "road"));
    EXPECT_FALSE(equalIgnoringCase("road", "roads"));
    EXPECT_FALSE(equalIgnoringCase("roads", "roadz"));
    EXPECT_FALSE(equalIgnoringCase("größe", "grosse"));
}

TEST(EqualIgnoringCase, MatchesLettersWhoseEncodingsDifferInLength) {
    EXPECT_TRUE(equalIgnoringCase("ı", "i"));
    EXPECT_TRUE(equalIgnoringCase("ſmall", "SMALL"));
    EXPECT_FALSE(equalIgnoringCase("ß", "SS"));
}

TEST(EqualIgnoringCase, TellsInvalidBytesApart) {
    EXPECT_TRUE(equalIgnoringCase("a\xFE", "A\xFE"));
    EXPECT_FALSE(equalIgnoringCase("\xFE", "\xFF"));
    EXPECT_FALSE(equalIgnoringCase("\xE9", "é"));
}

TEST(HashIgnoringCase, IsTheSameForTextsThatAreEqualWhenUpperCased) {
    EXPECT_EQ(hashIgnoringCase("Größe"), hashIgnoringCase("gRÖßE"));
    EXPECT_EQ(hashIgnoringCase("ı"), hashIgnoringCase("I"));
    EXPECT_NE(hashIgnoringCase("NAME1"), hashIgnoringCase("NAME2"));
}

TEST(ContainsIgnoringCase, FindsTheUpperCaseNeedleInAnyCase) {
    EXPECT_TRUE(containsIgnoringCase("out.Xml", "XML"));
    EXPECT_TRUE(containsIgnoringCase("myxmlfile", "XML"));
    EXPECT_TRUE(containsIgnoringCase("xml", "XML"));
    EXPECT_TRUE(containsIgnoringCase("straße.xml", "XML"));
    EXPECT_TRUE(containsIgnoringCase("grünland", "GRÜN"));
    EXPECT_TRUE(containsIgnoringCase("a", ""));
    EXPECT_FALSE(containsIgnoringCase("xm", "XML"));
    EXPECT_FALSE(containsIgnoringCase("x.m.l", "XML"));
    EXPECT_FALSE(containsIgnoringCase("ü", "XML"));
}

TEST(TrimBlanks, RemovesSpacesAtBothEndsOnly) {
    EXPECT_EQ(trimBlanks("  a b  "), "a b");
    EXPECT_EQ(trimBlanks("   "), "");
    EXPECT_EQ(trimBlanks(""), "");
    EXPECT_EQ(trimBlanks("\ta\n"), "\ta\n");
}

TEST(ReplaceAll, ReplacesEveryOccurrenceFromTheLeft) {
    EXPECT_EQ(replaceAll("a b c", " ", ""), "abc");
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replaceAll("a\\b\\", "\\", "/"), "a/b/");
    EXPECT_EQ(replaceAll("x", "x", "xx"), "xx");
    EXPECT_EQ(replaceAll("", "x", "y"), "");
}

} // namespace halvane
