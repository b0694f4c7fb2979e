// Files that are none, as POSIX knows them, and an encoding that only its library decodes.

#include "XmlSupport.h"
#include "support/TemporaryFolder.h"
#include "xml/dom/libxml2/LibXmlDecoding.h"

#include <iconv.h>
#include <sys/stat.h>

namespace halvane::test {
namespace {

using testing::HasSubstr;

TEST(LoadingOddFiles, DoesNotWaitForAPipe) {
    const auto oDocument = dom::Document::create();
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(oDocument->load(folder.file("pipe")));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("pipe"));
}

TEST(LoadingOddFiles, StopsAtTheLimitOfAFileWithoutEnd) {
    const auto oDocument = dom::Document::create();
    EXPECT_FALSE(oDocument->load("/dev/zero"));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("larger than 64 MiB"));
}

/// In an encoding in which no letter is where ASCII has it.
std::string ebcdic(std::string sAscii) {
    const iconv_t pConverter = ::iconv_open("IBM037", "ASCII");
    std::string sBytes(sAscii.size(), '\0');
    char* pFrom = sAscii.data();
    char* pTo = sBytes.data();
    std::size_t nLeft = sAscii.size();
    std::size_t nFree = sBytes.size();
    EXPECT_EQ(::iconv(pConverter, &pFrom, &nLeft, &pTo, &nFree), 0U);
    ::iconv_close(pConverter);
    return sBytes;
}

std::string ebcdicElement(int nAttributes) {
    std::string sXml = "<?xml version='1.0' encoding='IBM037'?><r";
    for (int n = 0; n < nAttributes; ++n)
        sXml.append(" a").append(std::to_string(n)).append("=''");
    return ebcdic(sXml + "/>");
}

TEST(LoadingEbcdic, ReadsItAndLimitsItsAttributes) {
    const auto oDocument = dom::Document::create();
    const TemporaryFolder folder;
    EXPECT_TRUE(oDocument->load(folder.write("in.xml", ebcdicElement(2)))) << oDocument->parseError().reason;
    EXPECT_EQ(oDocument->documentElement().attributes().length(), 2);
    EXPECT_FALSE(oDocument->load(folder.write("in.xml", ebcdicElement(1001))));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("more attributes than 1000"));
}

TEST(LoadingEbcdic, IsTriedWithoutADeclaredEncoding) {
    const auto oDocument = dom::Document::create();
    const TemporaryFolder folder;
    EXPECT_FALSE(
        oDocument->load(folder.write("in.xml", ebcdic("<?xml version='1.0' encoding='no-such'?><r/>"))));
    EXPECT_NE(oDocument->parseError().reason, "");
}

TEST(LoadingOddFiles, ReadsNoFurtherThanToTheFirstByteThatIsNone) {
    using std::string_view_literals::operator""sv;
    EXPECT_EQ(dom::libxml::hiddenTextOf("<\0r\0/\0>\0!"sv), "<r/>");
    EXPECT_EQ(dom::libxml::hiddenTextOf("\xFF\xFE<\0\0\xDC>\0"sv), "\uFEFF<");
    EXPECT_EQ(dom::libxml::hiddenTextOf("\0\0\0<\0\0\0"sv), "<");
}

TEST(LoadingOddFiles, LooksForHiddenMarkupWhereTheEncodingMayHideIt) {
    EXPECT_EQ(dom::libxml::hiddenTextOf("<r/>"), std::nullopt);
    EXPECT_EQ(dom::libxml::hiddenTextOf("<?xml version='1.0' encoding='UTF-8'?><r/>"), std::nullopt);
    EXPECT_EQ(dom::libxml::hiddenTextOf("<?xml version='1.0' encoding='no-such'?><r/>"), std::nullopt);
    EXPECT_EQ(dom::libxml::hiddenTextOf("<?xml version='1.0' encoding='UTF-7'?>+ADw-r/+AD4-"),
              "<?xml version='1.0' encoding='UTF-7'?><r/>");
}

} // namespace
} // namespace halvane::test
