#pragma once

#include "oracle/Random.h"

#include <cstddef>
#include <string>

namespace halvane::oracle {

/// Makes the texts of random expressions.
class ExpressionMaker {
public:
    /// What stands around the expression.
    struct Around {
        std::size_t nRows = 0;  ///< rows that a field can be one of
        std::size_t nOuter = 0; ///< of them those that braces are about
        std::size_t nGroup = 0; ///< of them up to the outermost group, with it; 0: no group
        bool bTested = false;   ///< the row is tested, and has no number yet
        bool bField = false;    ///< a loop over fields
    };

    ExpressionMaker(Random& random, Around around) : random_(random), around_(around) {}

    [[nodiscard]] std::string value(int nDepth = 2);
    [[nodiscard]] std::string condition(int nDepth = 2);
    /// A text with values in braces, as an attribute holds it.
    [[nodiscard]] std::string textWithValues();
    [[nodiscard]] std::string order();

private:
    std::string field();
    std::string constant();
    std::string variable();
    std::string aggregate();
    std::string call(int nDepth);
    std::string cases(int nDepth);
    std::string together(const std::string& sLeft, const std::string& sOperator, const std::string& sRight);

    Random& random_;
    Around around_;
};

} // namespace halvane::oracle
