// The dialog as programs enter it: a host with its map document at hand, or rundll32.

#include "base/Failure.h"
#include "base/com/Apartment.h"
#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "component/com/CollectionBridge.h"
#include "component/com/ServerUse.h"
#include "component/com/dialog/ComApplication.h"
#include "component/com/dialog/VisualStyles.h"
#include "ui/FormLayout.h"
#include "ui/win32/FormExporterWindow.h"

#include <limits>
#include <memory>

namespace halvane::server {

namespace {

ExportOptions options() {
    ExportOptions options;
    options.lItemLimit = std::numeric_limits<std::int64_t>::max();
    options.bIgnoreComments = true;
    options.durability = io::Durability::OnDisk;
    return options;
}

/// Shows the form and returns once it is closed.
void showForm(MapSource source, HWND hOwner) {
    installCollectionBridge();
    const ServerUse use;
    const VisualStyles styles(serverModule());
    const auto pApplication = std::make_shared<ComApplication>(std::move(source));
    ui::win32::FormExporterWindow window(hOwner);
    ComDialogWatch watch(*pApplication, window.strip());
    ui::FormExporter form(window, options(), &watch);
    window.present(form, pApplication);
    window.runUntilClosed();
}

/// The argument without the blanks and the quotes around it.
std::wstring argumentOf(const wchar_t* sCommandLine) {
    std::wstring sArgument = sCommandLine == nullptr ? L"" : sCommandLine;
    const wchar_t* const sAround = L" \t\"";
    sArgument.erase(sArgument.find_last_not_of(sAround) + 1);
    sArgument.erase(0, sArgument.find_first_not_of(sAround));
    return sArgument;
}

void tell(HWND hOwner, const Failure& failure) {
    MessageBoxW(hOwner, com::wideOf(failure.description()).c_str(), com::wideOf(ui::sFormCaption).c_str(),
                MB_OK | MB_ICONERROR);
}

} // namespace

} // namespace halvane::server

using namespace halvane::server;

extern "C" {

/// Shows the dialog for a map document, and returns once it is closed; the owner takes no input meanwhile.
/// @param pMapDocument lent; the map document, or an application with a member "MapDocument"; may be null.
/// @param hOwner may be null.
/// @returns S_OK, or the code of what kept the dialog from being shown.
HRESULT WINAPI HalvaneShowExportDialog(IDispatch* pMapDocument, HWND hOwner) {
    try {
        const halvane::com::Apartment apartment(halvane::com::Apartment::For::Dialogs);
        showForm(MapSource(halvane::com::ComPtr<IDispatch>(pMapDocument)), hOwner);
        return S_OK;
    } catch (...) {
        return halvane::com::resultOf(halvane::currentFailure());
    }
}

/// The same for rundll32: ShowExportDialog [NAME]. The name is that of a running application or map document.
void CALLBACK ShowExportDialogW(HWND hOwner, HINSTANCE /*hProgram*/, LPWSTR sCommandLine, int /*lShow*/) {
    try {
        const halvane::com::Apartment apartment(halvane::com::Apartment::For::Dialogs);
        showForm(MapSource::named(argumentOf(sCommandLine)), hOwner);
    } catch (...) {
        tell(hOwner, halvane::currentFailure());
    }
}
}
