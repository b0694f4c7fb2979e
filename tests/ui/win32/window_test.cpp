// The controls of the window, in process.

#include "base/Failure.h"
#include "ui/FormLayout.h"
#include "ui/win32/ControlIds.h"
#include "ui/win32/Controls.h"
#include "ui/win32/DialogTest.h"
#include "ui/win32/MessageLoop.h"

#include <gmock/gmock.h>

namespace halvane::test {
namespace {

using namespace ui::win32;
using ui::Box;

class Window : public DialogTest {
protected:
    [[nodiscard]] LONG_PTR style(int lControl) const {
        return GetWindowLongPtrW(control(lControl), GWL_STYLE);
    }
};

TEST_F(Window, HasTheControlsOfTheForm) {
    EXPECT_STREQ(textOfControl(window.handle()).c_str(), L"Export to XML");
    EXPECT_EQ(shown(lLabel1), "&Control XML File");
    EXPECT_EQ(shown(lLabel1 + 1), "Output &Directory");
    EXPECT_EQ(shown(lLabel1 + 2), "Output XML &File Name");
    EXPECT_EQ(shown(lLabel1 + 3), "Optional &XML");
    EXPECT_EQ(shown(lLabel1 + 4), "XML &Node Path");
    EXPECT_EQ(shown(lText1 + 4), "//VandraConfig/TemplateView/QvLayers/QvLayer");
    EXPECT_EQ(shown(lCommand1), "OK");
    EXPECT_EQ(shown(lCommand2), "Cancel");
    EXPECT_EQ(shown(lOpenFolder), "Op&en Folder");
    EXPECT_EQ(shown(lCancelExport), "Cance&l Export");
    for (const auto& row : ui::formRows())
        EXPECT_TRUE(visible(labelOf(row.box)) && visible(textOf(row.box))) << row.sCaption;
}

TEST_F(Window, ShowsPicturesOnTheBrowseButtonsAndNamesThemForReaders) {
    for (const int lBrowser : {lCommand3, lCommand4, lCommand5}) {
        EXPECT_NE(SendMessageW(control(lBrowser), BM_GETIMAGE, IMAGE_ICON, 0), 0) << lBrowser;
        EXPECT_NE(style(lBrowser) & BS_ICON, 0) << "the picture instead of the text";
    }
    EXPECT_EQ(shown(lCommand3), "Choose the control XML file");
    EXPECT_EQ(shown(lCommand4), "Choose the output directory");
    EXPECT_EQ(shown(lCommand5), "Choose the optional XML file");
}

TEST_F(Window, BeginsWithoutAStrip) {
    for (const int lControl : {lOutcomeKind, lOutcome, lOpenFolder, lItemCount, lProgress, lCancelExport})
        EXPECT_FALSE(visible(lControl)) << lControl;
}

TEST_F(Window, LetsEachBoxBeReadAndSet) {
    for (const auto& row : ui::formRows()) {
        const std::string sText = "Straße 漢字 \xF0\x9F\x97\xBA " + std::string(row.sBox);
        window.setText(row.box, sText);
        EXPECT_EQ(window.text(row.box), sText);
        EXPECT_EQ(shown(textOf(row.box)), sText);
    }
    type(lText1, L"typed");
    EXPECT_EQ(window.text(Box::Text1), "typed");
}

TEST_F(Window, TakesPathsOfAnyLength) {
    const std::string sLong(100'000, 'x');
    window.setText(Box::Text2, sLong);
    EXPECT_EQ(window.text(Box::Text2), sLong);
}

// ---- The screen

TEST_F(Window, IsWrittenInTheSystemsFontOfMessages) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ASSERT_NE(SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0), 0);
    for (const int lControl : {lLabel1, lText1, lCommand1, lOutcome}) {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control(lControl), WM_GETFONT, 0, 0)), sizeof font,
                   &font);
        EXPECT_STREQ(font.lfFaceName, metrics.lfMessageFont.lfFaceName);
        EXPECT_EQ(font.lfHeight, metrics.lfMessageFont.lfHeight);
    }
}

TEST_F(Window, HasAPictureOfItsOwn) {
    EXPECT_NE(SendMessageW(window.handle(), WM_GETICON, ICON_SMALL, 0), 0);
    EXPECT_NE(SendMessageW(window.handle(), WM_GETICON, ICON_BIG, 0), 0);
}

