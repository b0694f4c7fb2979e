#pragma once

#include <string_view>

namespace halvane {

/// What the person is told, one line each.
class Console {
public:
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    virtual ~Console() = default;

    /// The result.
    virtual void result(std::string_view sLine) const = 0;
    /// What did not fail but is worth knowing.
    virtual void note(std::string_view sLine) const = 0;
    /// What failed.
    virtual void failure(std::string_view sLine) const = 0;
};

} // namespace halvane
