#pragma once

#include "base/com/ComPtr.h"

#include <array>
#include <string_view>

namespace halvane::server {

/// A class that clients create by the programmatic identifier "Halvane." and its name.
struct PublicClass {
    CLSID clsid;
    std::wstring_view sName;
    /// A new object of the class. @throws Failure.
    com::ComPtr<IUnknown> (*make)();
};

[[nodiscard]] const std::array<PublicClass, 4>& publicClasses();

/// An interface of the type library.
struct PublicInterface {
    IID iid;
    std::wstring_view sName;
};
[[nodiscard]] const std::array<PublicInterface, 5>& publicInterfaces();

inline constexpr std::wstring_view sLibraryName = L"Halvane";
inline constexpr std::wstring_view sLibraryVersion = L"1.0";
[[nodiscard]] GUID libraryId();

} // namespace halvane::server
