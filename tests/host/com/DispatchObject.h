#pragma once

#include "base/com/ComPtr.h"
#include "base/com/Variant.h"

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

/// An automation object in C++ without a type description. What a member throws reaches the caller as an
/// exception with its text.
class DispatchObject : public IDispatch {
public:
    DispatchObject() { ++nAlive_; }
    DispatchObject(const DispatchObject&) = delete;
    DispatchObject& operator=(const DispatchObject&) = delete;

    /// How many there are in the process.
    [[nodiscard]] static long alive() { return nAlive_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pCount) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT nInfo, LCID locale, ITypeInfo** ppInfo) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* aNames, UINT nNames, LCID locale,
                                            DISPID* aIds) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD nFlags, DISPPARAMS* pParameters,
                                     VARIANT* pResult, EXCEPINFO* pException, UINT* pArgument) override;

protected:
    virtual ~DispatchObject() { --nAlive_; }

    [[nodiscard]] virtual bool hasMember(const std::string& sName) const = 0;
    /// @param aArguments in order, from the first to the last.
    virtual com::Variant get(const std::string& sName, const std::vector<com::Variant>& aArguments) = 0;
    /// Assigns a property. @throws Failure unless it can be.
    virtual void put(const std::string& sName, com::Variant value);
    /// DISPID_NEWENUM; nothing for an object that cannot be enumerated.
    [[nodiscard]] virtual com::ComPtr<IUnknown> enumerator() { return {}; }

private:
    /// Numbers that are this object's own: nobody may take them for those of another.
    std::vector<std::string> aNames_;
    DISPID nFirstId_ = 100;
    std::atomic<ULONG> nReferences_ = 0;
    static std::atomic<long> nAlive_;
    static std::atomic<DISPID> nObjects_;

    HRESULT call(DISPID id, WORD nFlags, DISPPARAMS& parameters, com::Variant& result);
};

/// The automation object that a new C++ object is.
template<class Class, class... Arguments>
[[nodiscard]] com::ComPtr<IDispatch> makeDispatch(Arguments&&... arguments) {
    return com::ComPtr<IDispatch>(new Class(std::forward<Arguments>(arguments)...));
}

/// A variant that holds an object.
[[nodiscard]] com::Variant variantOf(const com::ComPtr<IDispatch>& pObject);

/// Lists in the three shapes that automation knows.
enum class ListShape { Array, Enumerated, Counted };
[[nodiscard]] com::Variant listVariant(ListShape shape, std::vector<com::Variant> aItems);

} // namespace halvane::test