TEST_F(Window, IsAsLargeAsTheMonitorAsksThatItComesTo) {
    const auto sizeOf = [&](int lControl) {
        RECT rect{};
        GetWindowRect(control(lControl), &rect);
        return SIZE{rect.right - rect.left, rect.bottom - rect.top};
    };
    const auto fontHeight = [&] {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control(lText1), WM_GETFONT, 0, 0)), sizeof font,
                   &font);
        return font.lfHeight;
    };
    const SIZE button = sizeOf(lCommand1);
    const LONG lHeight = fontHeight();
    const auto nPicture = SendMessageW(control(lCommand3), BM_GETIMAGE, IMAGE_ICON, 0);
    constexpr UINT nDpiChanged = 0x02E0;
    const RECT place{10, 10, 400, 300}; // too small for it
    for (const int lTimes : {2, 1}) {
        const auto lDpi = static_cast<WORD>(96 * lTimes);
        SendMessageW(window.handle(), nDpiChanged, MAKEWPARAM(lDpi, lDpi), reinterpret_cast<LPARAM>(&place));
        EXPECT_EQ(fontHeight(), lHeight * lTimes);
        EXPECT_NEAR(sizeOf(lCommand1).cy, button.cy * lTimes, 4);
        EXPECT_NEAR(sizeOf(lCommand1).cx, button.cx * lTimes, 12);
        for (const auto& row : ui::formRows())
            EXPECT_TRUE(visible(textOf(row.box)));
        RECT inside{};
        GetClientRect(window.handle(), &inside);
        RECT cancel{};
        GetWindowRect(control(lCommand2), &cancel);
        MapWindowPoints(nullptr, window.handle(), reinterpret_cast<POINT*>(&cancel), 2);
        EXPECT_LE(cancel.right, inside.right);
        EXPECT_LE(cancel.bottom, inside.bottom);
        EXPECT_NE(SendMessageW(control(lCommand3), BM_GETIMAGE, IMAGE_ICON, 0), nPicture);
    }
}

// ---- The keyboard

TEST_F(Window, BeginsInTheFirstBox) {
    EXPECT_EQ(focused(), lText1);
}

TEST_F(Window, GoesFromTheTopToTheBottomByTab) {
    std::vector<int> order;
    for (int n = 0; n < 11; ++n) {
        order.push_back(focused());
        press(VK_TAB);
    }
    EXPECT_THAT(order,
                ::testing::ElementsAre(lText1, lCommand3, lText1 + 1, lCommand4, lText1 + 2, lText1 + 3,
                                       lCommand5, lText1 + 4, lCommand1, lCommand2, lText1));
}

TEST_F(Window, GoesToABoxByTheUnderlinedLetterOfItsLabel) {
    for (const auto& row : ui::formRows()) {
        SetFocus(control(lCommand2));
        pressWithAlt(static_cast<wchar_t>(row.cMnemonic | 0x20));
        EXPECT_EQ(focused(), textOf(row.box)) << row.sCaption;
    }
}

TEST_F(Window, TakesEnterForOkInTheBoxesAndOnTheBrowseButtons) {
    int lExports = 0;
    pApplication->fnAsked = [&] { ++lExports; };
    fill();
    int lExpected = 0;
    for (const int lControl : {lText1, lText1 + 4, lCommand3, lCommand4, lCommand5, lCommand1}) {
        SendMessageW(window.handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(lControl)), TRUE);
        ASSERT_EQ(focused(), lControl);
        press(VK_RETURN);
        EXPECT_EQ(lExports, ++lExpected) << lControl;
    }
}

TEST_F(Window, TakesEnterForCancelOnCancel) {
    fill();
    SendMessageW(window.handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(lCommand2)), TRUE);
    press(VK_RETURN);
    EXPECT_EQ(window.handle(), nullptr);
    EXPECT_EQ(output(), "(no file)");
}

TEST_F(Window, ClosesOnEscape) {
    press(VK_ESCAPE);
    EXPECT_EQ(window.handle(), nullptr);
}

/// The system's own handling of keys, which beeps for Escape while Cancel is disabled.
class SystemKeys {
public:
    SystemKeys() : hHook_(SetWindowsHookExW(WH_MSGFILTER, &refuse, nullptr, GetCurrentThreadId())) {
        nRefused() = 0;
    }
    SystemKeys(const SystemKeys&) = delete;
    SystemKeys& operator=(const SystemKeys&) = delete;
    ~SystemKeys() { UnhookWindowsHookEx(hHook_); }

    static int& nRefused() {
        static int nCount = 0;
        return nCount;
    }

private:
    static LRESULT CALLBACK refuse(int nCode, WPARAM wParam, LPARAM lParam) {
        const auto& message = *reinterpret_cast<const MSG*>(lParam);
        if (nCode != MSGF_DIALOGBOX || message.message != WM_KEYDOWN)
            return CallNextHookEx(nullptr, nCode, wParam, lParam);
        ++nRefused();
        return 1;
    }

    HHOOK hHook_;
};

TEST_F(Window, LeavesEscapeToNobodyElse) {
    const SystemKeys keys;
    press(VK_TAB);
    ASSERT_EQ(SystemKeys::nRefused(), 1) << "the system's handling is seen";
    EnableWindow(control(lCommand2), FALSE);
    press(VK_ESCAPE);
    EXPECT_EQ(SystemKeys::nRefused(), 1);
    EXPECT_EQ(window.handle(), nullptr);
}

