#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane::oracle {

/// A node of the output: an element, a text, or the document itself (no name, no text).
struct OutputNode {
    std::string sName;
    std::string sText;
    std::vector<std::pair<std::string, std::string>> aAttributes;
    std::vector<OutputNode*> aChildren;
    OutputNode* pParent = nullptr;
    bool bText = false;
    bool bHeld = false;   ///< it is not there before it has content
    bool bInline = false; ///< no line breaks between the tags in it
    bool bCData = false;  ///< of a text
    std::string sBinding; ///< the address that the prefix "p" must stand for in it; "": any
};

/// How the document as a whole is written.
struct OutputForm {
    std::string sBreak = "\r\n";      ///< between adjacent tags
    std::size_t nIndent = 0;          ///< blanks a level behind a break
    std::vector<std::string> aHead{}; ///< before the root
};

/// The simplest document that can hold an export: nodes are only ever added, the text is made at the end.
/// Operations on no node throw Failure ObjectVariableNotSet.
class OutputTree {
public:
    [[nodiscard]] OutputNode* document() { return &document_; }
    /// A detached element; nothing for a name that XML does not allow.
    [[nodiscard]] OutputNode* newElement(std::string_view sName);
    OutputNode* append(OutputNode* pParent, OutputNode* pChild);
    void setText(OutputNode* pElement, std::string_view sText);
    /// Adds a text behind what the element holds.
    void appendText(OutputNode* pElement, std::string_view sText, bool bCData = false);
    /// The element, and those around it, are there from now on.
    void reveal(OutputNode* pElement);
    /// Adds the attribute behind the others when it is absent. A value is content, "" is none.
    void setAttribute(OutputNode* pElement, std::string_view sName, std::string_view sValue);
    /// The same for a value that is no content.
    void setConstantAttribute(OutputNode* pElement, std::string_view sName, std::string_view sValue);
    [[nodiscard]] static std::optional<std::string> attribute(const OutputNode* pElement,
                                                              std::string_view sName);
    static void removeAttribute(OutputNode* pElement, std::string_view sName);
    /// Fills an attribute that must be there.
    void fillAttribute(OutputNode* pElement, std::string_view sName, std::string_view sValue);

    /// The document as a file holds it.
    [[nodiscard]] std::string fileText(const OutputForm& form) const;
    /// Elements and attributes made.
    [[nodiscard]] std::size_t size() const noexcept { return nMade_; }

private:
    OutputNode document_;
    std::deque<OutputNode> aNodes_;
    std::size_t nMade_ = 0;
};

/// For element and attribute names: ASCII rules, all other characters are taken for letters.
[[nodiscard]] bool isAllowedName(std::string_view sName);

} // namespace halvane::oracle
