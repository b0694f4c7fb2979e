// The class clsExport and the declarations for external processors.

#include "ClassWatch.h"
#include "Client.h"
#include "PlainObject.h"

#include <msxml2.h>

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

// Some versions of the compiler's header declare the interfaces without __uuidof.
_COM_SMARTPTR_TYPEDEF(IXMLDOMDocument, IID_IXMLDOMDocument);
_COM_SMARTPTR_TYPEDEF(IXMLDOMNodeList, IID_IXMLDOMNodeList);

void setSelectionNamespaces(IDispatch* pDocument, const wchar_t* sDeclarations) {
    EXPECT_EQ(
        call(pDocument, L"setProperty", {_variant_t(L"SelectionNamespaces"), _variant_t(sDeclarations)}).hr,
        S_OK);
}

class PublicExport : public ::testing::Test {
protected:
    /// Exports with the arguments below.
    void exportDocument() {
        EXPECT_EQ(
            pExport->Export2XML(pDocument, sControl, sFolder, &sName, pTags, sNodePath, &lNumber, &sMessage),
            S_OK);
    }
    void useControl(std::string_view sContent) { sControl = folder.write(L"control.xml", sContent).c_str(); }
    void setName(const wchar_t* sNew) {
        SysFreeString(sName);
        sName = SysAllocString(sNew);
    }
    [[nodiscard]] std::string written() const { return folder.read(sName).value_or("(nothing)"); }
    ~PublicExport() override {
        SysFreeString(sName);
        SysFreeString(sMessage);
    }

    Folder folder;
    _clsExportPtr pExport = create<_clsExport>(L"Halvane.clsExport");
    IDispatch* pDocument = nullptr;
    _bstr_t sControl = folder.write(L"control.xml", "<a Name='Out'><b Name='T'/></a>").c_str();
    _bstr_t sFolder = folder.path().c_str();
    BSTR sName = SysAllocString(L"out.xml");
    IXMLDOMDocumentPtr pTags;
    _bstr_t sNodePath = L"";
    LONG lNumber = 17;
    BSTR sMessage = SysAllocString(L"as the caller left it");
};

TEST_F(PublicExport, WritesTheDocumentAndTellsOfNoError) {
    exportDocument();
    EXPECT_EQ(written(), "<Out>\r\n<T/>\r\n</Out>");
    EXPECT_EQ(lNumber, 0);
    EXPECT_EQ(SysStringLen(sMessage), 0U);
}

TEST_F(PublicExport, WritesTheSameFileForAFolderWithATrailingBackslash) {
    sFolder += L"\\";
    exportDocument();
    EXPECT_EQ(written(), "<Out>\r\n<T/>\r\n</Out>");
}

TEST_F(PublicExport, CompletesTheCallersFileName) {
    setName(L"Straßen");
    exportDocument();
    EXPECT_STREQ(sName, L"Straßen.xml");
    EXPECT_NE(written(), "(nothing)");
}

TEST_F(PublicExport, LeavesAFileNameAloneThatHoldsTheLettersXml) {
    setName(L"my-xMl-file.txt");
    exportDocument();
    EXPECT_STREQ(sName, L"my-xMl-file.txt");
    EXPECT_NE(written(), "(nothing)");
}

TEST_F(PublicExport, ExportsNothingForADocumentWithABlankNodePath) {
    pTags = documentOf(L"<v/>");
    sNodePath = L"   ";
    setName(L"out");
    exportDocument();
    EXPECT_STREQ(sName, L"out.xml") << "the name is completed before";
    EXPECT_EQ(written(), "(nothing)");
    EXPECT_EQ(lNumber, 17);
    EXPECT_STREQ(sMessage, L"as the caller left it");
}

TEST_F(PublicExport, ExportsWithoutTagNamesWhenThePathSelectsNothing) {
    pTags = documentOf(L"<v/>");
    sNodePath = L"//q";
    exportDocument();
    EXPECT_EQ(written(), "<Out>\r\n<T/>\r\n</Out>");
    EXPECT_EQ(lNumber, 0);
}

