#include "host/com/MemberIds.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"

#include <dispex.h>

#include <fmt/format.h>

namespace halvane::host::com {

using halvane::com::Bstr;
using halvane::com::ComPtr;

namespace {

bool tellsOfMissingMember(HRESULT hr) {
    return hr == DISP_E_UNKNOWNNAME || hr == DISP_E_MEMBERNOTFOUND;
}

HRESULT askForId(IDispatch& dispatch, std::string_view sName, DISPID& id) {
    const Bstr sText(sName);
    LPOLESTR pName = sText.get();
    const HRESULT hr = dispatch.GetIDsOfNames(IID_NULL, &pName, 1, LOCALE_USER_DEFAULT, &id);
    if (hr != E_NOTIMPL)
        return hr;
    // Some script engines' classes tell their members here alone.
    const auto pExtended = ComPtr<IDispatch>(&dispatch).query<IDispatchEx>();
    return pExtended ? pExtended->GetDispID(sText.get(), fdexNameCaseInsensitive, &id) : hr;
}

/// Which interface it describes; none for automation objects as such.
GUID interfaceOf(ITypeInfo& typeInfo) {
    TYPEATTR* pAttributes = nullptr;
    if (FAILED(typeInfo.GetTypeAttr(&pAttributes)))
        return GUID_NULL;
    const GUID guid = pAttributes->guid;
    typeInfo.ReleaseTypeAttr(pAttributes);
    return guid == IID_IDispatch ? GUID_NULL : guid;
}

/// A description that holds for every object that refers to it.
ComPtr<ITypeInfo> typeInfoOf(IDispatch& dispatch) {
    UINT nInfos = 0;
    ComPtr<ITypeInfo> pTypeInfo;
    if (FAILED(dispatch.GetTypeInfoCount(&nInfos)) || nInfos == 0 ||
        FAILED(dispatch.GetTypeInfo(0, LOCALE_USER_DEFAULT, pTypeInfo.put())))
        return {};
    if (ComPtr<IDispatch>(&dispatch).query<IDispatchEx>())
        return {};
    return pTypeInfo;
}

} // namespace

std::optional<DISPID> MemberIds::idOf(IDispatch& dispatch, std::size_t nMember) {
    Known& known = aIds_[nMember];
    if (known.bAsked)
        return known.id;
    const std::string_view sName = kind_->aMembers[nMember].sName;
    DISPID id = DISPID_UNKNOWN;
    const HRESULT hr = askForId(dispatch, sName, id);
    if (FAILED(hr) && !tellsOfMissingMember(hr))
        throw halvane::com::failureOf(hr, fmt::format("{}.{}", kind_->sName, sName));
    known = {true, FAILED(hr) ? std::nullopt : std::optional(id)};
    return known.id;
}

MemberIdCache::Described* MemberIdCache::find(ITypeInfo& typeInfo) {
    // Objects beyond the process have a new face of their description each.
    for (Described& described : described_)
        if (described.pTypeInfo.get() == &typeInfo)
            return &described;
    const GUID guid = interfaceOf(typeInfo);
    if (guid == GUID_NULL)
        return nullptr;
    for (Described& described : described_)
        if (described.guid == guid)
            return &described;
    return &described_.emplace_back(Described{guid, ComPtr<ITypeInfo>(&typeInfo), {}});
}

MemberIds* MemberIdCache::sharedIds(const ObjectKind& kind, IDispatch& dispatch) {
    const auto pTypeInfo = typeInfoOf(dispatch);
    Described* pDescribed = pTypeInfo ? find(*pTypeInfo) : nullptr;
    return pDescribed == nullptr ? nullptr : &pDescribed->idsOfKind.try_emplace(&kind, kind).first->second;
}

} // namespace halvane::host::com
