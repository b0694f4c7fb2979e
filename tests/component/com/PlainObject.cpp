#include "PlainObject.h"

#include <memory>

namespace halvane::client {

std::atomic<long> PlainObject::nAlive = 0;
std::atomic<long> PlainObject::nStrayCalls = 0;

void PlainObject::noteThread() const {
    if (GetCurrentThreadId() != nThread_)
        ++nStrayCalls;
}

ULONG PlainObject::AddRef() {
    noteThread();
    return ++nReferences_;
}

_variant_t PlainObject::make(Properties properties) {
    // The first reference owns.
    return _variant_t(
        static_cast<IDispatch*>(std::make_unique<PlainObject>(std::move(properties)).release()));
}

HRESULT PlainObject::QueryInterface(REFIID iid, void** ppObject) {
    *ppObject = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch)
        return E_NOINTERFACE;
    AddRef();
    *ppObject = this;
    return S_OK;
}

ULONG PlainObject::Release() {
    noteThread();
    const ULONG nLeft = --nReferences_;
    if (nLeft == 0)
        const std::unique_ptr<PlainObject> last(this);
    return nLeft;
}

HRESULT PlainObject::GetTypeInfoCount(UINT* pnCount) {
    *pnCount = 0;
    return S_OK;
}

HRESULT PlainObject::GetIDsOfNames(REFIID, LPOLESTR* asNames, UINT nNames, LCID, DISPID* alMembers) {
    noteThread();
    if (nNames != 1)
        return DISP_E_UNKNOWNNAME;
    for (std::size_t i = 0; i < properties_.size(); ++i) {
        if (properties_[i].first == asNames[0]) {
            alMembers[0] = static_cast<DISPID>(i) + 1;
            return S_OK;
        }
    }
    alMembers[0] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
}

HRESULT PlainObject::Invoke(DISPID lMember, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* pResult, EXCEPINFO*,
                            UINT*) {
    noteThread();
    if (lMember < 1 || static_cast<std::size_t>(lMember) > properties_.size())
        return DISP_E_MEMBERNOTFOUND;
    if (pResult == nullptr)
        return S_OK;
    VariantInit(pResult);
    return VariantCopy(pResult, &properties_[static_cast<std::size_t>(lMember) - 1].second);
}

_variant_t listOf(const std::vector<_variant_t>& aItems) {
    _variant_t list;
    V_ARRAY(&list) = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(aItems.size()));
    V_VT(&list) = VT_ARRAY | VT_VARIANT;
    LONG lIndex = 0;
    for (_variant_t item : aItems) {
        SafeArrayPutElement(V_ARRAY(&list), &lIndex, &item);
        ++lIndex;
    }
    return list;
}

_variant_t smallMapDocument() {
    const _variant_t nothing(static_cast<IDispatch*>(nullptr));
    const _variant_t layer = PlainObject::make({{L"LayerKind", L"FeatureLayer"},
                                                {L"Name", L"Roads"},
                                                {L"FeatureClass", nothing},
                                                {L"SelectionCount", 0L},
                                                {L"SpatialReference", nothing}});
    const _variant_t map = PlainObject::make({{L"Name", L"Town"},
                                              {L"Layers", listOf({layer})},
                                              {L"StandaloneTables", listOf({})},
                                              {L"SpatialReference", nothing}});
    return PlainObject::make({{L"FocusMap", map}, {L"Maps", listOf({map})}});
}

} // namespace halvane::client
