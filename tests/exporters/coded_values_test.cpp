// The codes of coded-value domains.

#include "exporters/DomainTest.h"

namespace halvane::test {
namespace {

using host::CodedValue;
using host::FieldType;
using host::memory::MemoryDomain;

class CodedValuesTest : public DomainTest {
protected:
    /// What the codes of a domain write into an element "Codes".
    std::string codes(const std::string& sChildren) {
        ExportCodedValues(state, *pSurface, control("<c Name='Codes'>" + sChildren + "</c>"),
                          element("Codes"));
        return written();
    }

    host::memory::MemoryDomainPtr pSurface = MemoryDomain::coded(
        "Surface", FieldType::Integer, {CodedValue{1, "Asphalt"}, CodedValue{2, "Gravel"}});
    static constexpr const char* sCodeElement =
        "<e Name='Code' Entries='Multiple'><v Name='Value' DataProperty='DomainCodeValue'/>"
        "<n Name='name' Target='Attribute' DataProperty='DomainCodeName'/></e>";
};

TEST_F(CodedValuesTest, WriteOneElementPerCodeInTheDomainsOrder) {
    EXPECT_EQ(codes(sCodeElement), "<Codes><Code name=\"Asphalt\"><Value>1</Value></Code><Code "
                                   "name=\"Gravel\"><Value>2</Value></Code></Codes>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(CodedValuesTest, AreWrittenUnderAnElementOfThePropertyNodesName) {
    ExportDomainProperty(
        state, *pSurface,
        control(std::string("<c Name='Codes' Target='Attribute' DataProperty='domaincodedvalues'>") +
                sCodeElement + "</c>"),
        element("D"));
    EXPECT_EQ(written(), "<D><Codes><Code name=\"Asphalt\"><Value>1</Value></Code>"
                         "<Code name=\"Gravel\"><Value>2</Value></Code></Codes></D>")
        << "codes are an element even where an attribute is asked for";
}

TEST_F(CodedValuesTest, WriteNothingWithoutChildren) {
    EXPECT_EQ(codes(""), "<Codes/>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_EQ(pHost->faults().callCount("GisDomain.code"), 0) << "codes that nobody asks for are not read";
}

TEST_F(CodedValuesTest, RecogniseRepeatedEntriesAndPropertiesInAnyLetterCase) {
    EXPECT_EQ(codes("<e Name='Code' Entries='MULTIPLE'><v Name='V' DataProperty='DOMAINCODEVALUE'/></e>"),
              "<Codes><Code><V>1</V></Code><Code><V>2</V></Code></Codes>");
}

TEST_F(CodedValuesTest, WriteAnEmptyElementPerCodeWithoutGrandchildren) {
    EXPECT_EQ(codes("<e Name='Code' Entries='Multiple' DataProperty='DomainCodeValue'/>"),
              "<Codes><Code/><Code/></Codes>");
}

TEST_F(CodedValuesTest, KeepTheValueBeforeForAnUnknownPropertyAcrossCodesToo) {
    EXPECT_EQ(codes("<e Name='Code' Entries='Multiple'><a Name='A' DataProperty='NoSuch'/>"
                    "<v Name='V' DataProperty='DomainCodeValue'/><b Name='B'/></e>"),
              "<Codes><Code><A/><V>1</V><B>1</B></Code><Code><A>1</A><V>2</V><B>2</B></Code></Codes>");
    EXPECT_TRUE(observer.noticed("A", Notice::UnknownProperty));
}

TEST_F(CodedValuesTest, OverwriteTheCodeElementWithAPlainChildAfterIt) {
    EXPECT_EQ(codes(std::string(sCodeElement) + "<p Name='P' DataProperty='DomainCodeName'/>"),
              "<Codes><Code name=\"Asphalt\">Asphalt</Code><Code name=\"Gravel\">Gravel</Code></Codes>");
}

TEST_F(CodedValuesTest, PutAPlainChildThatTargetsAnAttributeOnTheCodesElement) {
    EXPECT_EQ(codes("<a Name='last' Target='Attribute' DataProperty='DomainCodeName'/>"
                    "<e Name='Code' Entries='Multiple'/>"),
              "<Codes last=\"Gravel\"><Code/><Code/></Codes>");
}

TEST_F(CodedValuesTest, FailAtAPlainChildWhileThereIsNoCodeElement) {
    EXPECT_EQ(codes(std::string("<p Name='P' DataProperty='DomainCodeName'/>") + sCodeElement), "<Codes/>");
    EXPECT_EQ(state.lModErrNum, 91);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sName, "Codes");
}

TEST_F(CodedValuesTest, ConvertCodesOfAnyTypeToText) {
    pSurface = MemoryDomain::coded("Mixed", FieldType::Double,
                                   {CodedValue{0.25, "a"}, CodedValue{std::string("x<y"), "b"},
                                    CodedValue{std::int64_t{12345678901234}, "c"}, CodedValue{Null{}, "d"}});
    EXPECT_EQ(codes("<e Name='C' Entries='Multiple'><v Name='V' DataProperty='DomainCodeValue'/></e>"),
              "<Codes><C><V>0.25</V></C><C><V>x&lt;y</V></C><C><V>12345678901234</V></C><C><V/></C></Codes>");
}

TEST_F(CodedValuesTest, EndWithAnOverflowAfterTheCodeThatPassesTheLimit) {
    pSurface =
        MemoryDomain::coded("Many", FieldType::Integer,
                            {CodedValue{1, ""}, CodedValue{2, ""}, CodedValue{3, ""}, CodedValue{4, ""}});
    state.options.lItemLimit = 1;
    EXPECT_EQ(codes("<e Name='C' Entries='Multiple'><v Name='v' Target='Attribute' "
                    "DataProperty='DomainCodeValue'/></e>"),
              "<Codes><C v=\"1\"/><C v=\"2\"/></Codes>");
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(CodedValuesTest, EndWhenACodeCannotBeReadAndKeepWhatWasWritten) {
    pHost->faults().failAt("GisDomain.code", 2);
    EXPECT_EQ(codes(sCodeElement), "<Codes><Code name=\"Asphalt\"><Value>1</Value></Code></Codes>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

TEST_F(CodedValuesTest, StayWritableUntilTheEndOfTheirDomain) {
    pWorkspace->add(pSurface);
    pWorkspace->add(MemoryDomain::coded("Lanes", FieldType::Integer, {CodedValue{7, "Seven"}}));
    EXPECT_EQ(exported(std::string(
                           "<d Name='D' DataSource='WorkspaceDomain'><n Name='N' DataProperty='DomainName'/>"
                           "<c Name='Codes' DataProperty='DomainCodedValues'>") +
                       "<e Name='Code' Entries='Multiple'/><p DataProperty='DomainCodeValue'/></c></d>"),
              "<D><N>Surface</N><Codes><Code>1</Code><Code>2</Code></Codes></D>"
              "<D><N>Lanes</N><Codes><Code>7</Code></Codes></D>");
}

} // namespace
} // namespace halvane::test
