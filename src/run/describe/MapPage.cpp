#include "run/describe/MapPage.h"

#include "run/describe/HtmlText.h"
#include "run/describe/MapDrawing.h"
#include "run/describe/MapPageStyle.h"
#include "run/describe/Words.h"
#include "telling/Text.h"
#include "telling/Version.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace halvane {

namespace {

constexpr std::string_view sBeginning = "<!DOCTYPE html>\n<!-- A map described by halvane. -->\n";
constexpr std::size_t nColours = 8;

std::string tableOf(std::string_view sCaption, const std::vector<std::string_view>& heads,
                    std::string_view sRows) {
    std::string sHead;
    for (const auto sName : heads)
        sHead += fmt::format("<th scope=\"col\">{}</th>", sName);
    return fmt::format(
        "<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"{0}\"><table>"
        "<caption>{0}</caption><thead><tr>{1}</tr></thead><tbody>\n{2}</tbody></table></div>\n",
        html(sCaption), sHead, sRows);
}

/// @param cells HTML.
std::string row(const std::vector<std::string>& cells) {
    std::string sRow = "<tr>";
    for (std::size_t n = 0; n < cells.size(); ++n)
        sRow += n == 0 ? fmt::format("<th scope=\"row\">{}</th>", cells[n])
                       : fmt::format("<td>{}</td>", cells[n]);
    return sRow + "</tr>\n";
}

std::string number(const Reading<std::int32_t>& lNumber) {
    return !lNumber ? htmlNotReadable(lNumber.sWhyNot) : *lNumber == 0 ? "" : std::to_string(*lNumber);
}

template<class Word>
std::string wordOr(const Reading<std::int32_t>& lCode, const Word& word) {
    return lCode ? html(word(*lCode)) : htmlNotReadable(lCode.sWhyNot);
}

bool isInDegrees(const std::vector<std::string>& lines) {
    return !lines.empty() && lines.front().find("GEOGRAPHIC") != std::string::npos;
}

const std::vector<std::string>*
linesOf(const Reading<std::optional<SpatialReferenceDescription>>& reference) {
    return reference && *reference && (**reference).lines ? &*(**reference).lines : nullptr;
}

/// Builds the page from its outside to its inside; parts link to each other by numbers.
class Page {
public:
    Page(const MapDescription& description, const std::string& sPath)
        : description_(description), sPath_(sPath) {
        for (std::size_t nWorkspace = 0; nWorkspace < description.workspaces.size(); ++nWorkspace)
            if (const auto& domains = description.workspaces[nWorkspace].domains)
                for (const auto& domain : *domains)
                    if (domain && domain->sName)
                        domainIds_.try_emplace({nWorkspace, *domain->sName},
                                               fmt::format("domain-{}", domainIds_.size()));
    }

    std::string make() {
        std::string sMain;
        if (!description_.maps)
            sMain += "<p>" + htmlNotReadable(description_.maps.sWhyNot) + "</p>";
        else
            for (const auto& map : *description_.maps)
                sMain += map ? oneMap(*map) : "<p>" + htmlNotReadable(map.sWhyNot) + "</p>";
        for (std::size_t n = 0; n < description_.workspaces.size(); ++n)
            sMain += workspace(n);
        const std::string sName = html(sPath_.substr(sPath_.rfind('/') + 1));
        return fmt::format(
            "{}<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
            "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
            "'unsafe-inline'; script-src "
            "'unsafe-inline'\">\n<title>{}</title>\n<style>{}</style>\n</head>\n<body>\n"
            "<a class=\"skip\" href=\"#content\">Skip to the content</a>\n<header>\n<h1>{}</h1>\n<p "
            "class=\"soft\">{}</p>\n<nav aria-label=\"Contents\"><ul>\n{}</ul></nav>\n</header>\n<main "
            "id=\"content\">\n"
            "<div class=\"find\" role=\"search\" hidden><label for=\"q\">Search</label><input id=\"q\" "
            "type=\"search\" placeholder=\"a layer, field, code …\" autocomplete=\"off\"><output "
            "id=\"found\" "
            "for=\"q\"></output></div>\n{}</main>\n<footer><p>halvane "
            "{}</p></footer>\n<script>{}</script>\n</body>\n"
            "</html>\n",
            sBeginning, sName, sMapPageStyle, sName, html(sPath_), sContents_, sMain, html(version()),
            sMapPageScript);
    }

private:
    std::string section(std::string_view sTitle) {
        const std::string sId = fmt::format("part-{}", nSections_++);
        sContents_ += fmt::format("<li><a href=\"#{}\">{}</a></li>\n", sId, sTitle);
        return fmt::format("<h2 id=\"{}\">{}</h2>\n", sId, sTitle);
    }

    // ---- Maps ----

