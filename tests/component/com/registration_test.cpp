// Registration for the machine and for one user, and its undoing.

#include "Client.h"
#include "RegistryDump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace halvane::client {
namespace {

using Lines = std::vector<std::wstring>;

Lines added(const std::set<std::wstring>& before, const std::set<std::wstring>& after) {
    Lines asAdded;
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                        std::back_inserter(asAdded));
    return asAdded;
}

/// Keys are one key in any letter case; the case is that of whoever made it.
std::wstring lowerCase(std::wstring sText) {
    CharLowerBuffW(sText.data(), static_cast<DWORD>(sText.size()));
    return sText;
}

constexpr const wchar_t* asProgIds[] = {L"Halvane.clsExport", L"Halvane.dCollection",
                                        L"Halvane.IExternalProcessor", L"Halvane.IExternalProgID"};

/// What the component's keys are named after.
std::vector<std::wstring> ownNames() {
    std::vector<std::wstring> asNames;
    for (const wchar_t* sProgId : asProgIds)
        asNames.push_back(lowerCase(sProgId));
    for (const GUID& id : {__uuidof(::clsExport), __uuidof(::dCollection), __uuidof(::IExternalProcessor),
                           __uuidof(::IExternalProgID), __uuidof(_clsExport), __uuidof(_dCollection),
                           __uuidof(_IExternalProcessor), __uuidof(_IExternalProgID), __uuidof(_EntryList)}) {
        std::array<wchar_t, 39> aText{};
        StringFromGUID2(id, aText.data(), static_cast<int>(aText.size()));
        asNames.push_back(lowerCase(aText.data()));
    }
    asNames.emplace_back(L"{f5975246-8f94-4f18-9f5c-e498375009d9}");
    return asNames;
}

/// The lines that name something of the component.
Lines ofTheComponent(const std::set<std::wstring>& lines) {
    const auto asNames = ownNames();
    Lines asFound;
    for (const std::wstring& sLine : lines) {
        const std::wstring sLower = lowerCase(sLine);
        if (std::any_of(asNames.begin(), asNames.end(),
                        [&](const std::wstring& sName) { return sLower.find(sName) != std::wstring::npos; }))
            asFound.push_back(sLine);
    }
    return asFound;
}

bool forUser(bool bRegister) {
    std::vector<std::wstring> asArguments = {L"/s"};
    if (!bRegister)
        asArguments.emplace_back(L"/u");
    asArguments.insert(asArguments.end(), {L"/n", L"/i:user", serverFile().wstring()});
    return run(L"regsvr32", asArguments).nCode == 0;
}

bool canCreateAll() {
    return std::all_of(std::begin(asProgIds), std::end(asProgIds), [](const wchar_t* sProgId) {
        IDispatchPtr pObject;
        return pObject.CreateInstance(sProgId) == S_OK;
    });
}

/// The whole program's registration is undone for each of these tests.
class Registration : public ::testing::Test {
protected:
    Registration() {
        EXPECT_TRUE(unregisterServer());
        // Whatever an interrupted run left goes first.
        EXPECT_TRUE(forUser(false));
        before = registryDump();
        EXPECT_EQ(ofTheComponent(before), Lines()) << "nothing is left of earlier registrations";
    }
    ~Registration() override { EXPECT_TRUE(registerServer()); }

    /// What was added below a key since, without the key's own path; keys that only hold others left out.
    [[nodiscard]] Lines classesAdded(const std::wstring& sKey) const {
        Lines asBelow;
        for (const std::wstring& sLine : added(before, registryDump())) {
            // The machine's classes are shown to 32-bit programs at another place again.
            if (sLine.starts_with(sKey + L"\\") && sLine.find(L"\\:") != std::wstring::npos &&
                sLine.find(L"Wow6432Node") == std::wstring::npos)
                asBelow.push_back(lowerCase(sLine.substr(sKey.size())));
        }
        std::sort(asBelow.begin(), asBelow.end());
        return asBelow;
    }

    std::set<std::wstring> before;
};

TEST_F(Registration, ForTheMachineLeavesNothingBehindWhenUndone) {
    ASSERT_TRUE(registerServer());
    EXPECT_TRUE(canCreateAll());
    ASSERT_TRUE(unregisterServer());
    const auto after = registryDump();
    EXPECT_EQ(added(before, after), Lines());
    EXPECT_EQ(added(after, before), Lines());
    EXPECT_FALSE(canCreateAll());
}

TEST_F(Registration, ForAUserLeavesNothingBehindWhenUndone) {
    ASSERT_TRUE(forUser(true));
    EXPECT_NE(registryDump(), before);
    ASSERT_TRUE(forUser(false));
    const auto after = registryDump();
    EXPECT_EQ(added(before, after), Lines());
    EXPECT_EQ(added(after, before), Lines());
}

TEST_F(Registration, ForAUserIsThatForTheMachineAtAnotherPlace) {
    ASSERT_TRUE(registerServer());
    const Lines asMachine = classesAdded(L"HKLM\\Software\\Classes");
    ASSERT_TRUE(unregisterServer());
    ASSERT_TRUE(forUser(true));
    const auto withUsers = registryDump();
    const Lines asUser = classesAdded(L"HKCU\\Software\\Classes");
    EXPECT_TRUE(asUser == asMachine) << asUser.size() << " and " << asMachine.size();
    for (const std::wstring& sLine : added(before, withUsers))
        EXPECT_TRUE(sLine.starts_with(L"HKCU\\Software\\Classes")) << std::filesystem::path(sLine).string();
    ASSERT_TRUE(forUser(false));
    EXPECT_FALSE(asMachine.empty());
}

