#include "Client.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace halvane::client {

namespace {

/// The whole program is one client: an apartment of its own, a registered component.
class Client : public ::testing::Environment {
public:
    void SetUp() override {
        ASSERT_GE(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), 0);
        ASSERT_TRUE(registerServer());
    }
    void TearDown() override {
        CoFreeUnusedLibrariesEx(0, 0);
        EXPECT_TRUE(unregisterServer());
        CoUninitialize();
    }
};

const ::testing::Environment* const pClient =
    ::testing::AddGlobalTestEnvironment(std::make_unique<Client>().release()); // it owns

std::wstring quoted(const std::wstring& sArgument) {
    return L"\"" + sArgument + L"\"";
}

std::filesystem::path temporaryPath(const wchar_t* sPrefix) {
    static int nCount = 0;
    return std::filesystem::temp_directory_path() /
           (sPrefix + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++nCount));
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Starts a program with its output going to a file.
PROCESS_INFORMATION start(std::wstring sCommandLine, HANDLE hOutput) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = nullptr;
    startup.hStdOutput = hOutput;
    startup.hStdError = hOutput;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, sCommandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &process))
        throw std::runtime_error("a program cannot be started: error " + std::to_string(GetLastError()));
    return process;
}

bool regsvr32(const std::vector<std::wstring>& asOptions) {
    std::vector<std::wstring> asArguments = asOptions;
    asArguments.push_back(serverFile().wstring());
    return run(L"regsvr32", asArguments).nCode == 0;
}

} // namespace

std::filesystem::path serverFile() {
    return std::filesystem::path(HALVANE_SERVER).make_preferred();
}

Finished run(const std::wstring& sProgram, const std::vector<std::wstring>& asArguments) {
    std::wstring sCommandLine = quoted(sProgram);
    for (const std::wstring& sArgument : asArguments)
        sCommandLine += L" " + (sArgument.starts_with(L"/") ? sArgument : quoted(sArgument));
    const auto outputPath = temporaryPath(L"output-");
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const HANDLE hOutput = CreateFileW(outputPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                       CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const PROCESS_INFORMATION process = start(sCommandLine, hOutput);
    WaitForSingleObject(process.hProcess, INFINITE);
    Finished finished;
    GetExitCodeProcess(process.hProcess, &finished.nCode);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    CloseHandle(hOutput);
    finished.sOutput = contentOf(outputPath);
    std::filesystem::remove(outputPath);
    return finished;
}

bool registerServer() {
    return regsvr32({L"/s"});
}

bool unregisterServer() {
    return regsvr32({L"/s", L"/u"});
}

void runBeside(DWORD nModel, const std::function<void()>& client) {
    std::atomic<bool> bDone = false;
    std::thread thread([&] {
        EXPECT_GE(CoInitializeEx(nullptr, nModel), 0);
        client();
        CoUninitialize();
        bDone = true;
    });
    while (!bDone) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }
    thread.join();
}

std::optional<std::wstring> errorText() {
    IErrorInfoPtr pInfo;
    if (GetErrorInfo(0, &pInfo) != S_OK)
        return std::nullopt;
    BSTR sText = nullptr;
    pInfo->GetDescription(&sText);
    const _bstr_t text(sText, false);
    return std::wstring(text.length() == 0 ? L"" : static_cast<const wchar_t*>(text));
}

LateCall call(IDispatch* pObject, const wchar_t* sMember, std::vector<VARIANT> aArguments, WORD wFlags) {
    LateCall made;
    std::wstring sName(sMember);
    LPOLESTR pName = sName.data();
    DISPID lMember = DISPID_UNKNOWN;
    made.hr = pObject->GetIDsOfNames(IID_NULL, &pName, 1, LOCALE_USER_DEFAULT, &lMember);
    if (FAILED(made.hr))
        return made;
    std::vector<VARIANT> aReversed(aArguments.rbegin(), aArguments.rend());
    DISPPARAMS parameters{aReversed.data(), nullptr, static_cast<UINT>(aReversed.size()), 0};
    EXCEPINFO exception{};
    made.hr = pObject->Invoke(lMember, IID_NULL, LOCALE_USER_DEFAULT, wFlags, &parameters, &made.result,
                              &exception, nullptr);
    const _bstr_t description(exception.bstrDescription, false);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
    if (description.length() != 0)
        made.sDescription = description;
    made.code = exception.scode;
    return made;
}

bool areSame(IUnknown* pLeft, IUnknown* pRight) {
    const IUnknownPtr pLeftIdentity(pLeft);
    const IUnknownPtr pRightIdentity(pRight);
    return pLeftIdentity.GetInterfacePtr() == pRightIdentity.GetInterfacePtr();
}

IDispatchPtr documentOf(const wchar_t* sXml, const wchar_t* sProgId) {
    IDispatchPtr pDocument;
    pDocument.CreateInstance(sProgId);
    const LateCall loaded = call(pDocument, L"loadXML", {_variant_t(sXml)});
    EXPECT_EQ(loaded.hr, S_OK);
    EXPECT_TRUE(static_cast<bool>(loaded.result));
    return pDocument;
}

Folder::Folder() : path_(temporaryPath(L"client-")) {
    std::filesystem::create_directory(path_);
}

Folder::~Folder() {
    std::filesystem::remove_all(path_);
}

std::wstring Folder::write(const std::wstring& sName, std::string_view sContent) const {
    const auto path = path_ / sName;
    std::ofstream(path, std::ios::binary) << sContent;
    return path.wstring();
}

std::optional<std::string> Folder::read(const std::wstring& sName) const {
    if (!std::filesystem::exists(path_ / sName))
        return std::nullopt;
    return contentOf(path_ / sName);
}

} // namespace halvane::client
