// The strip beneath the form.

#include "base/com/Bstr.h"
#include "ui/win32/ControlIds.h"
#include "ui/win32/DialogTest.h"
#include "ui/win32/MessageLoop.h"

#include <chrono>

namespace halvane::test {
namespace {

using namespace ui::win32;
using ui::ExportOutcome;
using std::chrono_literals::operator""ms;

class Strip : public DialogTest {
protected:
    [[nodiscard]] HICON picture() const {
        return reinterpret_cast<HICON>(SendMessageW(control(lOutcomeKind), STM_GETICON, 0, 0));
    }
    [[nodiscard]] RECT place(int lControl) const {
        RECT rect{};
        GetWindowRect(control(lControl), &rect);
        return rect;
    }
    [[nodiscard]] RECT inside() const {
        RECT rect{};
        GetClientRect(window.handle(), &rect);
        MapWindowPoints(window.handle(), nullptr, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    /// As an export does that lasts.
    void runLong(std::uint64_t lItems) {
        window.strip().begin();
        now += 500ms;
        EXPECT_FALSE(window.strip().cancelledAfter(lItems));
    }
};

TEST_F(Strip, TellsWhatAnExportCameTo) {
    window.strip().begin();
    window.strip().show(
        {ExportOutcome::Kind::Written, "Wrote Straße", {"warning: a", "b"}, "C:\\windows\\out.xml"});
    EXPECT_EQ(shown(lOutcome), "Wrote Straße\r\nwarning: a\r\nb");
    EXPECT_EQ(picture(), LoadIconW(nullptr, IDI_INFORMATION));
    EXPECT_TRUE(visible(lOutcome) && visible(lOutcomeKind) && visible(lOpenFolder));
    EXPECT_FALSE(visible(lProgress));
}

TEST_F(Strip, OffersNoFolderWhereNothingWasWritten) {
    window.strip().begin();
    window.strip().show({ExportOutcome::Kind::NotWritten, "Nothing", {}, ""});
    EXPECT_TRUE(visible(lOutcome));
    EXPECT_FALSE(visible(lOpenFolder));
    EXPECT_EQ(picture(), LoadIconW(nullptr, IDI_ERROR));
    window.strip().show({ExportOutcome::Kind::Incomplete, "Some", {}, "C:\\out.xml"});
    EXPECT_TRUE(visible(lOpenFolder));
    EXPECT_EQ(picture(), LoadIconW(nullptr, IDI_WARNING));
    window.strip().show({ExportOutcome::Kind::Warned, "Wrote", {"warning: a"}, "C:\\out.xml"});
    EXPECT_EQ(picture(), LoadIconW(nullptr, IDI_WARNING));
    window.strip().show({ExportOutcome::Kind::Written, "Wrote", {"note: a"}, "C:\\out.xml"});
    EXPECT_EQ(picture(), LoadIconW(nullptr, IDI_INFORMATION));
}

TEST_F(Strip, NamesItsTextForReaders) {
    HWND hBefore = GetWindow(control(lOutcome), GW_HWNDPREV);
    EXPECT_EQ(shown(GetDlgCtrlID(hBefore)), "Outcome of the export");
}

TEST_F(Strip, MakesTheWindowHighEnough) {
    const RECT before = inside();
    window.strip().begin();
    window.strip().show({ExportOutcome::Kind::Written, "Wrote", {}, "C:\\out.xml"});
    const RECT after = inside();
    EXPECT_GT(after.bottom - after.top, before.bottom - before.top);
    EXPECT_GT(place(lOutcome).bottom - place(lOutcome).top, 40);
    EXPECT_GE(place(lOutcome).top, place(lCommand1).bottom);
    EXPECT_LE(place(lOpenFolder).bottom, after.bottom);
}

TEST_F(Strip, GrowsWithTheWindow) {
    window.strip().show({ExportOutcome::Kind::Written, "Wrote", {}, "C:\\out.xml"});
    const RECT before = place(lOutcome);
    const RECT box = place(lText1);
    RECT whole{};
    GetWindowRect(window.handle(), &whole);
    SetWindowPos(window.handle(), nullptr, 0, 0, whole.right - whole.left + 60, whole.bottom - whole.top + 40,
                 SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(place(lOutcome).bottom - place(lOutcome).top, before.bottom - before.top + 40);
    EXPECT_EQ(place(lText1).right - place(lText1).left, box.right - box.left + 60);
}

TEST_F(Strip, ShowsNothingOfAShortExport) {
    window.strip().begin();
    now += 499ms;
    EXPECT_FALSE(window.strip().cancelledAfter(1));
    EXPECT_FALSE(visible(lProgress));
}

TEST_F(Strip, CountsTheItemsOfALongExportAndOffersToCancelIt) {
    SetLastError(0);
    runLong(3);
    EXPECT_TRUE(visible(lProgress) && visible(lCancelExport));
    EXPECT_FALSE(visible(lOutcome));
    EXPECT_EQ(shown(lItemCount), "3 items");
    EXPECT_EQ(focused(), lCancelExport);
    window.strip().show({ExportOutcome::Kind::Written, "Wrote", {}, ""});
    EXPECT_FALSE(visible(lProgress) || visible(lCancelExport) || visible(lItemCount));
}

TEST_F(Strip, GroupsLargeNumbersAsThePersonDoes) {
    runLong(1234567);
    std::wstring sThousand(5, L'\0');
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, sThousand.data(), 5);
    EXPECT_EQ(shown(lItemCount),
              "1" + com::utf8Of(sThousand.c_str()) + "234" + com::utf8Of(sThousand.c_str()) + "567 items");
}

TEST_F(Strip, CancelsTheExport) {
    runLong(1);
    click(lCancelExport);
    EXPECT_FALSE(enabled(lCancelExport));
    EXPECT_TRUE(window.strip().cancelledAfter(2));
    window.strip().begin();
    EXPECT_FALSE(window.strip().cancelledAfter(0)) << "the next one begins anew";
    EXPECT_TRUE(enabled(lCancelExport));
}

TEST_F(Strip, HandlesMessagesAmidAnExport) {
    PostMessageW(control(lText1), WM_CHAR, L'x', 1);
    runLong(1);
    EXPECT_EQ(shown(lText1), "x");
}

TEST_F(Strip, CancelsWhenTheThreadIsAskedToEnd) {
    window.strip().begin();
    now += 10ms;
    PostQuitMessage(0);
    EXPECT_TRUE(window.strip().cancelledAfter(1));
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

/// Has the export cancelled by the window's means while it runs.
class Cancelling : public ui::ExportWatch, public ExportObserver {
public:
    Cancelling(ui::OutcomeView& strip, ui::Pacing::Time& now) : strip_(strip), now_(now) {}

    [[nodiscard]] ExportObserver* exportBegins(const ui::ExportRequest& /*request*/) override {
        strip_.begin();
        return this;
    }
    void optionalDocumentLoaded(const dom::DocumentPtr& /*oDocument*/) override {}
    void exportEnds() override { strip_.show({ExportOutcome::Kind::NotWritten, sReason, {}, ""}); }
    void nodeFailed(dom::Node /*oControlNode*/, const Failure& /*failure*/) override {}
    void nodeNoticed(dom::Node /*oControlNode*/, Notice /*notice*/, std::string_view /*sDetail*/,
                     const Surroundings& /*around*/) override {}
    bool goesOn() override {
        now_ += 10ms;
        return !strip_.cancelledAfter(0);
    }
    bool itemWritten(dom::Node /*oControlNode*/) override { return goesOn(); }
    void documentSaved(std::string_view /*sPath*/, const dom::CharacterRepairs& /*repairs*/) override {
        sReason = "saved";
    }
    void documentNotSaved(std::string_view /*sReason*/) override { sReason = "not saved"; }

    std::string sReason;

private:
    ui::OutcomeView& strip_;
    ui::Pacing::Time& now_;
};

TEST_F(Strip, CancelsAnExportWhenTheWindowIsClosedAmidIt) {
    Cancelling watch(window.strip(), now);
    ui::FormExporter watched(window, {}, &watch);
    window.present(watched, pApplication);
    for (const bool bEscape : {false, true}) {
        fill();
        pApplication->fnAsked = [&] {
            if (bEscape)
                PostMessageW(window.handle(), WM_KEYDOWN, VK_ESCAPE, 1);
            else
                PostMessageW(window.handle(), WM_CLOSE, 0, 0);
        };
        click(lCommand1);
        EXPECT_EQ(watch.sReason, "not saved");
        EXPECT_EQ(shown(lOutcome), "not saved");
        EXPECT_EQ(output(), "(no file)");
        EXPECT_TRUE(IsWindowVisible(window.handle()));
    }
    pApplication->fnAsked = [] {};
    click(lCommand1);
    EXPECT_EQ(watch.sReason, "saved");
    EXPECT_EQ(output(), "<Out><L>Roads</L></Out>");
}

} // namespace
} // namespace halvane::test
