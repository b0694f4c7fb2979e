// An application with a small map that opens the dialog:
//   DialogHost LIBRARY SCRIPT            the library's own function, with the map document
//   DialogHost LIBRARY SCRIPT PROGID     rundll32, which finds the running application under that identifier
// Prints "closed" and the result once the dialog is closed.

#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "host/com/ScriptEngine.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace halvane::test {
namespace {

using ShowDialog = HRESULT(WINAPI*)(IDispatch*, HWND);

constexpr CLSID applicationId = {
    0x5e0a4c1d, 0x7b52, 0x4f0e, {0x9d, 0x3c, 0x61, 0x0f, 0x42, 0xa8, 0xe7, 0x15}};
constexpr const wchar_t* sApplicationId = L"{5E0A4C1D-7B52-4F0E-9D3C-610F42A8E715}";

int showByFunction(const wchar_t* sLibrary, IDispatch& document) {
    HMODULE hLibrary = LoadLibraryW(sLibrary);
    // Functions of a library come without their types.
    const auto show = reinterpret_cast<ShowDialog>(
        reinterpret_cast<void*>(GetProcAddress(hLibrary, "HalvaneShowExportDialog")));
    if (show == nullptr)
        return 1;
    const HRESULT hr = show(&document, nullptr);
    std::printf("closed %lx\n", static_cast<unsigned long>(hr));
    return SUCCEEDED(hr) ? 0 : 1;
}

/// The identifier's entry for the machine, as long as it lives.
class RegisteredName {
public:
    explicit RegisteredName(const std::wstring& sProgId) : sKey_(L"Software\\Classes\\" + sProgId) {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, (sKey_ + L"\\CLSID").c_str(), nullptr, REG_SZ, sApplicationId,
                        static_cast<DWORD>((wcslen(sApplicationId) + 1) * sizeof(wchar_t)));
    }
    RegisteredName(const RegisteredName&) = delete;
    RegisteredName& operator=(const RegisteredName&) = delete;
    ~RegisteredName() { RegDeleteTreeW(HKEY_LOCAL_MACHINE, sKey_.c_str()); }

private:
    std::wstring sKey_;
};

/// Serves calls from other processes until that one has ended.
void serveUntilEnded(HANDLE hProcess) {
    while (MsgWaitForMultipleObjects(1, &hProcess, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE)
            DispatchMessageW(&message);
    }
}

int showByRundll(const std::wstring& sLibrary, IDispatch& application, const std::wstring& sProgId) {
    const RegisteredName registered(sProgId);
    DWORD nRunning = 0;
    com::require(RegisterActiveObject(&application, applicationId, ACTIVEOBJECT_STRONG, &nRunning),
                 "running");
    std::wstring sCommand = L"rundll32.exe " + sLibrary + L",ShowExportDialog " + sProgId;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const BOOL bStarted = CreateProcessW(nullptr, sCommand.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                         nullptr, &startup, &process);
    if (bStarted != FALSE) {
        serveUntilEnded(process.hProcess);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        std::printf("closed\n");
    }
    RevokeActiveObject(nRunning, nullptr);
    return bStarted != FALSE ? 0 : 1;
}

int run(int lArguments, wchar_t** aArguments) {
    const Apartment apartment;
    std::ifstream stream(std::filesystem::path(aArguments[2]), std::ios::binary);
    ScriptEngine engine("JScript", std::string(std::istreambuf_iterator<char>(stream), {}));
    engine.run("var town = makeTown(); var application = { MapDocument: town };");
    if (lArguments == 3)
        return showByFunction(aArguments[1], *engine.evaluate("town"));
    return showByRundll(aArguments[1], *engine.evaluate("application"), aArguments[3]);
}

} // namespace
} // namespace halvane::test

int wmain(int lArguments, wchar_t** aArguments) {
    if (lArguments < 3)
        return 2;
    try {
        return halvane::test::run(lArguments, aArguments);
    } catch (const halvane::Failure& failure) {
        std::fprintf(stderr, "%s\n", failure.description().c_str());
        return 1;
    }
}
