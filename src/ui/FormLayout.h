#pragma once

#include "ui/FormView.h"

#include <array>
#include <string>
#include <string_view>

namespace halvane::ui {

/// One row of the form: a label, its box and, in some, a button that fills the box.
struct FormRow {
    Box box;
    std::string_view sLabel; ///< the label's name
    std::string_view sCaption;
    char cMnemonic; ///< the letter of the caption that leads to the box
    std::string_view sBox;
    std::string_view sBrowse;     ///< the button's name; "" for none
    std::string_view sBrowseTold; ///< what the button does, for its tip and for screen readers
};

inline constexpr std::string_view sFormCaption = "Export to XML";
inline constexpr std::string_view sOkCaption = "OK";         // Command1
inline constexpr std::string_view sCancelCaption = "Cancel"; // Command2

/// The rows, top to bottom.
[[nodiscard]] const std::array<FormRow, 5>& formRows();

/// Whether a box's text at an OK is not remembered: an emptied node path gives way to the form's own.
[[nodiscard]] bool isForgotten(Box box, std::string_view sText);

/// The caption with "&" before the first mnemonic letter, as toolkits take it.
[[nodiscard]] std::string withMnemonic(std::string_view sCaption, char cMnemonic);

} // namespace halvane::ui
