#pragma once

#include "ui/FormView.h"

#include <string>

namespace halvane::ui::win32 {

/// What this person had in the boxes at the last OK, kept in the registry of the account.
class RememberedBoxes {
public:
    /// @param sKey beneath HKEY_CURRENT_USER.
    explicit RememberedBoxes(std::wstring sKey = L"Software\\Halvane\\dialog") : sKey_(std::move(sKey)) {}

    /// What the registry refuses is not remembered.
    void remember(const FormView& view) const;
    /// Fills the boxes; those never remembered stay as they are.
    void recall(FormView& view) const;

private:
    std::wstring sKey_;
};

} // namespace halvane::ui::win32
