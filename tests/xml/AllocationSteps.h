#pragma once

#include "base/Failure.h"
#include "support/AllocationFaults.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>

namespace halvane::test {

/// So many allocations that an operation that makes them does not end.
inline constexpr std::size_t tooMany = 200'000;

/// Runs a step with the first allocation failing, then the second, until none is left to fail.
/// @param fnPrepare prepares, and returns what is done while one fails and what is then checked, with whether
/// it ended by a failure.
struct Step {
    std::function<void()> fnDo;
    std::function<void(bool bThrown)> fnCheck;
};

inline void forEachAllocation(const std::function<Step()>& fnPrepare,
                              AllocationFaults::Library library = AllocationFaults::Library::FailsToo) {
    std::size_t nFaults = 0;
    for (std::size_t n = 0; n < tooMany && !testing::Test::HasFailure(); ++n) {
        const Step step = fnPrepare();
        bool bThrown = false;
        bool bStruck = false;
        try {
            const AllocationFaults faults(n, library);
            step.fnDo();
        } catch (const std::bad_alloc&) {
            bThrown = true;
        } catch (const Failure&) {
            bThrown = true;
        }
        bStruck = AllocationFaults::haveStruck();
        SCOPED_TRACE("allocation " + std::to_string(n));
        EXPECT_TRUE(bStruck || !bThrown);
        step.fnCheck(bThrown);
        if (!bStruck) {
            EXPECT_GT(nFaults, 0U) << "nothing is allocated: the test tests nothing";
            return;
        }
        ++nFaults;
    }
    EXPECT_TRUE(testing::Test::HasFailure()) << "more allocations than expected";
}

class Allocations : public testing::Test {
protected:
    static void SetUpTestSuite() { AllocationFaults::install(); }
};

} // namespace halvane::test
