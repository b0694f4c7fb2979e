#pragma once

#include "engine/GeometryProperty.h"
#include "engine/output/DecimalPlaces.h"
#include "engine/sources/Binding.h"
#include "xml/dom/Dom.h"
#include "xml/dom/NameTable.h"

#include <cstddef>
#include <deque>
#include <string>
#include <unordered_map>

namespace halvane {

class ClsXMLNode;
struct MergedSettings;

/// What a control element says of itself. Elements that say the same share it.
struct OwnSettings {
    OwnSettings(dom::Node oElement, dom::Document& oOutput);

    dom::Node oNode; ///< the first element that says it
    ControlAttributes attributes;
    std::string sTagName;   ///< the attribute "Name" without its blanks
    const dom::Name* pName; ///< of the output document; nothing when XML does not allow the name
    DecimalPlaces decimalPlaces;
    DataSourceKind kind;
    GeometryProperty geometryProperty;
    bool bTargetsAttribute;
    bool bRepeated;
    bool bNamesAttribute;
    bool bInheritsAll; ///< it says nothing but its name

    const OwnSettings* pNext = nullptr; ///< others that only look alike
    /// What it was merged to last: siblings that say the same inherit the same.
    mutable const MergedSettings* pLastParent = nullptr;
    mutable const MergedSettings* pLastMerged = nullptr;

private:
    OwnSettings(dom::Node oElement, const ClsXMLNode& record, dom::Document& oOutput);
};

/// What a control element says together with what it inherits. Elements that say the same below parents that
/// say the same may share it.
struct MergedSettings {
    MergedSettings(const ControlAttributes& merged, const Binding& binding);

    ControlAttributes attributes;
    const Binding* pBinding; ///< never nothing
    DecimalPlaces decimalPlaces;
    bool bNamesObjectId;
    bool bNamesField; ///< as a leaf: it writes a field of the row at hand, whatever is bound
};

/// What the elements of a control document say. A file of thousands of elements says few different things:
/// each is read, merged and kept once.
class ControlSettings {
public:
    /// @param oOutput the document that output names belong to.
    explicit ControlSettings(dom::Document& oOutput) : oOutput_(oOutput) {}

    [[nodiscard]] const OwnSettings& ownOf(dom::Node oElement);
    [[nodiscard]] const MergedSettings& merge(const OwnSettings& own, const MergedSettings& parent);
    /// Of a root, from what it inherits.
    [[nodiscard]] const MergedSettings& merge(const OwnSettings& own, const ControlAttributes& inherited);
    /// What a root hands down, where that is less than it has itself.
    [[nodiscard]] const MergedSettings& handedDown(const MergedSettings& root,
                                                   const ControlAttributes& attributes);

    /// What an element hands down that keeps its data source to itself.
    [[nodiscard]] const MergedSettings& withoutSource(const MergedSettings& merged);

    /// Whether any element calls an external processor.
    [[nodiscard]] bool asksProcessors() const noexcept { return bAsksProcessors_; }

private:
    const MergedSettings& keep(const ControlAttributes& merged, const Binding& binding);

    dom::Document& oOutput_;
    bool bAsksProcessors_ = false;
    // They keep their places.
    std::deque<OwnSettings> aOwn_;
    std::deque<MergedSettings> aMerged_;
    std::deque<Binding> aBindings_;
    std::unordered_map<std::size_t, const OwnSettings*> ownByHash_;
};

/// The attributes that a node has when its own ones go over those of its parent.
[[nodiscard]] ControlAttributes mergedAttributes(const ControlAttributes& own,
                                                 const ControlAttributes& parent);

} // namespace halvane
