#include "ui/FormLayout.h"

#include "base/Text.h"

namespace halvane::ui {

const std::array<FormRow, 5>& formRows() {
    static constexpr std::array<FormRow, 5> rows{{
        {Box::Text1, "Label1", "Control XML File", 'C', "Text1", "Command3", "Choose the control XML file"},
        {Box::Text2, "Label2", "Output Directory", 'D', "Text2", "Command4", "Choose the output directory"},
        {Box::Text3, "Label3", "Output XML File Name", 'F', "Text3", "", ""},
        {Box::Text4, "Label4", "Optional XML", 'X', "Text4", "Command5", "Choose the optional XML file"},
        {Box::Text5, "Label5", "XML Node Path", 'N', "Text5", "", ""},
    }};
    return rows;
}

bool isForgotten(Box box, std::string_view sText) {
    return box == Box::Text5 && trimBlanks(sText).empty();
}

std::string withMnemonic(std::string_view sCaption, char cMnemonic) {
    std::string sMarked(sCaption);
    if (const auto lPosition = sMarked.find(cMnemonic); lPosition != std::string::npos)
        sMarked.insert(lPosition, 1, '&');
    return sMarked;
}

} // namespace halvane::ui
