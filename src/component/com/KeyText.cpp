#include "component/com/KeyText.h"

#include "base/com/Variant.h"

#include <cstddef>

namespace halvane::server {

namespace {

constexpr std::size_t nNowhere = std::wstring_view::npos;
constexpr std::size_t nHalfBytes = 3;
constexpr char cHalfBegins = '\xED';

bool isFirstHalf(wchar_t c) noexcept {
    return c >= 0xD800 && c <= 0xDBFF;
}

bool isSecondHalf(wchar_t c) noexcept {
    return c >= 0xDC00 && c <= 0xDFFF;
}

/// The place of the first half of a pair without the other.
std::size_t findHalf(std::wstring_view sText) noexcept {
    for (std::size_t n = 0; n < sText.size(); ++n) {
        if (isFirstHalf(sText[n]) && n + 1 < sText.size() && isSecondHalf(sText[n + 1]))
            ++n;
        else if (isFirstHalf(sText[n]) || isSecondHalf(sText[n]))
            return n;
    }
    return nNowhere;
}

/// In UTF-8 the byte that begins a half is followed by smaller ones.
std::size_t findHalf(std::string_view sKey) noexcept {
    for (std::size_t n = 0; n + nHalfBytes <= sKey.size(); ++n) {
        if (sKey[n] == cHalfBegins && static_cast<unsigned char>(sKey[n + 1]) >= 0xA0)
            return n;
    }
    return nNowhere;
}

void appendHalf(std::string& sKey, wchar_t cHalf) {
    sKey.push_back(cHalfBegins);
    sKey.push_back(static_cast<char>(0x80 | ((cHalf >> 6) & 0x3F)));
    sKey.push_back(static_cast<char>(0x80 | (cHalf & 0x3F)));
}

wchar_t halfFrom(std::string_view sBytes) noexcept {
    const auto bits = [&](std::size_t n) { return static_cast<unsigned char>(sBytes[n]) & 0x3FU; };
    return static_cast<wchar_t>(0xD000U | (bits(1) << 6U) | bits(2));
}

} // namespace

std::string keyOf(BSTR sText) {
    std::string sKey;
    std::wstring_view sRest(sText == nullptr ? L"" : sText, SysStringLen(sText));
    for (std::size_t nHalf = findHalf(sRest); nHalf != nNowhere; nHalf = findHalf(sRest)) {
        sKey += com::utf8Of(sRest.substr(0, nHalf));
        appendHalf(sKey, sRest[nHalf]);
        sRest.remove_prefix(nHalf + 1);
    }
    return sKey + com::utf8Of(sRest);
}

std::wstring textOfKey(std::string_view sKey) {
    std::wstring sText;
    for (std::size_t nHalf = findHalf(sKey); nHalf != nNowhere; nHalf = findHalf(sKey)) {
        sText += com::wideOf(sKey.substr(0, nHalf));
        sText.push_back(halfFrom(sKey.substr(nHalf)));
        sKey.remove_prefix(nHalf + nHalfBytes);
    }
    return sText + com::wideOf(sKey);
}

Value indexOrKeyOf(const VARIANT& variant) {
    const com::Variant given = com::Variant::copyOf(variant);
    return V_VT(&given.get()) == VT_BSTR ? Value(keyOf(V_BSTR(&given.get()))) : com::toValue(given.get());
}

} // namespace halvane::server
