// A library of external processors that the tests load into the program.

#include "host/IExternalProcessorLibrary.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

using halvane::dCollection;
using halvane::IExternalProcessor;

class Greeting : public IExternalProcessor {
public:
    std::string Process(dCollection& /*dColSpatialVariables*/) override { return "good morning"; }
};

class Slow : public IExternalProcessor {
public:
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return "done";
    }
};

class Signals : public IExternalProcessor {
public:
    Signals(int lSignal, int lTimes) : lSignal_(lSignal), lTimes_(lTimes) {}
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        for (int i = 0; i < lTimes_; ++i)
            std::raise(lSignal_);
        return "";
    }

private:
    int lSignal_;
    int lTimes_;
};

/// Asks the process that started this one to end, and waits until it has passed that on.
class EndsParent : public IExternalProcessor {
public:
    /// @param bItself a signal to all processes has reached this one before.
    explicit EndsParent(bool bItself) : bItself_(bItself) {}
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        if (bItself_)
            std::raise(SIGTERM);
        ::kill(::getppid(), SIGTERM);
        struct sigaction handling = {};
        do {
            std::this_thread::yield();
            ::sigaction(SIGUSR1, nullptr, &handling);
        } while (handling.sa_handler != SIG_DFL); // the program hears of it once
        return "";
    }

private:
    bool bItself_;
};

/// Writes to standard error itself, as some libraries do.
class Chatter : public IExternalProcessor {
public:
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        std::fputs("cannot reach a://u:secret@host\n\x1B[2Jodd\n", stderr);
        return "";
    }
};

/// Writes to standard output, as some libraries do.
class Talker : public IExternalProcessor {
public:
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        std::puts("by the way");
        return "said";
    }
};

/// Writes more to standard error than a pipe holds.
class Flood : public IExternalProcessor {
public:
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        for (int n = 0; n < 200'000; ++n)
            std::fputs(("line " + std::to_string(n) + "\n").c_str(), stderr);
        return "";
    }
};

/// Fails with another text each time.
class Moody : public IExternalProcessor {
public:
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        static int lMood = 0;
        throw std::runtime_error("mood " + std::to_string(++lMood));
    }
};

} // namespace

HALVANE_PROCESSOR_LIBRARY(registrar) {
    registrar.registerProcessor("Test.Greeting", [] { return std::make_shared<Greeting>(); });
    registrar.registerProcessor("Test.Slow", [] { return std::make_shared<Slow>(); });
    registrar.registerProcessor("Test.Interrupt", [] { return std::make_shared<Signals>(SIGINT, 1); });
    registrar.registerProcessor("Test.InterruptTwice", [] { return std::make_shared<Signals>(SIGINT, 2); });
    registrar.registerProcessor("Test.Terminate", [] { return std::make_shared<Signals>(SIGTERM, 1); });
    registrar.registerProcessor("Test.EndsParent", [] { return std::make_shared<EndsParent>(false); });
    registrar.registerProcessor("Test.EndsParentAndItself",
                                [] { return std::make_shared<EndsParent>(true); });
    registrar.registerProcessor("Test.Chatter", [] { return std::make_shared<Chatter>(); });
    registrar.registerProcessor("Test.Talker", [] { return std::make_shared<Talker>(); });
    registrar.registerProcessor("Test.Flood", [] { return std::make_shared<Flood>(); });
    registrar.registerProcessor("Test.Moody", [] { return std::make_shared<Moody>(); });
}
