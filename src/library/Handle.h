#pragma once

#include "base/Failure.h"
#include "halvane.h"
#include "library/Messages.h"
#include "library/Turn.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane::library {

/// What an export and a description have in common: who is told, and why a run did not do what it was for.
class Handle : public Task {
public:
    /// Sets something. @param pWhat what, for the reason that is kept. @param bFit whether the arguments are.
    /// @returns 0, or -1: every run is refused from then on.
    template<class Setter>
    [[nodiscard]] int set(const char* pWhat, bool bFit, const Setter& setter) noexcept {
        try {
            if (!bFit)
                throw Failure(FailureNumber::InvalidProcedureCall, "its argument is not one that it takes");
            setter();
            return 0;
        } catch (...) {
            return misused(pWhat);
        }
    }

    /// Runs in its turn, with whatever exception as its end. @returns a number of the public header.
    [[nodiscard]] int run() noexcept;

    [[nodiscard]] Messages& messages() noexcept { return messages_; }
    [[nodiscard]] const char* error() const noexcept { return pError_; }

protected:
    /// Forgets what the run before left.
    virtual void reset() = 0;
    /// @returns a number of the public header.
    [[nodiscard]] virtual int runInTurn() = 0;
    /// The run is refused before it begins: why.
    virtual void refused(const std::vector<std::string>& problems) = 0;

    /// Keeps why the run did not do what it was for, a line each.
    void keep(const std::vector<std::string>& problems);

private:
    /// Call it inside a catch block.
    [[nodiscard]] int misused(const char* pWhat) noexcept;
    [[nodiscard]] int runOrRefuse();
    [[nodiscard]] int refuse(const std::vector<std::string>& problems);
    void keepOnly(const char* pProblem) noexcept;

    Messages messages_;
    bool bMisused_ = false;
    std::string sMisuse_; ///< of the first time
    std::string sError_;
    const char* pError_ = ""; ///< sError_'s, or where there is no memory for one a constant
};

} // namespace halvane::library
