#pragma once

#include <string>

namespace halvane::test {

/// While it lives, the process's numeric locale has a comma as decimal separator.
class CommaLocale {
public:
    /// Compiles the locale into a temporary folder where the machine has none.
    CommaLocale();
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale();

    /// False where the machine can neither offer nor make such a locale: the test is to be skipped.
    [[nodiscard]] bool isActive() const noexcept { return bActive_; }

private:
    std::string sEarlier_;
    bool bActive_ = false;
};

} // namespace halvane::test
