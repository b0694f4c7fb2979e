#pragma once

#include "base/Failure.h"
#include "collection/dCollection.h"
#include "xml/dom/Dom.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace halvane {

/// The program's one wrapper round a DOM document: it loads, saves, queries, creates, inserts and merges.
///
/// An optional document or node that is nothing stands for the manager's own document; a document is handed
/// in as its document node. Texts taken by reference may be changed as stated. Queries yield "nothing" (an
/// empty node, -1, "", an empty collection) where there is nothing to find.
class ClsXMLManager {
public:
    using DOMReadyListener = std::function<void(const dom::DocumentPtr&)>;

    /// Holds a new, empty document.
    ClsXMLManager();
    ClsXMLManager(const ClsXMLManager&) = delete;
    ClsXMLManager& operator=(const ClsXMLManager&) = delete;
    ~ClsXMLManager();

    [[nodiscard]] std::int32_t GetErrNum() const noexcept { return lErrNum_; }
    [[nodiscard]] const std::string& GetErrMsg() const noexcept { return sErrMsg_; }
    void SetErrNum(std::int32_t vNewValue) noexcept { lErrNum_ = vNewValue; }
    void SetErrMsg(std::string vNewValue) { sErrMsg_ = std::move(vNewValue); }

    /// Nothing while the manager holds no document.
    [[nodiscard]] const dom::DocumentPtr& DOMDoc() const noexcept { return oXmlDoc_; }
    void setDOMDoc(dom::DocumentPtr vNewValue);
    /// Called with the document whenever it has completed loading; an empty function ends that.
    void onDOMReady(DOMReadyListener fnListener) { fnDOMReady_ = std::move(fnListener); }
    /// The name of the last file that was loaded without a parse error.
    [[nodiscard]] const std::string& fileName() const noexcept { return sFileName_; }

    // ---- Loading and saving

    /// Replaces the document by the one in a file, whose name is a path, or a URL that holds "http://" or
    /// "file:///". In any other name that holds "///" everything up to it is cut off, in the caller's
    /// variable too.
    /// @returns 0; for the name "", which loads nothing, the parse error code of the current document. What
    /// became of the loading stands in the parseError of DOMDoc.
    std::int16_t LoadXml(std::string& sFileName, bool bValidate);
    /// Puts a line break between adjacent tags, reloads the document from that text
    /// (dom::Document::reloadWithBreaks: listeners hear of it, the parse error is that load's) and writes it,
    /// to "XMLTest.xml" in the current folder when the name is "". Failures end it silently.
    /// @param bLast the document is let go afterwards (dom::Document::saveLast).
    void Save(std::string_view sFileName, dom::Node oDocument = {}, bool bLast = false,
              io::Durability durability = io::Durability::LeftToSystem);
    /// The same to a sink, of the manager's own document.
    void SaveTo(io::ByteSink& sink);
    /// The failure that ended the last Save or SaveTo; nothing when it went well.
    [[nodiscard]] const std::optional<Failure>& saveFailure() const noexcept { return saveFailure_; }

    // ---- Queries

