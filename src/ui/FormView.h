#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::ui {

/// The boxes of the form, top to bottom.
enum class Box {
    Text1, ///< full path of the control file
    Text2, ///< output folder
    Text3, ///< output file name, without a folder
    Text4, ///< full path of an existing XML document; may stay empty
    Text5, ///< node path into that document
};

/// The screen's pointers that the form sets, by their published numbers.
enum class MousePointer : std::int32_t { Default = 0, Hourglass = 11 };

/// What a person chose while browsing for a folder.
struct BrowsedItem {
    std::string sPath;
    bool bFolder = false;
};

/// What the form needs of its window. Every operation that asks the person something returns when it has the
/// answer. Texts are UTF-8.
class FormView {
public:
    FormView() = default;
    FormView(const FormView&) = delete;
    FormView& operator=(const FormView&) = delete;
    virtual ~FormView() = default;

    [[nodiscard]] virtual std::string text(Box box) const = 0;
    virtual void setText(Box box, const std::string& sText) = 0;

    /// A plain message box with an OK button.
    virtual void MsgBox(const std::string& sText) = 0;
    virtual void setMousePointer(MousePointer pointer) = 0;
    /// Leads the keyboard to a box.
    virtual void setFocusTo(Box box) = 0;

    /// CommonDialog1's open-file dialog. @param sFilter as CommonDialogFilter.h reads it.
    /// @returns the path chosen; nothing when the dialog was left without a choice.
    [[nodiscard]] virtual std::optional<std::string> ShowOpen(std::string_view sFilter) = 0;
    /// The browse dialog for choosing a folder, which may let other things be chosen too.
    /// @returns nothing when the dialog was left without a choice.
    [[nodiscard]] virtual std::optional<BrowsedItem> Browse(std::string_view sTitle) = 0;

    /// Closes the window for good.
    virtual void Unload() = 0;
};

} // namespace halvane::ui
