#include "ui/win32/DialogTest.h"

#include "base/Text.h"
#include "base/com/Bstr.h"
#include "engine/ExportState.h"
#include "ui/win32/Controls.h"
#include "ui/win32/MessageLoop.h"

namespace halvane::test {

namespace {

constexpr UINT nBetweenLooks = 20;      // milliseconds
constexpr ULONGLONG nPatience = 20'000; // likewise

Answer* pWaiting = nullptr; // timers carry no data

BOOL CALLBACK takeIfInFront(HWND hWindow, LPARAM lFound) {
    auto& found = *reinterpret_cast<std::pair<HWND, HWND>*>(lFound);
    if (GetWindow(hWindow, GW_OWNER) != found.first || IsWindowVisible(hWindow) == FALSE)
        return TRUE;
    if (std::wstring sClass(32, L'\0');
        GetClassNameW(hWindow, sClass.data(), 32) > 0 && sClass.starts_with(TOOLTIPS_CLASSW))
        return TRUE;
    found.second = hWindow;
    return FALSE;
}

HWND windowInFrontOf(HWND hDialog) {
    std::pair<HWND, HWND> found{hDialog, nullptr};
    EnumThreadWindows(GetCurrentThreadId(), &takeIfInFront, reinterpret_cast<LPARAM>(&found));
    return found.second;
}

/// A window that comes to the front gives the focus to the box that had it last: not amid a test.
void waitUntilInFront(HWND hDialog) {
    ui::win32::handleWaitingMessages(hDialog);
    for (ULONGLONG nBegan = GetTickCount64();
         GetForegroundWindow() != hDialog && GetTickCount64() - nBegan < nPatience;) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, nBetweenLooks, QS_ALLINPUT);
        ui::win32::handleWaitingMessages(hDialog);
    }
}

} // namespace

Answer::Answer(HWND hDialog, std::function<bool(HWND)> fnAnswer)
    : hDialog_(hDialog), fnAnswer_(std::move(fnAnswer)),
      nTimer_(SetTimer(nullptr, 0, nBetweenLooks, &Answer::look)) {
    pWaiting = this;
}

Answer::~Answer() {
    KillTimer(nullptr, nTimer_);
    pWaiting = nullptr;
}

void CALLBACK Answer::look(HWND /*hNone*/, UINT /*nMessage*/, UINT_PTR /*nTimer*/, DWORD /*nTime*/) {
    if (pWaiting == nullptr)
        return;
    Answer& answer = *pWaiting;
    if (GetTickCount64() - answer.nBegan_ > nPatience) {
        answer.bGiven_ = false;
        PostMessageW(GetLastActivePopup(answer.hDialog_), WM_COMMAND, IDCANCEL, 0);
        return;
    }
    if (answer.bGiven_)
        return;
    if (HWND hInFront = windowInFrontOf(answer.hDialog_); hInFront != nullptr)
        answer.bGiven_ = answer.fnAnswer_(hInFront);
}

DialogTest::DialogTest() {
    moduleState().release();
    window.present(form, pApplication);
    waitUntilInFront(window.handle());
}

DialogTest::~DialogTest() {
    moduleState() = ExportState();
    RegDeleteTreeW(HKEY_CURRENT_USER, settingsKey().c_str());
}

std::wstring DialogTest::settingsKey() {
    return L"Software\\Halvane\\test-" + std::to_wstring(GetCurrentProcessId());
}

void DialogTest::fill() {
    window.setText(ui::Box::Text1,
                   folder.write("control.xml", "<a Name='Out'><l Name='L' DataSource='MapLayer' "
                                               "Identity='LayerName' IdentityValue='roads' "
                                               "DataProperty='LayerName'/></a>"));
    window.setText(ui::Box::Text2, folder.path().string());
    window.setText(ui::Box::Text3, "out.xml");
}

std::string DialogTest::shown(int lControl) const {
    return com::utf8Of(ui::win32::textOfControl(control(lControl)));
}

void DialogTest::press(WPARAM nKey) const {
    HWND hFocus = GetFocus();
    PostMessageW(hFocus, WM_KEYDOWN, nKey, 1);
    PostMessageW(hFocus, WM_KEYUP, nKey, static_cast<LPARAM>(0xC0000001));
    ui::win32::handleWaitingMessages(window.handle());
}

void DialogTest::pressWithAlt(wchar_t c) const {
    constexpr LPARAM nAltHeld = LPARAM{1} << 29U;
    PostMessageW(GetFocus(), WM_SYSCHAR, c, nAltHeld | 1);
    ui::win32::handleWaitingMessages(window.handle());
}

std::string DialogTest::output(const char* sName) const {
    return replaceAll(folder.read(sName).value_or("(no file)"), ">\r\n<", "><");
}

} // namespace halvane::test
