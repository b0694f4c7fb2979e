#pragma once

#include "telling/Console.h"

#include <string>
#include <string_view>

namespace halvane::cli {

/// Writes a text to standard output. A reader who has seen enough and gone away is no failure.
/// @param sWhat is written: "the findings". @returns false, with the reason told, when it cannot be written.
[[nodiscard]] bool writeOut(const std::string& sText, std::string_view sWhat, const Console& console);

/// Whether it is a terminal whose user wants colours: the environment variable NO_COLOR is not there or
/// empty, and TERM is not "dumb".
[[nodiscard]] bool colouredStandardOutput() noexcept;

} // namespace halvane::cli
