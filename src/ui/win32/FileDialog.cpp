#include "ui/win32/FileDialog.h"

#include "base/com/Bstr.h"
#include "ui/CommonDialogFilter.h"
#include "ui/win32/TypedPath.h"

#include <filesystem>

namespace halvane::ui::win32 {

namespace {

constexpr std::size_t nLongestPath = 32768;

} // namespace

std::wstring systemFilter(std::string_view sFilter) {
    std::wstring sResult;
    for (const FileKind& kind : fileKinds(sFilter)) {
        std::string sPatterns;
        for (const auto& sPattern : kind.patterns)
            sPatterns += (sPatterns.empty() ? "" : ";") + sPattern;
        sResult += com::wideOf(kind.sDescription) + L'\0';
        sResult += com::wideOf(sPatterns.empty() ? "*.*" : sPatterns) + L'\0';
    }
    return sResult + L'\0';
}

std::optional<std::string> FileDialog::showOpen(HWND hOwner, std::string_view sFilter,
                                                std::string_view sStart) {
    const std::wstring sSystemFilter = systemFilter(sFilter);
    const std::wstring sFolder = sFolder_.empty() ? folderOfTyped(sStart) : sFolder_;
    std::wstring sPath(nLongestPath, L'\0');
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = hOwner;
    dialog.lpstrFilter = sSystemFilter.c_str();
    dialog.lpstrFile = sPath.data();
    dialog.nMaxFile = static_cast<DWORD>(sPath.size());
    dialog.lpstrInitialDir = sFolder.empty() ? nullptr : sFolder.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (GetOpenFileNameW(&dialog) == FALSE)
        return std::nullopt;
    sPath.resize(wcslen(sPath.c_str()));
    sFolder_ = std::filesystem::path(sPath).parent_path().wstring();
    return com::utf8Of(sPath);
}

} // namespace halvane::ui::win32
