#pragma once

#include "support/TemporaryFolder.h"
#include "support/TownWorld.h"
#include "ui/win32/FormExporterWindow.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace halvane::test {

class LookingApplication : public ui::HostApplication {
public:
    explicit LookingApplication(const TownWorld& world) : world_(world) {}

    [[nodiscard]] host::GisMapDocumentPtr mapDocument() override {
        fnAsked();
        return world_.pMapDocument;
    }
    [[nodiscard]] host::GisHostPtr objects() override { return world_.pHost; }

    std::function<void()> fnAsked = [] {};

private:
    const TownWorld& world_;
};

/// Answers whatever window comes in front of a dialog, as the test says, while the test waits for it.
class Answer {
public:
    /// @param fnAnswer given the window; @returns whether it has answered. Asked again until it has. What is
    /// in front for too long is cancelled, and counts as unanswered.
    Answer(HWND hDialog, std::function<bool(HWND)> fnAnswer);
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;
    ~Answer();

    [[nodiscard]] bool given() const { return bGiven_; }

private:
    static void CALLBACK look(HWND hNone, UINT nMessage, UINT_PTR nTimer, DWORD nTime);

    HWND hDialog_;
    std::function<bool(HWND)> fnAnswer_;
    bool bGiven_ = false;
    ULONGLONG nBegan_ = GetTickCount64();
    UINT_PTR nTimer_;
};

/// A window on the screen, driven by messages; what it remembers goes with the test.
class DialogTest : public ::testing::Test {
protected:
    DialogTest();
    ~DialogTest() override;

    /// Fills the boxes of an export of one layer's name.
    void fill();
    [[nodiscard]] HWND control(int lControl) const { return GetDlgItem(window.handle(), lControl); }
    [[nodiscard]] std::string shown(int lControl) const;
    void type(int lControl, const wchar_t* sText) const { SetWindowTextW(control(lControl), sText); }
    void click(int lControl) const { SendMessageW(control(lControl), BM_CLICK, 0, 0); }
    /// A key, to the control that has the focus.
    void press(WPARAM nKey) const;
    /// A letter with Alt.
    void pressWithAlt(wchar_t c) const;
    [[nodiscard]] int focused() const { return GetDlgCtrlID(GetFocus()); }
    [[nodiscard]] bool enabled(int lControl) const { return IsWindowEnabled(control(lControl)) != FALSE; }
    [[nodiscard]] bool visible(int lControl) const { return IsWindowVisible(control(lControl)) != FALSE; }
    /// The document without the breaks between its tags.
    [[nodiscard]] std::string output(const char* sName = "out.xml") const;

    static std::wstring settingsKey();

    TownWorld world;
    TemporaryFolder folder;
    std::shared_ptr<LookingApplication> pApplication = std::make_shared<LookingApplication>(world);
    ui::Pacing::Time now; ///< as the window's clock tells it
    ui::win32::FormExporterWindow window{nullptr, ui::win32::RememberedBoxes(settingsKey()),
                                         ui::Pacing([this] { return now; })};
    ui::FormExporter form{window};
};

} // namespace halvane::test
