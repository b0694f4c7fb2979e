#include "host/com/MemberIds.h"

#include "collection/com/Bstr.h"
#include "collection/com/HResult.h"

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

/// Whether it tells of one interface: not of automation objects as such.
bool describesAnInterface(ITypeInfo& typeInfo) {
    TYPEATTR* pAttributes = nullptr;
    if (FAILED(typeInfo.GetTypeAttr(&pAttributes)))
        return false;
    const bool bDescribes = pAttributes->guid != GUID_NULL && pAttributes->guid != IID_IDispatch;
    typeInfo.ReleaseTypeAttr(pAttributes);
    return bDescribes;
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

MemberIds* MemberIdCache::sharedIds(const ObjectKind& kind, IDispatch& dispatch) {
    auto pTypeInfo = typeInfoOf(dispatch);
    if (!pTypeInfo)
        return nullptr;
    auto pFound = described_.find(pTypeInfo.get());
    if (pFound == described_.end()) {
        const bool bDescribes = describesAnInterface(*pTypeInfo);
        ITypeInfo* pAddress = pTypeInfo.get();
        pFound = described_.emplace(pAddress, Described{std::move(pTypeInfo), bDescribes, {}}).first;
    }
    Described& described = pFound->second;
    return described.bAlike ? &described.idsOfKind.try_emplace(&kind, kind).first->second : nullptr;
}

} // namespace halvane::host::com
