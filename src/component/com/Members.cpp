#include "component/com/Members.h"

#include "base/com/ComPtr.h"
#include "base/com/HResult.h"
#include "component/com/HeldVariant.h"

namespace halvane::server {

namespace {

com::ComPtr<IEnumVARIANT> enumeratorOf(IDispatch& collection) {
    DISPPARAMS noArguments{};
    com::Variant result;
    com::require(collection.Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                                   DISPATCH_METHOD | DISPATCH_PROPERTYGET, &noArguments, result.put(),
                                   nullptr, nullptr),
                 "_NewEnum");
    auto pEnumerator = objectIn(result.get()).query<IEnumVARIANT>();
    if (!pEnumerator)
        throw Failure::of(FailureNumber::PropertyOrMethodNotSupported);
    return pEnumerator;
}

} // namespace

std::unique_ptr<ValueCollection> membersOf(IDispatch* pCollection) {
    if (pCollection == nullptr)
        return nullptr;
    auto pMembers = std::make_unique<ValueCollection>();
    const auto pEnumerator = enumeratorOf(*pCollection);
    for (;;) {
        com::Variant member;
        ULONG nFetched = 0;
        const HRESULT hr = pEnumerator->Next(1, member.put(), &nFetched);
        com::require(hr, "IEnumVARIANT.Next");
        if (hr != S_OK || nFetched != 1)
            return pMembers;
        pMembers->add(valueOf(member.get()));
    }
}

} // namespace halvane::server
