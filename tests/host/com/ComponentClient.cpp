#include "host/com/ComponentClient.h"

#include "base/Failure.h"
#include "base/com/Bstr.h"
#include "base/com/HResult.h"

#include <algorithm>
#include <vector>

namespace halvane::test {

using com::Bstr;
using com::ComPtr;
using com::require;
using com::Variant;

namespace {

/// Calls a member by its name. @param aArguments in order; what they refer to is changed by the call.
Variant callMember(IDispatch& object, std::string_view sMember, WORD nFlags,
                   std::vector<VARIANT> aArguments) {
    const Bstr sName(sMember);
    LPOLESTR pName = sName.get();
    DISPID id = DISPID_UNKNOWN;
    require(object.GetIDsOfNames(IID_NULL, &pName, 1, LOCALE_USER_DEFAULT, &id), sMember);
    std::reverse(aArguments.begin(), aArguments.end());
    DISPID idPut = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{aArguments.data(), nullptr, static_cast<UINT>(aArguments.size()), 0};
    if ((nFlags & DISPATCH_PROPERTYPUT) != 0) {
        parameters.rgdispidNamedArgs = &idPut;
        parameters.cNamedArgs = 1;
    }
    EXCEPINFO exception{};
    Variant result;
    const HRESULT hr =
        object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, nFlags, &parameters,
                      (nFlags & DISPATCH_PROPERTYPUT) != 0 ? nullptr : result.put(), &exception, nullptr);
    if (hr == DISP_E_EXCEPTION)
        throw com::failureOf(exception, sMember);
    require(hr, sMember);
    return result;
}

VARIANT variant(VARTYPE type) {
    VARIANT held;
    VariantInit(&held);
    V_VT(&held) = type;
    return held;
}

/// Lends its text.
VARIANT lent(const Bstr& sText) {
    VARIANT held = variant(VT_BSTR);
    V_BSTR(&held) = sText.get();
    return held;
}

VARIANT lent(IDispatch* pObject) {
    VARIANT held = variant(VT_DISPATCH);
    V_DISPATCH(&held) = pObject;
    return held;
}

VARIANT byReference(BSTR* pText) {
    VARIANT held = variant(VT_BYREF | VT_BSTR);
    V_BSTRREF(&held) = pText;
    return held;
}

VARIANT byReference(LONG* pNumber) {
    VARIANT held = variant(VT_BYREF | VT_I4);
    V_I4REF(&held) = pNumber;
    return held;
}

CLSID classIn(const std::string& sLibrary, std::wstring_view sClass) {
    ComPtr<ITypeLib> pTypes;
    require(LoadTypeLibEx(com::wideOf(sLibrary).c_str(), REGKIND_NONE, pTypes.put()), sLibrary);
    for (UINT n = 0; n < pTypes->GetTypeInfoCount(); ++n) {
        ComPtr<ITypeInfo> pType;
        Bstr sName;
        TYPEATTR* pAttributes = nullptr;
        require(pTypes->GetTypeInfo(n, pType.put()), "GetTypeInfo");
        require(pType->GetDocumentation(MEMBERID_NIL, sName.put(), nullptr, nullptr, nullptr),
                "GetDocumentation");
        require(pType->GetTypeAttr(&pAttributes), "GetTypeAttr");
        const bool bFound = pAttributes->typekind == TKIND_COCLASS && sName.get() == sClass;
        const CLSID clsid = pAttributes->guid;
        pType->ReleaseTypeAttr(pAttributes);
        if (bFound)
            return clsid;
    }
    throw Failure(FailureNumber::CannotCreateComponent, sLibrary + " has no such class");
}

} // namespace

ComponentClient::ComponentClient(const std::string& sLibrary)
    : sLibrary_(sLibrary), module_(LoadLibraryW(com::wideOf(sLibrary).c_str())) {
    if (module_ == nullptr)
        throw Failure(FailureNumber::FileNotFound, sLibrary + " cannot be loaded");
}

ComponentClient::~ComponentClient() {
    FreeLibrary(module_);
}

template<class Function>
Function* ComponentClient::entry(const char* sName) const {
    const FARPROC pEntry = GetProcAddress(module_, sName);
    if (pEntry == nullptr)
        throw Failure(FailureNumber::InternalError, std::string(sName) + " is not exported");
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(pEntry)); // an entry has no type of its own
}

bool ComponentClient::canUnload() const {
    return entry<HRESULT STDMETHODCALLTYPE()>("DllCanUnloadNow")() == S_OK;
}

ComPtr<IDispatch> ComponentClient::createExport() const {
    const CLSID clsid = classIn(sLibrary_, L"clsExport");
    ComPtr<IClassFactory> pFactory;
    require(entry<HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject")(
                clsid, IID_IClassFactory, pFactory.putVoid()),
            "DllGetClassObject");
    ComPtr<IDispatch> pExport;
    require(pFactory->CreateInstance(nullptr, IID_IDispatch, pExport.putVoid()), "CreateInstance");
    return pExport;
}

std::string ComponentClient::exportDocument(const Request& request) {
    const auto pExport = createExport();
    const Bstr sControlXML(request.sControlXML);
    const Bstr sOutPath(request.sOutPath);
    const Bstr sNodePath(request.sNodePath);
    BSTR sOutXML = Bstr(request.sOutXML).detach();
    BSTR sErrMsg = Bstr(std::string_view("not set")).detach();
    LONG lErrNum = -1;
    static_cast<void>(callMember(*pExport, "Export2XML", DISPATCH_METHOD,
                                 {lent(request.pDocument.get()), lent(sControlXML), lent(sOutPath),
                                  byReference(&sOutXML), lent(request.oXMLDom.get()), lent(sNodePath),
                                  byReference(&lErrNum), byReference(&sErrMsg)}));
    const Bstr sChangedName = Bstr::attach(sOutXML);
    const Bstr sMessage = Bstr::attach(sErrMsg);
    return lErrNum == 0 ? sMessage.utf8() : std::to_string(lErrNum) + ": " + sMessage.utf8();
}

ComPtr<IDispatch> loadSystemDocument(const std::string& sPath) {
    CLSID clsid{};
    require(CLSIDFromProgID(L"Msxml2.DOMDocument.6.0", &clsid), "Msxml2.DOMDocument.6.0");
    ComPtr<IDispatch> pDocument;
    require(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, pDocument.putVoid()),
            "Msxml2.DOMDocument.6.0");
    VARIANT no = variant(VT_BOOL);
    static_cast<void>(callMember(*pDocument, "async", DISPATCH_PROPERTYPUT, {no}));
    const Bstr sFile(sPath);
    const Variant loaded = callMember(*pDocument, "load", DISPATCH_METHOD, {lent(sFile)});
    if (V_BOOL(&loaded.get()) == VARIANT_FALSE)
        throw Failure(FailureNumber::DocumentFailure, sPath + " does not load");
    return pDocument;
}

} // namespace halvane::test