    /// The number of nodes that "//" selects, which is no valid expression: -1.
    [[nodiscard]] std::int32_t TotalNodes(dom::Node RootSection = {}) const;
    /// The number of children of the first node of that name (or path); -1 when there is none. The name gets
    /// the prefix "//" unless it holds one.
    std::int32_t TotalNodesByName(std::string& sNodeName, dom::Node RootSection = {}) const;
    /// The first node of that name (or path) in the manager's document that has the attribute with exactly
    /// that value.
    /// @throws Failure DocumentFailure for a path that cannot be selected.
    [[nodiscard]] dom::Node GetNodeByAttributeValue(std::string_view sNodeName,
                                                    std::string_view sAttributeName,
                                                    std::string_view sValue) const;
    /// A collection that holds that one node, or nothing.
    /// @throws Failure as GetNodeByAttributeValue, and ObjectVariableNotSet without a document.
    [[nodiscard]] dCollectionPtr GetNodesByAttributeValue(std::string_view sNodeName,
                                                          std::string_view sAttributeName,
                                                          std::string_view sValue) const;
    [[nodiscard]] dom::Node GetChildNodeByName(dom::Node pNode, std::string_view sName) const;
    [[nodiscard]] dom::Node GetNodeByName(std::string_view sNodeName, dom::Node oDocument = {}) const;
    /// No list at all when there is no document.
    [[nodiscard]] dom::NodeList GetNodesByName(std::string_view sNodeName, dom::Node oDocument = {}) const;
    /// The names from the root element down to the node, joined by "/"; "" for nodes without a parent.
    [[nodiscard]] std::string GetFullPath(dom::Node pNode) const;
    /// The text of the first attribute of that name in any letter case; "" when there is none.
    [[nodiscard]] std::string GetNodeAttributeValueByAttName(dom::Node pXMLNode,
                                                             std::string_view sAttName) const;
    /// The depth of the deepest descendant, counted from `nDepth`.
    /// @throws Failure Overflow beyond 32767, ObjectVariableNotSet for no node.
    [[nodiscard]] std::int16_t GetChildNodeDepth(dom::Node pNode, std::int16_t nDepth) const;
    /// The node at a path of names joined by "/". Missing segments are created, in the manager's own
    /// document. Failures end up in the error number and message; the node found so far is returned.
    dom::Node GetSectionNode(std::string_view SectionPath, dom::Node oDocument = {});

    // ---- Creating and inserting

    /// A new, detached element with attributes; nothing for another type of node or a name that XML does not
    /// allow. An attribute that cannot be set is left out.
    [[nodiscard]] dom::Node CreateNode(std::string_view sName, const dCollection* dAttributes,
                                       std::int32_t intNodeType, dom::Node oDocument = {}) const;
    /// The node of that name under the path, created or (`bOverwrite`) given the attributes and moved to the
    /// end. One trailing "/" is removed from the path, in the caller's variable too. Failures end up in the
    /// error number and message; the result is then nothing.
    dom::Node InsertNode(std::string& strPath2ParentNode, std::string_view sNodeName, bool bOverwrite,
                         std::int16_t NodeType, const dCollection* dNodeAttributes, dom::Node oDocument = {});
    /// Appends the node, or its deep clone. @returns the appended node; nothing without a parent.
    dom::Node InsertNodeUnder(dom::Node pParentNode, dom::Node oNode, bool bClone) const;

    // ---- Merging. Nodes are moved out of the source. The source's children are walked as they were before.

    /// Copies attributes, then merges the children that agree in the attribute `KeyName` and appends the
    /// others.
    void UpdateNodes(dom::Node TargetNode, dom::Node SourceNode, std::string_view KeyName) const;
    void Merge(dom::Node oXmlDocIn, dom::Node oExistingDom, std::string_view KeyName) const;
    /// Copies attributes, then merges the children of the same name, or, where names repeat, those that agree
    /// in the attribute `KeyName`.
    void UpdateAllNodes(dom::Node TargetNode, dom::Node SourceNode, std::string_view KeyName) const;
    void MergeAll(dom::Node SourceDOM, dom::Node TargetDOM, std::string_view KeyName) const;
    /// Whether two children bear the same name, ignoring case.
    [[nodiscard]] bool HasDuplicateNodeNames(dom::Node pXMLNode) const;

private:
    void connect();
    void disconnect() noexcept;
    /// The argument, or the manager's own document.
    [[nodiscard]] dom::Node subject(dom::Node oGiven) const;
    dom::Node insert(std::string& strPath2ParentNode, std::string_view sNodeName, bool bOverwrite,
                     std::int16_t NodeType, const dCollection* dNodeAttributes, dom::Node oDocument);
    void findSection(std::string_view SectionPath, dom::Node oSubject, dom::Node& oFound);
    void recordFailure(const Failure& failure);

    dom::DocumentPtr oXmlDoc_;
    std::string sFileName_;
    std::int32_t lErrNum_ = 0;
    std::string sErrMsg_;
    std::uint64_t nConnection_ = 0;
    DOMReadyListener fnDOMReady_;
    std::optional<Failure> saveFailure_;
};

} // namespace halvane
