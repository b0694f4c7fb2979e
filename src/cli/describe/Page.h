#pragma once

#include "cli/describe/Columns.h"
#include "run/describe/Reading.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane::cli {

[[nodiscard]] inline std::string notReadable(const std::string& sWhyNot) {
    return "not readable: " + sWhyNot;
}

[[nodiscard]] inline std::string textOf(const Reading<std::string>& reading) {
    return reading ? *reading : notReadable(reading.sWhyNot);
}

/// "" for a fact that there is none of.
[[nodiscard]] inline std::string textOf(const Reading<std::optional<std::string>>& reading) {
    return reading ? reading->value_or("") : notReadable(reading.sWhyNot);
}

template<class Fact, class Convert>
[[nodiscard]] std::string textOf(const Reading<Fact>& reading, const Convert& convert) {
    return reading ? std::string(convert(*reading)) : notReadable(reading.sWhyNot);
}

/// A page of text under construction: lines, each as deep as the blocks around it.
class Page {
public:
    /// A blank line before the next line, unless nothing stands above it.
    void gap();
    void line(std::string_view sText);
    /// "Label      text", the texts of one block aligned.
    void fact(std::string_view sLabel, std::string_view sText);
    void columns(const std::vector<std::vector<std::string>>& rows);

    template<class Body>
    void indented(const Body& body) {
        ++nDepth_;
        body();
        --nDepth_;
    }

    /// The label and below it the items; "none" or the reason beside it where there are none to list.
    template<class List, class Body>
    void section(std::string_view sLabel, const List& list, const Body& body) {
        if (!list) {
            fact(sLabel, notReadable(list.sWhyNot));
        } else if (list->empty()) {
            fact(sLabel, "none");
        } else {
            line(sLabel);
            indented(body);
        }
    }

    [[nodiscard]] std::string take() { return std::move(sText_); }

private:
    std::string sText_;
    std::size_t nDepth_ = 0;
};

} // namespace halvane::cli
