#include "component/com/ParameterType.h"

#include "base/com/ComPtr.h"
#include "base/com/HResult.h"

namespace halvane::server {

namespace {

IID interfaceOf(ITypeInfo& info, HREFTYPE hReference) {
    com::ComPtr<ITypeInfo> pReferred;
    com::require(info.GetRefTypeInfo(hReference, pReferred.put()), "ITypeInfo.GetRefTypeInfo");
    TYPEATTR* pAttributes = nullptr;
    com::require(pReferred->GetTypeAttr(&pAttributes), "ITypeInfo.GetTypeAttr");
    const IID iid = pAttributes->guid;
    pReferred->ReleaseTypeAttr(pAttributes);
    return iid;
}

ParameterType objectType(ITypeInfo& info, HREFTYPE hReference) {
    return {VT_DISPATCH, false, interfaceOf(info, hReference)};
}

ParameterType byReference(ParameterType type) {
    type.bByReference = true;
    return type;
}

} // namespace

ParameterType parameterTypeOf(ITypeInfo& info, const TYPEDESC& description) {
    switch (description.vt) {
    case VT_PTR:
        // A pointer to an interface is how an object is passed by value.
        if (description.lptdesc->vt == VT_USERDEFINED)
            return objectType(info, description.lptdesc->hreftype);
        return byReference(parameterTypeOf(info, *description.lptdesc));
    case VT_SAFEARRAY: {
        ParameterType type = parameterTypeOf(info, *description.lptdesc);
        type.vt = static_cast<VARTYPE>(type.vt | VT_ARRAY);
        return type;
    }
    default:
        return {description.vt, false, IID_IDispatch};
    }
}

} // namespace halvane::server
