#include "xml/dom/msxml/MsxmlImage.h"

#include "base/Text.h"
#include "io/OutputBuffer.h"
#include "xml/dom/Characters.h"
#include "xml/dom/Escaping.h"

#include <algorithm>

namespace halvane::dom::msxml {

namespace {

constexpr std::string_view cdataEnd = "]]>";

bool isDeclaration(const NodeData& attribute) noexcept {
    const std::string& sName = attribute.pName->sQualified;
    return sName == "xmlns" || sName.starts_with("xmlns:");
}

std::string_view prefixOf(const Name& name) noexcept {
    return std::string_view(name.sQualified).substr(0, name.nBase == 0 ? 0 : name.nBase - 1);
}

/// Whether the node is written as characters between the tags. What would end a CDATA section is, too.
bool isCharacters(const NodeData& node) noexcept {
    return node.kind == Kind::Text ||
           (node.kind == Kind::CData && node.text().find(cdataEnd) != std::string_view::npos);
}

bool hasImage(const NodeData& node) noexcept {
    switch (node.kind) {
    case Kind::Element:
    case Kind::Comment:
        return true;
    case Kind::ProcessingInstruction:
        return node.pName->sQualified != "xml";
    case Kind::Text:
        return !isNothingOnceCleaned(node.text());
    case Kind::CData:
        return true;
    default:
        return false;
    }
}

/// A comment holds no "--" and does not end with "-".
std::string commentData(std::string_view sText) {
    const bool bFits = sText.find("--") == std::string_view::npos && !sText.ends_with('-');
    return bFits ? std::string(sText) : replaceAll(sText, "-", "- ");
}

class Writer {
public:
    explicit Writer(Image& image) : image_(image), sink_(image.sText), out_(sink_, bufferSize) {}

    void write(NodeData& top) {
        if (top.kind == Kind::Element)
            writeElement(top);
        else if (top.kind == Kind::Fragment)
            writeFragment(top);
        else
            writeDocument(top);
        out_.flush();
    }

private:
    static constexpr std::size_t bufferSize = 64U << 10U;

    /// A document without an element gets one that is nobody's image.
    void writeDocument(NodeData& top) {
        bool bElement = false;
        for (NodeData* p = imaged(top.kind == Kind::Document ? top.pFirstChild : nullptr); p != nullptr;
             p = imagedAfter(*p)) {
            if (isCharacters(*p) || p->kind == Kind::CData)
                continue;
            bElement = bElement || p->kind == Kind::Element;
            writeNode(*p);
        }
        if (!bElement)
            out_.put("<none/>");
    }

    void writeFragment(NodeData& top) {
        out_.put("<document-fragment");
        number(top);
        out_.put(">");
        writeChildren(top);
        out_.put("</document-fragment>");
    }

    void writeNode(NodeData& node) {
        switch (node.kind) {
        case Kind::Element:
            writeElement(node);
            break;
        case Kind::Comment:
            putApart("<!--", commentData(node.text()), "-->");
            break;
        case Kind::ProcessingInstruction:
            putApart("<?" + node.pName->sQualified + " ", replaceAll(node.text(), "?>", "? >"), "?>");
            break;
        default:
            if (isCharacters(node))
                putText(out_, node.text(), ignored_);
            else
                putApart("<![CDATA[", node.text(), cdataEnd);
        }
    }

    void putApart(std::string_view sBegin, std::string_view sData, std::string_view sEnd) {
        out_.put(sBegin);
        putRaw(out_, sData, ignored_);
        out_.put(sEnd);
    }

    /// Without recursion: a tree that was built can be deeper than one that was parsed.
    void writeElement(NodeData& top) {
        beginElement(top);
        NodeData* pOpen = &top;
        for (NodeData* pNext = imaged(top.pFirstChild);;) {
            if (pNext == nullptr) {
                endElement(*pOpen);
                if (pOpen == &top)
                    return;
                pNext = imaged(pOpen->pNext);
                pOpen = pOpen->pParent;
            } else if (pNext->kind == Kind::Element) {
                beginElement(*pNext);
                pOpen = pNext;
                pNext = imaged(pOpen->pFirstChild);
            } else {
                writeNode(*pNext);
                pNext = imaged(pNext->pNext);
            }
        }
    }

