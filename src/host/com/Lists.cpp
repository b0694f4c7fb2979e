#include "host/com/Lists.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "host/com/Invocation.h"

#include <dispex.h>

#include <string>
#include <utility>

namespace halvane::host::com {

using halvane::com::require;

namespace {

class NoItems final : public ItemSource {
public:
    std::optional<Variant> next() override { return std::nullopt; }
};

/// An array in memory, of variants or of one type of items.
class ArrayItems final : public ItemSource {
public:
    explicit ArrayItems(const VARIANT& list) : array_(Variant::copyOf(list)) {
        if (array() == nullptr)
            return; // declared, and never given a size
        if (SafeArrayGetDim(array()) != 1 || SafeArrayGetElemsize(array()) > sizeof(VARIANT) ||
            itemType() == VT_DECIMAL || itemType() == VT_RECORD)
            throw Failure::of(FailureNumber::TypeMismatch);
        require(SafeArrayGetLBound(array(), 1, &lNext_), "SafeArrayGetLBound");
        require(SafeArrayGetUBound(array(), 1, &lLast_), "SafeArrayGetUBound");
    }

    std::optional<Variant> next() override {
        if (lNext_ > lLast_)
            return std::nullopt;
        Variant item;
        VARIANT* pItem = item.put();
        void* pData = itemType() == VT_VARIANT ? static_cast<void*>(pItem) : &V_UI8(pItem);
        require(SafeArrayGetElement(array(), &lNext_, pData), "SafeArrayGetElement");
        if (itemType() != VT_VARIANT)
            V_VT(pItem) = itemType();
        ++lNext_;
        return item;
    }

private:
    [[nodiscard]] SAFEARRAY* array() const { return V_ARRAY(&array_.get()); }
    [[nodiscard]] VARTYPE itemType() const { return static_cast<VARTYPE>(V_VT(&array_.get()) & VT_TYPEMASK); }

    Variant array_;
    LONG lNext_ = 0;
    LONG lLast_ = -1;
};

/// A script's array: its items are members by the names "0", "1", ...
class NumberedItems final : public ItemSource {
public:
    explicit NumberedItems(const LateBound& list)
        : pDispatch_(&list.dispatch()), lCount_(list.integer("length")) {}

    std::optional<Variant> next() override {
        if (lNext_ >= lCount_)
            return std::nullopt;
        const std::string sName = std::to_string(lNext_++);
        const halvane::com::Bstr sText(sName);
        LPOLESTR pName = sText.get();
        DISPID id = DISPID_UNKNOWN;
        const HRESULT hr = pDispatch_->GetIDsOfNames(IID_NULL, &pName, 1, LOCALE_USER_DEFAULT, &id);
        if (hr == DISP_E_UNKNOWNNAME)
            return Variant(); // a hole
        require(hr, "List." + sName);
        return invoke(*pDispatch_, id, false, {}, {kindList.sName, sName});
    }

private:
    ComPtr<IDispatch> pDispatch_;
    std::int32_t lCount_;
    std::int32_t lNext_ = 0;
};

class EnumeratedItems final : public ItemSource {
public:
    explicit EnumeratedItems(ComPtr<IEnumVARIANT> pEnum) : pEnum_(std::move(pEnum)) {}

    std::optional<Variant> next() override {
        Variant item;
        ULONG nFetched = 0;
        const HRESULT hr = pEnum_->Next(1, item.put(), &nFetched);
        require(hr, "IEnumVARIANT.Next");
        return hr == S_OK && nFetched == 1 ? std::optional(std::move(item)) : std::nullopt;
    }

private:
    ComPtr<IEnumVARIANT> pEnum_;
};

class CountedItems final : public ItemSource {
public:
    explicit CountedItems(LateBound list) : list_(std::move(list)), lCount_(list_.integer("Count")) {}

    std::optional<Variant> next() override {
        return lNext_ < lCount_ ? std::optional(list_.call("Item", {lNext_++})) : std::nullopt;
    }

private:
    LateBound list_;
    std::int32_t lCount_;
    std::int32_t lNext_ = 0;
};

/// Nothing when the object cannot be enumerated.
ComPtr<IEnumVARIANT> enumeratorOf(IDispatch& dispatch) {
    DISPPARAMS none{};
    Variant result;
    const HRESULT hr =
        dispatch.Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                        &none, result.put(), nullptr, nullptr);
    if (FAILED(hr))
        return {};
    const VARIANT& held = result.get();
    if (V_VT(&held) != VT_UNKNOWN && V_VT(&held) != VT_DISPATCH)
        return {};
    return ComPtr<IUnknown>(V_UNKNOWN(&held)).query<IEnumVARIANT>();
}

} // namespace

std::unique_ptr<ItemSource> itemsOf(const ContextPtr& pContext, const VARIANT& list) {
    if ((V_VT(&list) & VT_ARRAY) != 0)
        return std::make_unique<ArrayItems>(list);
    const auto pDispatch = dispatchIn(list);
    if (!pDispatch)
        return std::make_unique<NoItems>();
    LateBound object(pContext, kindList, pDispatch);
    const bool bScript = static_cast<bool>(pDispatch.query<IDispatchEx>());
    if (bScript && object.has("length"))
        return std::make_unique<NumberedItems>(object);
    const bool bCounted = bScript && object.has("Count");
    if (auto pEnum = bCounted ? nullptr : enumeratorOf(*pDispatch))
        return std::make_unique<EnumeratedItems>(std::move(pEnum));
    return std::make_unique<CountedItems>(std::move(object));
}

std::vector<Variant> allItemsOf(const ContextPtr& pContext, const VARIANT& list) {
    std::vector<Variant> aItems;
    const auto pSource = itemsOf(pContext, list);
    while (auto item = pSource->next())
        aItems.push_back(std::move(*item));
    return aItems;
}

} // namespace halvane::host::com
