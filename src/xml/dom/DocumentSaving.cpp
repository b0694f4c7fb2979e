// Serialising nodes and documents.

#include "xml/dom/DocumentImpl.h"
#include "xml/dom/XmlWriter.h"
#include "xml/io/ReplacingFile.h"

namespace halvane::dom {

namespace {

constexpr std::size_t textBufferSize = 16U << 10U;
constexpr std::size_t fileBufferSize = 1U << 20U;

void writeTree(const NodeData& top, io::OutputBuffer& out, CharacterRepairs& repairs) {
    Sealing& sealing = top.pDocument->sealing;
    sealing.requireWholeSpool();
    XmlWriter writer(out, Breaks::AsInTree, repairs,
                     [&](const NodeData& placeholder) { sealing.pour(placeholder, out); });
    writer.write(top);
    out.flush();
}

std::string xmlOf(const NodeData& top) {
    std::string sXml;
    io::StringSink sink(sXml);
    io::OutputBuffer out(sink, textBufferSize);
    CharacterRepairs ignored;
    writeTree(top, out, ignored);
    return sXml;
}

} // namespace

std::string Node::xml() const {
    return xmlOf(dataOf(*this));
}

std::string Document::xml() const {
    return xmlOf(pImpl_->documentNode);
}

void Document::save(std::string_view sPath) {
    const auto pFile = io::ReplacingFile::create(sPath);
    io::OutputBuffer out(*pFile, fileBufferSize);
    CharacterRepairs repairs;
    writeTree(pImpl_->documentNode, out, repairs);
    pFile->commit();
    pImpl_->repairsOfLastSave = repairs;
}

} // namespace halvane::dom
