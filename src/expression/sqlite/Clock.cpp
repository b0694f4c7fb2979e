#include "expression/sqlite/Clock.h"

#include <atomic>

namespace halvane::expression::sqlite {

namespace {

constexpr sqlite3_int64 nMillisecondsPerDay = 86'400'000;
// The Julian day of 1970-01-01T00:00 is 2440587.5.
constexpr sqlite3_int64 nEpoch = 2'440'587 * nMillisecondsPerDay + nMillisecondsPerDay / 2;

std::string newName() {
    static std::atomic<std::uint64_t> nClocks = 0;
    return "halvane-clock-" + std::to_string(++nClocks);
}

} // namespace

Clock::Clock(std::int64_t nMoment) : sName_(newName()) {
    static_cast<sqlite3_vfs&>(system_) = *sqlite3_vfs_find(nullptr);
    system_.zName = sName_.c_str();
    system_.pNext = nullptr;
    system_.xCurrentTime = &Clock::tellDay;
    system_.xCurrentTimeInt64 = &Clock::tellTime;
    system_.nMoment = nEpoch + nMoment * 1000;
    sqlite3_vfs_register(&system_, 0);
}

Clock::~Clock() {
    sqlite3_vfs_unregister(&system_);
}

int Clock::tellTime(sqlite3_vfs* pSystem, sqlite3_int64* pnMoment) noexcept {
    *pnMoment = static_cast<System*>(pSystem)->nMoment;
    return SQLITE_OK;
}

int Clock::tellDay(sqlite3_vfs* pSystem, double* pdDay) noexcept {
    *pdDay = static_cast<double>(static_cast<System*>(pSystem)->nMoment) / nMillisecondsPerDay;
    return SQLITE_OK;
}

} // namespace halvane::expression::sqlite