    std::string oneMap(const OneMapDescription& map) {
        std::string sHtml =
            section("Map " + html(map.sName) + (map.bShown && *map.bShown ? "" : " (not shown)"));
        const std::size_t nFirst = nLayers_;
        std::string sLayers = layers(map.layers);
        nLayers_ = nFirst;
        sHtml += outline(map) + reference(map.spatialReference, "Spatial reference of the map");
        nLayers_ = nFirst + countLayers(map.layers);
        sHtml += sLayers;
        if (!map.tables)
            return sHtml + "<p>Tables: " + htmlNotReadable(map.tables.sWhyNot) + "</p>\n";
        for (const auto& table : *map.tables)
            sHtml += table ? fmt::format("<article class=\"thing\"><h3>Table {}</h3>\n{}</article>\n",
                                         html(table->sDataset), fields(*table))
                           : unreadable("Table", table.sWhyNot);
        return sHtml;
    }

    static std::string unreadable(std::string_view sWhat, const std::string& sWhyNot) {
        return fmt::format("<article class=\"thing\"><h3>{}</h3><p>{}</p></article>\n", sWhat,
                           htmlNotReadable(sWhyNot));
    }

    static std::size_t countLayers(const ReadingList<LayerDescription>& layers) {
        std::size_t nCount = 0;
        if (layers)
            for (const auto& layer : *layers)
                nCount += 1 + (layer ? countLayers(layer->members) : 0);
        return nCount;
    }

    /// The layers of the map's reference, else of that of the first layer, drawn together.
    std::string outline(const OneMapDescription& map) {
        std::vector<std::pair<const LayerDescription*, std::size_t>> all;
        gather(map.layers, all);
        const std::vector<std::string>* pLines = linesOf(map.spatialReference);
        const auto fits = [&](const auto& one) {
            const auto* const pOwn = linesOf(one.first->spatialReference);
            return pOwn == pLines || (pOwn != nullptr && pLines != nullptr && *pOwn == *pLines);
        };
        if (std::ranges::none_of(all, fits) && !all.empty())
            pLines = linesOf(all.front().first->spatialReference);
        std::vector<DrawnLayer> drawn;
        std::string sLegend;
        for (const auto& one : all) {
            if (!fits(one))
                continue;
            drawn.push_back({&**one.first->featureClass->sketch, one.second % nColours});
            sLegend += fmt::format("<li class=\"c{}\"><span></span><a href=\"#layer-{}\">{}</a></li>\n",
                                   one.second % nColours, one.second, html(one.first->sName));
        }
        if (drawn.empty())
            return {};
        // The first layer of a map lies on top.
        std::ranges::reverse(drawn);
        const bool bDegrees = pLines != nullptr && isInDegrees(*pLines);
        const std::string sOthers =
            drawn.size() == all.size() ? "" : "Layers in other references are drawn by themselves. ";
        return fmt::format(
            "<figure class=\"layers\">{}<figcaption>{}Some of the shapes, simplified; dashed: the extent "
            "of each layer.</figcaption></figure>\n<ul class=\"legend\">{}</ul>\n",
            drawLayers(drawn, bDegrees, "Outline of the map"), sOthers, sLegend);
    }

    /// Layers with an extent, with their numbers.
    void gather(const ReadingList<LayerDescription>& layers,
                std::vector<std::pair<const LayerDescription*, std::size_t>>& all) {
        if (!layers)
            return;
        for (const auto& layer : *layers) {
            const std::size_t nNumber = nLayers_++;
            if (!layer)
                continue;
            if (sketchOf(*layer) != nullptr)
                all.emplace_back(&*layer, nNumber);
            gather(layer->members, all);
        }
    }

    static const LayerSketch* sketchOf(const LayerDescription& layer) {
        const bool bSketch = layer.featureClass && layer.featureClass->sketch &&
                             *layer.featureClass->sketch && (**layer.featureClass->sketch).bounds;
        return bSketch ? &**layer.featureClass->sketch : nullptr;
    }

    static std::string reference(const Reading<std::optional<SpatialReferenceDescription>>& reference,
                                 std::string_view sTitle) {
        if (!reference)
            return fmt::format("<p>{}: {}</p>\n", sTitle, htmlNotReadable(reference.sWhyNot));
        const auto* const pLines = linesOf(reference);
        if (pLines == nullptr)
            return fmt::format("<p class=\"soft\">{}: none</p>\n", sTitle);
        std::string sItems;
        for (const std::string& sLine : *pLines) {
            const auto nBlank = sLine.find(' ');
            const auto nValue = sLine.find_first_not_of(' ', nBlank);
            sItems += fmt::format("<dt>{}</dt><dd>{}</dd>\n", html(sLine.substr(0, nBlank)),
                                  nValue == std::string::npos ? "" : html(sLine.substr(nValue)));
        }
        return fmt::format("<details><summary>{}</summary><dl>{}</dl></details>\n", sTitle, sItems);
    }

