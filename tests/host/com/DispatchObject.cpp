#include "host/com/DispatchObject.h"

#include "base/Conversions.h"
#include "base/Failure.h"
#include "base/com/Bstr.h"
#include "base/com/HResult.h"

#include <algorithm>

namespace halvane::test {

using com::ComPtr;
using com::Variant;

std::atomic<long> DispatchObject::nAlive_ = 0;
std::atomic<DISPID> DispatchObject::nObjects_ = 0;

HRESULT DispatchObject::QueryInterface(REFIID iid, void** ppObject) {
    if (iid != IID_IUnknown && iid != IID_IDispatch) {
        *ppObject = nullptr;
        return E_NOINTERFACE;
    }
    *ppObject = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

ULONG DispatchObject::AddRef() {
    return ++nReferences_;
}

ULONG DispatchObject::Release() {
    const ULONG nLeft = --nReferences_;
    if (nLeft == 0)
        delete this; // as the technology has it: the last reference owns the object
    return nLeft;
}

HRESULT DispatchObject::GetTypeInfoCount(UINT* pCount) {
    *pCount = 0;
    return S_OK;
}

HRESULT DispatchObject::GetTypeInfo(UINT /*nInfo*/, LCID /*locale*/, ITypeInfo** ppInfo) {
    *ppInfo = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT DispatchObject::GetIDsOfNames(REFIID /*iid*/, LPOLESTR* aNames, UINT nNames, LCID /*locale*/,
                                      DISPID* aIds) {
    const std::string sName = com::utf8Of(std::wstring_view(aNames[0]));
    if (nNames != 1 || !hasMember(sName)) {
        aIds[0] = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    if (aNames_.empty())
        nFirstId_ = 100 + 50 * (nObjects_++ % 1000);
    auto pFound = std::find(aNames_.begin(), aNames_.end(), sName);
    if (pFound == aNames_.end())
        pFound = aNames_.insert(aNames_.end(), sName);
    aIds[0] = nFirstId_ + static_cast<DISPID>(pFound - aNames_.begin());
    return S_OK;
}

HRESULT DispatchObject::call(DISPID id, WORD nFlags, DISPPARAMS& parameters, Variant& result) {
    if (id == DISPID_NEWENUM) {
        auto pEnum = enumerator();
        if (!pEnum)
            return DISP_E_MEMBERNOTFOUND;
        V_VT(result.put()) = VT_UNKNOWN;
        VARIANT held;
        VariantInit(&held);
        V_VT(&held) = VT_UNKNOWN;
        V_UNKNOWN(&held) = pEnum.detach();
        result = Variant::attach(held);
        return S_OK;
    }
    const DISPID nMember = id - nFirstId_;
    if (nMember < 0 || static_cast<std::size_t>(nMember) >= aNames_.size())
        return DISP_E_MEMBERNOTFOUND;
    const std::string sName = aNames_[static_cast<std::size_t>(nMember)];
    std::vector<Variant> aArguments;
    for (UINT n = parameters.cArgs; n > 0; --n)
        aArguments.push_back(Variant::copyOf(parameters.rgvarg[n - 1]));
    if ((nFlags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0)
        put(sName, std::move(aArguments.back()));
    else
        result = get(sName, aArguments);
    return S_OK;
}

HRESULT DispatchObject::Invoke(DISPID id, REFIID /*iid*/, LCID /*locale*/, WORD nFlags,
                               DISPPARAMS* pParameters, VARIANT* pResult, EXCEPINFO* pException,
                               UINT* /*pArgument*/) {
    try {
        Variant result;
        const HRESULT hr = call(id, nFlags, *pParameters, result);
        if (SUCCEEDED(hr) && pResult != nullptr)
            *pResult = result.detach();
        return hr;
    } catch (...) {
        const Failure failure = currentFailure();
        if (pException != nullptr) {
            *pException = {};
            pException->scode = com::resultOf(failure);
            pException->bstrDescription = com::Bstr(failure.description()).detach();
        }
        return DISP_E_EXCEPTION;
    }
}

void DispatchObject::put(const std::string& sName, Variant /*value*/) {
    throw Failure(FailureNumber::PropertyOrMethodNotSupported, sName + " cannot be assigned");
}

Variant variantOf(const ComPtr<IDispatch>& pObject) {
    VARIANT held;
    VariantInit(&held);
    V_VT(&held) = VT_DISPATCH;
    V_DISPATCH(&held) = ComPtr<IDispatch>(pObject).detach();
    return Variant::attach(held);
}

namespace {

class ItemEnumerator final : public IEnumVARIANT {
public:
    explicit ItemEnumerator(std::vector<Variant> aItems) : aItems_(std::move(aItems)) {}
    virtual ~ItemEnumerator() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        if (iid != IID_IUnknown && iid != IID_IEnumVARIANT) {
            *ppObject = nullptr;
            return E_NOINTERFACE;
        }
        *ppObject = static_cast<IEnumVARIANT*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++nReferences_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG nLeft = --nReferences_;
        if (nLeft == 0)
            delete this; // as the technology has it: the last reference owns the object
        return nLeft;
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG nItems, VARIANT* aItems, ULONG* pFetched) override {
        ULONG nFetched = 0;
        for (; nFetched < nItems && nNext_ < aItems_.size(); ++nFetched)
            aItems[nFetched] = Variant::copyOf(aItems_[nNext_++].get()).detach();
        if (pFetched != nullptr)
            *pFetched = nFetched;
        return nFetched == nItems ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

private:
    std::vector<Variant> aItems_;
    std::size_t nNext_ = 0;
    ULONG nReferences_ = 0;
};

class EnumeratedList final : public DispatchObject {
public:
    explicit EnumeratedList(std::vector<Variant> aItems) : aItems_(std::move(aItems)) {}

protected:
    bool hasMember(const std::string& /*sName*/) const override { return false; }
    Variant get(const std::string& /*sName*/, const std::vector<Variant>& /*aArguments*/) override {
        return {};
    }
    ComPtr<IUnknown> enumerator() override {
        std::vector<Variant> aItems;
        for (const Variant& item : aItems_)
            aItems.push_back(Variant::copyOf(item.get()));
        return ComPtr<IUnknown>(new ItemEnumerator(std::move(aItems)));
    }

private:
    std::vector<Variant> aItems_;
};

class CountedList final : public DispatchObject {
public:
    explicit CountedList(std::vector<Variant> aItems) : aItems_(std::move(aItems)) {}

protected:
    bool hasMember(const std::string& sName) const override { return sName == "Count" || sName == "Item"; }
    Variant get(const std::string& sName, const std::vector<Variant>& aArguments) override {
        if (sName == "Count")
            return com::toVariant(static_cast<std::int32_t>(aItems_.size()));
        const auto lIndex = wholeNumberOf(toView(com::toValue(aArguments.at(0).get())));
        return Variant::copyOf(aItems_.at(static_cast<std::size_t>(lIndex)).get());
    }

private:
    std::vector<Variant> aItems_;
};

Variant arrayOf(const std::vector<Variant>& aItems) {
    SAFEARRAY* pArray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(aItems.size()));
    VARIANT held;
    VariantInit(&held);
    V_VT(&held) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&held) = pArray;
    Variant array = Variant::attach(held);
    for (LONG n = 0; n < static_cast<LONG>(aItems.size()); ++n) {
        VARIANT item = aItems[static_cast<std::size_t>(n)].get();
        com::require(SafeArrayPutElement(pArray, &n, &item), "SafeArrayPutElement");
    }
    return array;
}

} // namespace

Variant listVariant(ListShape shape, std::vector<Variant> aItems) {
    switch (shape) {
    case ListShape::Enumerated:
        return variantOf(makeDispatch<EnumeratedList>(std::move(aItems)));
    case ListShape::Counted:
        return variantOf(makeDispatch<CountedList>(std::move(aItems)));
    case ListShape::Array:
        break;
    }
    return arrayOf(aItems);
}

} // namespace halvane::test
