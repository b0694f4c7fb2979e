#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane {

/// Writes a control file for people to go on with: an element a line, indented, with comments.
class ControlWriter {
public:
    using Attributes = std::vector<std::pair<std::string, std::string>>;

    /// A comment on lines of its own.
    void comment(std::string_view sText);
    /// An element without children. @param sRemark a comment behind it; "" for none.
    void leaf(std::string_view sElement, const Attributes& attributes, std::string_view sRemark = {});
    /// Elements inside a comment, for people to take them out of it. @param sElements as take() gives them,
    /// without comments. @param sRemark a comment behind it; "" for none.
    void commentedOut(std::string_view sElements, std::string_view sRemark);
    void open(std::string_view sElement, const Attributes& attributes);
    /// Closes the innermost element that is open.
    void close();

    [[nodiscard]] std::string take() { return std::move(sText_); }

private:
    [[nodiscard]] std::string indent() const { return std::string(2 * open_.size(), ' '); }

    std::string sText_;
    std::vector<std::string> open_;
};

/// Whether a control file can hold the text: it is UTF-8, without characters that XML forbids.
[[nodiscard]] bool isXmlText(std::string_view sText);

/// A name that XML allows, as near to the text as may be. @param sOtherwise for a text of which nothing is
/// left.
[[nodiscard]] std::string xmlName(std::string_view sText, std::string_view sOtherwise);

} // namespace halvane
