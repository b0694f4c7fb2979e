#include "xml/schema/SchemaFiles.h"

#include "base/Text.h"
#include "xml/schema/SchemaAddress.h"

#include <filesystem>
#include <utility>

namespace halvane::dom {

namespace {

constexpr std::string_view sSchemaNamespace = "http://www.w3.org/2001/XMLSchema";
constexpr std::size_t mostFiles = 2000;

bool namesAFile(Node oNode) {
    if (oNode.nodeType() != NodeType::Element)
        return false;
    const auto sName = oNode.baseName();
    return sName == "import" || sName == "include" || sName == "redefine" || sName == "override";
}

} // namespace

struct SchemaFiles::Reader {
    struct Wanted {
        std::string sPath;
        std::string sShown;
        std::string sAddress; ///< that the catalogue led from; "" for none
    };

    SchemaFiles& files;
    const SchemaCatalog& catalog;
    std::vector<std::string>& problems;
    std::vector<Wanted> wanted;

    void readAll() {
        for (std::size_t n = 0; n < wanted.size(); ++n) {
            const Wanted file = wanted[n]; // reading adds more
            if (files.bytes_.contains(file.sPath))
                continue;
            if (files.bytes_.size() == mostFiles) {
                problems.push_back(wanted.front().sShown + ": the schema has more than " +
                                   std::to_string(mostFiles) + " files");
                return;
            }
            read(file);
        }
    }

    void read(const Wanted& file) {
        std::string& sBytes = files.bytes_[file.sPath];
        const auto oDocument = loadLocalFile(file.sPath, file.sShown, problems, &sBytes);
        if (oDocument == nullptr)
            return;
        const Node oRoot = oDocument->documentElement();
        if (oRoot.baseName() != "schema" || namespaceOfRoot(oRoot) != sSchemaNamespace) {
            problems.push_back(file.sShown +
                               ": this is no XML Schema; its root is <schema> of the namespace " +
                               std::string(sSchemaNamespace));
            return;
        }
        for (Node oNode = oRoot.firstChild(); oNode; oNode = oNode.nextSibling())
            if (namesAFile(oNode))
                follow(oNode, file);
    }

    void follow(Node oNode, const Wanted& from) {
        const std::string sLocation(trimBlanks(oNode.getAttribute("schemaLocation").value_or("")));
        if (sLocation.empty())
            return;
        const std::string sPlace = from.sShown + ":" + std::to_string(oNode.line());
        const auto sHere = localFile(sLocation, from.sPath);
        const std::string sAsked = sHere.value_or(sLocation);
        if (files.paths_.contains(sAsked))
            return;
        if (auto found = find(sLocation, sHere, from)) {
            files.paths_.emplace(sAsked, found->sPath);
            wanted.push_back(std::move(*found));
            return;
        }
        if (sHere)
            problems.push_back(sPlace + ": there is no file \"" + *sHere + "\"");
        else
            problems.push_back(sPlace + ": \"" + sLocation +
                               "\" is no local file, and nothing else is opened; map it to one with "
                               "--schema-catalog");
    }

    /// Where a location leads to: by the catalogue, else to a file that is there.
    [[nodiscard]] std::optional<Wanted>
    find(const std::string& sLocation, const std::optional<std::string>& sHere, const Wanted& from) const {
        const std::string sAddress = hasScheme(sLocation) || from.sAddress.empty()
                                         ? sLocation
                                         : addressBeside(sLocation, from.sAddress);
        if (auto sFile = catalog.fileFor(sAddress))
            return Wanted{*sFile, *sFile, sAddress};
        std::error_code error;
        if (sHere && std::filesystem::exists(*sHere, error))
            return Wanted{*sHere, *sHere, hasScheme(sLocation) ? "" : addressOf(sLocation, from)};
        return std::nullopt;
    }

    /// What a relative location means seen from the address, where its file has one.
    static std::string addressOf(const std::string& sLocation, const Wanted& from) {
        return from.sAddress.empty() ? std::string() : addressBeside(sLocation, from.sAddress);
    }
};

SchemaFiles::SchemaFiles(const std::string& sRoot, const std::string& sShown, const SchemaCatalog& catalog,
                         std::vector<std::string>& problems)
    : sRoot_(sRoot) {
    std::string sAddress;
    if (hasScheme(sRoot)) {
        const auto sFile = catalog.fileFor(sRoot);
        const auto sLocal = sFile ? sFile : localFile(sRoot, "");
        if (!sLocal) {
            problems.push_back(sShown + ": this is no local file, and nothing else is opened; map it to one "
                                        "with --schema-catalog");
            return;
        }
        if (sFile)
            sAddress = sRoot;
        sRoot_ = *sLocal;
    }
    paths_.emplace(sRoot_, sRoot_);
    Reader{*this, catalog, problems, {{sRoot_, sShown, sAddress}}}.readAll();
}

const std::string* SchemaFiles::pathOf(std::string_view sAddress) const {
    const auto pFound = paths_.find(localFile(sAddress, "/").value_or(std::string(sAddress)));
    return pFound == paths_.end() ? nullptr : &pFound->second;
}

std::vector<std::string> SchemaFiles::paths() const {
    std::vector<std::string> paths;
    for (const auto& [sPath, sBytes] : bytes_)
        paths.push_back(sPath);
    return paths;
}

} // namespace halvane::dom