TEST_F(Registration, CanBeRepeated) {
    ASSERT_TRUE(registerServer());
    const auto once = registryDump();
    ASSERT_TRUE(registerServer());
    EXPECT_EQ(registryDump(), once);
    ASSERT_TRUE(unregisterServer());
    EXPECT_TRUE(unregisterServer()) << "what is missing already is no failure";
    EXPECT_EQ(registryDump(), before);
}

TEST_F(Registration, LeavesTheUsersAloneWhenTheMachinesIsUndone) {
    ASSERT_TRUE(forUser(true));
    const auto usersAlone = registryDump();
    ASSERT_TRUE(registerServer());
    ASSERT_TRUE(unregisterServer());
    EXPECT_EQ(registryDump(), usersAlone);
    ASSERT_TRUE(forUser(false));
    EXPECT_EQ(registryDump(), before);
}

TEST_F(Registration, KeepsWhatOthersKeepBesideIt) {
    const auto makeKey = [](const wchar_t* sKey) {
        HKEY hKey = nullptr;
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, sKey, 0, nullptr, 0, KEY_WRITE, nullptr, &hKey, nullptr),
                  ERROR_SUCCESS);
        RegCloseKey(hKey);
    };
    constexpr auto sOther = L"Software\\Classes\\CLSID\\{11111111-2222-3333-4444-555555555555}";
    constexpr auto sVersion = L"Software\\Classes\\TypeLib\\{f5975246-8f94-4f18-9f5c-e498375009d9}\\7.0";
    makeKey(sOther);
    makeKey(sVersion);
    const auto withOthers = registryDump();
    ASSERT_TRUE(forUser(true));
    ASSERT_TRUE(forUser(false));
    EXPECT_EQ(registryDump(), withOthers);
    RegDeleteTreeW(HKEY_CURRENT_USER, sOther);
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Classes\\TypeLib\\{f5975246-8f94-4f18-9f5c-e498375009d9}");
    for (const wchar_t* sKey : {L"Software\\Classes\\CLSID", L"Software\\Classes\\TypeLib"})
        RegDeleteKeyW(HKEY_CURRENT_USER, sKey); // fails where they hold more
}

TEST_F(Registration, LeavesWhatTheLibraryOfTheOtherBitnessNeeds) {
    constexpr auto sPlatforms = L"Software\\Classes\\TypeLib\\{f5975246-8f94-4f18-9f5c-e498375009d9}\\1.0\\0";
    constexpr bool b64 = sizeof(void*) == 8;
    const std::wstring sOther = std::wstring(sPlatforms) + (b64 ? L"\\win32" : L"\\win64");
    ASSERT_TRUE(registerServer());
    HKEY hKey = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, sOther.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &hKey,
                              nullptr),
              ERROR_SUCCESS);
    RegCloseKey(hKey);
    ASSERT_TRUE(unregisterServer());
    const auto exists = [](const std::wstring& sKey) {
        HKEY hFound = nullptr;
        const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, sKey.c_str(), 0, KEY_READ, &hFound);
        if (status == ERROR_SUCCESS)
            RegCloseKey(hFound);
        return status == ERROR_SUCCESS;
    };
    EXPECT_TRUE(exists(L"Software\\Classes\\Halvane.clsExport\\CLSID"));
    EXPECT_TRUE(exists(sOther));
    EXPECT_FALSE(exists(std::wstring(sPlatforms) + (b64 ? L"\\win64" : L"\\win32")));
    EXPECT_FALSE(canCreateAll());
    ASSERT_EQ(RegDeleteKeyW(HKEY_LOCAL_MACHINE, sOther.c_str()), ERROR_SUCCESS);
    ASSERT_TRUE(unregisterServer());
    EXPECT_EQ(registryDump(), before);
}

TEST_F(Registration, RefusesToInstallForAnythingElse) {
    EXPECT_NE(run(L"regsvr32", {L"/s", L"/n", L"/i:everybody", serverFile().wstring()}).nCode, 0U);
    EXPECT_EQ(registryDump(), before);
}

TEST_F(Registration, RunsObjectsInTheApartmentOfTheirThread) {
    ASSERT_TRUE(registerServer());
    CLSID clsid{};
    ASSERT_EQ(CLSIDFromProgID(L"Halvane.clsExport", &clsid), S_OK);
    EXPECT_EQ(clsid, __uuidof(::clsExport));
    std::array<wchar_t, 39> aClass{};
    StringFromGUID2(clsid, aClass.data(), 39);
    const std::wstring sKey = std::wstring(L"CLSID\\") + aClass.data() + L"\\InprocServer32";
    std::array<wchar_t, 32> aModel{};
    DWORD nBytes = sizeof(aModel);
    ASSERT_EQ(RegGetValueW(HKEY_CLASSES_ROOT, sKey.c_str(), L"ThreadingModel", RRF_RT_REG_SZ, nullptr,
                           aModel.data(), &nBytes),
              ERROR_SUCCESS);
    EXPECT_STREQ(aModel.data(), L"Apartment");
}

} // namespace
} // namespace halvane::client
