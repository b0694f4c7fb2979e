#include "base/com/Bstr.h"

#include "base/Failure.h"

#include <limits>
#include <utility>

namespace halvane::com {

namespace {

int lengthOf(std::size_t nLength) {
    if (nLength > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw Failure::of(FailureNumber::OutOfMemory);
    return static_cast<int>(nLength);
}

BSTR allocated(std::wstring_view sWide) {
    BSTR sText = SysAllocStringLen(sWide.data(), static_cast<UINT>(lengthOf(sWide.size())));
    if (sText == nullptr)
        throw Failure::of(FailureNumber::OutOfMemory);
    return sText;
}

} // namespace

std::string utf8Of(std::wstring_view sWide) {
    const int nWide = lengthOf(sWide.size());
    if (nWide == 0)
        return {};
    const int nBytes = WideCharToMultiByte(CP_UTF8, 0, sWide.data(), nWide, nullptr, 0, nullptr, nullptr);
    std::string sUtf8(static_cast<std::size_t>(nBytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, sWide.data(), nWide, sUtf8.data(), nBytes, nullptr, nullptr);
    return sUtf8;
}

std::string utf8Of(BSTR sText) {
    return utf8Of(std::wstring_view(sText, SysStringLen(sText)));
}

std::wstring wideOf(std::string_view sUtf8) {
    const int nBytes = lengthOf(sUtf8.size());
    if (nBytes == 0)
        return {};
    const int nWide = MultiByteToWideChar(CP_UTF8, 0, sUtf8.data(), nBytes, nullptr, 0);
    std::wstring sWide(static_cast<std::size_t>(nWide), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, sUtf8.data(), nBytes, sWide.data(), nWide);
    return sWide;
}

Bstr::Bstr(std::string_view sUtf8) : Bstr(std::wstring_view(wideOf(sUtf8))) {}

Bstr::Bstr(std::wstring_view sWide) : sText_(allocated(sWide)) {}

Bstr& Bstr::operator=(Bstr&& other) noexcept {
    std::swap(sText_, other.sText_);
    return *this;
}

Bstr Bstr::attach(BSTR sOwned) noexcept {
    Bstr owner;
    owner.sText_ = sOwned;
    return owner;
}

BSTR Bstr::detach() noexcept {
    return std::exchange(sText_, nullptr);
}

BSTR* Bstr::put() noexcept {
    SysFreeString(detach());
    return &sText_;
}

} // namespace halvane::com
