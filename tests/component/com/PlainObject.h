#pragma once

#include "Client.h"

#include <atomic>
#include <string>
#include <utility>
#include <vector>

namespace halvane::client {

/// An automation object whose properties have the values that it is made with, without a type description.
class PlainObject final : public IDispatch {
public:
    using Properties = std::vector<std::pair<std::wstring, _variant_t>>;

    [[nodiscard]] static _variant_t make(Properties properties);
    /// How many there are in the process.
    [[nodiscard]] static long alive() { return nAlive; }
    /// How many calls came on another thread than the one that made the object.
    [[nodiscard]] static long strayCalls() { return nStrayCalls; }

    explicit PlainObject(Properties properties) : properties_(std::move(properties)) { ++nAlive; }
    PlainObject(const PlainObject&) = delete;
    PlainObject& operator=(const PlainObject&) = delete;
    ~PlainObject() { --nAlive; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pnCount) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* asNames, UINT nNames, LCID,
                                            DISPID* alMembers) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID lMember, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* pResult,
                                     EXCEPINFO*, UINT*) override;

private:
    void noteThread() const;

    Properties properties_;
    DWORD nThread_ = GetCurrentThreadId();
    std::atomic<ULONG> nReferences_ = 0;
    static std::atomic<long> nAlive;
    static std::atomic<long> nStrayCalls;
};

/// An array of variants.
[[nodiscard]] _variant_t listOf(const std::vector<_variant_t>& aItems);

/// A map document whose map has one layer, "Roads", without features.
[[nodiscard]] _variant_t smallMapDocument();

} // namespace halvane::client
