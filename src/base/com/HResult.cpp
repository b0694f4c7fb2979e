#include "base/com/HResult.h"

#include "base/FindRow.h"
#include "base/com/Bstr.h"

#include <array>
#include <fmt/format.h>

namespace halvane::com {

namespace {

/// A script engine's: the error went to the engine's own surroundings, and only its being there comes here.
constexpr auto hrToldElsewhere = static_cast<HRESULT>(0x80020101);
constexpr HRESULT hrControl = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 0);

struct Translation {
    HRESULT hr;
    FailureNumber number;
};
constexpr std::array aTranslations = {
    Translation{E_INVALIDARG, FailureNumber::InvalidProcedureCall},
    Translation{E_OUTOFMEMORY, FailureNumber::OutOfMemory},
    Translation{E_NOTIMPL, FailureNumber::ActionNotSupported},
    Translation{E_NOINTERFACE, FailureNumber::PropertyOrMethodNotSupported},
    Translation{DISP_E_OVERFLOW, FailureNumber::Overflow},
    Translation{DISP_E_BADINDEX, FailureNumber::SubscriptOutOfRange},
    Translation{DISP_E_TYPEMISMATCH, FailureNumber::TypeMismatch},
    Translation{DISP_E_BADVARTYPE, FailureNumber::TypeMismatch},
    Translation{DISP_E_MEMBERNOTFOUND, FailureNumber::PropertyOrMethodNotSupported},
    Translation{DISP_E_UNKNOWNNAME, FailureNumber::PropertyOrMethodNotSupported},
    Translation{DISP_E_BADPARAMCOUNT, FailureNumber::InvalidProcedureCall},
    Translation{REGDB_E_CLASSNOTREG, FailureNumber::CannotCreateComponent},
    Translation{CO_E_CLASSSTRING, FailureNumber::CannotCreateComponent},
    Translation{hrToldElsewhere, FailureNumber::HostFailure},
};

/// Never 0 for a failure code.
std::int32_t numberOf(HRESULT hr) noexcept {
    if (const auto* pTranslation = findRow(aTranslations, hr, &Translation::hr))
        return static_cast<std::int32_t>(pTranslation->number);
    if (HRESULT_FACILITY(hr) == FACILITY_CONTROL && HRESULT_CODE(hr) != 0)
        return HRESULT_CODE(hr);
    return static_cast<std::int32_t>(hr);
}

std::string describe(HRESULT hr) {
    if (hr == hrToldElsewhere)
        return "the script failed, and told its own surroundings why";
    const std::int32_t lNumber = numberOf(hr);
    if (lNumber > 0) {
        std::string sText = Failure::of(static_cast<FailureNumber>(lNumber)).description();
        if (sText != Failure::of(FailureNumber::HostFailure).description())
            return sText;
    }
    const std::string sText = systemText(static_cast<DWORD>(hr));
    const std::string sCode = fmt::format("0x{:08X}", static_cast<std::uint32_t>(hr));
    return sText.empty() ? sCode : fmt::format("{} ({})", sText, sCode);
}

std::int32_t numberOf(const EXCEPINFO& exception) noexcept {
    if (exception.wCode != 0)
        return exception.wCode;
    return FAILED(exception.scode) ? numberOf(exception.scode)
                                   : static_cast<std::int32_t>(FailureNumber::HostFailure);
}

} // namespace

std::string systemText(DWORD nCode) {
    std::array<wchar_t, 512> aText{};
    const DWORD nLength = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                         nCode, 0, aText.data(), static_cast<DWORD>(aText.size()), nullptr);
    std::wstring_view sText(aText.data(), nLength);
    while (!sText.empty() && (sText.back() == L'\r' || sText.back() == L'\n' || sText.back() == L'.'))
        sText.remove_suffix(1);
    return utf8Of(sText);
}

Failure failureOf(HRESULT hr, std::string_view sOperation) {
    return {numberOf(hr), fmt::format("{}: {}", sOperation, describe(hr))};
}

Failure failureOf(EXCEPINFO& exception, std::string_view sOperation) {
    if (exception.pfnDeferredFillIn != nullptr)
        exception.pfnDeferredFillIn(&exception);
    const Bstr sDescription = Bstr::attach(exception.bstrDescription);
    const Bstr sSource = Bstr::attach(exception.bstrSource);
    const Bstr sHelpFile = Bstr::attach(exception.bstrHelpFile);
    exception.bstrDescription = exception.bstrSource = exception.bstrHelpFile = nullptr;
    std::string sText = sDescription.utf8();
    if (sText.empty())
        sText = FAILED(exception.scode) ? fmt::format("{}: {}", sOperation, describe(exception.scode))
                                        : fmt::format("{} failed", sOperation);
    return {numberOf(exception), std::move(sText)};
}

HRESULT resultOf(const Failure& failure) noexcept {
    const std::int32_t lNumber = failure.number();
    if (lNumber < 0)
        return static_cast<HRESULT>(lNumber);
    return hrControl | static_cast<HRESULT>(lNumber & 0xFFFF);
}

} // namespace halvane::com
