#include "run/init/SchemaDeclarations.h"

#include "telling/DocumentOrder.h"

#include <algorithm>
#include <memory>

namespace halvane {

namespace {

constexpr std::string_view sSchemaNamespace = "http://www.w3.org/2001/XMLSchema";

/// The namespace that a prefix stands for at a node; "" for none.
std::string namespaceAt(dom::Node oNode, std::string_view sPrefix) {
    const std::string sDeclaration = sPrefix.empty() ? "xmlns" : "xmlns:" + std::string(sPrefix);
    for (; isElement(oNode); oNode = oNode.parentNode())
        if (const auto sNamespace = oNode.getAttribute(sDeclaration))
            return std::string(*sNamespace);
    return {};
}

std::string kindOf(dom::Node oGlobal) {
    const std::string_view sName = oGlobal.baseName();
    return sName == "complexType" || sName == "simpleType" ? "type" : std::string(sName);
}

} // namespace

SchemaDeclarations::SchemaDeclarations(const dom::SchemaFiles& files) {
    // What the schema includes has its namespace where it has none of its own.
    read(files.bytesOf(files.root()), true);
    for (const auto& sPath : files.paths())
        if (sPath != files.root())
            read(files.bytesOf(sPath), false);
}

void SchemaDeclarations::read(const std::string& sBytes, bool bMain) {
    auto oDocument = dom::Document::create();
    if (!oDocument->loadBytes(sBytes))
        return;
    const dom::Node oRoot = oDocument->documentElement();
    auto pFile = std::make_unique<SchemaFile>();
    pFile->oDocument = oDocument;
    pFile->sNamespace = valueOf(oRoot, "targetNamespace");
    if (pFile->sNamespace.empty() && pMain_ != nullptr)
        pFile->sNamespace = pMain_->sNamespace;
    pFile->bQualified = valueOf(oRoot, "elementFormDefault") == "qualified";
    if (bMain)
        pMain_ = pFile.get();
    for (dom::Node oGlobal = oRoot.firstChild(); oGlobal; oGlobal = oGlobal.nextSibling())
        if (isElement(oGlobal))
            add(oGlobal, *pFile, bMain);
    addReferences(*pFile);
    files_.push_back(std::move(pFile));
}

void SchemaDeclarations::add(dom::Node oGlobal, const SchemaFile& file, bool bMain) {
    const Declared declared{oGlobal, &file};
    const SchemaName name = nameOf(declared);
    if (name.sLocal.empty())
        return;
    declared_[kindOf(oGlobal)].emplace(name, declared);
    if (oGlobal.baseName() != "element")
        return;
    if (const std::string sHead = valueOf(oGlobal, "substitutionGroup"); !sHead.empty())
        substitutes_[named(oGlobal, file, sHead)].push_back(declared);
    if (bMain || file.sNamespace == pMain_->sNamespace)
        own_.push_back(declared);
}

void SchemaDeclarations::addReferences(const SchemaFile& file) {
    const dom::Node oRoot = file.oDocument->documentElement();
    for (dom::Node oNode = oRoot; oNode; oNode = nextInDocument(oNode, oRoot))
        if (isElement(oNode) && oNode.baseName() == "element")
            if (const std::string sReference = valueOf(oNode, "ref"); !sReference.empty())
                referred_.emplace(named(oNode, file, sReference), true);
}

Declared SchemaDeclarations::find(std::string_view sKind, const SchemaName& name) const {
    const auto ofKind = declared_.find(sKind);
    if (ofKind == declared_.end())
        return {};
    const auto found = ofKind->second.find(name);
    return found == ofKind->second.end() ? Declared() : found->second;
}

std::vector<Declared> SchemaDeclarations::substitutes(const SchemaName& head) const {
    const auto found = substitutes_.find(head);
    return found == substitutes_.end() ? std::vector<Declared>() : found->second;
}

std::string SchemaDeclarations::prefixOf(const std::string& sNamespace) const {
    for (const auto& pFile : files_)
        for (const dom::Node oAttribute : pFile->oDocument->documentElement().attributes())
            if (oAttribute.nodeName().starts_with("xmlns:") && oAttribute.nodeValue() == sNamespace)
                return std::string(oAttribute.baseName());
    return {};
}

SchemaName SchemaDeclarations::named(dom::Node oNode, const SchemaFile& file, std::string_view sValue) {
    const std::size_t nColon = sValue.find(':');
    const std::string_view sPrefix =
        nColon == std::string_view::npos ? std::string_view() : sValue.substr(0, nColon);
    std::string sNamespace = namespaceAt(oNode, sPrefix);
    // A file without a namespace takes that of the one that includes it, and so do its own references.
    if (sNamespace.empty())
        sNamespace = file.sNamespace;
    return {sNamespace == sSchemaNamespace ? "" : sNamespace, std::string(sValue.substr(nColon + 1))};
}

SchemaName SchemaDeclarations::nameOf(const Declared& global) {
    return {global.pFile->sNamespace, valueOf(global.oNode, "name")};
}

} // namespace halvane
