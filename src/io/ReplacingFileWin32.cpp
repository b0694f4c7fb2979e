#include "io/ReplacingFile.h"
#include "io/SpecialName.h"
#include "io/Win32File.h"

#include "base/com/Bstr.h"

#include <algorithm>
#include <atomic>
#include <cwchar>
#include <string>

namespace halvane::io {

namespace {

/// Where links lead to when something is there; else the path itself.
std::wstring resolveLinks(const std::string& sPath) {
    std::wstring sWide = widePath(sPath);
    const DWORD nAttributes = ::GetFileAttributesW(sWide.c_str());
    if (nAttributes == INVALID_FILE_ATTRIBUTES || (nAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return sWide;
    const FileHandle file(::CreateFileW(sWide.c_str(), 0,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file.isOpen())
        throw fileFailure(::GetLastError(), sPath);
    std::wstring sFinal(::GetFinalPathNameByHandleW(file.get(), nullptr, 0, 0), L'\0');
    sFinal.resize(
        ::GetFinalPathNameByHandleW(file.get(), sFinal.data(), static_cast<DWORD>(sFinal.size()), 0));
    if (sFinal.empty())
        throw fileFailure(::GetLastError(), sPath);
    return sFinal;
}

/// A folder or a device cannot be replaced by a document; a write-protected file shall not be.
void requireReplaceable(const std::wstring& sTarget, const std::string& sPath) {
    const DWORD nAttributes = ::GetFileAttributesW(sTarget.c_str());
    if (nAttributes == INVALID_FILE_ATTRIBUTES)
        return;
    if ((nAttributes & FILE_ATTRIBUTE_DEVICE) != 0)
        throw Failure(FailureNumber::PathFileAccess, sPath + ": not a regular file");
    if ((nAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0)
        throw fileFailure(ERROR_ACCESS_DENIED, sPath);
}

std::wstring nameBeside(const std::wstring& sTarget) {
    static std::atomic<unsigned> nCounter{0};
    // The longest name leaves no room for what is put around it.
    constexpr std::size_t enough = 200;
    const std::size_t nName = sTarget.find_last_of(L"\\/:") + 1;
    return sTarget.substr(0, nName) + L"~" + sTarget.substr(nName, enough) + L"." +
           std::to_wstring(::GetCurrentProcessId()) + L"." + std::to_wstring(++nCounter) + L".tmp";
}

/// "...\\~name.", what the names of all files beside the target begin with.
std::wstring beginningBeside(const std::wstring& sTarget) {
    const std::wstring sName = nameBeside(sTarget);
    return sName.substr(0, sName.rfind(L'.', sName.rfind(L'.', sName.rfind(L'.') - 1) - 1) + 1);
}

bool isRunning(DWORD nProcess) {
    const HANDLE hProcess = ::OpenProcess(SYNCHRONIZE, FALSE, nProcess);
    if (hProcess == nullptr)
        return ::GetLastError() != ERROR_INVALID_PARAMETER;
    const bool bRuns = ::WaitForSingleObject(hProcess, 0) == WAIT_TIMEOUT;
    ::CloseHandle(hProcess);
    return bRuns;
}

/// Removes the files that ended processes left beside the target.
void removeAbandoned(const std::wstring& sTarget) {
    const std::wstring sBeginning = beginningBeside(sTarget);
    const std::size_t nName = sBeginning.find_last_of(L"\\/:") + 1;
    WIN32_FIND_DATAW found{};
    const HANDLE hSearch = ::FindFirstFileW((sBeginning + L"*.tmp").c_str(), &found);
    if (hSearch == INVALID_HANDLE_VALUE)
        return;
    do {
        const std::wstring sName = found.cFileName; // NOLINT(*-array-to-pointer-decay): the platform's text
        const std::wstring sNumbers = sName.substr(std::min(sName.size(), sBeginning.size() - nName));
        const DWORD nProcess = std::wcstoul(sNumbers.c_str(), nullptr, 10);
        // Its digits, a point, digits of the counter, the ending.
        const bool bOurs = nProcess != 0 && sNumbers.find_first_not_of(L"0123456789.") + 3 == sNumbers.size();
        if (bOurs && !isRunning(nProcess))
            ::DeleteFileW((sBeginning.substr(0, nName) + sName).c_str());
    } while (::FindNextFileW(hSearch, &found) != 0);
    ::FindClose(hSearch);
}

class Win32ReplacingFile : public ReplacingFile {
public:
    Win32ReplacingFile(std::string sPath, std::wstring sTarget, std::wstring sTemporary, FileHandle file)
        : sPath_(std::move(sPath)), sTarget_(std::move(sTarget)), sTemporary_(std::move(sTemporary)),
          file_(std::move(file)) {}

    Win32ReplacingFile(const Win32ReplacingFile&) = delete;
    Win32ReplacingFile& operator=(const Win32ReplacingFile&) = delete;
    ~Win32ReplacingFile() override {
        if (bCommitted_)
            return;
        (void)file_.close(); // an open file cannot be removed
        ::DeleteFileW(sTemporary_.c_str());
    }

    void write(std::string_view sBytes) override {
        if (const DWORD nError = writeAll(file_, sBytes); nError != ERROR_SUCCESS)
            throw fileFailure(nError, sPath_);
    }

    std::string commit(Durability durability) override {
        if (durability == Durability::OnDisk && ::FlushFileBuffers(file_.get()) == 0)
            throw fileFailure(::GetLastError(), sPath_);
        if (const DWORD nError = file_.close(); nError != ERROR_SUCCESS)
            throw fileFailure(nError, sPath_);
        // ReplaceFile would keep more of the old file's attributes, but can end with no file at the target.
        constexpr DWORD nReplacing = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        if (::MoveFileExW(sTemporary_.c_str(), sTarget_.c_str(), nReplacing) == 0)
            throw fileFailure(::GetLastError(), sPath_);
        bCommitted_ = true;
        return {}; // the move itself waits for the disk
    }

private:
    std::string sPath_; ///< as the caller named it, for messages
    std::wstring sTarget_;
    std::wstring sTemporary_;
    FileHandle file_;
    bool bCommitted_ = false;
};

} // namespace

std::unique_ptr<ReplacingFile> ReplacingFile::create(std::string_view sTarget) {
    const std::string sPath(sTarget);
    requirePlainName(sPath);
    std::wstring sResolved = resolveLinks(sPath);
    requireReplaceable(sResolved, sPath);
    removeAbandoned(sResolved);
    for (;;) {
        std::wstring sTemporary = nameBeside(sResolved);
        FileHandle file(::CreateFileW(sTemporary.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file.isOpen())
            return std::make_unique<Win32ReplacingFile>(sPath, std::move(sResolved), std::move(sTemporary),
                                                        std::move(file));
        if (::GetLastError() != ERROR_FILE_EXISTS)
            throw fileFailure(::GetLastError(), sPath);
    }
}

std::unique_ptr<ReplacingFile> ReplacingFile::adopt(TemporaryFile& /*file*/, std::string_view /*sTarget*/) {
    return nullptr; // temporary files of this platform cannot be kept
}

} // namespace halvane::io
