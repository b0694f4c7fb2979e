#pragma once

// The document tree: the semantics of the published DOM interfaces over nodes kept in an arena.
//
// Ownership. A Document owns its nodes; a Node is a borrowed handle, as cheap as a pointer. A handle stays
// valid as long as the document lives that the node belongs to (a node moved into another document belongs to
// that one) and the node has not been given back by sealing or Document::release. A default-constructed
// handle refers to nothing: every operation but the tests then throws Failure ObjectVariableNotSet.
//
// Threads. A document belongs to one thread.

#include "base/Failure.h"
#include "base/Value.h"
#include "io/Durability.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::io {
class ByteSink;
} // namespace halvane::io

namespace halvane::dom {

/// The published numbering of node types.
enum class NodeType : std::int32_t {
    Element = 1,
    Attribute = 2,
    Text = 3,
    CDataSection = 4,
    EntityReference = 5,
    Entity = 6,
    ProcessingInstruction = 7,
    Comment = 8,
    Document = 9,
    DocumentType = 10,
    DocumentFragment = 11,
    Notation = 12,
};

struct Name;
struct NodeData;
struct Layout;
class Document;
class Node;
class NodeList;
class NamedNodeMap;
using DocumentPtr = std::shared_ptr<Document>;

/// A handle on one node: element, attribute, text, ... or the document itself (nodeType Document).
class Node {
public:
    Node() = default;
    explicit Node(NodeData* pData) : pData_(pData) {}

    explicit operator bool() const noexcept { return pData_ != nullptr; }
    /// The same node, not an equal one.
    friend bool operator==(const Node&, const Node&) = default;

    [[nodiscard]] NodeType nodeType() const;
    /// Of an element: where the document is laid out between its tags, there are no breaks between those in
    /// it.
    void setInline() const;
    /// The qualified name; "#document", "#text", "#comment", "#cdata-section" for the unnamed kinds.
    [[nodiscard]] std::string_view nodeName() const;
    /// The name without its prefix.
    [[nodiscard]] std::string_view baseName() const;
    /// The value of an attribute, text, comment, CDATA section or processing instruction; "" for other kinds.
    [[nodiscard]] std::string_view nodeValue() const;

    /// Nothing for the document, for attributes and for detached nodes.
    [[nodiscard]] Node parentNode() const;
    [[nodiscard]] bool hasChildNodes() const;
    [[nodiscard]] Node firstChild() const;
    [[nodiscard]] Node lastChild() const;
    [[nodiscard]] Node nextSibling() const;
    [[nodiscard]] Node previousSibling() const;
    /// A live list: it shows later changes of the children.
    [[nodiscard]] NodeList childNodes() const;

    /// Absent (converts to false) for every kind but elements.
    [[nodiscard]] NamedNodeMap attributes() const;
    /// The value of the attribute of exactly this name; empty when absent or when the node is no element.
    [[nodiscard]] std::optional<std::string_view> getAttribute(std::string_view sName) const;
    /// Sets the attribute's value, adding the attribute after the others when it is absent.
    /// @throws Failure PropertyOrMethodNotSupported on a node that is no element, DocumentFailure for a name
    /// that XML does not allow.
    void setAttribute(std::string_view sName, std::string_view sValue);

    /// The text of the node and its descendants joined, comments and processing instructions left out.
    [[nodiscard]] std::string text() const;
    /// Replaces all children of an element by one text (none for ""); sets the value of the other kinds.
    void setText(std::string_view sText);

    /// The node and its descendants as XML.
    [[nodiscard]] std::string xml() const;

    /// Appends the node as last child; a node that has a parent, or belongs to another document, moves.
    /// @returns the appended node.
    /// @throws Failure ObjectVariableNotSet for no node, DocumentFailure for a child that the node cannot
    /// have
    ///         (its own ancestor, a second root element, an attribute).
    Node appendChild(Node child);
    /// Inserts before `reference`, which is a child of this node; at the end when it is nothing.
    Node insertBefore(Node child, Node reference);
    /// Detaches a child and returns it.
    Node removeChild(Node child);
    /// A detached copy in the same document; with its descendants when deep (attributes always).
    [[nodiscard]] Node cloneNode(bool bDeep) const;

    /// The nodes that an XPath 1.0 expression selects with this node as context, in document order; a
    /// snapshot.
    /// @throws Failure DocumentFailure for an expression that cannot be parsed or yields no node-set.
    [[nodiscard]] NodeList selectNodes(std::string_view sXPath) const;
    /// The first of them, or nothing. @throws as selectNodes.
    [[nodiscard]] Node selectSingleNode(std::string_view sXPath) const;
    /// The descendant elements of that name ("*": all) in document order; a live list.
    [[nodiscard]] NodeList getElementsByTagName(std::string_view sName) const;

