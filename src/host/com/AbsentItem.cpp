#include "host/com/AbsentItem.h"

#include "base/com/Bstr.h"
#include "base/com/Counted.h"
#include "base/com/HResult.h"

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <utility>

namespace halvane::host::com {

namespace {

/// An external processor may keep the object for longer than the component is used.
void keepModule() noexcept {
    static const int nAnchor = 0;
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<const wchar_t*>(&nAnchor), &hModule);
}

class AbsentItem final : public halvane::com::Counted<IDispatch> {
public:
    AbsentItem(Failure failure, bool bNameless) : failure_(std::move(failure)), bNameless_(bNameless) {
        keepModule();
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pnCount) override {
        if (pnCount == nullptr)
            return E_POINTER;
        *pnCount = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT /*nInfo*/, LCID /*lcid*/, ITypeInfo** /*ppInfo*/) override {
        return DISP_E_BADINDEX;
    }
    /// It has every member, and none that answers.
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*iid*/, LPOLESTR* asNames, UINT nNames, LCID /*lcid*/,
                                            DISPID* alMembers) override {
        if (asNames == nullptr || alMembers == nullptr || nNames != 1)
            return E_INVALIDARG;
        const std::wstring_view sName(*asNames);
        *alMembers = sName == L"Name" || sName == L"DatasetName" ? idName : idOther;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID lMember, REFIID /*iid*/, LCID /*lcid*/, WORD /*wFlags*/,
                                     DISPPARAMS* /*pArguments*/, VARIANT* /*pResult*/, EXCEPINFO* pException,
                                     UINT* /*pnWrongArgument*/) override {
        if (bNameless_ && lMember == idName)
            return S_OK; // an empty value
        if (pException == nullptr)
            return halvane::com::resultOf(failure_);
        *pException = {};
        pException->scode = halvane::com::resultOf(failure_);
        pException->bstrDescription = halvane::com::Bstr(failure_.description()).detach();
        return DISP_E_EXCEPTION;
    }

private:
    static constexpr DISPID idName = 1;
    static constexpr DISPID idOther = 2;

    Failure failure_;
    bool bNameless_;
};

} // namespace

ComPtr<IDispatch> absentItem(Failure failure, Absence absence) {
    return halvane::com::makeObject<AbsentItem>(std::move(failure), absence != Absence::Fails)
        .query<IDispatch>();
}

ComPtr<IDispatch> objectOfItem(const Variant& item, std::size_t nItem, const ObjectKind& kind,
                               Absence absence) {
    std::string_view sIs = "empty";
    try {
        auto pDispatch = dispatchIn(item.get());
        if (pDispatch || absence == Absence::Allowed)
            return pDispatch;
    } catch (const Failure&) {
        sIs = "no object";
    }
    return absentItem(
        {FailureNumber::TypeMismatch,
         fmt::format("Item {} of the host application's list, counted from 0, is {}; a {} belongs there",
                     nItem, sIs, kind.sName)},
        absence);
}

} // namespace halvane::host::com
