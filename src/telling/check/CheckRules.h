#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace halvane {

enum class CheckSeverity : std::uint8_t {
    Note,    ///< worth knowing: what was asked for is written
    Warning, ///< something is missing, or something else is written than was asked for
    Error,   ///< an export refuses the control file, or a node of it fails
};

/// Something that a check looks for.
struct CheckRule {
    std::string_view sKind; ///< as reports spell it: "UnknownAttribute"
    CheckSeverity severity;
    std::string_view sAttribute; ///< of the control element that it is about; "": the element itself
    std::string_view sWhy;       ///< what it leads to
};

/// All rules, by their kinds.
[[nodiscard]] std::span<const CheckRule> checkRules() noexcept;
/// The rule of a kind; that of failures for a kind that there is not.
[[nodiscard]] const CheckRule& checkRule(std::string_view sKind) noexcept;

/// What programs know a rule by, which stays what it is: "unknown-attribute".
[[nodiscard]] std::string idOf(const CheckRule& rule);
/// "note", "warning" or "error".
[[nodiscard]] std::string_view wordOf(CheckSeverity severity) noexcept;

} // namespace halvane
