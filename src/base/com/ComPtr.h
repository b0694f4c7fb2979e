#pragma once

#include "base/com/Windows.h"

#include <cstddef>
#include <utility>

namespace halvane::com {

/// Owns one reference to an interface.
template<class Interface>
class ComPtr {
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    /// Shares what a caller lends: takes a reference of its own.
    explicit ComPtr(Interface* pShared) noexcept : pInterface_(pShared) {
        if (pInterface_ != nullptr)
            pInterface_->AddRef();
    }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.pInterface_) {}
    ComPtr(ComPtr&& other) noexcept : pInterface_(std::exchange(other.pInterface_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pInterface_, other.pInterface_);
        return *this;
    }
    ~ComPtr() {
        if (pInterface_ != nullptr)
            pInterface_->Release();
    }

    /// Takes over a reference that the caller owns.
    [[nodiscard]] static ComPtr attach(Interface* pOwned) noexcept {
        ComPtr owner;
        owner.pInterface_ = pOwned;
        return owner;
    }
    /// Gives the reference away.
    [[nodiscard]] Interface* detach() noexcept { return std::exchange(pInterface_, nullptr); }

    [[nodiscard]] Interface* get() const noexcept { return pInterface_; }
    Interface* operator->() const noexcept { return pInterface_; }
    Interface& operator*() const noexcept { return *pInterface_; }
    explicit operator bool() const noexcept { return pInterface_ != nullptr; }

    /// For an out-parameter that yields an owned reference; what was held is released.
    [[nodiscard]] Interface** put() noexcept {
        *this = ComPtr();
        return &pInterface_;
    }
    [[nodiscard]] void** putVoid() noexcept {
        return reinterpret_cast<void**>(put()); // QueryInterface and CoCreateInstance want it so
    }

    /// The object seen through another interface; nothing when it has none or nothing is held.
    template<class Other>
    [[nodiscard]] ComPtr<Other> query(REFIID iid = __uuidof(Other)) const noexcept {
        ComPtr<Other> other;
        if (pInterface_ != nullptr && FAILED(pInterface_->QueryInterface(iid, other.putVoid())))
            return {};
        return other;
    }

private:
    Interface* pInterface_ = nullptr;
};

} // namespace halvane::com
