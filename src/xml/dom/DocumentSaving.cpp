// Serialising nodes and documents.

#include "io/ReplacingFile.h"
#include "xml/dom/DocumentImpl.h"
#include "xml/dom/XmlWriter.h"

#include <optional>

namespace halvane::dom {

namespace {

constexpr std::size_t textBufferSize = 16U << 10U;
constexpr std::size_t fileBufferSize = 1U << 20U;

Breaks breaksOf(const NodeData& top) {
    return top.pDocument->layout.bBetweenTags ? Breaks::BetweenTags : Breaks::AsInTree;
}

void writeTree(const NodeData& top, io::OutputBuffer& out, CharacterRepairs& repairs) {
    Sealing& sealing = top.pDocument->sealing;
    sealing.requireWholeSpool();
    XmlWriter writer(out, breaksOf(top), repairs,
                     [&](const NodeData& placeholder) { sealing.pour(placeholder, out); });
    writer.write(top);
    out.flush();
}

void writeTo(io::ByteSink& sink, const NodeData& top, CharacterRepairs& repairs) {
    io::OutputBuffer out(sink, fileBufferSize);
    writeTree(top, out, repairs);
}

std::string xmlOf(const NodeData& top) {
    std::string sXml;
    io::StringSink sink(sXml);
    io::OutputBuffer out(sink, textBufferSize);
    CharacterRepairs ignored;
    writeTree(top, out, ignored);
    return sXml;
}

/// A document's text before and after the one part that its spool holds.
struct Surroundings {
    std::string sHead;
    std::string sTail;
    CharacterRepairs repairs;
};

/// @returns nothing when the spool's part is not all of it, or does not stand in one piece.
std::optional<Surroundings> aroundSpool(const NodeData& top) {
    Sealing& sealing = top.pDocument->sealing;
    if (sealing.spooledBytes() == 0 || top.pDocument->store.liveNodes() > mostNodesAroundSpool)
        return std::nullopt;
    Surroundings around;
    std::optional<std::size_t> nHead;
    bool bInOnePiece = true;
    io::StringSink sink(around.sTail);
    io::OutputBuffer out(sink, textBufferSize);
    XmlWriter writer(out, breaksOf(top), around.repairs, [&](const NodeData& placeholder) {
        out.flush();
        bInOnePiece = bInOnePiece && !nHead && sealing.standsForAll(placeholder);
        nHead = around.sTail.size();
    });
    writer.write(top);
    out.flush();
    if (!nHead || !bInOnePiece)
        return std::nullopt;
    around.sHead = around.sTail.substr(0, *nHead);
    around.sTail.erase(0, *nHead);
    return around;
}

} // namespace

std::string Node::xml() const {
    return xmlOf(dataOf(*this));
}

std::string Document::xml() const {
    return xmlOf(pImpl_->documentNode);
}

void Document::saveLast(std::string_view sPath, io::Durability durability) {
    Sealing& sealing = pImpl_->sealing;
    sealing.requireWholeSpool();
    const auto around = aroundSpool(pImpl_->documentNode);
    const auto pFile = around ? sealing.spool().turnInto(sPath, around->sHead) : nullptr;
    if (pFile == nullptr) {
        save(sPath, durability);
        return;
    }
    pFile->write(around->sTail);
    pImpl_->sWhyNotDurable = pFile->commit(durability);
    pImpl_->repairsOfLastSave = around->repairs;
}

void Document::save(std::string_view sPath, io::Durability durability) {
    const auto pFile = io::ReplacingFile::create(sPath);
    CharacterRepairs repairs;
    writeTo(*pFile, pImpl_->documentNode, repairs);
    pImpl_->sWhyNotDurable = pFile->commit(durability);
    pImpl_->repairsOfLastSave = repairs;
}

void Document::saveTo(io::ByteSink& sink) {
    CharacterRepairs repairs;
    writeTo(sink, pImpl_->documentNode, repairs);
    pImpl_->sWhyNotDurable.clear();
    pImpl_->repairsOfLastSave = repairs;
}

} // namespace halvane::dom
