#pragma once

#include <cstdint>

namespace halvane {

/// Who is shown how far an export is.
class Progress {
public:
    Progress() = default;
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    virtual ~Progress() = default;

    /// An item was written. @param lItems how many in all.
    virtual void update(std::uint64_t lItems) = 0;
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
