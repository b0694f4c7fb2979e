#include "ui/win32/Arrangement.h"

#include "ui/FormLayout.h"
#include "ui/win32/ControlIds.h"

namespace halvane::ui::win32 {

namespace {

// In dialog units.
constexpr int lMargin = 7;
constexpr int lGap = 4;
constexpr int lLine = 8;
constexpr int lRow = 14; // a box, a button
constexpr int lBetweenRows = 18;
constexpr int lLabelWidth = 84;
constexpr int lBrowseWidth = 18;
constexpr int lButtonWidth = 50;
constexpr int lWideButtonWidth = 64;
constexpr int lPictureSide = 22;
constexpr int lItemsWidth = 84;
constexpr int lOutcomeHeight = 5 * lLine + 4;
constexpr int lNarrowest = 220;

constexpr int lButtonsTop = lMargin + 5 * lBetweenRows + 3;
constexpr int lFormHeight = lButtonsTop + lRow + lMargin;
constexpr int lStripTop = lFormHeight;

static_assert(sizeAtFirst.cy >= lFormHeight && sizeAtFirst.cx >= lNarrowest);

RECT at(int lLeft, int lTop, int lRight, int lBottom) {
    return {lLeft, lTop, lRight, lBottom};
}

} // namespace

SIZE Arrangement::smallest() const {
    int lHeight = lFormHeight;
    if (shows_ == StripShows::Progress)
        lHeight += lRow + lMargin;
    if (shows_ == StripShows::Outcome)
        lHeight += lOutcomeHeight + lGap + lRow + lMargin;
    return {units_.across(lNarrowest), units_.down(lHeight)};
}

std::vector<PlacedControl> Arrangement::places(SIZE inside) const {
    std::vector<PlacedControl> places;
    placeRows(inside, places);
    placeButtons(inside, places);
    if (shows_ == StripShows::Progress)
        placeProgress(inside, places);
    if (shows_ == StripShows::Outcome)
        placeOutcome(inside, places);
    return places;
}

void Arrangement::placeRows(SIZE inside, std::vector<PlacedControl>& places) const {
    const int lBoxLeft = units_.across(lMargin + lLabelWidth);
    const int lBrowseRight = static_cast<int>(inside.cx) - units_.across(lMargin);
    const int lBrowseLeft = lBrowseRight - units_.across(lBrowseWidth);
    const int lBoxRight = lBrowseLeft - units_.across(lGap);
    int lTop = lMargin;
    for (const FormRow& row : formRows()) {
        const int lBoxTop = units_.down(lTop);
        const int lBoxBottom = units_.down(lTop + lRow);
        const int lLabelTop = units_.down(lTop + (lRow - lLine) / 2);
        places.push_back({labelOf(row.box), at(units_.across(lMargin), lLabelTop, lBoxLeft - units_.across(2),
                                               lLabelTop + units_.down(lLine) + 1)});
        places.push_back({textOf(row.box), at(lBoxLeft, lBoxTop, lBoxRight, lBoxBottom)});
        if (const int lBrowser = browserOf(row.box); lBrowser != 0)
            places.push_back({lBrowser, at(lBrowseLeft, lBoxTop, lBrowseRight, lBoxBottom)});
        lTop += lBetweenRows;
    }
}

void Arrangement::placeButtons(SIZE inside, std::vector<PlacedControl>& places) const {
    const int lTop = units_.down(lButtonsTop);
    const int lBottom = units_.down(lButtonsTop + lRow);
    const int lRight = static_cast<int>(inside.cx) - units_.across(lMargin);
    const int lCancelLeft = lRight - units_.across(lButtonWidth);
    const int lOkRight = lCancelLeft - units_.across(lGap);
    places.push_back({lCommand1, at(lOkRight - units_.across(lButtonWidth), lTop, lOkRight, lBottom)});
    places.push_back({lCommand2, at(lCancelLeft, lTop, lRight, lBottom)});
}

void Arrangement::placeProgress(SIZE inside, std::vector<PlacedControl>& places) const {
    const int lTop = units_.down(lStripTop);
    const int lBottom = units_.down(lStripTop + lRow);
    const int lTextTop = units_.down(lStripTop + (lRow - lLine) / 2);
    const int lRight = static_cast<int>(inside.cx) - units_.across(lMargin);
    const int lBarLeft = units_.across(lMargin + lItemsWidth);
    const int lCancelLeft = lRight - units_.across(lWideButtonWidth);
    places.push_back({lItemCount, at(units_.across(lMargin), lTextTop, lBarLeft - units_.across(2),
                                     lTextTop + units_.down(lLine) + 1)});
    places.push_back({lProgress, at(lBarLeft, lTop + units_.down(2), lCancelLeft - units_.across(lGap),
                                    lBottom - units_.down(2))});
    places.push_back({lCancelExport, at(lCancelLeft, lTop, lRight, lBottom)});
}

void Arrangement::placeOutcome(SIZE inside, std::vector<PlacedControl>& places) const {
    const int lTop = units_.down(lStripTop);
    const int lLeft = units_.across(lMargin);
    const int lRight = static_cast<int>(inside.cx) - lLeft;
    const int lButtonBottom = static_cast<int>(inside.cy) - units_.down(lMargin);
    const int lButtonTop = lButtonBottom - units_.down(lRow);
    const int lTextLeft = lLeft + units_.across(lPictureSide + lGap);
    const int lTextBottom = lButtonTop - units_.down(lGap);
    places.push_back({lOutcomeKind, at(lLeft, lTop, lLeft + GetSystemMetrics(SM_CXICON),
                                       lTop + GetSystemMetrics(SM_CYICON))});
    places.push_back({lOutcome, at(lTextLeft, lTop, lRight, lTextBottom)});
    places.push_back(
        {lOpenFolder, at(lRight - units_.across(lWideButtonWidth), lButtonTop, lRight, lButtonBottom)});
}

} // namespace halvane::ui::win32
