// What the type library tells compilers and scripts, read back from the registered library.

#include "Client.h"

#include <ocidl.h>

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

_COM_SMARTPTR_TYPEDEF(ITypeLib, __uuidof(ITypeLib));
_COM_SMARTPTR_TYPEDEF(ITypeInfo, __uuidof(ITypeInfo));

using Texts = std::vector<std::wstring>;

ITypeLibPtr library() {
    const GUID id = {0xf5975246, 0x8f94, 0x4f18, {0x9f, 0x5c, 0xe4, 0x98, 0x37, 0x50, 0x09, 0xd9}};
    ITypeLibPtr pLibrary;
    EXPECT_EQ(LoadRegTypeLib(id, 1, 0, 0, &pLibrary), S_OK);
    return pLibrary;
}

ITypeInfoPtr typeOf(REFIID iid) {
    ITypeInfoPtr pInfo;
    EXPECT_EQ(library()->GetTypeInfoOfGuid(iid, &pInfo), S_OK);
    return pInfo;
}

/// A member with its parameters: "GetTagNames(oXMLDom, sNodePath)". Members that every automation object has
/// are left out.
Texts membersOf(ITypeInfo* pInfo) {
    Texts asMembers;
    FUNCDESC* pFunction = nullptr;
    for (UINT i = 0; SUCCEEDED(pInfo->GetFuncDesc(i, &pFunction)); ++i) {
        BSTR aNames[16]{};
        UINT nNames = 0;
        pInfo->GetNames(pFunction->memid, aNames, 16, &nNames);
        const bool bOwn = (pFunction->wFuncFlags & FUNCFLAG_FRESTRICTED) == 0 &&
                          pFunction->oVft >= static_cast<SHORT>(7 * sizeof(void*));
        std::wstring sMember;
        for (UINT n = 0; n < nNames; ++n) {
            const _bstr_t name(aNames[n], false);
            const bool bParameter = n >= 1 && static_cast<SHORT>(n) <= pFunction->cParams;
            if (n == 0)
                sMember = std::wstring(name) + L"(";
            else if (bParameter)
                sMember += (n == 1 ? L"" : L", ") + std::wstring(name);
        }
        if (bOwn)
            asMembers.push_back(sMember + L")");
        pInfo->ReleaseFuncDesc(pFunction);
    }
    return asMembers;
}

/// The flags of a member's parameters.
std::vector<USHORT> flagsOf(ITypeInfo* pInfo, MEMBERID lMember) {
    std::vector<USHORT> aFlags;
    FUNCDESC* pFunction = nullptr;
    for (UINT i = 0; SUCCEEDED(pInfo->GetFuncDesc(i, &pFunction)); ++i) {
        if (pFunction->memid == lMember) {
            for (SHORT n = 0; n < pFunction->cParams; ++n)
                aFlags.push_back(pFunction->lprgelemdescParam[n].paramdesc.wParamFlags);
        }
        pInfo->ReleaseFuncDesc(pFunction);
    }
    return aFlags;
}

