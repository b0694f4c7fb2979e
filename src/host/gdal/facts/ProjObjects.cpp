#include "host/gdal/facts/ProjObjects.h"

#include <cpl_conv.h>

#include <array>
#include <utility>

namespace halvane::host::gdal {

namespace {

using ContextPtr = Owned<PJ_CONTEXT, proj_context_destroy>;

ProjPtr unbound(ProjPtr pCrs) {
    if (pCrs != nullptr && proj_get_type(pCrs.get()) == PJ_TYPE_BOUND_CRS)
        pCrs.reset(proj_get_source_crs(projContext(), pCrs.get()));
    return pCrs;
}

} // namespace

// One for each thread: a context opens the library's database, which takes longer than any question to it.
PJ_CONTEXT* projContext() {
    thread_local const ContextPtr pContext = [] {
        ContextPtr pNew(proj_context_create());
        proj_log_level(pNew.get(), PJ_LOG_NONE);
        proj_context_set_enable_network(pNew.get(), 0);
        return pNew;
    }();
    return pContext.get();
}

bool isRegisterReadable() {
    // Of this system each edition of the register knows.
    thread_local const bool bReadable =
        ProjPtr(proj_create_from_database(projContext(), "EPSG", "4326", PJ_CATEGORY_CRS, 0, nullptr)) !=
        nullptr;
    return bReadable;
}

ProjPtr projOf(const OGRSpatialReference& reference) {
    const char* pAuthority = reference.GetAuthorityName(nullptr);
    const char* pCode = reference.GetAuthorityCode(nullptr);
    if (pAuthority != nullptr && pCode != nullptr) {
        // Many formats keep the code and lose the area of use and the number of the conversion.
        ProjPtr pKnown(
            proj_create_from_database(projContext(), pAuthority, pCode, PJ_CATEGORY_CRS, 0, nullptr));
        if (pKnown != nullptr)
            return pKnown;
    }
    char* pText = nullptr;
    const std::array<const char*, 2> aOptions{"FORMAT=WKT2_2019", nullptr};
    reference.exportToWkt(&pText, aOptions.data());
    const Owned<char, VSIFree> pWkt(pText);
    return ProjPtr(pWkt == nullptr ? nullptr : proj_create(projContext(), pWkt.get()));
}

ProjParts partsOf(ProjPtr pCrs) {
    pCrs = unbound(std::move(pCrs));
    const PJ_TYPE type = pCrs == nullptr ? PJ_TYPE_UNKNOWN : proj_get_type(pCrs.get());
    if (type == PJ_TYPE_VERTICAL_CRS)
        return {nullptr, std::move(pCrs)};
    if (type != PJ_TYPE_COMPOUND_CRS)
        return {std::move(pCrs), nullptr};
    return {unbound(ProjPtr(proj_crs_get_sub_crs(projContext(), pCrs.get(), 0))),
            unbound(ProjPtr(proj_crs_get_sub_crs(projContext(), pCrs.get(), 1)))};
}

} // namespace halvane::host::gdal
