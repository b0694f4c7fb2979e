#pragma once

#include "base/com/ComPtr.h"

#include <atomic>
#include <memory>
#include <type_traits>
#include <utility>

namespace halvane::com {

/// An object of our own behind interfaces, which goes with the last reference to it. It is made with one,
/// which its creator owns.
/// @tparam Primary the interface that the object itself is known by, as IUnknown and, where it has them,
/// late-bound
///         calls.
template<class Primary, class... Others>
class Counted : public Primary, public Others... {
public:
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    virtual ~Counted() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** ppObject) override {
        if (ppObject == nullptr)
            return E_POINTER;
        *ppObject = nullptr;
        const bool bLateBound = std::is_base_of_v<IDispatch, Primary> && iid == IID_IDispatch;
        if (bLateBound || iid == IID_IUnknown || iid == __uuidof(Primary))
            *ppObject = static_cast<Primary*>(this);
        ((iid == __uuidof(Others) ? static_cast<void>(*ppObject = static_cast<Others*>(this)) : void()), ...);
        if (*ppObject == nullptr)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++nReferences_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG nLeft = --nReferences_;
        if (nLeft == 0)
            const std::unique_ptr<Counted> last(this);
        return nLeft;
    }

protected:
    Counted() = default;

private:
    std::atomic<ULONG> nReferences_ = 1;
};

/// A new object, with the one reference that it is made with.
template<class Made, class... Arguments>
[[nodiscard]] ComPtr<Made> makeObject(Arguments&&... arguments) {
    return ComPtr<Made>::attach(std::make_unique<Made>(std::forward<Arguments>(arguments)...).release());
}

} // namespace halvane::com
