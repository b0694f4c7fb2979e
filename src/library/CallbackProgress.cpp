#include "library/CallbackProgress.h"

namespace halvane::library {

namespace {

constexpr auto interval = std::chrono::milliseconds(100);

} // namespace

void CallbackProgress::restart() noexcept {
    lItems_ = lTold_ = 0;
}

void CallbackProgress::update(std::uint64_t lItems) {
    lItems_ = lItems;
    if (pCallback_ == nullptr)
        return;
    const auto now = Clock::now();
    if (lTold_ != 0 && now < due_)
        return;
    due_ = now + interval;
    pass();
}

void CallbackProgress::clear() {
    if (pCallback_ != nullptr && lItems_ != lTold_)
        pass();
}

void CallbackProgress::pass() {
    lTold_ = lItems_;
    if (pCallback_(pUser_, lItems_) != 0)
        task_.cancel();
}

} // namespace halvane::library
