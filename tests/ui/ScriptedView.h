#pragma once

#include "ui/FormView.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {

/// A window without a screen: it answers as the test says and writes down what it was asked to do.
class ScriptedView : public ui::FormView {
public:
    [[nodiscard]] std::string text(ui::Box box) const override {
        const auto pText = boxes.find(box);
        return pText == boxes.end() ? "" : pText->second;
    }
    void setText(ui::Box box, const std::string& sText) override { boxes[box] = sText; }
    void MsgBox(const std::string& sText) override {
        messages.push_back(sText);
        boxesAtMessage = boxes;
    }
    void setFocusTo(ui::Box box) override { focused.push_back(box); }
    void setMousePointer(ui::MousePointer pointer) override { pointers.push_back(static_cast<int>(pointer)); }
    [[nodiscard]] std::optional<std::string> ShowOpen(std::string_view sFilter) override {
        filters.emplace_back(sFilter);
        return sChosenFile;
    }
    [[nodiscard]] std::optional<ui::BrowsedItem> Browse(std::string_view sTitle) override {
        browseTitles.emplace_back(sTitle);
        return chosenItem;
    }
    void Unload() override { ++lUnloaded; }

    // What it answers.
    std::map<ui::Box, std::string> boxes;
    std::optional<std::string> sChosenFile;
    std::optional<ui::BrowsedItem> chosenItem;

    // What it was asked.
    std::vector<std::string> messages;
    std::map<ui::Box, std::string> boxesAtMessage;
    std::vector<ui::Box> focused;
    std::vector<int> pointers;
    std::vector<std::string> filters;
    std::vector<std::string> browseTitles;
    int lUnloaded = 0;
};

} // namespace halvane::test
