#include "ui/win32/OutcomeStrip.h"

#include "base/com/Bstr.h"
#include "ui/win32/ControlIds.h"
#include "ui/win32/Controls.h"
#include "ui/win32/MessageLoop.h"

#include <array>
#include <filesystem>

namespace halvane::ui::win32 {

namespace {

constexpr WPARAM nMarqueeStep = 30; // milliseconds

constexpr ControlKind kindPicture{WC_STATICW, SS_ICON};
constexpr ControlKind kindHiddenLabel{WC_STATICW, SS_LEFT};
constexpr ControlKind kindOutcome{
    WC_EDITW, ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};
constexpr ControlKind kindStripButton{WC_BUTTONW, BS_PUSHBUTTON | WS_TABSTOP};
constexpr ControlKind kindBar{PROGRESS_CLASSW, PBS_MARQUEE};

const wchar_t* pictureOf(ExportOutcome::Kind kind) {
    switch (kind) {
    case ExportOutcome::Kind::Written:
        return IDI_INFORMATION;
    case ExportOutcome::Kind::Warned:
    case ExportOutcome::Kind::Incomplete:
        return IDI_WARNING;
    case ExportOutcome::Kind::NotWritten:
        break;
    }
    return IDI_ERROR;
}

/// A whole number as this person writes it.
std::wstring written(std::uint64_t lNumber) {
    const std::wstring sPlain = std::to_wstring(lNumber);
    std::array<wchar_t, 5> sPoint{};
    std::array<wchar_t, 5> sThousands{};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, sPoint.data(), static_cast<int>(sPoint.size()));
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, sThousands.data(),
                   static_cast<int>(sThousands.size()));
    const NUMBERFMTW format{0, 0, 3, sPoint.data(), sThousands.data(), 1};
    std::array<wchar_t, 64> sWritten{};
    if (GetNumberFormatW(LOCALE_USER_DEFAULT, 0, sPlain.c_str(), &format, sWritten.data(),
                         static_cast<int>(sWritten.size())) == 0)
        return sPlain;
    return sWritten.data();
}

} // namespace

void OutcomeStrip::addTo(HWND hDialog) {
    hDialog_ = hDialog;
    addControl(hDialog, kindPicture, lOutcomeKind, L"");
    addControl(hDialog, kindHiddenLabel, lOutcomeLabel, L"Outcome of the export"); // names the box behind it
    addControl(hDialog, kindOutcome, lOutcome, L"");
    SendMessageW(control(lOutcome), EM_SETLIMITTEXT, 0, 0);
    addTip(hDialog, addControl(hDialog, kindStripButton, lOpenFolder, L"Op&en Folder"),
           L"Open the folder of the document");
    addControl(hDialog, kindHiddenLabel, lItemCount, L"");
    addControl(hDialog, kindBar, lProgress, L"The export is running");
    addControl(hDialog, kindStripButton, lCancelExport, L"Cance&l Export");
}

void OutcomeStrip::begin() {
    bCancelled_ = false;
    sFolder_.clear();
    SetWindowTextW(control(lOutcome), L"");
    SendMessageW(control(lOutcomeKind), STM_SETICON, 0, 0);
    showControl(lOpenFolder, false);
    EnableWindow(control(lCancelExport), TRUE);
    pacing_.begin();
}

bool OutcomeStrip::cancelledAfter(std::uint64_t lItems) {
    if (pacing_.turnIsDue()) {
        showProgress(lItems);
        if (!handleWaitingMessages(hDialog_))
            cancel();
        pacing_.endTurn();
    }
    return bCancelled_;
}

void OutcomeStrip::showProgress(std::uint64_t lItems) {
    if (hDialog_ == nullptr || !pacing_.lastsLong())
        return;
    const std::wstring sItems = written(lItems) + L" items";
    if (textOfControl(control(lItemCount)) != sItems)
        SetWindowTextW(control(lItemCount), sItems.c_str());
    if (shows_ == StripShows::Progress)
        return;
    turnTo(StripShows::Progress);
    SetFocus(control(lCancelExport));
}

void OutcomeStrip::cancel() {
    bCancelled_ = true;
    EnableWindow(control(lCancelExport), FALSE);
}

void OutcomeStrip::show(const ExportOutcome& outcome) {
    pacing_.end();
    if (hDialog_ == nullptr)
        return;
    std::wstring sText = com::wideOf(outcome.sSummary);
    for (const auto& sDetail : outcome.details)
        sText += L"\r\n" + com::wideOf(sDetail);
    SetWindowTextW(control(lOutcome), sText.c_str());
    // The system's own pictures are shared, and never given back.
    HICON hPicture = LoadIconW(nullptr, pictureOf(outcome.kind));
    SendMessageW(control(lOutcomeKind), STM_SETICON, reinterpret_cast<WPARAM>(hPicture), 0);
    sFolder_ = outcome.sDocument.empty()
                   ? std::wstring()
                   : std::filesystem::path(com::wideOf(outcome.sDocument)).parent_path().wstring();
    turnTo(StripShows::Outcome);
    NotifyWinEvent(EVENT_SYSTEM_ALERT, control(lOutcome), OBJID_CLIENT, CHILDID_SELF);
}

void OutcomeStrip::turnTo(StripShows shows) {
    shows_ = shows;
    const bool bProgress = shows == StripShows::Progress;
    const bool bOutcome = shows == StripShows::Outcome;
    SendMessageW(control(lProgress), PBM_SETMARQUEE, bProgress ? TRUE : FALSE, nMarqueeStep);
    // A focus in what goes would leave the keyboard without a place.
    if (HWND hFocus = GetFocus(); !bProgress && hFocus == control(lCancelExport))
        SetFocus(hDialog_);
    for (const int lControl : {lItemCount, lProgress, lCancelExport})
        showControl(lControl, bProgress);
    for (const int lControl : {lOutcomeKind, lOutcome})
        showControl(lControl, bOutcome);
    showControl(lOpenFolder, bOutcome && !sFolder_.empty());
    fnArrange_();
}

void OutcomeStrip::showControl(int lControl, bool bShown) const {
    ShowWindow(control(lControl), bShown ? SW_SHOWNA : SW_HIDE);
}

void OutcomeStrip::openFolder() {
    constexpr INT_PTR nLastError = 32;
    const auto nResult = reinterpret_cast<INT_PTR>(
        ShellExecuteW(hDialog_, nullptr, sFolder_.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    if (nResult > nLastError)
        return;
    SetWindowTextW(control(lOutcome), (textOfControl(control(lOutcome)) +
                                       L"\r\nNo program for folders was found on this machine.")
                                          .c_str());
}

} // namespace halvane::ui::win32
