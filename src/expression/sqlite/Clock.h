#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>

namespace halvane::expression::sqlite {

/// The system as SQLite sees it, at one moment: what asks for the time is told that one. Registered with
/// SQLite while it lives.
class Clock {
public:
    /// @param nMoment seconds since 1970-01-01 UTC.
    explicit Clock(std::int64_t nMoment);
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    ~Clock();

    /// As sqlite3_open_v2() takes it.
    [[nodiscard]] const char* name() const noexcept { return sName_.c_str(); }

private:
    struct System : sqlite3_vfs {
        sqlite3_int64 nMoment = 0; ///< milliseconds of the Julian day
    };

    static int tellTime(sqlite3_vfs* pSystem, sqlite3_int64* pnMoment) noexcept;
    static int tellDay(sqlite3_vfs* pSystem, double* pdDay) noexcept;

    std::string sName_;
    System system_;
};

} // namespace halvane::expression::sqlite
