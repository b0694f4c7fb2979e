// Where the controls stand.

#include "ui/win32/Arrangement.h"
#include "ui/win32/ControlIds.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace halvane::test {
namespace {

using namespace ui::win32;

constexpr Units plain{6, 13};  // 96 dots an inch
constexpr Units twice{12, 26}; // 192

RECT placeOf(const std::vector<PlacedControl>& places, int lControl) {
    const auto found = std::find_if(places.begin(), places.end(),
                                    [&](const PlacedControl& placed) { return placed.lControl == lControl; });
    return found == places.end() ? RECT{} : found->place;
}

bool overlap(const RECT& left, const RECT& right) {
    RECT common{};
    return IntersectRect(&common, &left, &right) != FALSE;
}

TEST(Arrangement, FitsIntoTheSmallestWindowWithoutOverlaps) {
    for (const Units units : {plain, twice}) {
        for (const StripShows shows : {StripShows::Nothing, StripShows::Progress, StripShows::Outcome}) {
            const Arrangement arrangement(units, shows);
            const SIZE inside = arrangement.smallest();
            const auto places = arrangement.places(inside);
            for (std::size_t n = 0; n < places.size(); ++n) {
                const RECT& place = places[n].place;
                EXPECT_LT(place.left, place.right) << places[n].lControl;
                EXPECT_LT(place.top, place.bottom) << places[n].lControl;
                EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= inside.cx &&
                            place.bottom <= inside.cy)
                    << places[n].lControl;
                for (std::size_t m = n + 1; m < places.size(); ++m)
                    EXPECT_FALSE(overlap(place, places[m].place))
                        << places[n].lControl << " " << places[m].lControl;
            }
        }
    }
}

TEST(Arrangement, PlacesWhatIsShownAlone) {
    const auto has = [](StripShows shows, int lControl) {
        const auto places = Arrangement(plain, shows).places({600, 400});
        return std::any_of(places.begin(), places.end(),
                           [&](const PlacedControl& placed) { return placed.lControl == lControl; });
    };
    EXPECT_FALSE(has(StripShows::Nothing, lOutcome) || has(StripShows::Nothing, lProgress));
    EXPECT_TRUE(has(StripShows::Outcome, lOutcome) && !has(StripShows::Outcome, lProgress));
    EXPECT_TRUE(has(StripShows::Progress, lProgress) && !has(StripShows::Progress, lOutcome));
}

TEST(Arrangement, ScalesWithTheSizeOfText) {
    const auto small = Arrangement(plain, StripShows::Nothing).places({600, 250});
    const auto large = Arrangement(twice, StripShows::Nothing).places({1200, 500});
    for (const auto& [lControl, place] : small) {
        const RECT scaled = placeOf(large, lControl);
        EXPECT_NEAR(scaled.left, 2 * place.left, 2) << lControl;
        EXPECT_NEAR(scaled.top, 2 * place.top, 2) << lControl;
        EXPECT_NEAR(scaled.right, 2 * place.right, 2) << lControl;
        EXPECT_NEAR(scaled.bottom, 2 * place.bottom, 2) << lControl;
    }
}

TEST(Arrangement, AlignsTheBoxesWhetherAButtonStandsBehindThemOrNot) {
    const auto places = Arrangement(plain, StripShows::Nothing).places({600, 250});
    for (int n = 1; n < 5; ++n) {
        EXPECT_EQ(placeOf(places, lText1 + n).left, placeOf(places, lText1).left);
        EXPECT_EQ(placeOf(places, lText1 + n).right, placeOf(places, lText1).right);
        EXPECT_GT(placeOf(places, lText1 + n).top, placeOf(places, lText1 + n - 1).bottom);
    }
}

} // namespace
} // namespace halvane::test
