#include "component/com/Registration.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "component/com/PublicClasses.h"
#include "component/com/ServerUse.h"

#include <array>
#include <string>
#include <vector>

namespace halvane::server {

namespace {

/// A key below the classes and its unnamed value.
struct Entry {
    std::wstring sKey;
    std::wstring sValue;
    std::wstring sName = {}; ///< of a second value
    std::wstring sNamedValue = {};
};

constexpr std::wstring_view sClasses = L"Software\\Classes";
/// The marshaller of automation interfaces, which works from the type library.
constexpr std::wstring_view sAutomationMarshaller = L"{00020424-0000-0000-C000-000000000046}";

/// Where a version of a type library has its files. Programs of 32 and of 64 bits see classes and interfaces
/// of their own, but the same type libraries and programmatic identifiers.
constexpr std::wstring_view asPlatforms[] = {L"0\\win32", L"0\\win64"};
constexpr std::wstring_view sOwnPlatform = asPlatforms[sizeof(void*) == 8 ? 1 : 0];
constexpr std::wstring_view sOtherPlatform = asPlatforms[sizeof(void*) == 8 ? 0 : 1];

HKEY rootOf(RegisterFor whom) {
    return whom == RegisterFor::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

/// @param sKey below the classes; "" for the classes themselves.
std::wstring pathOf(const std::wstring& sKey) {
    return std::wstring(sClasses) + (sKey.empty() ? L"" : L"\\") + sKey;
}

std::wstring textOf(const GUID& guid) {
    std::array<wchar_t, 39> aText{};
    StringFromGUID2(guid, aText.data(), static_cast<int>(aText.size()));
    return aText.data();
}

std::wstring libraryKey() {
    return L"TypeLib\\" + textOf(libraryId());
}
std::wstring versionKey() {
    return libraryKey() + L"\\" + std::wstring(sLibraryVersion);
}
std::wstring classKey(const PublicClass& published) {
    return L"CLSID\\" + textOf(published.clsid);
}
std::wstring progId(const PublicClass& published) {
    return std::wstring(sLibraryName) + L"." + std::wstring(published.sName);
}
std::wstring interfaceKey(const PublicInterface& published) {
    return L"Interface\\" + textOf(published.iid);
}

void appendClass(std::vector<Entry>& aEntries, const PublicClass& published, const std::wstring& sPath) {
    const std::wstring sKey = classKey(published);
    const std::wstring sProgId = progId(published);
    aEntries.push_back({sKey, sProgId});
    aEntries.push_back({sKey + L"\\InprocServer32", sPath, L"ThreadingModel", L"Apartment"});
    aEntries.push_back({sKey + L"\\ProgID", sProgId});
    aEntries.push_back({sKey + L"\\Programmable", L""});
    aEntries.push_back({sKey + L"\\TypeLib", textOf(libraryId())});
    aEntries.push_back({sKey + L"\\VERSION", std::wstring(sLibraryVersion)});
    aEntries.push_back({sProgId, sProgId});
    aEntries.push_back({sProgId + L"\\CLSID", textOf(published.clsid)});
}

void appendInterface(std::vector<Entry>& aEntries, const PublicInterface& published) {
    const std::wstring sKey = interfaceKey(published);
    aEntries.push_back({sKey, std::wstring(published.sName)});
    aEntries.push_back({sKey + L"\\ProxyStubClsid32", std::wstring(sAutomationMarshaller)});
    aEntries.push_back({sKey + L"\\TypeLib", textOf(libraryId()), L"Version", std::wstring(sLibraryVersion)});
}

void appendLibrary(std::vector<Entry>& aEntries, const std::wstring& sPath) {
    const std::wstring sKey = versionKey();
    aEntries.push_back({sKey, std::wstring(sLibraryName)});
    aEntries.push_back({sKey + L"\\" + std::wstring(sOwnPlatform), sPath});
    aEntries.push_back({sKey + L"\\FLAGS", L"0"});
    aEntries.push_back({sKey + L"\\HELPDIR", L""});
}

std::vector<Entry> entries() {
    const std::wstring sPath = serverPath();
    std::vector<Entry> aEntries;
    for (const PublicClass& published : publicClasses())
        appendClass(aEntries, published, sPath);
    for (const PublicInterface& published : publicInterfaces())
        appendInterface(aEntries, published);
    appendLibrary(aEntries, sPath);
    return aEntries;
}

void requireRegistry(LSTATUS status, std::wstring_view sKey) {
    if (status != ERROR_SUCCESS)
        throw com::failureOf(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), com::utf8Of(sKey));
}

void writeValue(RegisterFor whom, const std::wstring& sKey, const std::wstring& sName,
                const std::wstring& sValue) {
    const std::wstring sPath = pathOf(sKey);
    HKEY hKey = nullptr;
    requireRegistry(
        RegCreateKeyExW(rootOf(whom), sPath.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &hKey, nullptr),
        sPath);
    const auto nBytes = static_cast<DWORD>((sValue.size() + 1) * sizeof(wchar_t));
    const LSTATUS status =
        RegSetValueExW(hKey, sName.empty() ? nullptr : sName.c_str(), 0, REG_SZ,
                       reinterpret_cast<const BYTE*>(sValue.c_str()), nBytes); // bytes are the interface
    RegCloseKey(hKey);
    requireRegistry(status, sPath);
}

void removeTree(RegisterFor whom, const std::wstring& sKey) {
    const std::wstring sPath = pathOf(sKey);
    const LSTATUS status = RegDeleteTreeW(rootOf(whom), sPath.c_str());
    if (status != ERROR_FILE_NOT_FOUND)
        requireRegistry(status, sPath);
}

bool exists(RegisterFor whom, const std::wstring& sKey) {
    HKEY hKey = nullptr;
    if (RegOpenKeyExW(rootOf(whom), pathOf(sKey).c_str(), 0, KEY_READ, &hKey) != ERROR_SUCCESS)
        return false;
    RegCloseKey(hKey);
    return true;
}

/// Removes a key that has neither subkeys nor values.
void removeIfEmpty(RegisterFor whom, const std::wstring& sKey) {
    const std::wstring sPath = pathOf(sKey);
    HKEY hKey = nullptr;
    if (RegOpenKeyExW(rootOf(whom), sPath.c_str(), 0, KEY_READ, &hKey) != ERROR_SUCCESS)
        return;
    DWORD nKeys = 0;
    DWORD nValues = 0;
    const LSTATUS status = RegQueryInfoKeyW(hKey, nullptr, nullptr, nullptr, &nKeys, nullptr, nullptr,
                                            &nValues, nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(hKey);
    if (status == ERROR_SUCCESS && nKeys == 0 && nValues == 0)
        RegDeleteKeyW(rootOf(whom), sPath.c_str());
}

/// What the libraries of both bitnesses have in common.
void removeShared(RegisterFor whom) {
    for (const PublicClass& published : publicClasses())
        removeTree(whom, progId(published));
    removeTree(whom, versionKey());
    removeIfEmpty(whom, libraryKey());
}

} // namespace

void registerServer(RegisterFor whom) {
    try {
        for (const Entry& entry : entries()) {
            writeValue(whom, entry.sKey, L"", entry.sValue);
            if (!entry.sName.empty())
                writeValue(whom, entry.sKey, entry.sName, entry.sNamedValue);
        }
    } catch (const Failure&) {
        try {
            unregisterServer(whom);
        } catch (const Failure&) {
            // What could not be written can often not be removed either: the first failure is the one to
            // tell.
        }
        throw;
    }
}

void unregisterServer(RegisterFor whom) {
    for (const PublicClass& published : publicClasses())
        removeTree(whom, classKey(published));
    for (const PublicInterface& published : publicInterfaces())
        removeTree(whom, interfaceKey(published));
    removeTree(whom, versionKey() + L"\\" + std::wstring(sOwnPlatform));
    if (!exists(whom, versionKey() + L"\\" + std::wstring(sOtherPlatform)))
        removeShared(whom);
    for (const wchar_t* sKey : {L"CLSID", L"Interface", L"TypeLib", L""})
        removeIfEmpty(whom, sKey);
}

} // namespace halvane::server
