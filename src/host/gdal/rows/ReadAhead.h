#pragma once

#include "host/gdal/source/Interruption.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

/// A thread that reads blocks of rows while their consumer writes earlier ones: on two processors the two
/// take the time of the slower. Only the thread touches what it reads from, from construction to destruction.
template<class Block>
class ReadAhead {
public:
    /// Runs on the thread: hands each block to `put`, and ends when that says so.
    using Read = std::function<void(ReadAhead&)>;

    /// @throws std::system_error when there is no thread to be had.
    explicit ReadAhead(Read fnRead) : fnRead_(std::move(fnRead)), thread_([this] { run(); }) {}
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;
    ~ReadAhead() {
        {
            const std::lock_guard lock(mutex_);
            bStopped_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }

    /// For the consumer: the next block; nothing after the last. Rethrows what ended the thread.
    /// @param used a block that nobody needs any more: the thread may use it again, or destroys it, which
    /// takes its time too.
    [[nodiscard]] std::optional<Block> next(Block used) {
        std::unique_lock lock(mutex_);
        used_.push_back(std::move(used));
        // Who waits here is the one who may be asked to end.
        constexpr auto betweenTests = std::chrono::milliseconds(50);
        while (!changed_.wait_for(lock, betweenTests, [this] { return !ready_.empty() || bEnded_; })) {
            lock.unlock();
            static_cast<void>(interruptionAsked());
            lock.lock();
        }
        if (ready_.empty()) {
            if (failure_ != nullptr)
                std::rethrow_exception(std::exchange(failure_, nullptr));
            return std::nullopt;
        }
        std::optional<Block> block(std::move(ready_.front()));
        ready_.pop_front();
        lock.unlock();
        changed_.notify_all();
        return block;
    }

    /// For the thread: waits for room. @returns whether more is wanted.
    [[nodiscard]] bool put(Block block) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return ready_.size() < nMostReady || bStopped_; });
        if (bStopped_)
            return false;
        ready_.push_back(std::move(block));
        lock.unlock();
        changed_.notify_all();
        return true;
    }

    /// For the thread: whether nobody wants what it reads any more.
    [[nodiscard]] bool isStopped() const noexcept { return bStopped_; }

    /// For the thread: a block that came back, or a new one.
    [[nodiscard]] Block blank() {
        const std::lock_guard lock(mutex_);
        if (used_.empty())
            return Block();
        Block block = std::move(used_.back());
        used_.pop_back();
        return block;
    }

private:
    static constexpr std::size_t nMostReady = 2;

    void run() noexcept {
        std::exception_ptr failure;
        try {
            fnRead_(*this);
        } catch (...) {
            failure = std::current_exception();
        }
        {
            const std::lock_guard lock(mutex_);
            failure_ = failure;
            bEnded_ = true;
        }
        changed_.notify_all();
    }

    Read fnRead_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Block> ready_;
    std::vector<Block> used_;
    std::exception_ptr failure_;
    bool bEnded_ = false;
    std::atomic<bool> bStopped_ = false; ///< changed under the lock, read also without it
    std::thread thread_;                 // begins when all the rest is there
};

} // namespace halvane::host::gdal
