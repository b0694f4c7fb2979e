#pragma once

#include "base/Failure.h"
#include "io/OutputBuffer.h"
#include "io/TemporaryFile.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>

namespace halvane::io {

/// Appends buffers to a file on a thread while the next one is filled: putting a document of 200 MB into the
/// system's cache takes a tenth of the time that making it does. Nothing else may use the file between
/// construction and destruction, but after finish().
class WriteBehind {
public:
    /// @throws std::system_error when there is no thread to be had.
    explicit WriteBehind(TemporaryFile& file);
    WriteBehind(const WriteBehind&) = delete;
    WriteBehind& operator=(const WriteBehind&) = delete;
    /// Waits for what was handed in.
    ~WriteBehind();

    /// Waits until the buffer handed in before is written, and takes another, which a spare one replaces.
    /// @throws Failure the one of an earlier buffer; then none is taken.
    void append(BufferBytes& aBytes, std::size_t nBytes, std::size_t nCapacity);
    /// Waits until all is written. @throws Failure that of a buffer.
    void finish();
    /// @throws Failure that of a buffer, if it is known yet.
    void requireWhole() const;

private:
    void run() noexcept;
    void waitForRoom(std::unique_lock<std::mutex>& lock);

    TemporaryFile& file_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    BufferBytes aBytes_;     ///< what is being written, or is spare
    std::size_t nBytes_ = 0; ///< of that; 0: nothing
    bool bEnding_ = false;
    std::optional<Failure> failure_;
    std::atomic<bool> bFailed_ = false; ///< asked for at every item, hence without the lock
    std::thread thread_;                ///< begins when all the rest is there
};

} // namespace halvane::io
