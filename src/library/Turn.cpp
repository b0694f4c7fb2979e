#include "library/Turn.h"

#include "telling/Interruption.h"

namespace halvane::library {

namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): there is one process
std::mutex turns;
std::mutex cancelling; // guards what follows, and Task::bCancelled_
const Task* pRunning = nullptr;
thread_local bool bHere = false;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

} // namespace

void Task::cancel() {
    const std::lock_guard lock(cancelling);
    bCancelled_ = true;
    if (pRunning == this)
        requestInterruption();
}

Turn::Turn(Task& task) : lock_(turns), task_(task) {
    const std::lock_guard lock(cancelling);
    bHere = true;
    pRunning = &task_;
    forgetInterruption();
    if (task_.bCancelled_)
        requestInterruption();
}

Turn::~Turn() {
    const std::lock_guard lock(cancelling);
    bHere = false;
    pRunning = nullptr;
    task_.bCancelled_ = false;
    forgetInterruption();
}

bool Turn::isHere() noexcept {
    return bHere;
}

} // namespace halvane::library
