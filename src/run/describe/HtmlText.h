#pragma once

#include "run/describe/Reading.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>

namespace halvane {

/// A text of the data as text or attribute of a page: nothing in it is markup or steers the reading;
/// passwords are masked.
[[nodiscard]] inline std::string html(std::string_view sText) {
    std::string sEscaped;
    for (const char c : printable(sText)) {
        switch (c) {
        case '&':
            sEscaped += "&amp;";
            break;
        case '<':
            sEscaped += "&lt;";
            break;
        case '>':
            sEscaped += "&gt;";
            break;
        case '"':
            sEscaped += "&quot;";
            break;
        case '\'':
            sEscaped += "&#39;";
            break;
        default:
            sEscaped += c;
        }
    }
    return sEscaped;
}

[[nodiscard]] inline std::string htmlNotReadable(std::string_view sWhyNot) {
    return fmt::format("<span class=\"bad\">not readable: {}</span>", html(sWhyNot));
}

[[nodiscard]] inline std::string html(const Reading<std::string>& sText) {
    return sText ? html(*sText) : htmlNotReadable(sText.sWhyNot);
}

[[nodiscard]] inline std::string html(const Reading<std::optional<std::string>>& sText) {
    return sText ? html(sText->value_or("")) : htmlNotReadable(sText.sWhyNot);
}

[[nodiscard]] inline std::string html(const Reading<bool>& bFact) {
    return !bFact ? htmlNotReadable(bFact.sWhyNot) : *bFact ? "yes" : "no";
}

} // namespace halvane
