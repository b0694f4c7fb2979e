#include "ui/win32/Pictures.h"

#include <array>
#include <initializer_list>

namespace halvane::ui::win32 {

namespace {

template<class Handle>
struct GdiRelease {
    using pointer = Handle;
    void operator()(Handle hObject) const noexcept { DeleteObject(hObject); }
};
template<class Handle>
using OwnedGdi = std::unique_ptr<Handle, GdiRelease<Handle>>;

struct ScreenRelease {
    using pointer = HDC;
    void operator()(HDC hContext) const noexcept { ReleaseDC(nullptr, hContext); }
};
struct MemoryRelease {
    using pointer = HDC;
    void operator()(HDC hContext) const noexcept { DeleteDC(hContext); }
};

/// A point in a square of 32 by 32.
using Corner = POINT;
constexpr int lSide = 32;

/// Draws lines and surfaces at the size of a bitmap, as long as it lives.
class Canvas {
public:
    Canvas(HBITMAP hBitmap, int lSize, COLORREF line, COLORREF surface)
        : hContext_(CreateCompatibleDC(nullptr)), hPen_(CreatePen(PS_SOLID, (lSize + 15) / 16, line)),
          hBrush_(CreateSolidBrush(surface)), hBefore_(SelectObject(hContext_.get(), hBitmap)),
          lSize_(lSize) {
        hPenBefore_ = SelectObject(hContext_.get(), hPen_.get());
        hBrushBefore_ = SelectObject(hContext_.get(), hBrush_.get());
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        SelectObject(hContext_.get(), hBrushBefore_);
        SelectObject(hContext_.get(), hPenBefore_);
        SelectObject(hContext_.get(), hBefore_);
    }

    void clear(COLORREF colour) const {
        const OwnedGdi<HBRUSH> hBrush(CreateSolidBrush(colour));
        const RECT all{0, 0, lSize_, lSize_};
        FillRect(hContext_.get(), &all, hBrush.get());
    }
    void surface(std::initializer_list<Corner> corners) const {
        const auto scaled = atSize(corners);
        Polygon(hContext_.get(), scaled.data(), static_cast<int>(corners.size()));
    }
    void line(std::initializer_list<Corner> corners) const {
        const auto scaled = atSize(corners);
        Polyline(hContext_.get(), scaled.data(), static_cast<int>(corners.size()));
    }

private:
    [[nodiscard]] std::array<POINT, 8> atSize(std::initializer_list<Corner> corners) const {
        std::array<POINT, 8> scaled{};
        auto pScaled = scaled.begin();
        for (const Corner& corner : corners)
            *pScaled++ = {MulDiv(corner.x, lSize_, lSide), MulDiv(corner.y, lSize_, lSide)};
        return scaled;
    }

    std::unique_ptr<HDC, MemoryRelease> hContext_;
    OwnedGdi<HPEN> hPen_;
    OwnedGdi<HBRUSH> hBrush_;
    HGDIOBJ hBefore_;
    HGDIOBJ hPenBefore_ = nullptr;
    HGDIOBJ hBrushBefore_ = nullptr;
    int lSize_;
};

using Drawing = void (*)(const Canvas& canvas);

void drawFile(const Canvas& canvas) {
    canvas.surface({{6, 2}, {18, 2}, {25, 9}, {25, 29}, {6, 29}});
    canvas.line({{18, 2}, {18, 9}, {25, 9}});
    canvas.line({{13, 14}, {9, 18}, {14, 23}});
    canvas.line({{18, 14}, {22, 18}, {17, 23}});
}

void drawFolder(const Canvas& canvas) {
    canvas.surface({{2, 6}, {12, 6}, {15, 10}, {29, 10}, {29, 27}, {2, 27}});
    canvas.line({{2, 14}, {29, 14}});
}

/// In the colours of the person's theme; what is not drawn on is transparent.
OwnedIcon iconOf(Drawing draw, int lSize) {
    constexpr COLORREF drawnOn = RGB(0, 0, 0);
    constexpr COLORREF transparent = RGB(255, 255, 255);
    const std::unique_ptr<HDC, ScreenRelease> hScreen(GetDC(nullptr));
    const OwnedGdi<HBITMAP> hColours(CreateCompatibleBitmap(hScreen.get(), lSize, lSize));
    const OwnedGdi<HBITMAP> hMask(CreateBitmap(lSize, lSize, 1, 1, nullptr));
    {
        const Canvas colours(hColours.get(), lSize, GetSysColor(COLOR_BTNTEXT), GetSysColor(COLOR_WINDOW));
        colours.clear(drawnOn);
        draw(colours);
        const Canvas mask(hMask.get(), lSize, drawnOn, drawnOn);
        mask.clear(transparent);
        draw(mask);
    }
    ICONINFO info{TRUE, 0, 0, hMask.get(), hColours.get()};
    return OwnedIcon(CreateIconIndirect(&info));
}

} // namespace

OwnedIcon pictureOfAFile(int lSide) {
    return iconOf(drawFile, lSide);
}

OwnedIcon pictureOfAFolder(int lSide) {
    return iconOf(drawFolder, lSide);
}

} // namespace halvane::ui::win32
