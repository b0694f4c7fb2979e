#pragma once

#include "base/Value.h"
#include "expression/Evaluator.h"

#include <cstdint>
#include <memory>

namespace halvane::expression::sqlite {

/// Computes expressions in a database of SQLite that holds nothing and has no file. Letter case, and what
/// LIKE takes for equal, are those of Unicode. Texts of more than a million bytes are refused.
class SqliteEvaluator final : public Evaluator {
public:
    /// @param nMoment what "now" is in expressions: seconds since 1970-01-01 UTC.
    /// @throws Failure HostFailure when there is no memory for it.
    explicit SqliteEvaluator(std::int64_t nMoment);
    ~SqliteEvaluator() override;

    [[nodiscard]] std::unique_ptr<Evaluation> prepare(const Expression& expression) override;

private:
    struct Database;
    std::unique_ptr<Database> pDatabase_;
};

} // namespace halvane::expression::sqlite
