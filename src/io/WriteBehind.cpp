#include "io/WriteBehind.h"

#include <utility>

namespace halvane::io {

WriteBehind::WriteBehind(TemporaryFile& file) : file_(file), thread_([this] { run(); }) {}

WriteBehind::~WriteBehind() {
    {
        const std::lock_guard lock(mutex_);
        bEnding_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void WriteBehind::run() noexcept {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return nBytes_ > 0 || bEnding_; });
        if (nBytes_ == 0)
            return;
        const std::string_view sBytes(aBytes_.get(), nBytes_);
        std::optional<Failure> failure;
        lock.unlock();
        try {
            file_.append(sBytes);
        } catch (...) {
            failure = currentFailure();
        }
        lock.lock();
        if (failure) { // the only one: none is taken after it
            failure_ = std::move(failure);
            bFailed_ = true;
        }
        nBytes_ = 0;
        changed_.notify_all();
    }
}

void WriteBehind::waitForRoom(std::unique_lock<std::mutex>& lock) {
    changed_.wait(lock, [this] { return nBytes_ == 0; });
    if (failure_)
        throw Failure(*failure_);
}

void WriteBehind::append(BufferBytes& aBytes, std::size_t nBytes, std::size_t nCapacity) {
    std::unique_lock lock(mutex_);
    waitForRoom(lock);
    if (aBytes_ == nullptr)
        aBytes_ = makeBufferBytes(nCapacity);
    aBytes_.swap(aBytes);
    nBytes_ = nBytes;
    lock.unlock();
    changed_.notify_all();
}

void WriteBehind::finish() {
    std::unique_lock lock(mutex_);
    waitForRoom(lock);
}

void WriteBehind::requireWhole() const {
    if (!bFailed_)
        return;
    const std::lock_guard lock(mutex_);
    throw Failure(*failure_);
}

} // namespace halvane::io
