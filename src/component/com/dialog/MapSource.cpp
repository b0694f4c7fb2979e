#include "component/com/dialog/MapSource.h"

#include "base/com/Bstr.h"
#include "base/com/HResult.h"
#include "base/com/Variant.h"
#include "host/com/LateBound.h"

#include <optional>

namespace halvane::server {

namespace {

constexpr const wchar_t* sDefaultApplication = L"Halvane.HostApplication";
constexpr const wchar_t* sDocumentMember = L"MapDocument";

std::optional<DISPID> idOfDocument(IDispatch& application) {
    std::wstring sName = sDocumentMember;
    LPOLESTR psName = sName.data();
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(application.GetIDsOfNames(IID_NULL, &psName, 1, LOCALE_USER_DEFAULT, &id)) ||
        id == DISPID_UNKNOWN)
        return std::nullopt;
    return id;
}

com::ComPtr<IDispatch> documentOf(IDispatch& application, DISPID id) {
    DISPPARAMS none{};
    com::Variant result;
    EXCEPINFO exception{};
    const HRESULT hr = application.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                          result.put(), &exception, nullptr);
    const std::string sMember = com::utf8Of(std::wstring_view(sDocumentMember));
    if (hr == DISP_E_EXCEPTION)
        throw com::failureOf(exception, sMember);
    com::require(hr, sMember);
    return host::com::dispatchIn(result.get());
}

com::ComPtr<IDispatch> runningObject(const std::wstring& sProgId) {
    CLSID clsid{};
    com::ComPtr<IUnknown> pObject;
    if (FAILED(CLSIDFromProgID(sProgId.c_str(), &clsid)) ||
        FAILED(GetActiveObject(clsid, nullptr, pObject.put())))
        return {};
    return pObject.query<IDispatch>();
}

} // namespace

MapSource MapSource::named(const std::wstring& sName) {
    if (sName.empty())
        return MapSource(runningObject(sDefaultApplication));
    com::ComPtr<IDispatch> pObject = runningObject(sName);
    if (!pObject)
        com::require(CoGetObject(sName.c_str(), nullptr, IID_IDispatch, pObject.putVoid()),
                     "No running application \"" + com::utf8Of(std::wstring_view(sName)) + "\"");
    return MapSource(std::move(pObject));
}

com::ComPtr<IDispatch> MapSource::document() const {
    if (!pObject_)
        return {};
    const auto id = idOfDocument(*pObject_);
    return id ? documentOf(*pObject_, *id) : pObject_;
}

} // namespace halvane::server
