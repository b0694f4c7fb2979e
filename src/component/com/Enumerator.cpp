#include "base/Failure.h"
#include "base/com/Counted.h"
#include "component/com/Entries.h"
#include "component/com/ErrorInfo.h"
#include "component/com/ServerUse.h"

#include <algorithm>
#include <limits>

namespace halvane::server {

namespace {

class Enumerator final : public com::Counted<IEnumVARIANT> {
public:
    Enumerator(EntriesPtr pEntries, std::int32_t lPosition)
        : pEntries_(std::move(pEntries)), lPosition_(lPosition) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG nWanted, VARIANT* aValues, ULONG* pnFetched) override {
        if (aValues == nullptr || (pnFetched == nullptr && nWanted != 1))
            return E_POINTER;
        ULONG nFetched = 0;
        for (ULONG i = 0; i < nWanted; ++i)
            VariantInit(&aValues[i]);
        try {
            for (; nFetched < nWanted && lPosition_ < pEntries_->count(); ++nFetched)
                aValues[nFetched] = pEntries_->at(++lPosition_).detach();
        } catch (...) {
            for (ULONG i = 0; i < nFetched; ++i)
                VariantClear(&aValues[i]);
            return raise(currentFailure(), IID_IEnumVARIANT, "Halvane");
        }
        if (pnFetched != nullptr)
            *pnFetched = nFetched;
        return nFetched == nWanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG nSkipped) override {
        const auto nLeft = static_cast<ULONG>(std::max(pEntries_->count() - lPosition_, 0));
        lPosition_ += static_cast<std::int32_t>(std::min(nSkipped, nLeft));
        return nSkipped <= nLeft ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        lPosition_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** ppClone) override {
        if (ppClone == nullptr)
            return E_POINTER;
        *ppClone = nullptr;
        try {
            *ppClone = com::makeObject<Enumerator>(pEntries_, lPosition_).detach();
            return S_OK;
        } catch (...) {
            return raise(currentFailure(), IID_IEnumVARIANT, "Halvane");
        }
    }

private:
    EntriesPtr pEntries_;
    std::int32_t lPosition_;
    ServerUse use_;
};

} // namespace

com::ComPtr<IEnumVARIANT> makeEnumerator(EntriesPtr pEntries) {
    return com::makeObject<Enumerator>(std::move(pEntries), 0).query<IEnumVARIANT>();
}

} // namespace halvane::server