    /// The document that the node belongs to (for the document node: itself).
    [[nodiscard]] Document& ownerDocument() const;
    /// The line of the parsed text on which the node begins, from 1; 0 for nodes not made by parsing.
    [[nodiscard]] std::uint32_t line() const;

    [[nodiscard]] NodeData* data() const noexcept { return pData_; }

private:
    NodeData* pData_ = nullptr;
};

[[nodiscard]] inline bool isElement(Node oNode) {
    return oNode && oNode.nodeType() == NodeType::Element;
}

/// A list of nodes with a position of its own. Positions count from 0.
class NodeList {
public:
    class Source;
    NodeList() = default;
    explicit NodeList(std::shared_ptr<Source> pSource);

    /// False for "no list at all", which is not an empty list.
    explicit operator bool() const noexcept { return pSource_ != nullptr; }
    [[nodiscard]] std::int32_t length() const;
    /// Nothing beyond the end.
    [[nodiscard]] Node item(std::int32_t lIndex) const;
    /// The next node from the list's position on; nothing at the end.
    Node nextNode();
    /// Puts the position before the first node.
    void reset();

private:
    std::shared_ptr<Source> pSource_;
};

/// The attributes of an element, in the order in which they were set; live.
class NamedNodeMap {
public:
    /// Goes from attribute to attribute, as long as none is removed.
    class Iterator {
    public:
        explicit Iterator(NodeData* pAttribute) : pAttribute_(pAttribute) {}
        Node operator*() const { return Node(pAttribute_); }
        Iterator& operator++();
        friend bool operator==(const Iterator&, const Iterator&) = default;

    private:
        NodeData* pAttribute_;
    };

    NamedNodeMap() = default;
    explicit NamedNodeMap(NodeData* pElement) : pElement_(pElement) {}

    explicit operator bool() const noexcept { return pElement_ != nullptr; }
    [[nodiscard]] std::int32_t length() const;
    [[nodiscard]] Node item(std::int32_t lIndex) const;
    /// The attribute of exactly this name, or nothing.
    [[nodiscard]] Node getNamedItem(std::string_view sName) const;
    /// Nothing to go over where there is no element.
    [[nodiscard]] Iterator begin() const;
    [[nodiscard]] Iterator end() const { return Iterator(nullptr); }

private:
    NodeData* pElement_ = nullptr;
};

/// What the last load found. errorCode 0: no error. line and column count from 1, 0 when unknown.
struct ParseError {
    std::int32_t errorCode = 0;
    std::string reason;
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::string url; ///< what was loaded, without user name and password
};

/// How many characters of data could not be written as they were.
struct CharacterRepairs {
    std::uint64_t dropped = 0;  ///< characters that XML 1.0 forbids
    std::uint64_t replaced = 0; ///< invalid UTF-8 sequences, written as U+FFFD
};

/// What a document takes.
struct MemoryUse {
    std::size_t nodes = 0;         ///< nodes that are neither sealed nor released
    std::size_t textBytes = 0;     ///< bytes of their texts
    std::size_t reservedBytes = 0; ///< taken from the system for nodes and texts
    std::uint64_t spooledBytes = 0;
};

class Document : public Object, public std::enable_shared_from_this<Document> {
public:
    /// In bytes: larger documents are not loaded.
    static constexpr std::size_t largestLoaded = 64U << 20U;

    /// A new, empty document.
    [[nodiscard]] static DocumentPtr create();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() override;
    [[nodiscard]] std::string_view typeName() const override { return "DOMDocument"; }

    /// The document as a node.
    [[nodiscard]] Node asNode() const;
    /// The root element, or nothing.
    [[nodiscard]] Node documentElement() const;
    /// A detached node of one of the types Element, Attribute, Text, CDataSection, ProcessingInstruction,
    /// Comment, DocumentFragment.
    /// @throws Failure DocumentFailure for another type or a name that XML does not allow.
    /// How the document is laid out when it is saved, and what of it is streamed. To be told while it is
    /// empty.
    void setLayout(const Layout& layout);
    [[nodiscard]] const Layout& layout() const noexcept;
    /// Appends a document type. @param sText what stands behind "<!DOCTYPE ", well-formed.
    void appendDocumentType(std::string_view sText);
    [[nodiscard]] Node createNode(std::int32_t lType, std::string_view sName, std::string_view sNamespace);
    [[nodiscard]] NodeList getElementsByTagName(std::string_view sName) const;

    /// The name as this document keeps it, for those who use it again and again; lives as long as the
    /// document. Nothing for a text that XML does not allow as a name.
    [[nodiscard]] const Name* findName(std::string_view sName);
    /// A detached element. @param name of this document.
    [[nodiscard]] Node createElement(const Name& name);