    // ---- Layers ----

    std::string layers(const ReadingList<LayerDescription>& layers) {
        if (!layers)
            return "<p>Layers: " + htmlNotReadable(layers.sWhyNot) + "</p>\n";
        std::string sHtml;
        for (const auto& layer : *layers) {
            const std::size_t nNumber = nLayers_++;
            sHtml += layer ? this->layer(*layer, nNumber) : unreadable("Layer", layer.sWhyNot);
        }
        return sHtml;
    }

    std::string layer(const LayerDescription& layer, std::size_t nNumber) {
        std::string sHtml = fmt::format("<article class=\"thing\" id=\"layer-{}\"><h3>Layer {}</h3>\n",
                                        nNumber, html(layer.sName));
        if (layer.kind == LayerKind::Feature)
            sHtml += features(layer, nNumber);
        else
            sHtml += fmt::format("<p>{} layer</p>\n", html(layerKindWord(layer.kind)));
        if (layer.kind == LayerKind::Raster)
            sHtml += "<p>" + html(layer.sFilePath) + "</p>\n";
        sHtml += "</article>\n";
        return layer.kind == LayerKind::Group ? sHtml + layers(layer.members) : sHtml;
    }

    std::string features(const LayerDescription& layer, std::size_t nNumber) {
        if (!layer.featureClass)
            return "<p>" + htmlNotReadable(layer.featureClass.sWhyNot) + "</p>\n";
        const FeatureClassDescription& featureClass = *layer.featureClass;
        std::string sFacts = fmt::format(
            "<dl><dt>Dataset</dt><dd>{}</dd><dt>Shapes</dt><dd>{}</dd><dt>Features</dt><dd>{}</dd>",
            html(featureClass.table.sDataset), wordOr(featureClass.lShapeType, shapeTypeWord),
            featureClass.lFeatures ? std::to_string(*featureClass.lFeatures)
                                   : htmlNotReadable(featureClass.lFeatures.sWhyNot));
        const LayerSketch* const pSketch = sketchOf(layer);
        if (pSketch != nullptr) {
            const host::Bounds& bounds = *pSketch->bounds;
            sFacts += fmt::format("<dt>Extent</dt><dd>{:.10g}, {:.10g} to {:.10g}, {:.10g}</dd>",
                                  bounds.dXMin, bounds.dYMin, bounds.dXMax, bounds.dYMax);
        } else if (featureClass.sketch && !*featureClass.sketch) {
            sFacts += "<dt>Extent</dt><dd>" + htmlNotReadable(featureClass.sketch->sWhyNot) + "</dd>";
        }
        sFacts += "</dl>\n" + reference(layer.spatialReference, "Spatial reference");
        const auto* const pLines = linesOf(layer.spatialReference);
        const std::string sSketch =
            pSketch == nullptr ? ""
                               : drawLayers({{pSketch, nNumber % nColours}},
                                            pLines != nullptr && isInDegrees(*pLines), "Sketch of the layer");
        return fmt::format(
            "<div class=\"wide\"><div>{}</div><figure class=\"sketch\">{}</figure></div>\n{}{}", sFacts,
            sSketch, fields(featureClass.table), subtypes(featureClass));
    }

    std::string fields(const TableDescription& table) {
        if (!table.fields)
            return "<p>Fields: " + htmlNotReadable(table.fields.sWhyNot) + "</p>\n";
        std::string sRows;
        for (const auto& field : *table.fields) {
            if (!field) {
                sRows += row({htmlNotReadable(field.sWhyNot)});
                continue;
            }
            const bool bAlias = !(field->sAlias && field->sName && *field->sAlias == *field->sName);
            sRows +=
                row({html(field->sName), bAlias ? html(field->sAlias) : "",
                     wordOr(field->lTypeCode, fieldTypeWord), number(field->lLength), html(field->bNullable),
                     domainLink(field->sDomain, table.lWorkspace), html(field->sDefault)});
        }
        return tableOf("Fields", {"Name", "Alias", "Type", "Length", "Nullable", "Domain", "Default"}, sRows);
    }

    std::string domainLink(const Reading<std::optional<std::string>>& sDomain,
                           const Reading<std::optional<std::size_t>>& lWorkspace) const {
        if (sDomain && *sDomain && lWorkspace && *lWorkspace)
            if (const auto pId = domainIds_.find({**lWorkspace, **sDomain}); pId != domainIds_.end())
                return fmt::format("<a href=\"#{}\">{}</a>", pId->second, html(**sDomain));
        return html(sDomain);
    }

