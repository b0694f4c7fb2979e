// What the root says of the document, breaks between tags, and texts that are XML or CDATA sections.

#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

namespace halvane::test {

namespace {

using ::testing::HasSubstr;

class SecondEditionDocuments : public SecondEditionTest {
protected:
    /// With the breaks that were written.
    std::string written(const std::string& sNodes, const std::string& sRootAttributes = "") {
        const std::string sOut = out(sNodes, sRootAttributes);
        return observer.sNotSavedReason ? sOut : rawOutput();
    }
    static std::string roads(const std::string& sNodes) {
        return "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
               "<r Name='R' DataSource='Feature' Entries='Multiple' h:Limit='2'>" +
               sNodes + "</r></l>";
    }
};

TEST_F(SecondEditionDocuments, HaveADeclarationAndATypeWhereTheyAskForThem) {
    EXPECT_EQ(written("<a Name='A' h:Text='1'/>", "h:Declaration='utf-8' h:Indent='0'"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Out>\n<A>1</A>\n</Out>");
    EXPECT_EQ(written("<a Name='A' h:Text='1'/>",
                      "h:Doctype='Out PUBLIC \"-//X//Y\" \"http://x/y.dtd\"' h:Indent='none'"),
              "<!DOCTYPE Out PUBLIC \"-//X//Y\" \"http://x/y.dtd\"><Out><A>1</A></Out>");
    EXPECT_EQ(written("<a Name='A' h:Text='1'/>"), "<Out>\r\n<A>1</A>\r\n</Out>");
}

TEST_F(SecondEditionDocuments, AreIndentedInTheTreeAndInTheStream) {
    EXPECT_EQ(
        written("<a Name='A'><b Name='B' h:Text='1'/><c Name='C'><d Name='D' h:Text=''/></c></a>" +
                    roads("<n Name='N' h:Text='{NAME}'/><g Name='G'><w Name='W' h:Text='{WIDTH}'/></g>"),
                "h:Indent='2'"),
        "<Out>\n  <A>\n    <B>1</B>\n    <C>\n      <D/>\n    </C>\n  </A>\n  <L>\n    <R>\n"
        "      <N>High Street</N>\n      <G>\n        <W>7.25</W>\n      </G>\n    </R>\n    <R>\n"
        "      <N>Mill Lane</N>\n      <G>\n        <W/>\n      </G>\n    </R>\n  </L>\n</Out>");
}

TEST_F(SecondEditionDocuments, HaveNoBreaksWhereTheyAreNotWanted) {
    const std::string sInline = "<p Name='P' h:Indent='none'><b Name='B' h:Text='1'/><c Name='C'><d Name='D' "
                                "h:Text='2'/></c></p><q Name='Q'><s Name='S' h:Text='3'/></q>";
    EXPECT_EQ(written(sInline, "h:Indent='1'"),
              "<Out>\n <P><B>1</B><C><D>2</D></C></P>\n <Q>\n  <S>3</S>\n </Q>\n</Out>");
    EXPECT_EQ(written(roads(sInline)),
              "<Out>\r\n<L>\r\n<R>\r\n<P><B>1</B><C><D>2</D></C></P>\r\n<Q>\r\n<S>3</S>\r\n</Q>\r\n</R>\r\n"
              "<R>\r\n<P><B>1</B><C><D>2</D></C></P>\r\n<Q>\r\n<S>3</S>\r\n</Q>\r\n</R>\r\n</L>\r\n</Out>");
    EXPECT_EQ(written(roads("<n Name='N' h:Text='x'/>"), "h:Indent='none'"),
              "<Out><L><R><N>x</N></R><R><N>x</N></R></L></Out>");
    EXPECT_EQ(written("<l Name='L' h:Indent='none' h:Omit='Empty'><x h:Omit='Self'>" +
                      roads("<n Name='N' h:Text='x'/>") + "</x></l>"),
              "<Out>\r\n<L><L><R><N>x</N></R><R><N>x</N></R></L></L>\r\n</Out>");
}

TEST_F(SecondEditionDocuments, HoldTextsThatAreXml) {
    const std::string sNode = "<p Name='P' h:As='xml' h:Text='some &lt;b k=\"1\"&gt;bold {$Item} &amp;amp; "
                              "&lt;/b&gt; &lt;i/&gt;&lt;i&gt;x&lt;/i&gt;'/>";
    const std::string sBold = "<P>some <b k=\"1\">bold  &amp; </b> <i/><i>x</i></P>";
    EXPECT_EQ(written(sNode), "<Out>\r\n" + sBold + "\r\n</Out>");
    EXPECT_EQ(in(roads(sNode)), "<L><R><P>some <b k=\"1\">bold 1 &amp; </b> <i/><i>x</i></P></R>"
                                "<R><P>some <b k=\"1\">bold 2 &amp; </b> <i/><i>x</i></P></R></L>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionDocuments, HoldXmlInTheNamespacesOfTheControlFile) {
    EXPECT_EQ(out("<x xmlns:a='v' Name='x' h:As='xml' h:Text='&lt;a:q/>'/>", "xmlns:a='u'"),
              "<Out xmlns:a=\"u\"><x><a:q xmlns:a=\"v\"/></x></Out>");
    EXPECT_EQ(out("<x xmlns='' h:Omit='Self' h:As='xml' h:Text='&lt;q/>'/>", "xmlns='u'"),
              "<Out xmlns=\"u\"><q xmlns=\"\"/></Out>");
    EXPECT_EQ(out("<y xmlns:a='v' Name='y'><x Name='x' h:As='xml' h:Text='&lt;a:q>&lt;a:r/>&lt;/a:q>'/></y>"),
              "<Out><y><x><a:q xmlns:a=\"v\"><a:r/></a:q></x></y></Out>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionDocuments, RefuseTextsThatAreNoXml) {
    for (const auto* sText : {"&lt;b&gt;", "&lt;/P&gt;", "&lt;b k=1/&gt;", "&lt;!DOCTYPE x&gt;", "&amp;nbsp;",
                              "&lt;/fragment&gt;&lt;fragment&gt;", "]]&gt;", "&lt;p:b/&gt;",
                              "&lt;b p:k=\"1\"/&gt;", "&lt;b xmlns:q=\"u\"/&gt;&lt;q:c/&gt;"}) {
        EXPECT_EQ(in("<p Name='P' h:As='xml' h:Text='" + std::string(sText) + "'/>"), "<P/>") << sText;
        EXPECT_THAT(failures(), HasSubstr("XML")) << sText;
    }
    inRoads("<p Name='P' h:As='xml' h:Text='&lt;b&gt;{NAME}'/>");
    ASSERT_GE(observer.aFailures.size(), 2U);
    EXPECT_EQ(observer.aFailures[1].sContext, "row 2");
    EXPECT_EQ(out("<p Name='P' h:As='xml' h:Text='&lt;p:b p:k=\"1\"/&gt;'/>", "xmlns:p='urn:p'"),
              "<Out xmlns:p=\"urn:p\"><P><p:b p:k=\"1\"/></P></Out>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionDocuments, LeaveOutElementsWithoutContentOfXml) {
    EXPECT_EQ(in("<p Name='P' h:Omit='Empty' h:As='xml' h:Text='&lt;!-- none -->'/>"), "");
    EXPECT_EQ(in("<p Name='P' h:Omit='Empty' h:As='xml' h:Text='&lt;b/>'/>"), "<P><b/></P>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(in("<p Name='P' h:Omit='Empty' h:As='xml' h:Text='&lt;b>'/>"), "");
    EXPECT_THAT(failures(), HasSubstr("the text is not well-formed XML"));
}

TEST_F(SecondEditionDocuments, HoldSectionsOfCharacterData) {
    EXPECT_EQ(written("<p Name='P' h:As='cdata' h:Text='&lt;a&gt;&lt;b&gt; ]]&gt; {$Date}'/>"),
              "<Out>\r\n<P><![CDATA[<a><b> ]]]]>&gt;<![CDATA[ 2023-11-14]]></P>\r\n</Out>");
    EXPECT_EQ(in(roads("<p Name='P' h:As='cdata' h:Text='&lt;{NAME}&gt;'><k Name='K' h:Text='1'/></p>")),
              "<L><R><P><![CDATA[<High Street>]]><K>1</K></P></R><R><P><![CDATA[<Mill "
              "Lane>]]><K>1</K></P></R></L>");
}

TEST_F(SecondEditionDocuments, AreRefusedWhereTheirRootIsWrong) {
    const auto refusal = [&](const std::string& sAttribute) {
        return out("<a Name='A' h:Text='1'/>", sAttribute);
    };
    EXPECT_THAT(refusal("h:Declaration='latin1'"), HasSubstr("it is \"UTF-8\""));
    for (const auto* sType :
         {"html", "Outer", "Out SYSTEM", "Out SYSTEM x", "Out PUBLIC \"x\"", "Out [&lt;!ENTITY x \"y\"&gt;]",
          "Out SYSTEM \"a\" \"b\"", "Out SYSTEM \"a>b\"", "OutSYSTEM \"a\""})
        EXPECT_THAT(refusal("h:Doctype='" + std::string(sType) + "'"), HasSubstr("not saved: h:Doctype="))
            << sType;
    for (const auto* sIndent : {"", "17", "-1", "two", "2 "})
        EXPECT_THAT(refusal("h:Indent='" + std::string(sIndent) + "'"), HasSubstr("not saved: h:Indent="))
            << sIndent;
    EXPECT_THAT(refusal("h:Needs='who, author'"), HasSubstr("give --set author=…"));
    EXPECT_EQ(refusal("h:Needs='who'"), "<Out><A>1</A></Out>");
    EXPECT_THAT(in("<a Name='A' h:Doctype='x' h:Text='1'/>"), HasSubstr("it stands on the root"));
    EXPECT_THAT(in("<a Name='A' h:Indent='2' h:Text='1'/>"), HasSubstr("a number stands on the root alone"));
    EXPECT_THAT(in("<a Name='A' h:As='xml'/>"), HasSubstr("h:As is about h:Text; add it"));
    EXPECT_THAT(in("<a Name='A' Target='Attribute' h:Text='x' h:As='cdata'/>"),
                HasSubstr("take Target away"));
}

} // namespace

} // namespace halvane::test
