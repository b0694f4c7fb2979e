#pragma once

#include "host/DataHost.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace halvane {

/// Who is shown how far an export is.
class Progress {
public:
    Progress() = default;
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    virtual ~Progress() = default;

    using AskRows = std::function<std::optional<host::RowsUnderWay>()>;
    /// From now on, how far the rows are can be asked for. @param ask empty: not any more.
    virtual void setRows(AskRows /*ask*/) {}
    /// An item was written. @param lItems how many in all.
    virtual void update(std::uint64_t lItems) = 0;
    /// Other text follows; more may be shown behind it.
    virtual void makeRoom() {}
    /// Nothing more will be shown; other text follows.
    virtual void clear() = 0;
};

/// Where nobody looks.
class NoProgress final : public Progress {
public:
    void update(std::uint64_t /*lItems*/) override {}
    void clear() override {}
};

} // namespace halvane
