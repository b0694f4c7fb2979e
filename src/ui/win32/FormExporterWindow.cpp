#include "ui/win32/FormExporterWindow.h"

#include "base/Failure.h"
#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "ui/FormLayout.h"
#include "ui/win32/Arrangement.h"
#include "ui/win32/ControlIds.h"
#include "ui/win32/Controls.h"
#include "ui/win32/DialogTemplate.h"
#include "ui/win32/FolderDialog.h"
#include "ui/win32/MessageLoop.h"

#include <algorithm>
#include <utility>

namespace halvane::ui::win32 {

namespace {

constexpr DWORD nWindowStyle =
    WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN | DS_CENTER;
constexpr WPARAM lLongestText = 0x7FFFFFFE;
constexpr UINT nDpiChanged = 0x02E0; // WM_DPICHANGED, which older headers do not have

FormExporterWindow* windowOf(HWND hDialog) {
    return reinterpret_cast<FormExporterWindow*>(GetWindowLongPtrW(hDialog, DWLP_USER));
}

SIZE insideOf(HWND hDialog) {
    RECT rect{};
    GetClientRect(hDialog, &rect);
    return {rect.right, rect.bottom};
}

/// A window whose owner nobody sees stands for itself among those of the desktop.
void standForItself(HWND hDialog) {
    SetWindowLongPtrW(hDialog, GWL_EXSTYLE, GetWindowLongPtrW(hDialog, GWL_EXSTYLE) | WS_EX_APPWINDOW);
}

/// The picture of an application, of which the dialog is a part; 0 for none.
LPARAM pictureOf(HWND hOwner) {
    return hOwner == nullptr ? 0 : static_cast<LPARAM>(GetClassLongPtrW(hOwner, GCLP_HICON));
}

} // namespace

FormExporterWindow::FormExporterWindow(HWND hOwner, RememberedBoxes remembered, Pacing pacing)
    : hOwner_(hOwner == nullptr ? nullptr : GetAncestor(hOwner, GA_ROOT)), remembered_(std::move(remembered)),
      appearance_(pictureOf(hOwner_) == 0), strip_([this] { arrange(); }, std::move(pacing)) {
    const INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX),
                                        ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    const PerMonitor perMonitor;
    const int lDpi = dpiOf(GetDesktopWindow());
    const DialogTemplate dialog(com::wideOf(sFormCaption), nWindowStyle, sizeAtFirst, messageFont(lDpi),
                                lDpi);
    HWND hDialog =
        CreateDialogIndirectParamW(GetModuleHandleW(nullptr), dialog.get(), hOwner_, &dialogProcedure, 0);
    if (hDialog == nullptr)
        com::require(HRESULT_FROM_WIN32(GetLastError()), "The dialog's window");
    try {
        build(hDialog);
    } catch (...) {
        DestroyWindow(hDialog);
        throw;
    }
}

FormExporterWindow::~FormExporterWindow() {
    Unload();
}

void FormExporterWindow::build(HWND hDialog) {
    hDialog_ = hDialog;
    SetWindowLongPtrW(hDialog_, DWLP_USER, reinterpret_cast<LONG_PTR>(this));
    scaleByItself(hDialog_);
    if (const LPARAM lPicture = pictureOf(hOwner_); lPicture != 0)
        SendMessageW(hDialog_, WM_SETICON, ICON_BIG, lPicture);
    if (hOwner_ != nullptr && IsWindowVisible(hOwner_) == FALSE)
        standForItself(hDialog_);
    buildRows();
    addControl(hDialog_, kindDefaultButton, lCommand1, com::wideOf(sOkCaption));
    addControl(hDialog_, kindButton, lCommand2, com::wideOf(sCancelCaption));
    SendMessageW(hDialog_, DM_SETDEFID, lCommand1, 0);
    strip_.addTo(hDialog_);
    followScreen(dpiOf(hDialog_));
}

void FormExporterWindow::followScreen(int lDpi) {
    appearance_.apply(hDialog_, lDpi);
    arrange();
}

void FormExporterWindow::buildRows() {
    // A label's letter leads to the control behind it, and Tab goes through the controls as they were added.
    for (const FormRow& row : formRows()) {
        addControl(hDialog_, kindLabel, labelOf(row.box),
                   com::wideOf(withMnemonic(row.sCaption, row.cMnemonic)));
        HWND hBox = addControl(hDialog_, kindBox, textOf(row.box), L"");
        SendMessageW(hBox, EM_SETLIMITTEXT, lLongestText, 0);
        if (const int lBrowser = browserOf(row.box); lBrowser != 0)
            addBrowser(lBrowser, row.sBrowseTold);
    }
}

