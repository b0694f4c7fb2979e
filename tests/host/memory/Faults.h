#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::host::memory {

/// Counts the host calls that a client makes, and makes chosen ones fail. Every operation of every object
/// passes through it under its own name ("nextRow"), or, to tell operations of the same name apart, under its
/// name behind that of its interface ("GisField.name"). A call that fails throws Failure HostFailure with the
/// description "<operation> failed by request". typeName is no host call.
class FaultScript {
public:
    /// The script that newly made objects share: that of the host made last, while it lives, else a new one.
    [[nodiscard]] static std::shared_ptr<FaultScript> current();
    /// Makes `pScript` the one that current() yields while it lives.
    static void makeCurrent(const std::shared_ptr<FaultScript>& pScript);

    /// The `nCall`-th call of the operation from now on (1 is the next) fails, once.
    void failAt(std::string_view sOperation, std::int64_t nCall = 1);
    /// The `nCall`-th host call of any kind from now on fails, once.
    void failAtCall(std::int64_t nCall);
    /// Every call of the operation fails from now on.
    void failAlways(std::string_view sOperation);
    /// Whether an operation is to fail that was named behind this interface.
    [[nodiscard]] bool isToFail(std::string_view sInterface) const;
    /// Forgets what was to fail.
    void clear() noexcept { aFaults_.clear(); }
    /// Forgets that and all counts.
    void reset() noexcept;

    /// All host calls so far, failed ones included.
    [[nodiscard]] std::int64_t callCount() const noexcept { return nCalls_; }
    /// The calls of one operation so far.
    [[nodiscard]] std::int64_t callCount(std::string_view sOperation) const;

    /// For the host's objects: notes a call. Both names are literals. @throws Failure when the call is to
    /// fail.
    void pass(std::string_view sInterface, std::string_view sOperation);

private:
    struct Fault {
        std::string sOperation; // "" for any
        std::int64_t nCallsLeft = 1;
        bool bAlways = false;
    };

    std::int64_t nCalls_ = 0;
    std::map<std::pair<std::string_view, std::string_view>, std::int64_t> callsByName_;
    std::vector<Fault> aFaults_;
};

/// What every object of the memory host is: it shares the fault script that was current when it was made, or,
/// when another object made it, that object's.
class Scripted {
public:
    [[nodiscard]] FaultScript& faults() const noexcept { return *pFaults_; }

protected:
    Scripted() : pFaults_(FaultScript::current()) {}
    explicit Scripted(std::shared_ptr<FaultScript> pFaults) : pFaults_(std::move(pFaults)) {}
    ~Scripted() = default;

    [[nodiscard]] const std::shared_ptr<FaultScript>& script() const noexcept { return pFaults_; }
    void pass(std::string_view sInterface, std::string_view sOperation) const {
        pFaults_->pass(sInterface, sOperation);
    }

private:
    std::shared_ptr<FaultScript> pFaults_;
};

} // namespace halvane::host::memory