TEST_F(Window, StaysOpenOnAnEscapeThatComesTooLateForTheExport) {
    window.strip().begin();
    window.strip().show({ui::ExportOutcome::Kind::Written, "Wrote", {}, ""});
    now += std::chrono::milliseconds(399);
    press(VK_ESCAPE);
    ASSERT_NE(window.handle(), nullptr);
    now += std::chrono::milliseconds(1);
    press(VK_ESCAPE);
    EXPECT_EQ(window.handle(), nullptr);
}

TEST_F(Window, TakesAnEscapeThatIsHeldForOne) {
    const SystemKeys keys;
    constexpr LPARAM lHeldDown = LPARAM{1} << 30U;
    PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, lHeldDown | 1);
    ui::win32::handleWaitingMessages(window.handle());
    ASSERT_NE(window.handle(), nullptr) << "the first stroke was for another window, or for the export";
    EXPECT_EQ(SystemKeys::nRefused(), 0) << "the system would press Cancel";
    press(VK_ESCAPE);
    EXPECT_EQ(window.handle(), nullptr);
}

TEST_F(Window, ClosesOnCancelJustAfterAnExport) {
    window.strip().begin();
    window.strip().show({ui::ExportOutcome::Kind::Written, "Wrote", {}, ""});
    click(lCommand2);
    EXPECT_EQ(window.handle(), nullptr);
}

TEST_F(Window, LeadsTheKeyboardToTheBoxThatWasRefused) {
    fill();
    type(lText1 + 1, L" ");
    const Answer answer(window.handle(), [](HWND hBox) {
        SendMessageW(hBox, WM_COMMAND, IDOK, 0);
        return true;
    });
    click(lCommand1);
    EXPECT_EQ(focused(), lText1 + 1);
}

TEST_F(Window, ClosesOnCancelAndWhenItIsClosed) {
    HWND hDialog = window.handle();
    click(lCommand2);
    EXPECT_EQ(window.handle(), nullptr);
    EXPECT_FALSE(IsWindow(hDialog));
    FormExporterWindow second(nullptr, RememberedBoxes(settingsKey()));
    ui::FormExporter other(second);
    second.present(other, pApplication);
    SendMessageW(second.handle(), WM_CLOSE, 0, 0);
    EXPECT_EQ(second.handle(), nullptr);
}

// ---- OK

TEST_F(Window, ExportsAndStaysOpen) {
    fill();
    click(lCommand1);
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
    EXPECT_TRUE(IsWindowVisible(window.handle()));
    type(lText1 + 2, L"zweite Ausfuhr – 二");
    click(lCommand1);
    EXPECT_TRUE(std::filesystem::exists(folder.path() / L"zweite Ausfuhr – 二.xml"));
}

TEST_F(Window, AsksForWhatIsMissingInAPlainMessageBox) {
    std::wstring sCaption;
    std::wstring sText;
    int lButtons = 0;
    const Answer answer(window.handle(), [&](HWND hBox) {
        sCaption = textOfControl(hBox);
        for (HWND hChild = GetWindow(hBox, GW_CHILD); hChild != nullptr;
             hChild = GetWindow(hChild, GW_HWNDNEXT)) {
            if ((SendMessageW(hChild, WM_GETDLGCODE, 0, 0) & DLGC_STATIC) != 0)
                sText += textOfControl(hChild);
            else
                ++lButtons;
        }
        SendMessageW(hBox, WM_COMMAND, IDOK, 0);
        return true;
    });
    click(lCommand1);
    EXPECT_TRUE(answer.given());
    EXPECT_EQ(sText, L"Please select the control XML file.");
    EXPECT_EQ(sCaption, L"Export to XML");
    EXPECT_EQ(lButtons, 1);
    EXPECT_TRUE(IsWindowVisible(window.handle()));
}

