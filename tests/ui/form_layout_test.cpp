#include "ui/FormLayout.h"

#include <gmock/gmock.h>

#include <cctype>
#include <set>
#include <vector>

namespace halvane::test {
namespace {

using ui::formRows;
using ui::withMnemonic;

TEST(FormLayout, NamesItsRowsTopToBottom) {
    std::vector<std::vector<std::string_view>> rows;
    for (const auto& row : formRows())
        rows.push_back({row.sLabel, row.sCaption, row.sBox, row.sBrowse});
    const std::vector<std::vector<std::string_view>> expected{
        {"Label1", "Control XML File", "Text1", "Command3"},
        {"Label2", "Output Directory", "Text2", "Command4"},
        {"Label3", "Output XML File Name", "Text3", ""},
        {"Label4", "Optional XML", "Text4", "Command5"},
        {"Label5", "XML Node Path", "Text5", ""}};
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(ui::sFormCaption, "Export to XML");
    EXPECT_EQ(ui::sOkCaption, "OK");
    EXPECT_EQ(ui::sCancelCaption, "Cancel");
}

TEST(FormLayout, GivesEachLabelALetterOfItsOwn) {
    std::set<char> letters;
    for (const auto& row : formRows()) {
        EXPECT_NE(row.sCaption.find(row.cMnemonic), std::string_view::npos) << row.sCaption;
        EXPECT_TRUE(letters.insert(static_cast<char>(std::tolower(row.cMnemonic))).second) << row.sCaption;
    }
}

TEST(FormLayout, MarksTheFirstMnemonicLetterOfACaption) {
    EXPECT_EQ(withMnemonic("Optional XML", 'X'), "Optional &XML");
    EXPECT_EQ(withMnemonic("Control", 'C'), "&Control");
    EXPECT_EQ(withMnemonic("Control", 'z'), "Control");
}

} // namespace
} // namespace halvane::test
