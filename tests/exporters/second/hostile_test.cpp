// What nobody means well: each is refused before anything is written, or told with nothing in its place.

#include "base/Text.h"
#include "exporters/second/SecondEditionTest.h"
#include "support/HostileExpressions.h"

#include <gmock/gmock.h>

#include <vector>

namespace halvane::test {

namespace {

using ::testing::StartsWith;
using Cases = std::vector<std::string>;

class HostileControlFiles : public SecondEditionTest {
protected:
    static std::string escaped(const std::string& sText) {
        return replaceAll(replaceAll(replaceAll(sText, "&", "&amp;"), "<", "&lt;"), "\"", "&quot;");
    }
    void expectRefused(const std::string& sBefore, const Cases& values, const std::string& sAfter = "\"/>") {
        for (const auto& sValue : values)
            EXPECT_THAT(in(sBefore + escaped(sValue) + sAfter), StartsWith("not saved: ")) << sValue;
    }
    void expectRootRefused(const std::string& sAttribute, const Cases& values) {
        for (const auto& sValue : values)
            EXPECT_THAT(out("<a Name='A' h:Text='1'/>", sAttribute + "=\"" + escaped(sValue) + "\""),
                        StartsWith("not saved: "))
                << sValue;
    }
    /// Each leaves the element empty, or out, and is told.
    void expectTold(const Cases& expressions) {
        for (const auto& sExpression : expressions) {
            const std::string sWritten = inRoads("<n Name='N' h:Text=\"{" + escaped(sExpression) + "}\"/>");
            EXPECT_EQ(sWritten, "<R/><R/><R/>") << sExpression;
            EXPECT_NE(failures(), "") << sExpression;
        }
    }
};

TEST_F(HostileControlFiles, HaveNoExpressionsThatAreNone) {
    EXPECT_GE(noExpressions().size(), 100U);
    expectRefused("<a Name='A' h:When=\"", noExpressions());
    Cases texts;
    for (const auto& sExpression : noExpressions())
        if (sExpression != "NAME}" && sExpression != "{NAME}")
            texts.push_back("{" + sExpression + "}");
    expectRefused("<a Name='A' h:Text=\"", texts);
}

TEST_F(HostileControlFiles, HaveNoExpressionsWithoutMeasure) {
    const auto times = [](std::size_t nTimes, const std::string& sText) {
        std::string sAll;
        for (std::size_t n = 0; n < nTimes; ++n)
            sAll += sText;
        return sAll;
    };
    expectRefused("<a Name='A' h:When=\"",
                  {times(101, "(") + "1" + times(101, ")"), times(2000, "1 + ") + "1", times(200, "- ") + "1",
                   times(200, "NOT ") + "1", "'" + times(70000, "x") + "'",
                   times(40, "abs(") + "1" + times(40, ")"), times(40, "CASE WHEN ") + "1"});
}

TEST_F(HostileControlFiles, TellWhatCannotBeComputed) {
    // Texts beyond half the limit would grow byte by byte, which some allocators take minutes for.
    const std::string sLong = "printf('%.*c', 400000, 'x')";
    expectTold({"abs(-9223372036854775807 - 1)", "replace(" + sLong + ", 'x', 'xxxx')",
                "hex(" + sLong + " || " + sLong + ")", "NAME LIKE printf('%.*c', 2000, '%a')",
                sLong + " || " + sLong + " || " + sLong});
}

TEST_F(HostileControlFiles, HaveNoNamesOrNamespacesThatAreNone) {
    const Cases names{"xmlns", "xmlns:a", "xmlns:h", "h:a",  "p:a", ":a",  "a:",
                      "a:b:c", "1a",      "-a",      "a b<", "a/b", "a&b", "<a"};
    for (const auto& sName : names) {
        const std::string sWritten = in("<n Name=\"" + escaped(sName) + "\" h:Text='x'/>");
        EXPECT_TRUE(sWritten.starts_with("not saved: ") || !failures().empty()) << sName << ": " << sWritten;
    }
    EXPECT_THAT(in("<n Name='a' h:Nothing='x'/>"), StartsWith("not saved: "));
    EXPECT_THAT(in("<n Name='a' h:text='x'/>"), StartsWith("not saved: "));
    EXPECT_THAT(in("<n Name='p:a' xmlns:p='urn:halvane:control:2' h:Text='x'/>"), StartsWith("not saved: "));
    EXPECT_THAT(in("<n Name='p:a' Target='Attribute' xmlns:p='urn:q' h:Text='x'/>"),
                ::testing::Not(StartsWith("<Out>")));
}

TEST_F(HostileControlFiles, HaveNoWordsThatAreNone) {
    expectRefused("<a Name='A' h:Omit=\"", {"", "empty", "self", "Self ", "Both", "Empty;Self"});
    expectRefused("<a Name='A' DataSource='Feature' h:Rows=\"", {"", "each", "All", "1"});
    expectRefused("<a Name='A' h:ForEach=\"", {"", "layer", "Layers", "*", "Map,Layer", "Feature", "Row"});
    expectRefused("<a Name='A' h:Text='x' h:As=\"", {"", "XML", "html", "text"});
    expectRefused("<a Name='A' h:Indent=\"", {"", "None", "2", "no"});
    expectRefused("<a Name='A' h:Geometry=\"", {"", "gml", "Gml", "WKB", "x", "bbox", "GML;KML"});
    expectRefused("<a Name='A' h:Axes=\"", {"", "XY", "yx,", "lonlat"});
    expectRefused("<a Name='A' h:Format=\"", {"", ";", "xs;xs", "0,0", "domain;domain", "yyy", "0.0;00"});
    expectRefused("<a Name='A' DataSource='Feature' Entries='Multiple' h:Limit=\"",
                  {"", "NAME", "1;", "{1}", "$x", "-1", "1.5", "$who"});
    expectRefused("<a Name='A' DataSource='Feature' Entries='Multiple' h:OrderBy=\"",
                  {"", ",", "NAME,", ",NAME", "NAME up", "NAME desc asc", "NAME; x", "NAME COLLATE NOCASE"});
    expectRefused("<a Name='A' DataSource='RelatedTable' h:Rows='Each' h:Link=\"",
                  {"", "=", "a", "a=", "=b", "a=b,", "a=b,c"});
    expectRefused("<a Name='A' h:Include=\"", {"part.xml", "../part.xml", "/etc/passwd", ""});
}

TEST_F(HostileControlFiles, HaveNoDocumentsThatAreNone) {
    expectRootRefused("h:Declaration", {"", "UTF-16", "latin1", "UTF-8\" x=\"", "1.0"});
    expectRootRefused("h:Doctype", {"", "x", "Out [", "Out [<!ENTITY a 'b'>]", "Out SYSTEM", "Out PUBLIC 'a'",
                                    "Out x", "Out>", "Out SYSTEM 'a' >", "Out SYSTEM \"a", "Outer",
                                    "Out SYSTEM 'a'><x", "Out PUBLIC \"\xC3\xBC\" \"b\""});
    expectRootRefused("h:Indent", {"", "-1", "17", "99999999999999999999", "1e1", "tab", " 2"});
    expectRootRefused("h:Needs", {"nobody", "who, nobody", "a,b"});
    expectRootRefused("h:Text", {"x"});
    expectRootRefused("h:When", {"1"});
    expectRootRefused("h:Omit", {"Empty"});
    expectRootRefused("h:ForEach", {"Map"});
}

TEST_F(HostileControlFiles, HaveNoReferencesButCodes) {
    expectRefused("<a Name='A' h:Text='x' h:Crs=\"",
                  {"", "4326", "EPSG", "EPSG:", ":4326", "EPSG:x y", "+proj=longlat", "+init=epsg:4326",
                   "/etc/passwd", "file:///etc/passwd", "http://localhost/", "urn:ogc:def:crs:EPSG::4326",
                   "GEOGCS[\"x\"]", "EPSG:4326+5773", "EPSG:4326;x", "../../x:1", "EPSG:999999"});
}

} // namespace

} // namespace halvane::test
