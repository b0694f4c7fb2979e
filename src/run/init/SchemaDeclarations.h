#pragma once

#include "xml/dom/Dom.h"
#include "xml/schema/SchemaFiles.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// The value of an attribute; "" where it is absent.
[[nodiscard]] inline std::string valueOf(dom::Node oNode, std::string_view sAttribute) {
    return std::string(oNode.getAttribute(sAttribute).value_or(""));
}

/// A file of a schema.
struct SchemaFile {
    dom::DocumentPtr oDocument;
    std::string sNamespace;  ///< of what it declares
    bool bQualified = false; ///< elements inside types are in that namespace
};

/// A declaration, with the file in which it stands.
struct Declared {
    dom::Node oNode; ///< nothing: there is none
    const SchemaFile* pFile = nullptr;

    explicit operator bool() const noexcept { return static_cast<bool>(oNode); }
};

/// A name with its namespace.
struct SchemaName {
    std::string sNamespace;
    std::string sLocal;

    friend auto operator<=>(const SchemaName&, const SchemaName&) = default;
};

/// The declarations of a schema by their names.
class SchemaDeclarations {
public:
    explicit SchemaDeclarations(const dom::SchemaFiles& files);

    /// @param sKind the local name of what declares it: "element", "group" … "type" for both kinds of types.
    [[nodiscard]] Declared find(std::string_view sKind, const SchemaName& name) const;
    /// The elements that may stand in the place of one, in the order of the schema.
    [[nodiscard]] std::vector<Declared> substitutes(const SchemaName& head) const;
    /// The elements that the schema itself declares, not what it imports.
    [[nodiscard]] const std::vector<Declared>& ownElements() const noexcept { return own_; }
    /// The namespace of the schema itself.
    [[nodiscard]] const SchemaFile& main() const noexcept { return *pMain_; }
    /// The prefix that the schema's files have for a namespace; "" where they have none.
    [[nodiscard]] std::string prefixOf(const std::string& sNamespace) const;
    /// Whether an element refers to the global element.
    [[nodiscard]] bool isReferredTo(const SchemaName& name) const { return referred_.contains(name); }

    /// What the value of an attribute names at its place: "gml:Point".
    [[nodiscard]] static SchemaName named(dom::Node oNode, const SchemaFile& file, std::string_view sValue);
    /// The name that a global declaration gives.
    [[nodiscard]] static SchemaName nameOf(const Declared& global);

private:
    void read(const std::string& sBytes, bool bMain);
    void add(dom::Node oGlobal, const SchemaFile& file, bool bMain);
    void addReferences(const SchemaFile& file);

    std::vector<std::unique_ptr<SchemaFile>> files_;
    const SchemaFile* pMain_ = nullptr;
    std::map<std::string, std::map<SchemaName, Declared>, std::less<>> declared_; ///< by kind
    std::map<SchemaName, std::vector<Declared>> substitutes_;
    std::map<SchemaName, bool> referred_;
    std::vector<Declared> own_;
};

} // namespace halvane
