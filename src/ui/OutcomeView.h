#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace halvane::ui {

/// What an export came to, as a person reads it.
struct ExportOutcome {
    enum class Kind {
        Written,
        Warned, ///< written, with warnings
        Incomplete,
        NotWritten
    };

    Kind kind = Kind::NotWritten;
    std::string sSummary;             ///< one sentence
    std::vector<std::string> details; ///< a line each: what failed or found nothing, and warnings
    std::string sDocument;            ///< path of the document; "" when nothing was written
};

/// The strip beneath the form that tells of exports.
class OutcomeView {
public:
    OutcomeView() = default;
    OutcomeView(const OutcomeView&) = delete;
    OutcomeView& operator=(const OutcomeView&) = delete;
    virtual ~OutcomeView() = default;

    /// An export begins: what was told of the one before goes.
    virtual void begin() = 0;
    /// Called again and again while the export runs, after each item and in between. May let the person act.
    /// @param lItems written so far.
    /// @returns whether the person asked to cancel the export.
    [[nodiscard]] virtual bool cancelledAfter(std::uint64_t lItems) = 0;
    /// The export has ended.
    virtual void show(const ExportOutcome& outcome) = 0;
};

} // namespace halvane::ui