TEST_F(PublicExport, TakesTagNamesByThePrefixesThatTheClientHasSet) {
    useControl("<a Name='Out'><l Name='Layer' DataSource='MapLayer' Identity='TagName' "
               "IdentityValue='Street' DataProperty='LayerName'/></a>");
    const _variant_t map = smallMapDocument();
    pDocument = V_DISPATCH(&map);
    const IDispatchPtr pGiven = documentOf(L"<v xmlns='urn:tags'><q TagName='street' Alias='Roads'/></v>");
    setSelectionNamespaces(pGiven, L"xmlns:t='urn:tags'");
    pTags = pGiven;
    sNodePath = L"//t:q";
    exportDocument();
    EXPECT_EQ(written(), "<Out>\r\n<Layer>Roads</Layer>\r\n</Out>");
}

TEST_F(PublicExport, TellsOfNoFailureInsideTheWalk) {
    useControl("<a Name='Out'><b Name='X' DataSource='External' IdentityValue='No.Such'/><c Name='Y'/></a>");
    exportDocument();
    EXPECT_EQ(written(), "<Out>\r\n<X/>\r\n<Y/>\r\n</Out>");
    EXPECT_EQ(lNumber, 0);
}

TEST_F(PublicExport, TellsOfAMapDocumentThatIsNone) {
    const IDispatchPtr pOther = newCollection();
    pDocument = pOther;
    exportDocument();
    EXPECT_NE(lNumber, 0);
    EXPECT_NE(SysStringLen(sMessage), 0U);
    EXPECT_EQ(written(), "(nothing)");
    lNumber = 0;
    pDocument = nullptr;
    exportDocument();
    EXPECT_EQ(written(), "<Out>\r\n<T/>\r\n</Out>") << "nothing of it is left";
}

TEST_F(PublicExport, RefusesNamesThatWindowsTakesForSomethingElseBeforeItWalks) {
    useControl("<a Name='Out'><b Name='X' DataSource='External' "
               "IdentityValue='Halvane.IExternalProcessor'/></a>");
    const ClassWatch watch;
    for (const wchar_t* sRefused : {L"CON", L"a:b", L"my.xml.", L"my.xml "}) {
        setName(sRefused);
        lNumber = 0;
        exportDocument();
        EXPECT_EQ(lNumber, 75) << "path/file access error";
        EXPECT_NE(std::wstring(sMessage, SysStringLen(sMessage)).find(L"Windows"), std::wstring::npos);
        EXPECT_EQ(written(), "(nothing)");
    }
    EXPECT_EQ(watch.created(), 0) << "the control file is not walked";
    setName(L"CON");
    exportDocument();
    EXPECT_EQ(std::wstring(sMessage),
              folder.path() +
                  L"\\CON.xml: \"CON\" is a device on Windows, whatever follows it; choose another name");
    EXPECT_STREQ(sName, L"CON.xml");
}

TEST_F(PublicExport, TellsNothingOfANameForADocumentWithABlankNodePath) {
    pTags = documentOf(L"<v/>");
    setName(L"CON");
    exportDocument();
    EXPECT_EQ(lNumber, 17);
    EXPECT_STREQ(sMessage, L"as the caller left it");
}

