#include "host/gdal/objects/ProcessorLibrary.h"

#include "base/Failure.h"

#include <dlfcn.h>

namespace halvane::host::gdal {

namespace {

[[noreturn]] void fail(const std::string& sPath, const std::string& sWhy) {
    throw Failure(FailureNumber::HostFailure, "The processor library \"" + sPath + "\" " + sWhy);
}

template<class Function>
Function* find(void* pLibrary, const char* pName) {
    return reinterpret_cast<Function*>(::dlsym(pLibrary, pName));
}

} // namespace

void loadProcessors(const std::string& sPath, HalvaneRegistrar& registrar) {
    void* pLibrary = ::dlopen(sPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (pLibrary == nullptr) {
        const char* pReason = ::dlerror();
        fail(sPath,
             std::string("cannot be loaded: ") + (pReason == nullptr ? "no reason is known" : pReason));
    }
    auto* const pVersion = find<int()>(pLibrary, "halvane_processor_library_version");
    if (pVersion != nullptr && pVersion() != lProcessorLibraryVersion) {
        fail(sPath, "was compiled for version " + std::to_string(pVersion()) + " of the processor headers; " +
                        "this program has version " + std::to_string(lProcessorLibraryVersion) +
                        ": compile it anew");
    }
    auto* const pRegister = find<void(HalvaneRegistrar*)>(pLibrary, "halvane_register_processors");
    if (pRegister == nullptr)
        fail(sPath, "does not export halvane_register_processors");
    try {
        pRegister(&registrar);
    } catch (...) {
        fail(sPath, "failed to register its processors: " + currentFailure().description());
    }
}

} // namespace halvane::host::gdal
