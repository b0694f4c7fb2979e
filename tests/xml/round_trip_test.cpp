#include "XmlSupport.h"

#include <random>

namespace halvane::test {
namespace {

/// Documents that parse, made by small damages to one that holds everything: whatever is read is written so
/// that it is read as the same again, and a selection sees it the same way before and after a change.
class RoundTrip : public testing::Test {
protected:
    static constexpr std::string_view everything =
        "<?xml version='1.0' standalone='yes'?><!DOCTYPE r [<!ENTITY e 'x &amp; y'><!ENTITY f '&e;&e;'>"
        "<!ATTLIST a d CDATA 'v'>]><!--c--><r xmlns:n='u:n' xmlns='u:d' k='a &lt; b&#9;c'> <a/> <n:b "
        "n:k='1'>&f;"
        "</n:b><c xml:space='preserve'> <d/> </c><?p q?><![CDATA[z]]>t&#13;u<e l='&f;'>\xC3\xA4</e></r><?z?>";

    std::string damaged() {
        std::string sXml(everything);
        const auto pick = [&](std::size_t n) {
            return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
        };
        for (std::size_t n = pick(4); n > 0; --n) {
            const std::size_t nAt = pick(sXml.size());
            const std::size_t nLength = 1 + pick(std::min<std::size_t>(12, sXml.size() - nAt));
            switch (pick(3)) {
            case 0:
                sXml.erase(nAt, nLength);
                break;
            case 1:
                sXml.insert(nAt, sXml.substr(pick(sXml.size()), nLength));
                break;
            default:
                sXml[nAt] = static_cast<char>(pick(256));
            }
        }
        return sXml;
    }

    std::mt19937 random{20260102};
};

TEST_F(RoundTrip, ReadsBackWhatItWrote) {
    int nParsed = 0;
    for (int n = 0; n < 20000; ++n) {
        const std::string sXml = damaged();
        const auto oDocument = dom::Document::create();
        oDocument->setValidateOnParse(n % 4 == 0);
        if (!oDocument->loadXML(sXml))
            continue;
        ++nParsed;
        const std::string sWritten = oDocument->xml();
        ASSERT_EQ(documentOf(sWritten)->xml(), sWritten) << sXml;
    }
    EXPECT_GT(nParsed, 1000);
}

TEST_F(RoundTrip, SelectsTheSameFromTheImageOfAChangedDocument) {
    int nParsed = 0;
    for (int n = 0; n < 5000; ++n) {
        const std::string sXml = damaged();
        const auto oDocument = dom::Document::create();
        if (!oDocument->loadXML(sXml))
            continue;
        ++nParsed;
        const std::string_view sXPath = "//node() | //@* | //*[namespace-uri()='u:n']";
        const auto aBefore = namesOf(oDocument->asNode().selectNodes(sXPath));
        oDocument->asNode().appendChild(oDocument->asNode().lastChild());
        ASSERT_EQ(namesOf(oDocument->asNode().selectNodes(sXPath)), aBefore) << sXml;
    }
    EXPECT_GT(nParsed, 300);
}

} // namespace
} // namespace halvane::test
