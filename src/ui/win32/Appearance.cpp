#include "ui/win32/Appearance.h"

#include "ui/FormLayout.h"
#include "ui/win32/ControlIds.h"

#include <utility>

namespace halvane::ui::win32 {

namespace {

BOOL CALLBACK setFont(HWND hControl, LPARAM lFont) {
    SendMessageW(hControl, WM_SETFONT, static_cast<WPARAM>(lFont), TRUE);
    return TRUE;
}

int atDensity(int lSide, int lDpi) {
    return MulDiv(lSide, lDpi, lUnscaledDpi);
}

constexpr int lSmallSide = 16;
constexpr int lBigSide = 32;

} // namespace

void Appearance::apply(HWND hDialog, int lDpi) {
    lDpi_ = lDpi;
    const LOGFONTW font = messageFont(lDpi);
    OwnedFont pFont(CreateFontIndirectW(&font));
    units_ = Units::of(pFont.get());
    EnumChildWindows(hDialog, &setFont, reinterpret_cast<LPARAM>(pFont.get()));
    pFont_ = std::move(pFont); // those of before are in no control any more

    std::vector<OwnedIcon> pictures;
    for (const FormRow& row : formRows()) {
        const int lBrowser = browserOf(row.box);
        if (lBrowser == 0)
            continue;
        pictures.push_back(row.box == Box::Text2 ? pictureOfAFolder(atDensity(lSmallSide, lDpi))
                                                 : pictureOfAFile(atDensity(lSmallSide, lDpi)));
        SendDlgItemMessageW(hDialog, lBrowser, BM_SETIMAGE, IMAGE_ICON,
                            reinterpret_cast<LPARAM>(pictures.back().get()));
    }
    for (const auto& [nWhich, lSide] :
         {std::pair<WPARAM, int>{ICON_SMALL, lSmallSide}, {ICON_BIG, lBigSide}}) {
        if (!bOwnPicture_)
            break;
        pictures.push_back(pictureOfAFile(atDensity(lSide, lDpi)));
        SendMessageW(hDialog, WM_SETICON, nWhich, reinterpret_cast<LPARAM>(pictures.back().get()));
    }
    pictures_ = std::move(pictures);
}

} // namespace halvane::ui::win32
