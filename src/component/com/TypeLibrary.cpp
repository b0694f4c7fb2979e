#include "component/com/TypeLibrary.h"

#include "base/com/HResult.h"
#include "component/com/ServerUse.h"

#include <mutex>

namespace halvane::server {

namespace {

std::mutex typeLibraryMutex;
com::ComPtr<ITypeLib> pTypeLibrary;

} // namespace

com::ComPtr<ITypeInfo> typeInfoOf(REFIID iid) {
    const std::scoped_lock lock(typeLibraryMutex);
    if (!pTypeLibrary)
        com::require(LoadTypeLibEx(serverPath().c_str(), REGKIND_NONE, pTypeLibrary.put()), "LoadTypeLibEx");
    com::ComPtr<ITypeInfo> pInfo;
    com::require(pTypeLibrary->GetTypeInfoOfGuid(iid, pInfo.put()), "ITypeLib.GetTypeInfoOfGuid");
    return pInfo;
}

void releaseTypeLibrary() noexcept {
    const std::scoped_lock lock(typeLibraryMutex);
    pTypeLibrary = nullptr;
}

} // namespace halvane::server
