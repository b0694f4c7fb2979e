#include "RegistryDump.h"

#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace halvane::client {

namespace {

std::wstring hexadecimal(std::span<const BYTE> aBytes) {
    constexpr std::wstring_view sDigits = L"0123456789abcdef";
    std::wstring sText;
    for (const BYTE nByte : aBytes) {
        sText += sDigits[nByte >> 4];
        sText += sDigits[nByte & 15];
    }
    return sText;
}

void dumpValues(HKEY hKey, const std::wstring& sPath, std::set<std::wstring>& asLines) {
    DWORD nLongestName = 0;
    DWORD nLongestData = 0;
    RegQueryInfoKeyW(hKey, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &nLongestName,
                     &nLongestData, nullptr, nullptr);
    std::wstring sName(nLongestName + 1, L'\0');
    std::vector<BYTE> aData(nLongestData + 1);
    for (DWORD i = 0;; ++i) {
        DWORD nName = nLongestName + 1;
        DWORD nData = nLongestData + 1;
        DWORD nType = 0;
        if (RegEnumValueW(hKey, i, sName.data(), &nName, nullptr, &nType, aData.data(), &nData) !=
            ERROR_SUCCESS)
            return;
        asLines.insert(sPath + L"\\:" + sName.substr(0, nName) + L"=" + std::to_wstring(nType) + L":" +
                       hexadecimal(std::span(aData).first(nData)));
    }
}

void dumpKey(HKEY hParent, const wchar_t* sName, const std::wstring& sPath, std::set<std::wstring>& asLines) {
    HKEY hKey = nullptr;
    if (RegOpenKeyExW(hParent, sName, 0, KEY_READ, &hKey) != ERROR_SUCCESS)
        return;
    asLines.insert(sPath);
    std::array<wchar_t, 256> aName{};
    for (DWORD i = 0;; ++i) {
        auto nName = static_cast<DWORD>(aName.size());
        if (RegEnumKeyExW(hKey, i, aName.data(), &nName, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        const std::wstring sSubkey(aName.data(), nName);
        dumpKey(hKey, sSubkey.c_str(), sPath + L"\\" + sSubkey, asLines);
    }
    dumpValues(hKey, sPath, asLines);
    RegCloseKey(hKey);
}

} // namespace

std::set<std::wstring> registryDump() {
    std::set<std::wstring> asLines;
    dumpKey(HKEY_LOCAL_MACHINE, L"Software", L"HKLM\\Software", asLines);
    dumpKey(HKEY_CURRENT_USER, L"Software", L"HKCU\\Software", asLines);
    return asLines;
}

} // namespace halvane::client