    void setAsync(bool) noexcept {} ///< loading is always synchronous
    void setValidateOnParse(bool bValidate) noexcept;

    /// Replaces the content by the document at a path, a "file:///" URL or an "http://" or "https://" URL.
    /// White space between elements is dropped unless xml:space says otherwise. External entities and
    /// external DTDs are never loaded. @returns whether it parsed; otherwise the document is empty and
    /// parseError tells.
    bool load(std::string_view sUrl);
    /// The same from a text.
    bool loadXML(std::string_view sXml);
    /// The same from a file's bytes, in the encoding that they declare.
    bool loadBytes(std::string_view sBytes);
    [[nodiscard]] const ParseError& parseError() const noexcept;
    /// 4: completed. A new document is completed.
    [[nodiscard]] std::int32_t readyState() const noexcept;
    /// Called at every change of readyState; an empty function disconnects.
    void onReadyStateChange(std::function<void()> fnChanged);
    /// The same for any number of listeners. @returns what disconnects this one, never 0.
    std::uint64_t connectReadyState(std::function<void()> fnChanged);
    void disconnectReadyState(std::uint64_t nConnection) noexcept;

    /// The whole document as XML, sealed parts included.
    [[nodiscard]] std::string xml() const;
    /// Puts one CR LF between adjacent tags: wherever "><" stands in the document's text. The breaks stay.
    void breakBetweenTags();
    /// What loading the document's own text would do once it has those breaks: listeners hear of the loading,
    /// and parseError is that of this load: no error where there is a root element; a document without one is
    /// empty afterwards. The nodes stay the same ones, and what is sealed stays sealed.
    /// @throws Failure DeviceIo when the spool could not be written: nothing is loaded then.
    void reloadWithBreaks();
    /// Writes the document as UTF-8 to a file beside `sPath` and renames it: `sPath` is old or new, never
    /// half.
    /// @throws Failure (the path and the text of the platform) when it cannot be written; `sPath` is then
    /// untouched.
    void save(std::string_view sPath, io::Durability durability = io::Durability::LeftToSystem);
    /// The same for a document that is let go afterwards: what was sealed need not be copied then, and can be
    /// gone from the document.
    void saveLast(std::string_view sPath, io::Durability durability = io::Durability::LeftToSystem);
    /// Writes the document as UTF-8 to a sink; nothing is written of one that is not whole.
    /// @throws Failure DeviceIo when the spool cannot be read, and what the sink throws.
    void saveTo(io::ByteSink& sink);

    // Sealing: documents larger than memory.
    //
    // A completed item is one that nobody writes into or holds a handle on any more. The document may at
    // once, or at any later change, serialise it to its spool and take its nodes back, leaving a placeholder
    // between its siblings that xml() and save() pour out. Placeholders do not show in lists, siblings or
    // selections.

    /// Where the spool goes once it is too large for memory: an unnamed temporary file in this folder.
    void setSpoolFolder(std::string sFolder);
    /// Says that `item` (attached, an element) is completed. Handles on it and its descendants end here.
    /// @throws Failure DeviceIo when the spool cannot be written; save() then fails too.
    void markComplete(Node item);
    /// Gives a detached subtree back to the arena. Handles on it end here.
    void release(Node detached);

    /// Those in the sealed parts and in what the last save() wrote besides.
    [[nodiscard]] const CharacterRepairs& characterRepairs() const noexcept;

    /// Why the document that the last save() wrote may be lost with the power although it was to be on the
    /// disk: the platform's text; "" where it is there, or was left to the system.
    [[nodiscard]] const std::string& whyNotDurable() const noexcept;

    /// What the document takes at this moment.
    [[nodiscard]] MemoryUse memoryUse() const noexcept;

    struct Impl;
    [[nodiscard]] Impl& impl() const noexcept { return *pImpl_; }

private:
    Document();
    std::unique_ptr<Impl> pImpl_;
};

/// A node as an entry of a collection; keeps the document alive that the node belongs to at the moment.
class NodeObject : public Object {
public:
    explicit NodeObject(Node node);
    NodeObject(const NodeObject&) = delete;
    NodeObject& operator=(const NodeObject&) = delete;
    ~NodeObject() override;
    [[nodiscard]] std::string_view typeName() const override { return "IXMLDOMNode"; }
    [[nodiscard]] Node node() const noexcept { return node_; }

    /// To be called once nodes have moved from one document to another: the objects of the first whose nodes
    /// are among them hold the other one from then on.
    static void follow(Document::Impl& from, Document::Impl& to) noexcept;

private:
    DocumentPtr pDocument_;
    Node node_;
    std::list<NodeObject*>::iterator place_; ///< among those that hold the document
};

} // namespace halvane::dom
