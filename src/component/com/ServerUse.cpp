#include "component/com/ServerUse.h"

#include "base/com/HResult.h"

#include <atomic>

namespace halvane::server {

namespace {

std::atomic<long> nUses = 0;

} // namespace

ServerUse::ServerUse() noexcept {
    ++nUses;
}

ServerUse::~ServerUse() {
    --nUses;
}

void lockServer(bool bLock) noexcept {
    nUses += bLock ? 1 : -1;
}

bool serverInUse() noexcept {
    return nUses != 0;
}

HMODULE serverModule() noexcept {
    // Any address inside the library does.
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&nUses), &hModule);
    return hModule;
}

std::wstring serverPath() {
    for (std::wstring sPath(MAX_PATH, L'\0');; sPath.resize(2 * sPath.size())) {
        const DWORD nLength =
            GetModuleFileNameW(serverModule(), sPath.data(), static_cast<DWORD>(sPath.size()));
        if (nLength == 0)
            throw com::failureOf(HRESULT_FROM_WIN32(GetLastError()), "GetModuleFileName");
        if (nLength < sPath.size()) {
            sPath.resize(nLength);
            return sPath;
        }
    }
}

} // namespace halvane::server
