#include "component/com/Entries.h"

#include "Halvane.h"
#include "base/Conversions.h"
#include "base/Failure.h"
#include "component/com/DualObject.h"
#include "component/com/HeldVariant.h"
#include "component/com/KeyText.h"

#include <cstddef>
#include <string>

namespace halvane::server {

namespace {

class Values final : public Entries {
public:
    explicit Values(dCollectionPtr dEntries) : dEntries_(std::move(dEntries)) {}

    [[nodiscard]] std::int32_t count() const override { return dEntries_->Count(); }
    [[nodiscard]] com::Variant at(std::int32_t lPosition) const override {
        return variantOf(dEntries_->ReturnValues().item(lPosition));
    }
    [[nodiscard]] com::Variant entry(const Value& vIndexOrKey) const override {
        return variantOf(dEntries_->ReturnValues().entry(vIndexOrKey));
    }

private:
    dCollectionPtr dEntries_;
};

/// Keys have no keys themselves.
class Keys final : public Entries {
public:
    explicit Keys(dCollectionPtr dEntries) : dEntries_(std::move(dEntries)) {}

    [[nodiscard]] std::int32_t count() const override { return dEntries_->Count(); }
    [[nodiscard]] com::Variant at(std::int32_t lPosition) const override {
        const auto& asKeys = dEntries_->ReturnKeys();
        if (lPosition < 1 || static_cast<std::size_t>(lPosition) > asKeys.size())
            throw Failure::of(FailureNumber::SubscriptOutOfRange);
        com::Bstr sKey(textOfKey(asKeys[static_cast<std::size_t>(lPosition - 1)]));
        VARIANT key{};
        V_VT(&key) = VT_BSTR;
        V_BSTR(&key) = sKey.detach();
        return com::Variant::attach(key);
    }
    [[nodiscard]] com::Variant entry(const Value& vIndexOrKey) const override {
        if (std::holds_alternative<std::string>(vIndexOrKey))
            throw Failure::of(FailureNumber::InvalidProcedureCall);
        return at(wholeNumberOf(toView(vIndexOrKey)));
    }

private:
    dCollectionPtr dEntries_;
};

class EntryList final : public DualObject<_EntryList> {
public:
    explicit EntryList(EntriesPtr pEntries)
        : DualObject("Halvane.EntryList"), pEntries_(std::move(pEntries)) {}

    HRESULT STDMETHODCALLTYPE get_Item(VARIANT Index, VARIANT* vEntry) override {
        if (vEntry == nullptr)
            return E_POINTER;
        VariantInit(vEntry);
        return guarded([&] { *vEntry = pEntries_->entry(indexOrKeyOf(Index)).detach(); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* lCount) override {
        if (lCount == nullptr)
            return E_POINTER;
        return guarded([&] { *lCount = pEntries_->count(); });
    }
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** oEnumerator) override {
        if (oEnumerator == nullptr)
            return E_POINTER;
        *oEnumerator = nullptr;
        return guarded([&] { *oEnumerator = makeEnumerator(pEntries_).detach(); });
    }

private:
    EntriesPtr pEntries_;
};

} // namespace

EntriesPtr valuesOf(dCollectionPtr dEntries) {
    return std::make_shared<Values>(std::move(dEntries));
}

EntriesPtr keysOf(dCollectionPtr dEntries) {
    return std::make_shared<Keys>(std::move(dEntries));
}

com::ComPtr<IDispatch> makeEntryList(EntriesPtr pEntries) {
    return com::makeObject<EntryList>(std::move(pEntries)).query<IDispatch>();
}

} // namespace halvane::server