TEST(TypeLibrary, IsNamedHalvane) {
    BSTR sName = nullptr;
    ASSERT_EQ(library()->GetDocumentation(-1, &sName, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(std::wstring(_bstr_t(sName, false)), L"Halvane");
}

TEST(TypeLibrary, HasTheFourPublicClasses) {
    const auto pLibrary = library();
    Texts asClasses;
    for (UINT i = 0; i < pLibrary->GetTypeInfoCount(); ++i) {
        TYPEKIND kind = TKIND_MAX;
        ASSERT_EQ(pLibrary->GetTypeInfoType(i, &kind), S_OK);
        if (kind != TKIND_COCLASS)
            continue;
        BSTR sName = nullptr;
        pLibrary->GetDocumentation(static_cast<INT>(i), &sName, nullptr, nullptr, nullptr);
        asClasses.emplace_back(_bstr_t(sName, false));
        ITypeInfoPtr pClass;
        pLibrary->GetTypeInfo(i, &pClass);
        TYPEATTR* pAttributes = nullptr;
        ASSERT_EQ(pClass->GetTypeAttr(&pAttributes), S_OK);
        EXPECT_NE(pAttributes->wTypeFlags & TYPEFLAG_FCANCREATE, 0) << "it can be created";
        pClass->ReleaseTypeAttr(pAttributes);
    }
    EXPECT_EQ(asClasses, (Texts{L"clsExport", L"dCollection", L"IExternalProcessor", L"IExternalProgID"}));
}

TEST(TypeLibrary, HasTheMembersOfTheExportInTheirOrder) {
    EXPECT_EQ(
        membersOf(typeOf(__uuidof(_clsExport))),
        (Texts{
            L"Export2XML(pDunvelDoc, sControlXML, sOutPath, SOutXML, oXMLDom, sNodePath, lErrNum, sErrMsg)",
            L"GetTagNames(oXMLDom, sNodePath)", L"GetNodesByName(sNodeName, oDomIn)", L"ShowExportGUI()"}));
}

TEST(TypeLibrary, HasTheMembersOfTheCollectionInTheirOrder) {
    EXPECT_EQ(membersOf(typeOf(__uuidof(_dCollection))), (Texts{L"Add(objNewMember, sKey)",
                                                                L"SetValue(vValue, sKey)",
                                                                L"removeAll()",
                                                                L"GetValue(sKey)",
                                                                L"Item(vntIndexKey)",
                                                                L"Item2(vntIndexKey)",
                                                                L"Count()",
                                                                L"RemoveByKey(sKey)",
                                                                L"RemoveByIndex(lIndex)",
                                                                L"NewEnum()",
                                                                L"ReturnKeys()",
                                                                L"ReturnValues()",
                                                                L"GetValueString(sKey)",
                                                                L"bValueExist(sValue, bCaseSensitive)",
                                                                L"FindIndexOfKey(sKey)",
                                                                L"FindValueKey(vValue)",
                                                                L"SortByValue(inValue, SrtIndex, n)",
                                                                L"IsNumericCollection(CollectionIn)",
                                                                L"ReturnSortedNumeric(nArray, CollectionIn)",
                                                                L"ReturnSortedString(sArray, CollectionIn)",
                                                                L"ReturnSortedDouble(dArray, CollectionIn)",
                                                                L"QuicksortDouble(List, min, max)"}));
}

TEST(TypeLibrary, HasTheMembersOfTheDeclarations) {
    EXPECT_EQ(membersOf(typeOf(__uuidof(_IExternalProcessor))), Texts{L"Process(dColSpatialVariables)"});
    EXPECT_EQ(membersOf(typeOf(__uuidof(_IExternalProgID))), Texts{L"ProgID()"});
}

TEST(TypeLibrary, PassesTheFileNameAndTheErrorByReference) {
    constexpr USHORT in = PARAMFLAG_FIN;
    constexpr USHORT both = PARAMFLAG_FIN | PARAMFLAG_FOUT;
    EXPECT_EQ(flagsOf(typeOf(__uuidof(_clsExport)), 1),
              (std::vector<USHORT>{in, in, in, both, in, in, both, both}));
}

/// What a type says of itself.
TYPEATTR attributesOf(ITypeInfo* pInfo) {
    TYPEATTR* pAttributes = nullptr;
    EXPECT_EQ(pInfo->GetTypeAttr(&pAttributes), S_OK);
    const TYPEATTR attributes = *pAttributes;
    pInfo->ReleaseTypeAttr(pAttributes);
    return attributes;
}

/// The interface that compiled clients call, of one that scripts call.
ITypeInfoPtr compiledSideOf(ITypeInfo* pInfo) {
    HREFTYPE hSide = 0;
    EXPECT_EQ(pInfo->GetRefTypeOfImplType(static_cast<UINT>(-1), &hSide), S_OK);
    ITypeInfoPtr pSide;
    EXPECT_EQ(pInfo->GetRefTypeInfo(hSide, &pSide), S_OK);
    return pSide;
}

TEST(TypeLibrary, HasDualInterfacesThatTheSystemCanMarshal) {
    for (const IID& iid : {__uuidof(_clsExport), __uuidof(_dCollection), __uuidof(_IExternalProcessor),
                           __uuidof(_IExternalProgID), __uuidof(_EntryList)}) {
        const auto pInfo = typeOf(iid);
        EXPECT_EQ(attributesOf(pInfo).typekind, TKIND_DISPATCH);
        EXPECT_NE(attributesOf(pInfo).wTypeFlags & TYPEFLAG_FDUAL, 0);
        const TYPEATTR compiled = attributesOf(compiledSideOf(pInfo));
        EXPECT_EQ(compiled.typekind, TKIND_INTERFACE);
        EXPECT_EQ(compiled.guid, iid);
        EXPECT_NE(compiled.wTypeFlags & TYPEFLAG_FOLEAUTOMATION, 0);
    }
}

TEST(TypeLibrary, IsInTheComponentsFile) {
    ITypeLibPtr pLibrary;
    EXPECT_EQ(LoadTypeLibEx(serverFile().c_str(), REGKIND_NONE, &pLibrary), S_OK);
}

TEST(TypeLibrary, IsWhatObjectsDescribeThemselvesWith) {
    const IDispatchPtr pCollection = newCollection();
    UINT nInfos = 0;
    EXPECT_EQ(pCollection->GetTypeInfoCount(&nInfos), S_OK);
    EXPECT_EQ(nInfos, 1U);
    ITypeInfoPtr pInfo;
    ASSERT_EQ(pCollection->GetTypeInfo(0, LOCALE_USER_DEFAULT, &pInfo), S_OK);
    TYPEATTR* pAttributes = nullptr;
    ASSERT_EQ(pInfo->GetTypeAttr(&pAttributes), S_OK);
    EXPECT_EQ(pAttributes->guid, __uuidof(_dCollection));
    pInfo->ReleaseTypeAttr(pAttributes);
    EXPECT_EQ(pCollection->GetTypeInfo(1, LOCALE_USER_DEFAULT, &pInfo), DISP_E_BADINDEX);
}

TEST(TypeLibrary, IsWhereObjectsFindTheirClasses) {
    for (const wchar_t* sClass : {L"clsExport", L"dCollection", L"IExternalProcessor", L"IExternalProgID"}) {
        const auto pObject = create<IUnknown>((std::wstring(L"Halvane.") + sClass).c_str());
        _com_ptr_t<_com_IIID<IProvideClassInfo, &__uuidof(IProvideClassInfo)>> pProvider(pObject);
        ASSERT_NE(pProvider, nullptr) << sClass;
        ITypeInfoPtr pInfo;
        ASSERT_EQ(pProvider->GetClassInfo(&pInfo), S_OK);
        EXPECT_EQ(attributesOf(pInfo).typekind, TKIND_COCLASS);
        BSTR sName = nullptr;
        pInfo->GetDocumentation(MEMBERID_NIL, &sName, nullptr, nullptr, nullptr);
        EXPECT_EQ(std::wstring(_bstr_t(sName, false)), sClass);
        EXPECT_EQ(pProvider->GetClassInfo(nullptr), E_POINTER);
    }
}

} // namespace
} // namespace halvane::client
