#include "xml/dom/XmlWriter.h"

#include "base/Text.h"
#include "xml/dom/Characters.h"
#include "xml/dom/DocumentImpl.h"
#include "xml/dom/Escaping.h"

namespace halvane::dom {

namespace {

/// Data in which neither of two strings that would end or break its markup occurs any more: a blank is put
/// between their characters.
std::string separated(std::string_view sData, char cFirst, char cSecond) {
    std::string sResult;
    sResult.reserve(sData.size() + 8);
    for (const char c : sData) {
        if (c == cSecond && !sResult.empty() && sResult.back() == cFirst)
            sResult.push_back(' ');
        sResult.push_back(c);
    }
    return sResult;
}

/// Whether the declaration's data says standalone="yes" or "no"; "" when it says neither.
std::string_view standaloneOf(std::string_view sData) {
    const auto position = sData.find("standalone");
    if (position == std::string_view::npos)
        return {};
    const auto quote = sData.find_first_of("\"'", position);
    if (quote == std::string_view::npos)
        return {};
    const auto sValue = sData.substr(quote + 1);
    return sValue.starts_with("yes") ? "yes" : sValue.starts_with("no") ? "no" : std::string_view();
}

} // namespace

std::string withBreaks(std::string_view sData) {
    return replaceAll(sData, "><", ">\r\n<");
}

namespace {

/// How many elements are around a node, and how many of them have no breaks in them.
struct Place {
    std::size_t nDepth = 0;
    std::size_t nInline = 0;
};

Place placeOf(const NodeData& node) {
    Place place;
    for (const NodeData* pAround = node.pParent; pAround != nullptr; pAround = pAround->pParent) {
        place.nDepth += pAround->kind == Kind::Element ? 1 : 0;
        place.nInline += pAround->bInline ? 1 : 0;
    }
    return place;
}

} // namespace

std::string breakBeside(const NodeData& node) {
    const Layout& layout = node.pDocument->layout;
    if (!layout.bBetweenTags)
        return std::string(lineBreak);
    const Place place = placeOf(node);
    return place.nInline == 0 ? layout.at(place.nDepth) : std::string();
}

void XmlWriter::begin(const NodeData& top) {
    pTop_ = &top;
    pLayout_ = &top.pDocument->layout;
    // Only a layout between tags asks where a node stands; without one this is called for each small item.
    const Place place = pLayout_->bBetweenTags ? placeOf(top) : Place();
    nDepth_ = place.nDepth;
    nInline_ = place.nInline;
}

void XmlWriter::write(const NodeData& node) {
    begin(node);
    for (const NodeData* pNode = &node;;) {
        open(*pNode);
        if (pNode->pFirstChild != nullptr) {
            pNode = pNode->pFirstChild;
            continue;
        }
        close(*pNode);
        while (pNode != &node && pNode->pNext == nullptr) {
            pNode = pNode->pParent;
            close(*pNode);
        }
        if (pNode == &node)
            return;
        pNode = pNode->pNext;
    }
}

void XmlWriter::open(const NodeData& node) {
    switch (node.kind) {
    case Kind::Element:
        openElement(node);
        break;
    case Kind::Text:
        writeText(node);
        break;
    case Kind::Attribute:
        writeAttribute(node);
        break;
    case Kind::Document:
    case Kind::Fragment:
        break;
    default:
        if (node.kind == Kind::CData && laysOut())
            writeSection(node);
        else
            writeMarkup(node);
    }
}

/// It is content: no break stands beside it.
void XmlWriter::writeSection(const NodeData& section) {
    endStartTag();
    writeCData(section.text());
    bAfterTag_ = false;
}

void XmlWriter::close(const NodeData& node) {
    if (node.kind != Kind::Element)
        return;
    if (bStartTagOpen_) {
        out_.put("/>");
        bStartTagOpen_ = false;
        --nDepth_;
    } else {
        --nDepth_;
        breakAfterTag();
        out_.put("</");
        out_.put(node.pName->sQualified);
        out_.put('>');
    }
    nInline_ -= node.bInline ? 1 : 0;
    bAfterTag_ = true;
}

void XmlWriter::endStartTag() {
    if (!bStartTagOpen_)
        return;
    out_.put('>');
    bStartTagOpen_ = false;
    bAfterTag_ = true;
}

void XmlWriter::breakAfterTag() {
    if (!bAfterTag_)
        return;
    if (laysOut() && nInline_ == 0)
        pLayout_->put(out_, nDepth_);
    else if (!laysOut() && breaks_ == Breaks::BetweenTags)
        out_.put(lineBreak);
}

void XmlWriter::beginMarkup(const NodeData& node) {
    endStartTag();
    if (node.bBreakBefore && &node != pTop_ && breaks_ == Breaks::AsInTree)
        out_.put(lineBreak);
    breakAfterTag();
}

void XmlWriter::openElement(const NodeData& element) {
    beginMarkup(element);
    out_.put('<');
    out_.put(element.pName->sQualified);
    for (const NodeData* pAttribute = element.pFirstAttribute; pAttribute != nullptr;
         pAttribute = pAttribute->pNext) {
        out_.put(' ');
        writeAttribute(*pAttribute);
    }
    bStartTagOpen_ = true;
    ++nDepth_;
    nInline_ += element.bInline ? 1 : 0;
}

void XmlWriter::writeAttribute(const NodeData& attribute) {
    out_.put(attribute.pName->sQualified);
    out_.put("=\"");
    putAttributeValue(out_, attribute.text(), repairs_);
    out_.put('"');
}

void XmlWriter::writeText(const NodeData& text) {
    // A start tag stays open over a text of which nothing is left.
    if (bStartTagOpen_ && isNothingOnceCleaned(text.text())) {
        (void)cleaned(text.text(), repairs_);
        return;
    }
    endStartTag();
    if (text.bBreak) {
        out_.put(text.text());
        bAfterTag_ = false;
    } else if (putText(out_, text.text(), repairs_)) {
        bAfterTag_ = false;
    }
}

void XmlWriter::writeMarkup(const NodeData& node) {
    beginMarkup(node);
    switch (node.kind) {
    case Kind::Comment:
        writeComment(node.text());
        break;
    case Kind::CData:
        writeCData(node.text());
        break;
    case Kind::ProcessingInstruction:
        writeInstruction(node);
        break;
    case Kind::DocumentType:
        putInner(node.text());
        break;
    case Kind::Placeholder:
        fnPour_(node);
        break;
    default:
        break;
    }
    bAfterTag_ = true;
}

void XmlWriter::putInner(std::string_view sData) {
    if (breaks_ == Breaks::BetweenTags && !laysOut() && sData.find('>') != std::string_view::npos)
        out_.put(withBreaks(cleaned(sData, repairs_)));
    else
        putRaw(out_, sData, repairs_);
}

void XmlWriter::writeComment(std::string_view sData) {
    out_.put("<!--");
    if (sData.find('-') == std::string_view::npos) {
        putInner(sData);
    } else {
        std::string sSafe = separated(cleaned(sData, repairs_), '-', '-');
        if (sSafe.back() == '-')
            sSafe.push_back(' ');
        putInner(sSafe);
    }
    out_.put("-->");
}

void XmlWriter::writeCData(std::string_view sData) {
    out_.put("<![CDATA[");
    if (sData.find(']') == std::string_view::npos)
        putInner(sData);
    else
        putInner(withoutSectionEnd(cleaned(sData, repairs_)));
    out_.put("]]>");
}

void XmlWriter::writeInstruction(const NodeData& instruction) {
    const std::string& sTarget = instruction.pName->sQualified;
    if (sTarget == "xml") {
        writeDeclaration(instruction.text());
        return;
    }
    out_.put("<?");
    out_.put(sTarget);
    if (instruction.nTextSize != 0) {
        out_.put(' ');
        if (instruction.text().find('?') == std::string_view::npos)
            putInner(instruction.text());
        else
            putInner(separated(cleaned(instruction.text(), repairs_), '?', '>'));
    }
    out_.put("?>");
}

void XmlWriter::writeDeclaration(std::string_view sData) {
    out_.put(R"(<?xml version="1.0" encoding="UTF-8")");
    if (const auto sStandalone = standaloneOf(sData); !sStandalone.empty()) {
        out_.put(" standalone=\"");
        out_.put(sStandalone);
        out_.put('"');
    }
    out_.put("?>");
}

} // namespace halvane::dom
