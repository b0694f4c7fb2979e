// Texts that are pieces of XML.

#include "oracle/Interpreter.h"
#include "oracle/second/PlainXml.h"

#include <stdexcept>

namespace halvane::oracle {

namespace {

/// With what is wrong a parser has words of its own.
[[noreturn]] void fail() {
    throw Failure(FailureNumber::DocumentFailure, "the text is not well-formed XML");
}

std::vector<XmlPiece> piecesOf(const std::string& sText) {
    try {
        return readXml(sText);
    } catch (const std::runtime_error&) {
        fail();
    }
}

void requirePrefix(const std::string& sName, const std::set<std::string>& prefixes) {
    const std::size_t nColon = sName.find(':');
    if (nColon != std::string::npos && !prefixes.contains(sName.substr(0, nColon)))
        fail();
}

/// @param prefixes declared around.
void requirePrefixes(const XmlPiece& element, std::set<std::string> prefixes) {
    for (const auto& [sName, sValue] : element.aAttributes)
        if (sName.starts_with("xmlns:"))
            prefixes.insert(sName.substr(6));
    requirePrefix(element.sName, prefixes);
    for (const auto& [sName, sValue] : element.aAttributes)
        if (!sName.starts_with("xmlns"))
            requirePrefix(sName, prefixes);
    for (const XmlPiece& child : element.aChildren)
        requirePrefixes(child, prefixes);
}

/// @param sBinding of the prefix "p", which the outermost elements have from the control file.
void add(OutputTree& tree, OutputNode* pParent, const std::vector<XmlPiece>& aPieces,
         const std::string& sBinding) {
    for (const XmlPiece& piece : aPieces) {
        if (piece.sName.empty()) {
            tree.appendText(pParent, piece.sText, piece.bCData);
            continue;
        }
        OutputNode* const pElement = tree.append(pParent, tree.newElement(piece.sName));
        pElement->bInline = true;
        pElement->sBinding = sBinding;
        for (const auto& [sName, sValue] : piece.aAttributes)
            tree.setAttribute(pElement, sName, sValue);
        add(tree, pElement, piece.aChildren, "");
    }
}

} // namespace

/// All of it, or nothing and a failure.
void Interpreter::appendFragment(Node node, OutputNode* pOut, const std::string& sText) {
    const auto aPieces = piecesOf(sText);
    std::set<std::string> prefixes{"xml"};
    for (const auto& [sName, sValue] : pRoot_->aAttributes)
        if (sName.starts_with("xmlns:") && sValue != sSecondEditionNamespace)
            prefixes.insert(sName.substr(6));
    for (const XmlPiece& piece : aPieces)
        requirePrefixes(piece, prefixes);
    add(tree_, pOut, aPieces, bindings_.at(&node));
    noteTurn("a text that is XML");
}

} // namespace halvane::oracle
