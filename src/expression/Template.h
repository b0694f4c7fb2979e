#pragma once

#include "expression/Expression.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::expression {

/// A text with values in braces: "PS_{site_code}". "{{" is a brace of the text.
class Template {
public:
    /// A piece of text, then a value; the last one may have none.
    struct Piece {
        std::string sText;
        std::optional<Expression> expression = {};
    };

    /// @throws Failure DocumentFailure telling what is wrong.
    explicit Template(std::string_view sText);

    [[nodiscard]] const std::vector<Piece>& pieces() const noexcept { return pieces_; }
    /// Whether there is no value in it.
    [[nodiscard]] bool isConstant() const noexcept {
        return pieces_.empty() || (pieces_.size() == 1 && !pieces_.front().expression);
    }

private:
    std::vector<Piece> pieces_;
};

} // namespace halvane::expression
