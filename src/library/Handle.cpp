#include "library/Handle.h"

#include "telling/Text.h"

#include <utility>

namespace halvane::library {

namespace {

constexpr const char* sNoMemory = "out of memory";

} // namespace

int Handle::misused(const char* pWhat) noexcept {
    bMisused_ = true;
    try {
        if (sMisuse_.empty())
            sMisuse_ = std::string(pWhat) + ": " + currentFailure().description();
        pError_ = sMisuse_.c_str();
    } catch (...) {
        pError_ = sNoMemory;
    }
    return -1;
}

int Handle::run() noexcept {
    try {
        keepOnly("");
        return runOrRefuse();
    } catch (...) {
        try {
            keep({currentFailure().description()});
        } catch (...) {
            keepOnly(sNoMemory);
        }
        return HALVANE_NOT_WRITTEN;
    }
}

int Handle::runOrRefuse() {
    reset();
    if (bMisused_)
        return refuse({sMisuse_.empty() ? sNoMemory : sMisuse_});
    if (Turn::isHere())
        return refuse({"a run cannot be started by what it calls back"});
    const Turn turn(*this);
    return runInTurn();
}

int Handle::refuse(const std::vector<std::string>& problems) {
    keep(problems);
    refused(problems);
    return HALVANE_REFUSED;
}

void Handle::keep(const std::vector<std::string>& problems) {
    std::string sLines;
    for (const auto& sProblem : problems)
        sLines += (sLines.empty() ? "" : "\n") + printable(sProblem);
    sError_ = std::move(sLines);
    pError_ = sError_.c_str();
}

void Handle::keepOnly(const char* pProblem) noexcept {
    pError_ = pProblem;
}

} // namespace halvane::library
