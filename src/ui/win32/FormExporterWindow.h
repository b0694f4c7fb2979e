#pragma once

#include "ui/FormExporter.h"
#include "ui/FormView.h"
#include "ui/win32/Appearance.h"
#include "ui/win32/FileDialog.h"
#include "ui/win32/OutcomeStrip.h"
#include "ui/win32/RememberedBoxes.h"
#include "ui/win32/Windows.h"

namespace halvane::ui::win32 {

/// The window of the form. Enter is OK; Escape is Cancel, and cancels the export while one runs. While it is
/// open the window that owns it takes no input.
class FormExporterWindow final : public FormView {
public:
    /// @param hOwner may be null.
    /// @throws Failure when the system refuses the window.
    explicit FormExporterWindow(HWND hOwner, RememberedBoxes remembered = RememberedBoxes(),
                                Pacing pacing = Pacing());
    ~FormExporterWindow() override;

    /// Null once the window is closed.
    [[nodiscard]] HWND handle() const noexcept { return hDialog_; }
    /// The strip beneath the form; lives as long as this.
    [[nodiscard]] OutcomeView& strip() noexcept { return strip_; }

    /// Loads the form, fills the boxes as this person last had them and shows the window.
    /// @param form borrowed; its view is this window.
    void present(FormExporter& form, HostApplicationPtr pApplication);
    /// Handles the thread's messages until the window is closed.
    void runUntilClosed();

    [[nodiscard]] std::string text(Box box) const override;
    void setText(Box box, const std::string& sText) override;
    void MsgBox(const std::string& sText) override;
    void setMousePointer(MousePointer pointer) override;
    void setFocusTo(Box box) override;
    [[nodiscard]] std::optional<std::string> ShowOpen(std::string_view sFilter) override;
    [[nodiscard]] std::optional<BrowsedItem> Browse(std::string_view sTitle) override;
    void Unload() override;

private:
    static INT_PTR CALLBACK dialogProcedure(HWND hDialog, UINT nMessage, WPARAM wParam,
                                            LPARAM lParam) noexcept;
    /// @returns whether the message is done with.
    bool handle(UINT nMessage, WPARAM wParam, LPARAM lParam);
    bool handleCommand(int lControl);

    void build(HWND hDialog);
    void buildRows();
    void addBrowser(int lBrowser, std::string_view sTold);
    void followScreen(int lDpi);
    void arrange();
    void boundSize(MINMAXINFO& bounds) const;
    [[nodiscard]] SIZE wholeSizeFor(SIZE inside) const;
    [[nodiscard]] HWND control(int lControl) const { return GetDlgItem(hDialog_, lControl); }

    void accept(); ///< OK
    void reject(); ///< Cancel, and closing the window
    void escape();
    void setBusy(bool bBusy);
    void leave();

    HWND hOwner_;
    bool bOwnerWaits_ = false;
    RememberedBoxes remembered_;
    HWND hDialog_ = nullptr;
    Appearance appearance_;
    FileDialog commonDialog1_;
    OutcomeStrip strip_;
    FormExporter* pForm_ = nullptr;
    bool bBusy_ = false;
    HWND hFocusBefore_ = nullptr; // while busy, or while another window is in front
};

} // namespace halvane::ui::win32
