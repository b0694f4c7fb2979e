#pragma once

#include <concepts>

namespace halvane {

/// A cell of a table: a row that leaves one out does not compile.
template<class Content>
class Cell {
public:
    // NOLINTNEXTLINE(google-explicit-constructor): the rows of a table are lists of plain contents
    constexpr Cell(std::convertible_to<Content> auto given) noexcept : content_(given) {}
    // NOLINTNEXTLINE(google-explicit-constructor): it is read as its content
    constexpr operator Content() const noexcept { return content_; }
    [[nodiscard]] constexpr Content content() const noexcept { return content_; }

private:
    Content content_;
};

} // namespace halvane
