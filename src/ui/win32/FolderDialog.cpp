#include "ui/win32/FolderDialog.h"

#include "base/com/Apartment.h"
#include "base/com/Bstr.h"
#include "base/com/ComPtr.h"
#include "base/com/HResult.h"
#include "io/Win32File.h"
#include "ui/win32/TypedPath.h"

#include <string>

namespace halvane::ui::win32 {

namespace {

using com::ComPtr;
using com::require;

void beginIn(IFileDialog& dialog, const std::wstring& sFolder) {
    ComPtr<IShellItem> pFolder;
    if (!sFolder.empty() && SUCCEEDED(SHCreateItemFromParsingName(sFolder.c_str(), nullptr, IID_IShellItem,
                                                                  reinterpret_cast<void**>(pFolder.put()))))
        dialog.SetFolder(pFolder.get());
}

BrowsedItem itemOf(IShellItem& place) {
    wchar_t* pPath = nullptr;
    if (FAILED(place.GetDisplayName(SIGDN_FILESYSPATH, &pPath)))
        return {};
    const std::string sPath = com::utf8Of(std::wstring_view(pPath));
    CoTaskMemFree(pPath);
    const DWORD nAttributes = GetFileAttributesW(io::widePath(sPath).c_str());
    return {sPath, nAttributes != INVALID_FILE_ATTRIBUTES && (nAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0};
}

} // namespace

std::optional<BrowsedItem> browseForFolder(HWND hOwner, std::string_view sTitle, std::string_view sStart) {
    const com::Apartment apartment(com::Apartment::For::Dialogs);
    ComPtr<IFileOpenDialog> pDialog;
    require(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_IFileOpenDialog,
                             reinterpret_cast<void**>(pDialog.put())),
            "The folder dialog");
    FILEOPENDIALOGOPTIONS nOptions = 0;
    require(pDialog->GetOptions(&nOptions), "The folder dialog");
    nOptions |= FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM | FOS_PATHMUSTEXIST | FOS_NOCHANGEDIR;
    require(pDialog->SetOptions(nOptions), "The folder dialog");
    require(pDialog->SetTitle(com::wideOf(sTitle).c_str()), "The folder dialog");
    beginIn(*pDialog.get(), folderOfTyped(sStart));
    const HRESULT hr = pDialog->Show(hOwner);
    if (hr == HRESULT_FROM_WIN32(ERROR_CANCELLED))
        return std::nullopt;
    require(hr, "The folder dialog");
    ComPtr<IShellItem> pPlace;
    require(pDialog->GetResult(pPlace.put()), "The folder dialog");
    return itemOf(*pPlace.get());
}

} // namespace halvane::ui::win32
