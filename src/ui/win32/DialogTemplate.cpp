#include "ui/win32/DialogTemplate.h"

namespace halvane::ui::win32 {

namespace {

constexpr WORD nExtendedVersion = 1;
constexpr WORD nExtendedSignature = 0xFFFF;
constexpr int lPointsOfInch = 72;

} // namespace

DialogTemplate::DialogTemplate(std::wstring_view sCaption, DWORD nStyle, SIZE size, const LOGFONTW& font,
                               int lDpi) {
    words_.push_back(nExtendedVersion);
    words_.push_back(nExtendedSignature);
    add(0); // help
    add(0); // extended style
    add(nStyle | DS_SETFONT);
    words_.push_back(0); // controls
    words_.push_back(0); // left
    words_.push_back(0); // top
    words_.push_back(static_cast<WORD>(size.cx));
    words_.push_back(static_cast<WORD>(size.cy));
    words_.push_back(0); // no menu
    words_.push_back(0); // the class of dialogs
    add(sCaption);
    words_.push_back(
        static_cast<WORD>(MulDiv(font.lfHeight < 0 ? -font.lfHeight : font.lfHeight, lPointsOfInch, lDpi)));
    words_.push_back(static_cast<WORD>(font.lfWeight));
    words_.push_back(static_cast<WORD>(font.lfCharSet << 8U | font.lfItalic));
    add(std::wstring_view(static_cast<const wchar_t*>(font.lfFaceName)));
}

LPCDLGTEMPLATEW DialogTemplate::get() const noexcept {
    // The system tells this form from the plain one by its second word.
    return reinterpret_cast<LPCDLGTEMPLATEW>(words_.data());
}

void DialogTemplate::add(DWORD nDouble) {
    words_.push_back(LOWORD(nDouble));
    words_.push_back(HIWORD(nDouble));
}

void DialogTemplate::add(std::wstring_view sText) {
    for (const wchar_t c : sText)
        words_.push_back(static_cast<WORD>(c));
    words_.push_back(0);
}

} // namespace halvane::ui::win32
