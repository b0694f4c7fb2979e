#pragma once

#include "xml/schema/Schema.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

/// Keeps what it is told of a document, a line each: "<a", ">" at the end of an element, and of an error its
/// line, its attribute as "@a" and its message.
class SchemaProtocol final : public dom::SchemaListener {
public:
    void elementBegins(std::string_view sName) noexcept override { keep("<" + std::string(sName)); }
    void elementEnds() noexcept override { keep(">"); }
    void schemaError(std::uint64_t nLine, std::string_view sAttribute,
                     std::string_view sMessage) noexcept override {
        ++nErrors_;
        keep(std::to_string(nLine) + (sAttribute.empty() ? "" : " @") + std::string(sAttribute) + ": " +
             std::string(sMessage));
    }

    [[nodiscard]] const std::vector<std::string>& lines() const noexcept { return lines_; }
    [[nodiscard]] std::size_t errors() const noexcept { return nErrors_; }

private:
    void keep(std::string sLine) { lines_.push_back(std::move(sLine)); }

    std::vector<std::string> lines_;
    std::size_t nErrors_ = 0;
};

} // namespace halvane::test
