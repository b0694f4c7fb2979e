#include "host/gdal/facts/Dates.h"

#include <algorithm>
#include <cmath>

namespace halvane::host::gdal {

namespace {

/// Quarters of an hour count from 100, which is UTC; 0 and 1 tell no zone that holds elsewhere.
std::int16_t zoneOf(int lFlag) {
    constexpr int lUtc = 100;
    return lFlag <= 1 ? Date::noZone : static_cast<std::int16_t>((lFlag - lUtc) * 15);
}

} // namespace

Date dateOf(const OGRField& raw) {
    Date date;
    date.year = raw.Date.Year;
    date.month = raw.Date.Month;
    date.day = raw.Date.Day;
    date.hour = raw.Date.Hour;
    date.minute = raw.Date.Minute;
    date.second = static_cast<std::uint8_t>(raw.Date.Second);
    const double dMilliseconds = (static_cast<double>(raw.Date.Second) - date.second) * 1000;
    date.millisecond = static_cast<std::uint16_t>(std::min(std::lround(dMilliseconds), 999L));
    date.zoneMinutes = zoneOf(raw.Date.TZFlag);
    return date;
}

} // namespace halvane::host::gdal
