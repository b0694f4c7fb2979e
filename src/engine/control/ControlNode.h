#pragma once

#include "engine/control/ControlSettings.h"
#include "engine/control/FoundField.h"
#include "xml/dom/Arena.h"
#include "xml/dom/Dom.h"
#include "xml/dom/NameTable.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

struct ExportState;
struct Inherited;
class SecondControl;
struct SecondEdition;
struct SecondNode;
struct SecondProblem;

/// What the name of an attribute may do to its element.
enum class AttributeName : std::uint8_t {
    Plain,       ///< nothing
    Taken,       ///< another node before it writes an attribute of the same name
    Contested,   ///< the same, but either may be absent
    Declaration, ///< it declares a prefix, or the default namespace
    SharesBase,  ///< it differs from another node's attribute by its prefix alone
};

/// One control element, read once: what it says of itself, what it inherits, and the name of its output.
/// Repeated nodes visit it once per item, so nothing of it is looked up or compared twice.
struct ControlNode {
    ControlNode(dom::Node oElement, const OwnSettings& ownSettings, const MergedSettings& mergedSettings)
        : oNode(oElement), own(ownSettings.attributes), merged(mergedSettings.attributes),
          pBinding(mergedSettings.pBinding), sTagName(ownSettings.sTagName), pName(ownSettings.pName),
          decimalPlaces(mergedSettings.decimalPlaces), ownDecimalPlaces(ownSettings.decimalPlaces),
          ownKind(ownSettings.kind), geometryProperty(ownSettings.geometryProperty),
          bTargetsAttribute(ownSettings.bTargetsAttribute), bRepeated(ownSettings.bRepeated),
          bNamesObjectId(mergedSettings.bNamesObjectId), bNamesAttribute(ownSettings.bNamesAttribute) {}

    dom::Node oNode;
    const ControlNode* pFirstChild = nullptr;
    const ControlNode* pNextSibling = nullptr;

    const ControlAttributes& own;
    /// Each inherited from the parent where the node's own is ""; `Target` is never inherited.
    const ControlAttributes& merged;
    const Binding* pBinding; ///< of the merged attributes; never nothing

    const std::string& sTagName;       ///< the attribute "Name" without its blanks
    const dom::Name* pName;            ///< of the output document; nothing when XML does not allow the name
    DecimalPlaces decimalPlaces;       ///< that the merged attributes ask for
    DecimalPlaces ownDecimalPlaces;    ///< that its own attribute asks for
    DataSourceKind ownKind;            ///< that its own `DataSource` asks for
    GeometryProperty geometryProperty; ///< its own
    bool bTargetsAttribute;            ///< its own `Target` is "Attribute"
    bool bRepeated;                    ///< its own `Entries` is "Multiple"
    AttributeName attributeName = AttributeName::Plain;
    bool bReadsRow = false;  ///< as a leaf: it reads the row at hand of the second edition, and binds nothing
    bool bReadsItem = false; ///< as a leaf: it reads the thing that the second edition's loop is at, likewise
    bool bMayBeAbsent = false;           ///< it has a condition of the second edition
    bool bHasText = false;               ///< it says a text, or a form of the shape, in the second edition
    bool bOfSecondEdition = false;       ///< it has an attribute of the second edition
    const SecondNode* pSecond = nullptr; ///< what these say, and what it declares; nothing: neither
    const Inherited* pInherited =
        nullptr;               ///< what it has of that from itself and from around; nothing: nothing
    bool bItemsStream = false; ///< of a repeated node: its items can be written straight to the spool
    bool bNamesField = false;  ///< a leaf that writes a field of the row at hand, whatever is bound
    bool bNamesObjectId;       ///< it identifies a feature's object identifier
    bool bNamesAttribute;      ///< its own `DataSource` asks for an attribute of a geometry's feature

    // What was found depends on who asks, so nodes do not share it.
    mutable FoundField valueField;
    mutable FoundField linkField;
    /// Among which an attribute named like the identifier has been looked for already.
    mutable std::uint64_t nFieldsWithIdentifier = 0;

    [[nodiscard]] bool hasChildren() const noexcept { return pFirstChild != nullptr; }
};

/// The children of a control node, in document order.
class ControlChildren {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = ControlNode;
        using difference_type = std::ptrdiff_t;
        using pointer = const ControlNode*;
        using reference = const ControlNode&;

        explicit Iterator(const ControlNode* pNode) : pNode_(pNode) {}
        const ControlNode& operator*() const { return *pNode_; }
        Iterator& operator++() {
            pNode_ = pNode_->pNextSibling;
            return *this;
        }
        friend bool operator==(const Iterator&, const Iterator&) = default;

    private:
        const ControlNode* pNode_;
    };

    explicit ControlChildren(const ControlNode& parent) : pFirst_(parent.pFirstChild) {}
    [[nodiscard]] Iterator begin() const { return Iterator(pFirst_); }
    [[nodiscard]] Iterator end() const { return Iterator(nullptr); }

private:
    const ControlNode* pFirst_;
};
[[nodiscard]] inline ControlChildren childrenOf(const ControlNode& parent) {
    return ControlChildren(parent);
}

/// A control document, read whole before the walk. It borrows the document.
class ControlTree {
public:
    /// What the root hands down.
    enum class Root {
        OfDocument, ///< fewer attributes than other nodes do: neither link nor measure field
        OfPart,     ///< everything
    };

    /// @param oOutput the document that output names belong to.
    /// @param inherited what the root inherits.
    /// @param pSecondEdition what the second edition is read with, if the control file is of it; may be
    /// nothing.
    ControlTree(dom::Node oRoot, Root rootRule, dom::Document& oOutput, bool bIgnoreComments,
                const ControlAttributes& inherited = {}, const SecondEdition* pSecondEdition = nullptr);
    ~ControlTree();
    ControlTree(const ControlTree&) = delete;
    ControlTree& operator=(const ControlTree&) = delete;

    [[nodiscard]] const ControlNode& root() const { return *pRoot_; }
    /// Whether any node calls an external processor.
    [[nodiscard]] bool asksProcessors() const noexcept { return settings_.asksProcessors(); }

    /// What of the second edition no export can follow.
    [[nodiscard]] const std::vector<SecondProblem>& problems() const noexcept;

private:
    /// The node that writes an element, and those that write its attributes.
    struct Writer {
        ControlNode& node;
        std::vector<ControlNode*> aAttributes = {};
    };

    ControlNode& add(dom::Node oNode, const OwnSettings& own, const MergedSettings& merged);
    /// @param writer of the element that the parent's attributes go to; its attributes grow by those of the
    /// children.
    void addChildren(ControlNode& parent, const MergedSettings& handedDown, Writer& writer);
    void addElement(ControlNode& element, const MergedSettings& handedDown);

    bool bIgnoreComments_;
    ControlSettings settings_;
    dom::Arena nodes_;                       ///< nothing of a node wants destroying
    std::unique_ptr<SecondControl> pSecond_; ///< nothing: the first edition
    ControlNode* pRoot_ = nullptr;
};

} // namespace halvane
