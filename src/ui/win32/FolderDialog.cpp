#include "ui/win32/FolderDialog.h"

#include "base/Owned.h"
#include "base/com/Apartment.h"
#include "base/com/Bstr.h"
#include "ui/win32/TypedPath.h"

#include <array>
#include <string>

namespace halvane::ui::win32 {

namespace {

struct Beginning {
    std::wstring sTitle;
    std::wstring sFolder;
};

int CALLBACK begin(HWND hDialog, UINT nMessage, LPARAM /*lParam*/, LPARAM lData) {
    if (nMessage != BFFM_INITIALIZED)
        return 0;
    const auto& beginning = *reinterpret_cast<const Beginning*>(lData);
    SetWindowTextW(hDialog, beginning.sTitle.c_str());
    if (!beginning.sFolder.empty())
        SendMessageW(hDialog, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(beginning.sFolder.c_str()));
    return 0;
}

BrowsedItem itemAt(const ITEMIDLIST& place) {
    std::array<wchar_t, MAX_PATH> sPath{};
    if (SHGetPathFromIDListW(&place, sPath.data()) == FALSE)
        return {};
    const DWORD nAttributes = GetFileAttributesW(sPath.data());
    const bool bFolder =
        nAttributes != INVALID_FILE_ATTRIBUTES && (nAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return {com::utf8Of(std::wstring_view(sPath.data())), bFolder};
}

} // namespace

std::optional<BrowsedItem> browseForFolder(HWND hOwner, std::string_view sTitle, std::string_view sStart) {
    // The newer form is not to be had on a thread that shares the apartment of many.
    const com::Apartment apartment(com::Apartment::For::Dialogs);
    const Beginning beginning{com::wideOf(sTitle), folderOfTyped(sStart)};
    BROWSEINFOW dialog{};
    dialog.hwndOwner = hOwner;
    dialog.lpszTitle = L"Folders and files";
    dialog.ulFlags = BIF_BROWSEINCLUDEFILES | (apartment.entered() ? BIF_USENEWUI : BIF_EDITBOX);
    dialog.lpfn = &begin;
    dialog.lParam = reinterpret_cast<LPARAM>(&beginning);
    const Owned<ITEMIDLIST, CoTaskMemFree> pPlace(SHBrowseForFolderW(&dialog));
    if (pPlace == nullptr)
        return std::nullopt;
    return itemAt(*pPlace);
}

} // namespace halvane::ui::win32