TEST_F(PublicExport, TakesNoPlacesForErrors) {
    EXPECT_EQ(pExport->Export2XML(nullptr, sControl, sFolder, &sName, nullptr, sNodePath, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(written(), "<Out>\r\n<T/>\r\n</Out>");
}

TEST_F(PublicExport, RunsTheDeclarationOfAProcessorAsOneThatWritesNothing) {
    useControl("<a Name='Out'><b Name='X' DataSource='External' "
               "IdentityValue='Halvane.IExternalProcessor'/></a>");
    const ClassWatch watch;
    exportDocument();
    EXPECT_EQ(watch.created(), 1) << "a processor that cannot be created writes nothing too";
    EXPECT_EQ(written(), "<Out>\r\n<X/>\r\n</Out>");
}

std::vector<std::wstring> entriesOf(_dCollection* pCollection) {
    std::vector<std::wstring> asEntries;
    IDispatchPtr pKeys;
    EXPECT_EQ(pCollection->ReturnKeys(&pKeys), S_OK);
    LONG lCount = 0;
    EXPECT_EQ(pCollection->get_Count(&lCount), S_OK);
    for (long lPosition = 1; lPosition <= lCount; ++lPosition) {
        _variant_t vKey;
        _variant_t vValue;
        EXPECT_EQ(_EntryListPtr(pKeys)->get_Item(_variant_t(lPosition), &vKey), S_OK);
        EXPECT_EQ(pCollection->get_Item2(_variant_t(lPosition), &vValue), S_OK);
        asEntries.push_back(std::wstring(_bstr_t(vKey)) + L"=" + std::wstring(_bstr_t(vValue)));
    }
    return asEntries;
}

std::vector<std::wstring> tagNames(IDispatch* pDocument, const wchar_t* sPath) {
    const auto pExport = create<_clsExport>(L"Halvane.clsExport");
    _dCollectionPtr pNames;
    EXPECT_EQ(pExport->GetTagNames(IXMLDOMDocumentPtr(pDocument), _bstr_t(sPath), &pNames), S_OK);
    EXPECT_NE(pNames, nullptr);
    return entriesOf(pNames);
}

using Texts = std::vector<std::wstring>;

TEST(PublicTagNames, PairsUpperCasedTagNamesWithUpperCasedAliases) {
    EXPECT_EQ(tagNames(documentOf(L"<v><q TagName='Street' Alias='Roads'/><q TagName='ÄRA' Alias='à'/></v>"),
                       L"//q"),
              (Texts{L"STREET=ROADS", L"ÄRA=À"}));
}

TEST(PublicTagNames, DropOneTrailingSlashOfThePath) {
    EXPECT_EQ(tagNames(documentOf(L"<v><q TagName='a' Alias='b'/></v>"), L"/v/q/"), Texts{L"A=B"});
}

TEST(PublicTagNames, AreNoneForABlankPathAndForNoDocument) {
    EXPECT_EQ(tagNames(documentOf(L"<v><q TagName='a' Alias='b'/></v>"), L"  "), Texts());
    EXPECT_EQ(tagNames(nullptr, L"//q"), Texts());
}

TEST(PublicTagNames, EndAtTheFirstNodeThatLacksAnAttribute) {
    EXPECT_EQ(
        tagNames(documentOf(L"<v><q TagName='a' Alias='b'/><q TagName='c'/><q TagName='d' Alias='e'/></v>"),
                 L"//q"),
        Texts{L"A=B"});
}

TEST(PublicTagNames, AreNoneForAPathThatCannotBeRead) {
    EXPECT_EQ(tagNames(documentOf(L"<v><q TagName='a' Alias='b'/></v>"), L"//q["), Texts());
}

/// A document that a program has made: `nLevels` elements `g`, one inside the other, and in the last one a
/// node with a tag name.
IDispatchPtr nestedDocument(int nLevels) {
    const IDispatchPtr pDocument = documentOf(L"<g><q TagName='a' Alias='b'/></g>");
    for (int nLevel = 1; nLevel < nLevels; ++nLevel) {
        const LateCall inner = call(pDocument, L"documentElement", {}, DISPATCH_PROPERTYGET);
        const LateCall outer = call(pDocument, L"createElement", {_variant_t(L"g")});
        EXPECT_EQ(call(pDocument, L"removeChild", {inner.result}).hr, S_OK);
        EXPECT_EQ(call(V_DISPATCH(&outer.result), L"appendChild", {inner.result}).hr, S_OK);
        EXPECT_EQ(call(pDocument, L"appendChild", {outer.result}).hr, S_OK);
    }
    return pDocument;
}

TEST(PublicTagNames, AreNoneForADocumentThatIsNestedTooDeeply) {
    EXPECT_EQ(tagNames(nestedDocument(255), L"//q"), Texts{L"A=B"});
    EXPECT_EQ(tagNames(nestedDocument(256), L"//q"), Texts());
    EXPECT_EQ(tagNames(nestedDocument(5000), L"//q"), Texts());
}

TEST_F(PublicExport, ExportsWithoutTheTagNamesOfADocumentThatIsNestedTooDeeply) {
    pTags = nestedDocument(5000);
    sNodePath = L"//q";
    exportDocument();
    EXPECT_EQ(written(), "<Out>\r\n<T/>\r\n</Out>");
    EXPECT_EQ(lNumber, 0);
}

TEST(PublicTagNames, TakeTheDocumentAsItIsAtTheCall) {
    const IDispatchPtr pDocument = documentOf(L"<v><q TagName='a' Alias='&lt;&#228;&amp;b&gt;'/></v>");
    EXPECT_EQ(tagNames(pDocument, L"//q"), Texts{L"A=<Ä&B>"});
    const LateCall root = call(pDocument, L"documentElement", {}, DISPATCH_PROPERTYGET);
    const LateCall added = call(pDocument, L"createElement", {_variant_t(L"q")});
    call(V_DISPATCH(&added.result), L"setAttribute", {_variant_t(L"TagName"), _variant_t(L"new")});
    call(V_DISPATCH(&added.result), L"setAttribute", {_variant_t(L"Alias"), _variant_t(L" x  y ")});
    call(V_DISPATCH(&root.result), L"appendChild", {added.result});
    EXPECT_EQ(tagNames(pDocument, L"//q"), (Texts{L"A=<Ä&B>", L"NEW= X  Y "}));
}

TEST(PublicTagNames, FindNodesByTextPositionAndNamespace) {
    const IDispatchPtr pDocument =
        documentOf(L"<v xmlns:p='urn:p'><g><!-- c --><?pi d?>one<q TagName='a' Alias='1'/></g>"
                   L"<g><![CDATA[t<w>o]]><q TagName='b' Alias='2'/><p:q TagName='c' Alias='3'/></g></v>");
    EXPECT_EQ(tagNames(pDocument, L"//g[text()='one']/q"), Texts{L"A=1"});
    EXPECT_EQ(tagNames(pDocument, L"//g[contains(., 't<w>o')]/q"), Texts{L"B=2"});
    EXPECT_EQ(tagNames(pDocument, L"//p:q"), Texts{L"C=3"});
    EXPECT_EQ(tagNames(pDocument, L"/v/g[2]/*"), (Texts{L"B=2", L"C=3"}));
}

TEST(PublicTagNames, FindNodesByThePrefixesThatTheClientHasSetForSelections) {
    const IDispatchPtr pDocument =
        documentOf(L"<v xmlns='urn:tags'><q TagName='a' Alias='1'/><r><q TagName='b' Alias='2'/></r></v>");
    EXPECT_EQ(tagNames(pDocument, L"//t:q"), Texts());
    setSelectionNamespaces(pDocument, L"xmlns:t='urn:tags' xmlns:other=\"urn:o&amp;p\"");
    EXPECT_EQ(tagNames(pDocument, L"//t:q"), (Texts{L"A=1", L"B=2"}));
    EXPECT_EQ(tagNames(pDocument, L"/t:v/t:r/t:q"), Texts{L"B=2"});
    EXPECT_EQ(tagNames(pDocument, L"//other:q"), Texts());
}

TEST(PublicTagNames, TakeAPrefixOfTheRootElementForWhatItIsThere) {
    const IDispatchPtr pDocument =
        documentOf(L"<v xmlns:p='urn:p'><p:q TagName='a' Alias='1'/><q TagName='b' Alias='2'/></v>");
    setSelectionNamespaces(pDocument, L"xmlns:p='urn:other'");
    EXPECT_EQ(tagNames(pDocument, L"//p:q"), Texts{L"A=1"});
}

TEST(PublicTagNames, AreWhatEntitiesInAttributesStandFor) {
    const IDispatchPtr pDocument = documentOf(L"<!DOCTYPE v [<!ENTITY e 'one'>]>"
                                              L"<v><q TagName='&e;' Alias='&e; &#50;'/></v>",
                                              L"Msxml2.DOMDocument.3.0");
    EXPECT_EQ(tagNames(pDocument, L"//q[@TagName='one']"), Texts{L"ONE=ONE 2"});
}

TEST(PublicTagNames, AreReadFromADocumentOfAnyVersionOfTheParser) {
    for (const wchar_t* sProgId : {L"Msxml2.DOMDocument", L"Msxml2.DOMDocument.3.0",
                                   L"Msxml2.DOMDocument.4.0", L"Msxml2.DOMDocument.6.0"})
        EXPECT_EQ(tagNames(documentOf(L"<v><q TagName='a' Alias='b'/></v>", sProgId), L"//q"), Texts{L"A=B"});
}

TEST(PublicNodesByName, AreTheCallersOwnNodes) {
    const auto pExport = create<_clsExport>(L"Halvane.clsExport");
    const IXMLDOMDocumentPtr pDocument(documentOf(L"<v><q/><r><q/></r><Q/></v>"));
    IXMLDOMNodeListPtr pNodes;
    ASSERT_EQ(pExport->GetNodesByName(_bstr_t(L"q"), pDocument, &pNodes), S_OK);
    long nLength = 0;
    EXPECT_EQ(pNodes->get_length(&nLength), S_OK);
    EXPECT_EQ(nLength, 2);
    IXMLDOMNode* pNode = nullptr;
    ASSERT_EQ(pNodes->get_item(0, &pNode), S_OK);
    IXMLDOMElement* pElement = nullptr;
    ASSERT_EQ(pNode->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(&pElement)), S_OK);
    EXPECT_EQ(pElement->setAttribute(_bstr_t(L"mark"), _variant_t(L"1")), S_OK);
    pElement->Release();
    pNode->Release();
    BSTR sXml = nullptr;
    pDocument->get_xml(&sXml);
    EXPECT_NE(std::wstring(_bstr_t(sXml, false)).find(L"<q mark=\"1\"/>"), std::wstring::npos);
}

TEST(PublicNodesByName, AreNoneWithoutADocument) {
    const auto pExport = create<_clsExport>(L"Halvane.clsExport");
    IXMLDOMNodeListPtr pNodes;
    EXPECT_EQ(pExport->GetNodesByName(_bstr_t(L"q"), nullptr, &pNodes), S_OK);
    EXPECT_EQ(pNodes, nullptr);
}

TEST(PublicDialogEntry, DoesNothing) {
    EXPECT_EQ(create<_clsExport>(L"Halvane.clsExport")->ShowExportGUI(), S_OK);
}

TEST(PublicDeclarations, AnswerWithEmptyTexts) {
    _dCollection* pCollection = newCollection().Detach();
    BSTR sValue = nullptr;
    EXPECT_EQ(create<_IExternalProcessor>(L"Halvane.IExternalProcessor")->Process(&pCollection, &sValue),
              S_OK);
    EXPECT_EQ(SysStringLen(sValue), 0U);
    SysFreeString(sValue);
    EXPECT_EQ(pCollection->Release(), 0U);
    BSTR sProgId = nullptr;
    EXPECT_EQ(create<_IExternalProgID>(L"Halvane.IExternalProgID")->get_ProgID(&sProgId), S_OK);
    EXPECT_EQ(SysStringLen(sProgId), 0U);
    SysFreeString(sProgId);
}

} // namespace
} // namespace halvane::client