void FormExporterWindow::addBrowser(int lBrowser, std::string_view sTold) {
    constexpr ControlKind kindBrowser{WC_BUTTONW, BS_PUSHBUTTON | BS_ICON | WS_TABSTOP | WS_VISIBLE};
    const std::wstring sText = com::wideOf(sTold); // not shown beside the picture, but read out
    HWND hBrowser = addControl(hDialog_, kindBrowser, lBrowser, sText);
    // It keeps the focus after a choice, and Enter is to be OK then.
    leaveEnterAlone(hBrowser);
    addTip(hDialog_, hBrowser, sText);
}

void FormExporterWindow::arrange() {
    if (hDialog_ == nullptr)
        return;
    const Arrangement arrangement(appearance_.units(), strip_.shows());
    const SIZE smallest = arrangement.smallest();
    const SIZE inside = insideOf(hDialog_);
    if (inside.cx < smallest.cx || inside.cy < smallest.cy) {
        const SIZE whole = wholeSizeFor({std::max(inside.cx, smallest.cx), std::max(inside.cy, smallest.cy)});
        // Comes back here by WM_SIZE.
        SetWindowPos(hDialog_, nullptr, 0, 0, whole.cx, whole.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        return;
    }
    for (const auto& [lControl, place] : arrangement.places(inside))
        SetWindowPos(control(lControl), nullptr, place.left, place.top, place.right - place.left,
                     place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(hDialog_, nullptr, TRUE);
}

SIZE FormExporterWindow::wholeSizeFor(SIZE inside) const {
    // The frame that it has: how wide one is to be differs from monitor to monitor.
    RECT whole{};
    GetWindowRect(hDialog_, &whole);
    const SIZE now = insideOf(hDialog_);
    return {inside.cx + whole.right - whole.left - now.cx, inside.cy + whole.bottom - whole.top - now.cy};
}

void FormExporterWindow::boundSize(MINMAXINFO& bounds) const {
    const SIZE smallest = wholeSizeFor(Arrangement(appearance_.units(), strip_.shows()).smallest());
    bounds.ptMinTrackSize = {smallest.cx, smallest.cy};
}

void FormExporterWindow::present(FormExporter& form, HostApplicationPtr pApplication) {
    pForm_ = &form;
    form.Load(std::move(pApplication));
    remembered_.recall(*this);
    if (hOwner_ != nullptr && IsWindowEnabled(hOwner_) != FALSE) {
        EnableWindow(hOwner_, FALSE);
        bOwnerWaits_ = true;
    }
    ShowWindow(hDialog_, SW_SHOWNORMAL);
    SetForegroundWindow(hDialog_);
    setFocusTo(Box::Text1);
}

void FormExporterWindow::runUntilClosed() {
    while (hDialog_ != nullptr && handleNextMessage(hDialog_)) {
    }
    Unload();
}

INT_PTR CALLBACK FormExporterWindow::dialogProcedure(HWND hDialog, UINT nMessage, WPARAM wParam,
                                                     LPARAM lParam) noexcept {
    if (nMessage == WM_INITDIALOG)
        return FALSE; // the focus is given later
    FormExporterWindow* pWindow = windowOf(hDialog);
    if (pWindow == nullptr)
        return FALSE;
    try {
        return pWindow->handle(nMessage, wParam, lParam) ? TRUE : FALSE;
    } catch (...) {
        // The system's own code must not be left by an exception.
        MessageBoxW(hDialog, com::wideOf(currentFailure().description()).c_str(),
                    com::wideOf(sFormCaption).c_str(), MB_OK | MB_ICONERROR);
        return TRUE;
    }
}

bool FormExporterWindow::handle(UINT nMessage, WPARAM wParam, LPARAM lParam) {
    switch (nMessage) {
    case WM_COMMAND:
        return HIWORD(wParam) <= 1 && handleCommand(LOWORD(wParam)); // clicks, menus and accelerators
    case WM_CLOSE:
        reject();
        return true;
    case WM_SIZE:
        arrange();
        return true;
    case WM_GETMINMAXINFO:
        boundSize(*reinterpret_cast<MINMAXINFO*>(lParam));
        return true;
    case WM_SETCURSOR:
        if (!bBusy_)
            return false;
        SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        SetWindowLongPtrW(hDialog_, DWLP_MSGRESULT, TRUE);
        return true;
    case nDpiChanged: {
        const RECT place = *reinterpret_cast<const RECT*>(lParam);
        SetWindowPos(hDialog_, nullptr, place.left, place.top, place.right - place.left,
                     place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
        followScreen(HIWORD(wParam));
        return true;
    }
    case WM_SETTINGCHANGE:
        if (wParam == SPI_SETNONCLIENTMETRICS)
            followScreen(appearance_.dpi());
        return false;
    case WM_DESTROY:
        leave();
        return false;
    default:
        return false;
    }
}

bool FormExporterWindow::handleCommand(int lControl) {
    if (pForm_ == nullptr)
        return false;
    switch (lControl) {
    case lCommand1:
        accept();
        return true;
    case lCommand2:
        reject();
        return true;
    case lCommand3:
        pForm_->Command3_Click();
        return true;
    case lCommand4:
        pForm_->Command4_Click();
        return true;
    case lCommand5:
        pForm_->Command5_Click();
        return true;
    case lEscape:
        escape();
        return true;
    case lOpenFolder:
        strip_.openFolder();
        return true;
    case lCancelExport:
        strip_.cancel();
        return true;
    default:
        return false;
    }
}

void FormExporterWindow::accept() {
    if (pForm_->Command1_Click() && hDialog_ != nullptr)
        remembered_.remember(*this);
}

void FormExporterWindow::reject() {
    if (pForm_ != nullptr && pForm_->exporting())
        strip_.cancel();
    else if (pForm_ != nullptr)
        pForm_->Command2_Click();
}

void FormExporterWindow::escape() {
    if ((pForm_ != nullptr && pForm_->exporting()) || !strip_.endedJustNow())
        reject();
}

std::string FormExporterWindow::text(Box box) const {
    return com::utf8Of(textOfControl(control(textOf(box))));
}

void FormExporterWindow::setText(Box box, const std::string& sText) {
    SetWindowTextW(control(textOf(box)), com::wideOf(sText).c_str());
}

void FormExporterWindow::MsgBox(const std::string& sText) {
    MessageBoxW(hDialog_, com::wideOf(sText).c_str(), com::wideOf(sFormCaption).c_str(), MB_OK);
}

void FormExporterWindow::setMousePointer(MousePointer pointer) {
    setBusy(pointer == MousePointer::Hourglass);
    SetCursor(LoadCursorW(nullptr, bBusy_ ? IDC_WAIT : IDC_ARROW));
}

void FormExporterWindow::setFocusTo(Box box) {
    if (hDialog_ != nullptr)
        SendMessageW(hDialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(textOf(box))), TRUE);
}

void FormExporterWindow::setBusy(bool bBusy) {
    bBusy_ = bBusy;
    if (bBusy) {
        hFocusBefore_ = GetFocus();
        // A disabled control would swallow the keys.
        SetFocus(hDialog_);
    }
    for (const FormRow& row : formRows()) {
        EnableWindow(control(labelOf(row.box)), bBusy ? FALSE : TRUE);
        EnableWindow(control(textOf(row.box)), bBusy ? FALSE : TRUE);
        if (const int lBrowser = browserOf(row.box); lBrowser != 0)
            EnableWindow(control(lBrowser), bBusy ? FALSE : TRUE);
    }
    for (const int lButton : {lCommand1, lCommand2})
        EnableWindow(control(lButton), bBusy ? FALSE : TRUE);
    if (!bBusy && IsChild(hDialog_, hFocusBefore_) != FALSE)
        SendMessageW(hDialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(hFocusBefore_), TRUE);
}

std::optional<std::string> FormExporterWindow::ShowOpen(std::string_view sFilter) {
    return commonDialog1_.showOpen(hDialog_, sFilter, text(Box::Text1));
}

std::optional<BrowsedItem> FormExporterWindow::Browse(std::string_view sTitle) {
    return browseForFolder(hDialog_, sTitle, text(Box::Text2));
}

void FormExporterWindow::Unload() {
    if (hDialog_ != nullptr)
        DestroyWindow(hDialog_);
}

void FormExporterWindow::leave() {
    if (pForm_ != nullptr && pForm_->exporting())
        strip_.cancel();
    // The owner takes input again before this goes, or another program's window would come to the front.
    if (bOwnerWaits_)
        EnableWindow(hOwner_, TRUE);
    bOwnerWaits_ = false;
    strip_.leaveDialog();
    hDialog_ = nullptr;
}

} // namespace halvane::ui::win32
