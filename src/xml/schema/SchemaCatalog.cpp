#include "xml/schema/SchemaCatalog.h"

#include "io/FileLocation.h"
#include "xml/dom/Dom.h"
#include "xml/schema/SchemaAddress.h"

#include <algorithm>
#include <array>

namespace halvane::dom {

namespace {

struct Kind {
    std::string_view sElement;
    std::string_view sFrom;
    std::string_view sTo;
};

constexpr std::string_view sCatalogNamespace = "urn:oasis:names:tc:entity:xmlns:xml:catalog";
constexpr std::size_t mostCatalogs = 100;

} // namespace

/// Walks the elements of a catalogue, and then those of the catalogues that it names.
struct SchemaCatalog::Reader {
    SchemaCatalog& catalog;
    std::vector<std::string>& problems;

    void read(const std::string& sPath, const std::string& sShown) {
        if (std::ranges::find(catalog.files_, sPath) != catalog.files_.end() ||
            catalog.files_.size() == mostCatalogs)
            return; // catalogues may name each other
        catalog.files_.push_back(sPath);
        const auto oDocument = loadLocalFile(sPath, sShown, problems);
        if (oDocument == nullptr)
            return;
        const Node oRoot = oDocument->documentElement();
        if (oRoot.baseName() != "catalog" || namespaceOfRoot(oRoot) != sCatalogNamespace) {
            problems.push_back(sShown +
                               ": this is no XML catalogue; its root is <catalog> of the namespace " +
                               std::string(sCatalogNamespace));
            return;
        }
        readEntries(oRoot, sPath, baseOf(oRoot, sPath));
    }

    // Without recursion into groups by more than their own depth, which loading limits.
    void readEntries(Node oParent, const std::string& sPath, const std::string& sBase) {
        for (Node oNode = oParent.firstChild(); oNode; oNode = oNode.nextSibling()) {
            if (oNode.nodeType() != NodeType::Element)
                continue;
            const std::string sHere = baseOf(oNode, sBase);
            if (oNode.baseName() == "group")
                readEntries(oNode, sPath, sHere);
            else if (oNode.baseName() == "nextCatalog")
                readNext(oNode, sPath, sHere);
            else
                readEntry(oNode, sPath, sHere);
        }
    }

    void readNext(Node oNode, const std::string& sPath, const std::string& sBase) {
        const std::string sNext(oNode.getAttribute("catalog").value_or(""));
        if (const auto sFile = localFile(sNext, sBase))
            read(*sFile, *sFile);
        else
            refuse(oNode, sPath, sNext);
    }

    void readEntry(Node oNode, const std::string& sPath, const std::string& sBase) {
        static constexpr std::array kinds{
            std::pair{Kind{"system", "systemId", "uri"}, Match::Exact},
            std::pair{Kind{"uri", "name", "uri"}, Match::Exact},
            std::pair{Kind{"rewriteSystem", "systemIdStartString", "rewritePrefix"}, Match::Beginning},
            std::pair{Kind{"rewriteURI", "uriStartString", "rewritePrefix"}, Match::Beginning},
            std::pair{Kind{"systemSuffix", "systemIdSuffix", "uri"}, Match::Ending},
            std::pair{Kind{"uriSuffix", "uriSuffix", "uri"}, Match::Ending},
        };
        for (const auto& [kind, match] : kinds) {
            if (oNode.baseName() != kind.sElement)
                continue;
            const std::string sFrom(oNode.getAttribute(kind.sFrom).value_or(""));
            const std::string sTo(oNode.getAttribute(kind.sTo).value_or(""));
            if (auto sFile = localFile(sTo, sBase); sFile && !sFrom.empty())
                catalog.entries_.push_back({match, sFrom, std::move(*sFile)});
            else if (!sFrom.empty())
                refuse(oNode, sPath, sTo);
        }
    }

    void refuse(Node oNode, const std::string& sPath, const std::string& sTo) {
        problems.push_back(sPath + ":" + std::to_string(oNode.line()) + ": <" +
                           std::string(oNode.nodeName()) + "> leads to \"" + sTo +
                           "\", which is no local file");
    }

    static std::string baseOf(Node oNode, const std::string& sBase) {
        const auto sOwn = oNode.getAttribute("xml:base");
        return sOwn ? localFile(*sOwn, sBase).value_or(sBase) : sBase;
    }
};

SchemaCatalog::SchemaCatalog(const std::string& sPath, const std::string& sShown,
                             std::vector<std::string>& problems) {
    Reader{*this, problems}.read(sPath, sShown);
}

std::optional<std::string> SchemaCatalog::fileFor(std::string_view sAddress) const {
    const Entry* pBest = nullptr;
    for (const Entry& entry : entries_) {
        const bool bFits = entry.match == Match::Exact       ? sAddress == entry.sText
                           : entry.match == Match::Beginning ? sAddress.starts_with(entry.sText)
                                                             : sAddress.ends_with(entry.sText);
        if (bFits && (pBest == nullptr || entry.match < pBest->match ||
                      (entry.match == pBest->match && entry.sText.size() > pBest->sText.size())))
            pBest = &entry;
    }
    if (pBest == nullptr)
        return std::nullopt;
    if (pBest->match != Match::Beginning)
        return pBest->sTarget;
    return normalPath(pBest->sTarget + io::percentDecoded(sAddress.substr(pBest->sText.size())));
}

} // namespace halvane::dom
