#include "ui/win32/RememberedBoxes.h"

#include "base/com/Bstr.h"
#include "ui/FormLayout.h"
#include "ui/win32/Windows.h"

#include <optional>

namespace halvane::ui::win32 {

namespace {

std::optional<std::string> textAt(const std::wstring& sKey, const std::wstring& sName) {
    DWORD nBytes = 0;
    if (RegGetValueW(HKEY_CURRENT_USER, sKey.c_str(), sName.c_str(), RRF_RT_REG_SZ, nullptr, nullptr,
                     &nBytes) != ERROR_SUCCESS)
        return std::nullopt;
    std::wstring sText(nBytes / sizeof(wchar_t), L'\0');
    if (RegGetValueW(HKEY_CURRENT_USER, sKey.c_str(), sName.c_str(), RRF_RT_REG_SZ, nullptr, sText.data(),
                     &nBytes) != ERROR_SUCCESS)
        return std::nullopt;
    return com::utf8Of(std::wstring_view(sText.c_str()));
}

} // namespace

void RememberedBoxes::remember(const FormView& view) const {
    for (const FormRow& row : formRows()) {
        const std::wstring sText = com::wideOf(view.text(row.box));
        if (isForgotten(row.box, view.text(row.box))) {
            RegDeleteKeyValueW(HKEY_CURRENT_USER, sKey_.c_str(), com::wideOf(row.sBox).c_str());
            continue;
        }
        RegSetKeyValueW(HKEY_CURRENT_USER, sKey_.c_str(), com::wideOf(row.sBox).c_str(), REG_SZ,
                        sText.c_str(), static_cast<DWORD>((sText.size() + 1) * sizeof(wchar_t)));
    }
}

void RememberedBoxes::recall(FormView& view) const {
    for (const FormRow& row : formRows())
        if (const auto sText = textAt(sKey_, com::wideOf(row.sBox)))
            view.setText(row.box, *sText);
}

} // namespace halvane::ui::win32
