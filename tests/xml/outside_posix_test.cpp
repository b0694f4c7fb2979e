// Nothing that a document names is opened: the system itself counts the opens.

#include "XmlSupport.h"
#include "support/OpenCounter.h"
#include "support/TemporaryFolder.h"

#include <sys/stat.h>

namespace halvane::test {
namespace {

using testing::HasSubstr;

struct NamingDocument {
    const char* pWhat;
    const char* pBeforeUrl;
    const char* pAfterUrl;
};

void PrintTo(const NamingDocument& document, std::ostream* pStream) {
    *pStream << document.pWhat;
}

class OutsideFiles : public testing::TestWithParam<NamingDocument> {
protected:
    [[nodiscard]] std::string naming(const std::string& sUrl) const {
        return GetParam().pBeforeUrl + sUrl + GetParam().pAfterUrl;
    }
    void loadEachWay(const std::string& sUrl) const {
        for (const bool bValidate : {false, true}) {
            const auto oDocument = dom::Document::create();
            oDocument->setValidateOnParse(bValidate);
            oDocument->loadXML(naming(sUrl));
            EXPECT_THAT(oDocument->xml(), testing::Not(HasSubstr("SECRET")));
        }
    }

    TemporaryFolder folder;
};

TEST_P(OutsideFiles, AreNotOpened) {
    const std::string sFile = folder.write("outside", "<!ENTITY o 'SECRET'>");
    const OpenCounter counter(folder.path());
    ASSERT_TRUE(counter.works());
    std::ifstream(sFile).close();
    ASSERT_EQ(counter.opens(), 1) << "the counter counts";
    loadEachWay(folder.url("outside"));
    loadEachWay(sFile);
    EXPECT_EQ(counter.opens(), 0);
}

TEST_P(OutsideFiles, ArePipesThatNobodyWaitsFor) {
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    loadEachWay(folder.url("pipe"));
}

INSTANTIATE_TEST_SUITE_P(
    Places, OutsideFiles,
    testing::Values(
        NamingDocument{"entity in content", "<!DOCTYPE r [<!ENTITY x SYSTEM '", "'>]><r>&x;</r>"},
        NamingDocument{"entity in nested content", "<!DOCTYPE r [<!ENTITY x SYSTEM '",
                       "'>]><r><a>t&x;</a></r>"},
        NamingDocument{"public entity", "<!DOCTYPE r [<!ENTITY x PUBLIC '-//x' '", "'>]><r>&x;</r>"},
        NamingDocument{"entity within an entity", "<!DOCTYPE r [<!ENTITY x SYSTEM '",
                       "'><!ENTITY y 'a&x;b'>]><r>&y;</r>"},
        NamingDocument{"entity within markup of an entity", "<!DOCTYPE r [<!ENTITY x SYSTEM '",
                       "'><!ENTITY y '<e>&x;</e>'>]><r>&y;</r>"},
        NamingDocument{"entity in an attribute", "<!DOCTYPE r [<!ENTITY x SYSTEM '", "'>]><r a='&x;'/>"},
        NamingDocument{"entity in a default attribute", "<!DOCTYPE r [<!ENTITY x SYSTEM '",
                       "'><!ATTLIST r a CDATA '&x;'>]><r/>"},
        NamingDocument{"parameter entity", "<!DOCTYPE r [<!ENTITY % x SYSTEM '", "'> %x;]><r/>"},
        NamingDocument{"parameter entity within another", "<!DOCTYPE r [<!ENTITY % x SYSTEM '",
                       "'><!ENTITY % y '&#37;x;'> %y;]><r/>"},
        NamingDocument{"document type", "<!DOCTYPE r SYSTEM '", "'><r/>"},
        NamingDocument{"document type with entities", "<!DOCTYPE r SYSTEM '", "'><r>&o;</r>"},
        NamingDocument{"unparsed entity",
                       "<!DOCTYPE r [<!NOTATION n SYSTEM 'n'><!ATTLIST r a ENTITY #IMPLIED>"
                       "<!ENTITY x SYSTEM '",
                       "' NDATA n>]><r a='x'/>"},
        NamingDocument{"inclusion", "<r xmlns:x='http://www.w3.org/2001/XInclude'><x:include href='",
                       "' parse='text'/></r>"},
        NamingDocument{"stylesheet", "<?xml-stylesheet type='text/xsl' href='", "'?><r/>"},
        NamingDocument{"catalogue", "<?oasis-xml-catalog catalog='", "'?><r/>"},
        NamingDocument{"schema",
                       "<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                       "xsi:noNamespaceSchemaLocation='",
                       "'/>"}));

} // namespace
} // namespace halvane::test