    std::string subtypes(const FeatureClassDescription& featureClass) {
        if (!featureClass.subtypes)
            return "<p>Subtypes: " + htmlNotReadable(featureClass.subtypes.sWhyNot) + "</p>\n";
        if (!*featureClass.subtypes || !(**featureClass.subtypes).subtypes)
            return {};
        std::string sRows;
        for (const auto& subtype : *(**featureClass.subtypes).subtypes) {
            if (!subtype)
                continue;
            std::string sFields;
            if (subtype->fields)
                for (const auto& field : *subtype->fields)
                    sFields += fmt::format("{}{}: {} {}", sFields.empty() ? "" : "<br>", html(field.sField),
                                           domainLink(field.sDomain, featureClass.table.lWorkspace),
                                           html(field.sDefault));
            sRows += row({std::to_string(subtype->lCode), html(subtype->sName), sFields});
        }
        const auto& sField = (**featureClass.subtypes).sField;
        return tableOf("Subtypes by " + (sField ? *sField : std::string("?")),
                       {"Code", "Name", "Domains and defaults"}, sRows);
    }

    // ---- Workspaces ----

    std::string workspace(std::size_t nWorkspace) {
        const WorkspaceDescription& workspace = description_.workspaces[nWorkspace];
        std::string sHtml;
        if (workspace.domains)
            for (const auto& domain : *workspace.domains)
                sHtml += domain ? this->domain(*domain, nWorkspace) : unreadable("Domain", domain.sWhyNot);
        else
            sHtml += "<p>Domains: " + htmlNotReadable(workspace.domains.sWhyNot) + "</p>\n";
        sHtml += relationships(workspace);
        return section("Workspace " + shownPath(workspace.sPath)) +
               fmt::format("<p class=\"soft\">{}, {}</p>\n", html(workspace.sPath),
                           wordOr(workspace.lType, workspaceTypeWord)) +
               sHtml;
    }

    static std::string shownPath(const Reading<std::string>& sPath) {
        return sPath ? html(std::string_view(*sPath).substr(sPath->rfind('/') + 1)) : "?";
    }

    std::string domain(const DomainDescription& domain, std::size_t nWorkspace) const {
        const auto pId = domainIds_.find({nWorkspace, domain.sName ? *domain.sName : ""});
        std::string sHtml =
            fmt::format("<article class=\"thing\"{}><h3>Domain {}</h3>\n<p class=\"soft\">{}: {}. {}</p>\n",
                        pId == domainIds_.end() ? "" : fmt::format(" id=\"{}\"", pId->second),
                        html(domain.sName), wordOr(domain.lType, domainTypeWord),
                        wordOr(domain.lFieldType, fieldTypeWord), html(domain.sDescription));
        if (domain.sMin && *domain.sMin)
            sHtml += fmt::format("<p>{} to {}</p>\n", html(**domain.sMin), html(domain.sMax));
        std::string sRows;
        if (domain.codes)
            for (const auto& code : *domain.codes)
                sRows +=
                    code ? row({html(code->sCode), html(code->sName)}) : row({htmlNotReadable(code.sWhyNot)});
        return sHtml + (sRows.empty() ? "" : tableOf("Codes", {"Code", "Name"}, sRows)) + "</article>\n";
    }

    static std::string relationships(const WorkspaceDescription& workspace) {
        if (!workspace.relationships)
            return "<p>Relationship classes: " + htmlNotReadable(workspace.relationships.sWhyNot) + "</p>\n";
        std::vector<const RelationshipDescription*> all;
        std::string sRows;
        for (const auto& one : *workspace.relationships) {
            if (!one) {
                sRows += row({htmlNotReadable(one.sWhyNot)});
                continue;
            }
            all.push_back(&*one);
            sRows += row({html(one->sName), wordOr(one->lCardinality, cardinalityWord),
                          html(one->sOriginClass), html(one->sOriginPrimaryKey), html(one->sDestinationClass),
                          html(one->sOriginForeignKey), html(one->bComposite)});
        }
        if (sRows.empty())
            return {};
        return fmt::format(
            "<article class=\"thing\"><h3>Relationship classes</h3>\n<figure class=\"scroll\" tabindex=\"0\" "
            "role=\"region\" aria-label=\"Diagram\">{}</figure>\n{}</article>\n",
            drawRelationships(all),
            tableOf(
                "Keys",
                {"Name", "Cardinality", "Origin", "Primary key", "Destination", "Foreign key", "Composite"},
                sRows));
    }

    const MapDescription& description_;
    const std::string& sPath_;
    std::map<std::pair<std::size_t, std::string>, std::string> domainIds_; ///< by workspace and name
    std::string sContents_;
    std::size_t nSections_ = 0;
    std::size_t nLayers_ = 0; ///< so far, as they are numbered
};

} // namespace

std::string mapPage(const MapDescription& description, const std::string& sPath) {
    return Page(description, sPath).make();
}

bool beginsAsMapPage(std::string_view sText) noexcept {
    return sText.starts_with(sBeginning);
}

} // namespace halvane
