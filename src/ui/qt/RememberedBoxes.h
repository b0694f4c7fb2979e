#pragma once

#include "ui/FormView.h"

namespace halvane::ui::qt {

// What this person had in the boxes at the last OK, kept with the other settings of the account.

void rememberBoxes(const FormView& view);
/// Fills the boxes; those never remembered stay as they are.
void recallBoxes(FormView& view);

} // namespace halvane::ui::qt
