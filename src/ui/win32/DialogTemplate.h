#pragma once

#include "ui/win32/Windows.h"

#include <string_view>
#include <vector>

namespace halvane::ui::win32 {

/// A dialog in memory, as the system reads it: its caption, its font, no controls yet.
class DialogTemplate {
public:
    /// @param size of its inside, in dialog units.
    /// @param font its height is at `lDpi`.
    DialogTemplate(std::wstring_view sCaption, DWORD nStyle, SIZE size, const LOGFONTW& font, int lDpi);

    /// Lives as long as the template.
    [[nodiscard]] LPCDLGTEMPLATEW get() const noexcept;

private:
    void add(DWORD nDouble);
    void add(std::wstring_view sText);

    std::vector<WORD> words_;
};

} // namespace halvane::ui::win32
