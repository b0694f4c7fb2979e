#pragma once

#include "base/com/Windows.h"

#include <string>
#include <string_view>

namespace halvane::com {

/// UTF-8 from UTF-16; an unpaired surrogate becomes U+FFFD.
[[nodiscard]] std::string utf8Of(std::wstring_view sWide);
/// UTF-8 from an automation text, whose null pointer is "".
[[nodiscard]] std::string utf8Of(BSTR sText);
/// UTF-16 from UTF-8; invalid bytes become U+FFFD.
[[nodiscard]] std::wstring wideOf(std::string_view sUtf8);

/// Owns an automation text. A null pointer is "".
class Bstr {
public:
    Bstr() noexcept = default;
    /// @throws Failure OutOfMemory.
    explicit Bstr(std::string_view sUtf8);
    explicit Bstr(std::wstring_view sWide);
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    Bstr(Bstr&& other) noexcept : sText_(other.detach()) {}
    Bstr& operator=(Bstr&& other) noexcept;
    ~Bstr() { SysFreeString(sText_); }

    /// Takes over a text that the caller owns.
    [[nodiscard]] static Bstr attach(BSTR sOwned) noexcept;
    /// Gives the text away.
    [[nodiscard]] BSTR detach() noexcept;

    [[nodiscard]] BSTR get() const noexcept { return sText_; }
    /// For an out-parameter that yields an owned text; what was held is freed.
    [[nodiscard]] BSTR* put() noexcept;
    [[nodiscard]] std::string utf8() const { return utf8Of(sText_); }

private:
    BSTR sText_ = nullptr;
};

} // namespace halvane::com
