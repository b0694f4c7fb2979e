#pragma once

#include "run/CheckRun.h"

#include <string>
#include <string_view>

namespace halvane {

/// The findings in a form. @param sControl the control file as the person typed it.
using CheckForm = std::string (*)(const CheckOutcome& outcome, std::string_view sControl);

/// A line each, as editors read those of compilers: "control.xml:12:8: warning: "City": … [unknown-value]".
[[nodiscard]] std::string checkLines(const CheckOutcome& outcome, std::string_view sControl);
/// In the form of docs/check.schema.json.
[[nodiscard]] std::string checkJson(const CheckOutcome& outcome, std::string_view sControl);
/// A log of SARIF 2.1.0.
[[nodiscard]] std::string checkSarif(const CheckOutcome& outcome, std::string_view sControl);

} // namespace halvane
