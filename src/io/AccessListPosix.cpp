#include "io/AccessListPosix.h"

#ifdef __linux__
#include <cerrno>
#include <cstddef>
#include <sys/xattr.h>
#include <vector>
#endif

namespace halvane::io {

#ifdef __linux__

AccessList keepAccessList(const FileDescriptor& file, const std::string& sTarget, bool bWanted) {
    constexpr const char* pAttribute = "system.posix_acl_access";
    const ssize_t nSize = ::getxattr(sTarget.c_str(), pAttribute, nullptr, 0);
    const bool bHas = nSize > 0 || (nSize < 0 && errno != ENODATA && errno != ENOTSUP);
    if (nSize > 0 && bWanted) {
        std::vector<std::byte> list(static_cast<std::size_t>(nSize));
        if (::getxattr(sTarget.c_str(), pAttribute, list.data(), list.size()) == nSize &&
            ::fsetxattr(file.get(), pAttribute, list.data(), list.size(), 0) == 0)
            return AccessList::Kept;
    }
    // A folder may hand a list of its own to each new file.
    static_cast<void>(::fremovexattr(file.get(), pAttribute) == 0);
    return bHas ? AccessList::Lost : AccessList::None;
}

#else

AccessList keepAccessList(const FileDescriptor& /*file*/, const std::string& /*sTarget*/, bool /*bWanted*/) {
    return AccessList::None;
}

#endif

} // namespace halvane::io
