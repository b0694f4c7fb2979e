#include "host/memory/Faults.h"

#include "base/Failure.h"

#include <algorithm>

namespace halvane::host::memory {

namespace {

std::weak_ptr<FaultScript>& currentScript() {
    static std::weak_ptr<FaultScript> pCurrent;
    return pCurrent;
}

bool names(std::string_view sAsked, std::string_view sInterface, std::string_view sOperation) {
    const std::size_t nDot = sAsked.find('.');
    if (nDot == std::string_view::npos)
        return sAsked.empty() || sAsked == sOperation;
    return sAsked.substr(0, nDot) == sInterface && sAsked.substr(nDot + 1) == sOperation;
}

} // namespace

std::shared_ptr<FaultScript> FaultScript::current() {
    if (auto pScript = currentScript().lock())
        return pScript;
    return std::make_shared<FaultScript>();
}

void FaultScript::makeCurrent(const std::shared_ptr<FaultScript>& pScript) {
    currentScript() = pScript;
}

void FaultScript::failAt(std::string_view sOperation, std::int64_t nCall) {
    aFaults_.push_back({std::string(sOperation), nCall, false});
}

void FaultScript::failAtCall(std::int64_t nCall) {
    failAt({}, nCall);
}

void FaultScript::failAlways(std::string_view sOperation) {
    aFaults_.push_back({std::string(sOperation), 0, true});
}

bool FaultScript::isToFail(std::string_view sInterface) const {
    return std::any_of(aFaults_.begin(), aFaults_.end(), [&](const Fault& fault) {
        return fault.sOperation.substr(0, fault.sOperation.find('.')) == sInterface;
    });
}

void FaultScript::reset() noexcept {
    clear();
    nCalls_ = 0;
    callsByName_.clear();
}

std::int64_t FaultScript::callCount(std::string_view sOperation) const {
    std::int64_t nCount = 0;
    for (const auto& [name, nCalls] : callsByName_) {
        if (names(sOperation, name.first, name.second))
            nCount += nCalls;
    }
    return nCount;
}

void FaultScript::pass(std::string_view sInterface, std::string_view sOperation) {
    ++nCalls_;
    ++callsByName_[{sInterface, sOperation}];
    bool bFails = false;
    for (Fault& fault : aFaults_) {
        if (names(fault.sOperation, sInterface, sOperation))
            bFails = fault.bAlways || --fault.nCallsLeft == 0 || bFails;
    }
    if (!bFails)
        return;
    aFaults_.erase(std::remove_if(aFaults_.begin(), aFaults_.end(),
                                  [](const Fault& fault) { return !fault.bAlways && fault.nCallsLeft <= 0; }),
                   aFaults_.end());
    throw Failure(FailureNumber::HostFailure, std::string(sOperation) + " failed by request");
}

} // namespace halvane::host::memory
