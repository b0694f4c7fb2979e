// Encodings that the bytes of a document hide its markup in.

#include "XmlSupport.h"
#include "support/TemporaryFolder.h"

namespace halvane::test {
namespace {

using testing::HasSubstr;

std::string inUtf7(std::string_view sContent) {
    return "<?xml version='1.0' encoding='utf-7'?>" + std::string(sContent);
}

/// The invariant characters that the tests need, in the code page 037.
std::string inEbcdic(std::string_view sText) {
    std::string sBytes;
    for (const char c : sText) {
        const std::size_t nAt = std::string_view("<>?/='. ").find(c);
        if (nAt != std::string_view::npos)
            sBytes.push_back("\x4C\x6E\x6F\x61\x7E\x7D\x4B\x40"[nAt]);
        else if (c >= '0' && c <= '9')
            sBytes.push_back(static_cast<char>(0xF0 + (c - '0')));
        else if (c >= 'A' && c <= 'I')
            sBytes.push_back(static_cast<char>(0xC1 + (c - 'A')));
        else if (c >= 'J' && c <= 'R')
            sBytes.push_back(static_cast<char>(0xD1 + (c - 'J')));
        else if (c >= 'a' && c <= 'i')
            sBytes.push_back(static_cast<char>(0x81 + (c - 'a')));
        else if (c >= 'j' && c <= 'r')
            sBytes.push_back(static_cast<char>(0x91 + (c - 'j')));
        else
            sBytes.push_back(static_cast<char>(0xA2 + (c - 's')));
    }
    return sBytes;
}

class HiddenMarkup : public testing::Test {
protected:
    bool loads(std::string_view sBytes) {
        return oDocument->load(folder.write("a.xml", std::string(sBytes)));
    }

    TemporaryFolder folder;
    dom::DocumentPtr oDocument = dom::Document::create();
};

TEST_F(HiddenMarkup, IsDecodedFromUtf7) {
    ASSERT_TRUE(loads(inUtf7("<r>+AOQ- +ADw-a/+AD4-</r>"))) << oDocument->parseError().reason;
    EXPECT_EQ(oDocument->documentElement().text(), "\xC3\xA4 ");
    EXPECT_EQ(oDocument->documentElement().lastChild().nodeName(), "a");
}

TEST_F(HiddenMarkup, IsDecodedFromEbcdic) {
    ASSERT_TRUE(loads(inEbcdic("<?xml version='1.0' encoding='IBM037'?><r>one</r>")))
        << oDocument->parseError().reason;
    EXPECT_EQ(oDocument->documentElement().text(), "one");
}

struct Encoded {
    std::string_view sEncoding;
    std::string_view sBytes;
    std::string_view sText; // UTF-8
};

TEST_F(HiddenMarkup, OfEncodingsInUseIsDecodedWhateverTheParserKnows) {
    for (const Encoded& encoded :
         {Encoded{"ISO-8859-1", "\xE4", "\xC3\xA4"}, Encoded{"iso-8859-15", "\xA4", "\xE2\x82\xAC"},
          Encoded{"windows-1252", "\x80", "\xE2\x82\xAC"}, Encoded{"windows-1251", "\xE6", "\xD0\xB6"},
          Encoded{"Shift_JIS", "\x93\xFA", "\xE6\x97\xA5"}, Encoded{"Big5", "\xA4\xE9", "\xE6\x97\xA5"},
          Encoded{"KOI8-R", "\xD6", "\xD0\xB6"}, Encoded{"GB2312", "\xC8\xD5", "\xE6\x97\xA5"},
          Encoded{"cp437", "\x84", "\xC3\xA4"}, Encoded{"IBM850", "\x84", "\xC3\xA4"},
          Encoded{"us-ascii", "a", "a"}}) {
        const auto sBytes = std::string("<?xml version='1.0' encoding='")
                                .append(encoded.sEncoding)
                                .append("'?><r>")
                                .append(encoded.sBytes)
                                .append("</r>");
        EXPECT_TRUE(loads(sBytes)) << encoded.sEncoding << ": " << oDocument->parseError().reason;
        EXPECT_EQ(oDocument->documentElement().text(), encoded.sText) << encoded.sEncoding;
    }
}

TEST_F(HiddenMarkup, IsDecodedBeforeEntitiesAreReplaced) {
    ASSERT_TRUE(
        loads("<?xml version='1.0' encoding='ISO-8859-1'?><!DOCTYPE r [<!ENTITY e '\xE4'>]><r>&e;</r>"))
        << oDocument->parseError().reason;
    EXPECT_EQ(oDocument->documentElement().text(), "\xC3\xA4");
}

TEST_F(HiddenMarkup, IsRefusedWhereTheBytesAreNotInItsEncoding) {
    EXPECT_FALSE(loads("<?xml version='1.0' encoding='Shift_JIS'?><r>\x93</r>"));
    EXPECT_EQ(oDocument->parseError().reason,
              "the text is not in the encoding \"Shift_JIS\" that it declares");
    EXPECT_FALSE(loads("<?xml version='1.0' encoding='UTF-8'?><r>\xE4</r>"));
    EXPECT_EQ(oDocument->parseError().reason, "the text is not UTF-8");
}

TEST_F(HiddenMarkup, HidesNoDepth) {
    std::string sNested;
    for (int n = 0; n < 300; ++n)
        sNested += "+ADw-g+AD4-";
    for (int n = 0; n < 300; ++n)
        sNested += "+ADw-/g+AD4-";
    EXPECT_FALSE(loads(inUtf7(sNested)));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("depth"));
}

TEST_F(HiddenMarkup, HidesNoReference) {
    EXPECT_FALSE(
        loads(inUtf7("<!DOCTYPE r +AFs-+ADwAIQ-ENTITY e SYSTEM 'file:///C:/a'+AD4AXQA+-<r>+ACY-e+ADs-</r>")));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("external entity \"e\" is not loaded"));
}

TEST_F(HiddenMarkup, IsRefusedInAnEncodingThatCannotBeDecoded) {
    for (const std::string sEncoding :
         {"ISO-2022-CN-EXT", "IBM037", "x-EBCDIC-Unknown", "no-such", "utf-16"}) {
        const std::string sBytes = "<?xml version='1.0' encoding='" + sEncoding + "'?><r/>";
        EXPECT_FALSE(loads(sBytes)) << sEncoding;
        EXPECT_THAT(oDocument->parseError().reason, HasSubstr("\"" + sEncoding + "\" is not known here"));
    }
}

TEST_F(HiddenMarkup, IsNoMatterInATextWhoseEncodingIsKnown) {
    EXPECT_TRUE(oDocument->loadXML(inUtf7("<r>+AOQ-</r>"))) << oDocument->parseError().reason;
    EXPECT_EQ(oDocument->documentElement().text(), "+AOQ-");
}

} // namespace
} // namespace halvane::test
