// The walk over the control nodes.

#include "oracle/Interpreter.h"

#include "base/Text.h"
#include "host/Map.h"

#include <algorithm>
#include <array>

namespace halvane::oracle {

// ---- Procedures and their failures ----

/// What fails while a data source is resolved is told once a visit of the node.
void Interpreter::tell(const Failure& failure, const ControlNode* pNode) {
    if (failure.description().starts_with("shape of row"))
        noteTurn("a shape that cannot be read");
    if (failure.description() == "the point lies outside the world")
        noteTurn("a point without a place in the reference");
    const ToldFailure told{failure.number(), failure.description(), pNode == nullptr ? 0 : pNode->nLine};
    outcome_.lErrorNumber = failure.number();
    outcome_.sErrorMessage = failure.description();
    if (bResolving_) {
        auto& aOfVisit = sourceFailures_[pNode];
        if (std::find(aOfVisit.begin(), aOfVisit.end(), told) != aOfVisit.end())
            return;
        aOfVisit.push_back(told);
    }
    outcome_.aFailures.push_back(told);
}

/// A failure ends the procedure and nothing else; it is told at the procedure's node.
void Interpreter::procedure(Node node, const std::function<void()>& body) {
    aActive_.push_back(&node);
    try {
        body();
    } catch (const Cancelled&) {
        throw;
    } catch (const ChildFailure& failure) {
        tell(failure.failure, failure.pChild);
    } catch (...) {
        tell(currentFailure(), &node);
    }
    aActive_.pop_back();
    if (aActive_.empty() || aActive_.back() != &node)
        sourceFailures_.erase(&node);
}

void Interpreter::tellItem(Node repeatedNode) {
    outcome_.aItemLines.push_back(repeatedNode.nLine);
    if (++lItems_ == setting_.lCancelAtItem)
        throw Cancelled{};
}

void Interpreter::countItem(std::int64_t& lCounter) const {
    if (lCounter >= setting_.lItemLimit)
        throw Failure(FailureNumber::Overflow, "Overflow: more items than the limit allows");
    ++lCounter;
}

// ---- The export ----

Outcome Interpreter::run(const ControlNode& root) {
    pMapDoc_ = setting_.pMapDocument;
    pMap_ = pMapDoc_ == nullptr ? nullptr : pMapDoc_->focusMap();
    try {
        runEntry(root);
    } catch (const Cancelled&) {
        outcome_.sNotSavedReason = "the export was cancelled";
    } catch (const ChildFailure& failure) {
        tell(failure.failure, failure.pChild);
        outcome_.sNotSavedReason = failure.failure.description();
    } catch (...) {
        tell(currentFailure(), &root);
        outcome_.sNotSavedReason = outcome_.sErrorMessage;
    }
    reach_.nOutputNodes = tree_.size();
    return outcome_;
}

void Interpreter::runEntry(Node root) {
    pRoot_ = &root;
    bSecond_ = setting_.pSecondEdition != nullptr && root.get("xmlns:h") == sSecondEditionNamespace;
    OutputNode* const pOutputRoot = tree_.append(tree_.document(), tree_.newElement(root.outputName()));
    if (bSecond_)
        declareNamespaces(root, pOutputRoot);
    bindPrefixes(root, "");
    const auto aChildren = childrenOf(root);
    if (aChildren.empty()) {
        outcome_.sNotSavedReason = "the control file's root has no children";
        return;
    }
    const Attributes attributes = rootAttributes(root);
    if (!root.get("DataLocation").empty() && root.get("DataFrame").empty())
        pMapDoc_ = nullptr;
    for (const ControlNode* pChild : aChildren)
        exportChild({*pChild, pOutputRoot, &attributes, nullptr, nullptr, Place::Walk});
    outcome_.sFile = tree_.fileText(formOf(root));
}

Interpreter::Attributes Interpreter::rootAttributes(Node root) {
    Attributes attributes;
    for (const char* sName : {"DataSource", "DataFrame", "Identity", "IdentityValue", "Target", "Entries",
                              "DataProperty", "DataLocation", "DecimalPlace"})
        attributes[sName] = root.get(sName);
    return attributes;
}

Interpreter::Attributes Interpreter::merged(Node node, const Attributes* pParent) {
    Attributes attributes;
    for (const char* sName : {"DataSource", "DataFrame", "DataProperty", "Identity", "IdentityValue",
                              "Entries", "DataLocation", "LinkField", "MeasureField", "DecimalPlace"}) {
        std::string sValue = node.get(sName);
        if (sValue.empty() && pParent != nullptr && pParent->count(sName) != 0)
            sValue = pParent->at(sName);
        attributes[sName] = sValue;
    }
    attributes["Target"] = node.get("Target");
    const bool bInRelated =
        pParent != nullptr && (pParent->at("DataSource") == "RelatedTable" ||
                               (pParent->contains("InRelated") && !pParent->at("InRelated").empty()));
    attributes["InRelated"] = bInRelated ? "yes" : "";
    return attributes;
}

/// @param bMayRepeat whether the node's own "Multiple" is heeded.
void Interpreter::walk(Node node, OutputNode* pOut, const Attributes* pParent, const host::GisRowPtr& pRow,
                       const host::GisRowPtr& pRecord, bool bMayRepeat) {
    procedure(node, [&] {
        const Attributes attributes = merged(node, pParent);
        const auto aChildren = childrenOf(node);
        if (!aChildren.empty() || (!readsRow(attributes) && !readsThing(attributes)))
            bind(attributes, pParent);
        if (bMayRepeat && node.get("Entries") == "Multiple") {
            exportMultiple(node, pOut, attributes, pRow, pRecord, pParent);
        } else if (aChildren.empty()) {
            exportValue(node, pOut, attributes, pRow, pRecord);
        } else {
            const Attributes down = handedDown(node, attributes);
            const auto fnExport = [&](Node child) {
                exportChild({child, pOut, &down, pRow, pRecord, Place::Walk});
            };
            forEachChild(node, pOut, attributes, fnExport);
        }
    });
}

void Interpreter::exportChild(const Child& child) {
    if (isSecond(child.node)) {
        writeSecond(child);
        return;
    }
    // A repeated child of a feature is an element, whatever its target.
    const bool bRepeated = child.place == Place::Feature && child.node.get("Entries") == "Multiple";
    fill(child, bRepeated ? tree_.append(child.pOut, newElement(child.node, child.node.outputName()))
                          : outputForChild(child.node, child.pOut));
}

/// A feature's children may be repeated again, a record's not.
void Interpreter::fill(const Child& child, OutputNode* pTarget) {
    const auto& [node, pOut, pParent, pRow, pRecord, place] = child;
    if (place == Place::Walk) {
        walk(node, pTarget, pParent, pRow, pRecord, true);
    } else if (place == Place::Feature && node.get("Entries") == "Multiple") {
        noteTurn("a repeated node inside a feature");
        exportMultiple(node, pTarget, merged(node, pParent), pRow, nullptr, nullptr);
    } else if (childrenOf(node).empty()) {
        exportValue(node, pTarget, *pParent, pRow, pRecord);
    } else {
        noteTurn(place == Place::Feature ? "a group inside a feature" : "a group inside a record");
        walk(node, pTarget, pParent, pRow, pRecord, place == Place::Feature);
    }
}

/// A text of the node's own stands behind its attributes and before its elements.
void Interpreter::forEachChild(Node node, OutputNode* pOut, const Attributes& attributes,
                               const std::function<void(Node)>& visit) {
    const bool bText = hasText(node);
    for (const ControlNode* pChild : childrenOf(node)) {
        if (!bText || pChild->targetsAttribute())
            visit(*pChild);
    }
    if (!bText)
        return;
    writeOwnText(node, pOut, attributes);
    for (const ControlNode* pChild : childrenOf(node)) {
        if (!pChild->targetsAttribute())
            visit(*pChild);
    }
}

void Interpreter::bind(const Attributes& attributes, const Attributes* pParent) {
    bindMap(attributes, pParent);
    const Value result = resolve(attributes);
    const std::string& sKind = attributes.at("DataSource");
    if (sKind != "Map" && sKind != "TinWorkspace")
        keep(sKind, result);
}

void Interpreter::bindMap(const Attributes& attributes, const Attributes* pParent) {
    const std::string& sFrame = attributes.at("DataFrame");
    const std::string& sLocation = attributes.at("DataLocation");
    host::GisMapPtr pMap;
    if (trimBlanks(sLocation).empty() && !trimBlanks(sFrame).empty()) {
        pMap = mapNamed(sFrame);
    } else if (pMapDoc_ != nullptr) {
        if (sLocation.empty() || !sFrame.empty())
            pMap = pShownMap_ != nullptr ? pShownMap_ : pMapDoc_->focusMap();
        else if (pParent == nullptr || pParent->at("DataLocation").empty())
            pLayer_ = nullptr; // a layer of the map is not the location's
    }
    pMap_ = pMap;
    if (pMap != nullptr)
        keepObject("DataFrame", pMap);
}

/// Parts are there for the second edition alone.
std::vector<const ControlNode*> Interpreter::childrenOf(Node node) const {
    if (!bSecond_ && node.has("h:Include"))
        return {};
    return controlChildren(node, setting_.bIgnoreComments);
}

OutputNode* Interpreter::outputForChild(Node child, OutputNode* pParent) {
    const std::string sName = child.outputName();
    try {
        if (child.targetsAttribute()) {
            tree_.setAttribute(pParent, sName, "");
            return pParent;
        }
        OutputNode* const pElement = newElement(child, sName);
        if (pElement == nullptr)
            throw Failure(FailureNumber::ObjectVariableNotSet,
                          "no element can be made: \"" + sName + "\" is not a name that XML allows");
        return tree_.append(pParent, pElement);
    } catch (const Failure& failure) {
        throw ChildFailure{failure, &child};
    }
}

void Interpreter::writeChild(Node node, OutputNode* pOut, const std::string& sValue) {
    const std::string sName = node.outputName();
    if (node.targetsAttribute()) {
        tree_.setAttribute(pOut, sName, sValue);
        return;
    }
    OutputNode* const pElement = newElement(node, sName);
    tree_.setText(pElement, sValue);
    tree_.append(pOut, pElement);
}

void Interpreter::noteWritten(const std::string& sKind, const std::string& sValue) {
    if (!sValue.empty())
        ++reach_.writtenByKind[sKind];
}

} // namespace halvane::oracle
