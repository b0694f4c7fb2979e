#pragma once

#include <atomic>
#include <string_view>

namespace halvane::test {

/// Lets a call of the system fail in this process while it lives. Of several the one made last ends first.
/// The calls are those that FailingCall.cpp puts in the place of the system's, by their names; "open unnamed"
/// is that of a file without a name, "dup" that of a second descriptor, "lstat of another file" one that
/// finds another than it should.
class FailingCall {
public:
    static constexpr int always = 1'000'000;

    /// @param nTimes so many calls after the first nSkipped fail.
    explicit FailingCall(std::string_view sCall, int nError, int nTimes = always, int nSkipped = 0);
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;
    ~FailingCall();

    /// Whether a call fails, which errno then tells of. To be asked where the call is made.
    [[nodiscard]] static bool strikes(std::string_view sCall) noexcept;

    [[nodiscard]] int struck() const noexcept { return nStruck_; }

private:
    [[nodiscard]] bool strikesHere(std::string_view sCall) noexcept;

    FailingCall* pOuter_;
    std::string_view sCall_;
    int nError_;
    int nTimes_;
    std::atomic<int> nSkipped_;
    std::atomic<int> nStruck_ = 0;
};

} // namespace halvane::test