    void beginElement(NodeData& element) {
        aOuter_.push_back(aPrefixes_.size());
        out_.put("<");
        out_.put(element.pName->sQualified);
        number(element);
        writeDeclarations(element);
        declareMissing(*element.pName);
        for (const NodeData* p = element.pFirstAttribute; p != nullptr; p = p->pNext) {
            if (isDeclaration(*p))
                continue;
            declareMissing(*p->pName);
            putAttribute(p->pName->sQualified, p->text());
        }
        out_.put(">");
    }

    void endElement(const NodeData& element) {
        out_.put("</");
        out_.put(element.pName->sQualified);
        out_.put(">");
        aPrefixes_.resize(aOuter_.back());
        aOuter_.pop_back();
    }

    void writeChildren(NodeData& parent) {
        for (NodeData* p = parent.pFirstChild; p != nullptr; p = p->pNext)
            if (hasImage(*p))
                writeNode(*p);
    }

    void number(NodeData& node) {
        putAttribute(numberAttribute, std::to_string(image_.aElements.size()));
        image_.aElements.push_back(&node);
    }

    void writeDeclarations(const NodeData& element) {
        const bool bRoot = image_.aElements.size() == 1;
        for (const NodeData* p = element.pFirstAttribute; p != nullptr; p = p->pNext) {
            if (!isDeclaration(*p))
                continue;
            const std::string_view sPrefix = p->pName->nBase == 0 ? std::string_view() : p->pName->base();
            // A prefix cannot be undeclared, and that of the numbers is taken.
            if (!sPrefix.empty() &&
                (isNothingOnceCleaned(p->text()) || p->pName->sQualified == numberAttribute))
                continue;
            putAttribute(p->pName->sQualified, p->text());
            aPrefixes_.push_back(sPrefix);
            if (bRoot && !sPrefix.empty())
                nameRootPrefix(sPrefix, p->text());
        }
    }

    void nameRootPrefix(std::string_view sPrefix, std::string_view sUri) {
        io::StringSink sink(image_.sNamespaces);
        io::OutputBuffer out(sink, bufferSize);
        out.put(image_.sNamespaces.empty() ? "xmlns:" : " xmlns:");
        out.put(sPrefix);
        out.put("=\"");
        putAttributeValue(out, sUri, ignored_);
        out.put("\"");
        out.flush();
    }

    /// A prefix that nothing declares remains a part of the name; MSXML wants it declared.
    void declareMissing(const Name& name) {
        const std::string_view sPrefix = prefixOf(name);
        if (sPrefix.empty() || sPrefix == "xml" ||
            std::find(aPrefixes_.begin(), aPrefixes_.end(), sPrefix) != aPrefixes_.end())
            return;
        putAttribute("xmlns:" + std::string(sPrefix), "urn:undeclared");
        aPrefixes_.push_back(sPrefix);
    }

    void putAttribute(std::string_view sName, std::string_view sValue) {
        out_.put(" ");
        out_.put(sName);
        out_.put("=\"");
        putAttributeValue(out_, sValue, ignored_);
        out_.put("\"");
    }

    Image& image_;
    io::StringSink sink_;
    io::OutputBuffer out_;
    CharacterRepairs ignored_;
    std::vector<std::string_view> aPrefixes_; ///< declared by the open elements
    std::vector<std::size_t> aOuter_;         ///< for each of these, how many are declared around it
};

} // namespace

Image makeImage(NodeData& top) {
    Image image;
    Writer(image).write(top);
    return image;
}

NodeData* imaged(NodeData* pNode) noexcept {
    while (pNode != nullptr && !hasImage(*pNode))
        pNode = pNode->pNext;
    return pNode;
}

NodeData* imagedAfter(NodeData& node) noexcept {
    NodeData* pNext = imaged(node.pNext);
    while (isCharacters(node) && pNext != nullptr && isCharacters(*pNext))
        pNext = imaged(pNext->pNext);
    return pNext;
}

std::vector<NodeData*> sharingImage(NodeData& text) {
    std::vector<NodeData*> aTexts{&text};
    for (NodeData* p = imaged(text.pNext); isCharacters(text) && p != nullptr && isCharacters(*p);
         p = imaged(p->pNext))
        aTexts.push_back(p);
    return aTexts;
}

} // namespace halvane::dom::msxml
