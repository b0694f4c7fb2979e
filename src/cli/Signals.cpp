#include "cli/Signals.h"

#include "cli/Crashes.h"
#include "telling/Interruption.h"

#include <csignal>
#include <initializer_list>

namespace halvane::cli {

namespace {

void request(int /*lSignal*/) {
    requestInterruption();
    endWhatTheLibraryDoesNot();
}

} // namespace

void prepareSignals() noexcept {
    struct sigaction action = {};
    action.sa_handler = request;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (const int lSignal : {SIGINT, SIGTERM, SIGHUP, signalOfParent}) {
        struct sigaction inherited = {};
        sigaction(lSignal, nullptr, &inherited);
        // What the caller ignores (nohup does) stays ignored.
        if (inherited.sa_handler != SIG_IGN)
            sigaction(lSignal, &action, nullptr);
    }
    // Who writes learns it from the error number, and what is begun is ended as it should be.
    for (const int lSignal : {SIGXFSZ, SIGPIPE})
        std::signal(lSignal, SIG_IGN);
}

} // namespace halvane::cli
