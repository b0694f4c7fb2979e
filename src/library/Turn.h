#pragma once

#include <mutex>

namespace halvane::library {

/// Something that runs in its turn, and can be told to end.
class Task {
public:
    Task() = default;
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    virtual ~Task() = default;

    /// Ends the run under way; without one, the next. On any thread.
    void cancel();

private:
    friend class Turn;
    bool bCancelled_ = false; ///< guarded by the turns' own lock
};

/// The process has one state of an export, and one request for an orderly end. Who has the turn works with
/// both.
class Turn {
public:
    /// Waits until nobody else has it. Of what ends from now on the task is the cause.
    explicit Turn(Task& task);
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn();

    /// Whether this thread has a turn, and would wait for itself.
    [[nodiscard]] static bool isHere() noexcept;

private:
    std::unique_lock<std::mutex> lock_;
    Task& task_;
};

} // namespace halvane::library
