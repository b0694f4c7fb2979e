#include "host/com/RegisteredApplication.h"

#include "base/com/HResult.h"
#include "host/com/Guid.h"

#include <string>

namespace halvane::test {

namespace {

constexpr const char* sClassId = "{6c6097e7-2e3b-43a0-9b00-5d7cbed26de8}";
constexpr GUID classId = host::com::guidOf("6c6097e7-2e3b-43a0-9b00-5d7cbed26de8");
constexpr const char* sProgIdKey = "Halvane.HostApplication";

} // namespace

RegisteredApplication::RegisteredApplication(const com::ComPtr<IDispatch>& pApplication) {
    const std::string sKey = std::string(sProgIdKey) + "\\CLSID";
    HKEY key = nullptr;
    com::require(HRESULT_FROM_WIN32(static_cast<DWORD>(RegCreateKeyA(HKEY_CLASSES_ROOT, sKey.c_str(), &key))),
                 "RegCreateKey");
    const std::string sValue = sClassId;
    RegSetValueExA(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(sValue.c_str()),
                   static_cast<DWORD>(sValue.size() + 1));
    RegCloseKey(key);
    com::require(RegisterActiveObject(pApplication.get(), classId, ACTIVEOBJECT_STRONG, &nRegistration_),
                 "RegisterActiveObject");
}

RegisteredApplication::~RegisteredApplication() {
    RevokeActiveObject(nRegistration_, nullptr);
    const std::string sKey = std::string(sProgIdKey) + "\\CLSID";
    RegDeleteKeyA(HKEY_CLASSES_ROOT, sKey.c_str());
    RegDeleteKeyA(HKEY_CLASSES_ROOT, sProgIdKey);
}

} // namespace halvane::test