TEST_F(Window, WaitsWithTheHourglassAndDisabledControlsWhileItExports) {
    fill();
    SetFocus(control(lText1 + 2));
    int lAsked = 0;
    pApplication->fnAsked = [&] {
        ++lAsked;
        EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
        for (const int lControl : {lText1, lText1 + 1, lText1 + 2, lText1 + 3, lText1 + 4, lCommand1,
                                   lCommand2, lCommand3, lCommand4, lCommand5})
            EXPECT_FALSE(enabled(lControl)) << lControl;
    };
    click(lCommand1);
    EXPECT_EQ(lAsked, 1);
    EXPECT_NE(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
    for (const int lControl : {lText1, lCommand1, lCommand2, lCommand3})
        EXPECT_TRUE(enabled(lControl)) << lControl;
}

TEST_F(Window, GivesTheFocusBackAfterAnExport) {
    fill();
    SetFocus(control(lText1 + 2));
    press(VK_RETURN);
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
    EXPECT_EQ(focused(), lText1 + 2);
}

TEST_F(Window, TakesTheHourglassAwayWhenTheApplicationFails) {
    fill();
    pApplication->fnAsked = [] { throw Failure(FailureNumber::InternalError, "gone"); };
    click(lCommand1);
    EXPECT_NE(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
    EXPECT_TRUE(enabled(lCommand1));
    EXPECT_TRUE(IsWindowVisible(window.handle()));
}

TEST_F(Window, StaysOpenWhenItIsClosedAmidAnExport) {
    fill();
    pApplication->fnAsked = [&] {
        SendMessageW(window.handle(), WM_CLOSE, 0, 0);
        EXPECT_NE(window.handle(), nullptr);
    };
    click(lCommand1);
    EXPECT_TRUE(IsWindowVisible(window.handle()));
}

TEST_F(Window, OutlivesTheEndOfItsSystemWindowAmidAnExport) {
    fill();
    pApplication->fnAsked = [&] { DestroyWindow(window.handle()); };
    click(lCommand1);
    EXPECT_EQ(window.handle(), nullptr);
    EXPECT_FALSE(form.exporting());
}

// ---- What is remembered

TEST_F(Window, FillsTheBoxesAsTheyWereAtTheLastOk) {
    fill();
    type(lText1 + 3, L"");
    click(lCommand1);
    window.setText(Box::Text3, "not remembered");
    FormExporterWindow second(nullptr, RememberedBoxes(settingsKey()));
    ui::FormExporter other(second);
    second.present(other, pApplication);
    EXPECT_EQ(second.text(Box::Text1), window.text(Box::Text1));
    EXPECT_EQ(second.text(Box::Text2), window.text(Box::Text2));
    EXPECT_EQ(second.text(Box::Text3), "out.xml");
    EXPECT_EQ(second.text(Box::Text4), "");
    EXPECT_EQ(second.text(Box::Text5), "//VandraConfig/TemplateView/QvLayers/QvLayer");
}

TEST_F(Window, HasItsNodePathAgainWhereItWasEmptied) {
    for (const wchar_t* sPath : {L"//q", L" "}) {
        fill();
        type(lText1 + 4, sPath);
        click(lCommand1);
    }
    FormExporterWindow second(nullptr, RememberedBoxes(settingsKey()));
    ui::FormExporter other(second);
    second.present(other, pApplication);
    EXPECT_EQ(second.text(Box::Text1), window.text(Box::Text1));
    EXPECT_EQ(second.text(Box::Text5), "//VandraConfig/TemplateView/QvLayers/QvLayer");
}

TEST_F(Window, ForgetsBoxesThatWereRefused) {
    fill();
    click(lCommand1);
    type(lText1, L"elsewhere");
    type(lText1 + 2, L"sub\\out");
    const Answer answer(window.handle(), [](HWND hBox) {
        SendMessageW(hBox, WM_COMMAND, IDOK, 0);
        return true;
    });
    click(lCommand1);
    EXPECT_EQ(window.text(Box::Text3), "");
    FormExporterWindow second(nullptr, RememberedBoxes(settingsKey()));
    ui::FormExporter other(second);
    second.present(other, pApplication);
    EXPECT_EQ(second.text(Box::Text1), folder.file("control.xml"));
    EXPECT_EQ(second.text(Box::Text3), "out.xml");
}

// ---- The owner

TEST_F(Window, KeepsInputFromItsOwnerWhileItIsOpen) {
    FormExporterWindow owned(window.handle(), RememberedBoxes(settingsKey()));
    ui::FormExporter other(owned);
    owned.present(other, pApplication);
    EXPECT_EQ(GetWindow(owned.handle(), GW_OWNER), window.handle());
    EXPECT_FALSE(IsWindowEnabled(window.handle()));
    PostMessageW(owned.handle(), WM_COMMAND, IDCANCEL, 0);
    owned.runUntilClosed();
    EXPECT_EQ(owned.handle(), nullptr);
    EXPECT_TRUE(IsWindowEnabled(window.handle()));
}

TEST_F(Window, LeavesAnOwnerDisabledThatWasSo) {
    EnableWindow(window.handle(), FALSE);
    {
        FormExporterWindow owned(window.handle(), RememberedBoxes(settingsKey()));
        ui::FormExporter other(owned);
        owned.present(other, pApplication);
    }
    EXPECT_FALSE(IsWindowEnabled(window.handle()));
}

TEST_F(Window, ClosesWhenItsThreadIsAskedToEnd) {
    PostQuitMessage(7);
    window.runUntilClosed();
    EXPECT_EQ(window.handle(), nullptr);
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 7U) << "the thread's own loop hears of it too";
}

} // namespace
} // namespace halvane::test
