#pragma once

#include <cstddef>

namespace halvane::test {

/// Lets one allocation of the program fail: operator new throws, the XML library's allocations yield nothing.
/// Belongs to a program that is linked with AllocationFaults.cpp, which replaces both.
class AllocationFaults {
public:
    /// To be called before anything uses the XML library.
    static void install();

    enum class Library {
        FailsToo,
        Spared, ///< where it does not stand a fault itself
    };

    /// The allocation after the next nSkipped fails, whichever thread makes it. One at a time.
    explicit AllocationFaults(std::size_t nSkipped, Library library = Library::FailsToo) noexcept;
    AllocationFaults(const AllocationFaults&) = delete;
    AllocationFaults& operator=(const AllocationFaults&) = delete;
    /// No more fails from here on.
    ~AllocationFaults() { end(); }

    static void end() noexcept;
    /// Whether it has failed.
    [[nodiscard]] static bool haveStruck() noexcept;
};

} // namespace halvane::test
