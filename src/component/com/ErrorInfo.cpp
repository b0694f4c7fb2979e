#include "component/com/ErrorInfo.h"

#include "base/com/Bstr.h"
#include "base/com/ComPtr.h"
#include "base/com/HResult.h"

namespace halvane::server {

namespace {

void leaveDescription(const Failure& failure, REFIID iid, std::string_view sSource) {
    com::ComPtr<ICreateErrorInfo> pNew;
    if (FAILED(CreateErrorInfo(pNew.put())))
        return;
    pNew->SetGUID(iid);
    pNew->SetSource(com::Bstr(sSource).get());
    pNew->SetDescription(com::Bstr(failure.description()).get());
    if (const auto pInfo = pNew.query<IErrorInfo>())
        SetErrorInfo(0, pInfo.get());
}

} // namespace

HRESULT raise(const Failure& failure, REFIID iid, std::string_view sSource) noexcept {
    try {
        leaveDescription(failure, iid, sSource);
    } catch (...) {
        // Without memory for the description the caller still has the code.
        SetErrorInfo(0, nullptr);
    }
    return com::resultOf(failure);
}

} // namespace halvane::server
