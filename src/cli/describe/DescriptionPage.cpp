#include "cli/describe/DescriptionPage.h"

#include "base/Numbers.h"
#include "cli/describe/Page.h"
#include "exporters/FieldTypeName.h"
#include "run/describe/Words.h"
#include "telling/Text.h"

#include <fmt/format.h>

namespace halvane::cli {

namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string yesNo(bool bYes) {
    return bYes ? "yes" : "no";
}

std::string number(std::int64_t lNumber) {
    return std::to_string(lNumber);
}

/// 0 says that it is unknown or does not apply.
std::string numberUnlessZero(std::int32_t lNumber) {
    return lNumber == 0 ? "" : std::to_string(lNumber);
}

// ---- Spatial references ----

std::string xyText(const host::XyDomain& domain) {
    return fmt::format("x {} to {}, y {} to {}, false origin {} {}, scale {}", doubleText(domain.dXMin),
                       doubleText(domain.dXMax), doubleText(domain.dYMin), doubleText(domain.dYMax),
                       doubleText(domain.dFalseX), doubleText(domain.dFalseY), doubleText(domain.dScale));
}

std::string measureText(const host::MeasureDomain& domain) {
    return fmt::format("{} to {}, false origin {}, scale {}", doubleText(domain.dMin),
                       doubleText(domain.dMax), doubleText(domain.dFalseOrigin), doubleText(domain.dScale));
}

template<class Domain, class Convert>
std::string domainText(const Reading<std::optional<Domain>>& reading, const Convert& convert) {
    if (!reading)
        return notReadable(reading.sWhyNot);
    return *reading ? convert(**reading) : "none";
}

using ReferenceReading = Reading<std::optional<SpatialReferenceDescription>>;

std::vector<std::string> referenceLines(const SpatialReferenceDescription& reference) {
    std::vector<std::string> lines =
        reference.lines ? *reference.lines : std::vector{notReadable(reference.lines.sWhyNot)};
    lines.push_back("XY domain: " + domainText(reference.xy, xyText));
    lines.push_back("Z domain: " + domainText(reference.z, measureText));
    lines.push_back("M domain: " + domainText(reference.m, measureText));
    return lines;
}

/// @param pOfMap the reference that is only named where this one is the same; may be nothing.
void writeReference(Page& page, const ReferenceReading& reference, const ReferenceReading* pOfMap) {
    constexpr const char* sLabel = "Spatial reference";
    if (!reference)
        return page.fact(sLabel, notReadable(reference.sWhyNot));
    if (!*reference)
        return page.fact(sLabel, "none");
    const auto lines = referenceLines(**reference);
    if (pOfMap != nullptr && *pOfMap && **pOfMap && referenceLines(***pOfMap) == lines)
        return page.fact(sLabel, "that of the map");
    page.line(sLabel);
    page.indented([&] {
        for (const auto& sLine : lines)
            page.line(sLine);
    });
}

// ---- Tables and classes ----

/// "" for an alias that only repeats the name.
std::string aliasOf(const FieldDescription& field) {
    return field.sAlias && field.sName && *field.sAlias == *field.sName ? "" : textOf(field.sAlias);
}

std::vector<std::string> fieldRow(const FieldDescription& field) {
    return {textOf(field.sName),
            field.lTypeCode ? fieldTypeWord(*field.lTypeCode) : notReadable(field.lTypeCode.sWhyNot),
            field.sTypeLiteral,
            textOf(field.lLength, numberUnlessZero),
            textOf(field.lPrecision, numberUnlessZero),
            textOf(field.bNullable, yesNo),
            textOf(field.bEditable, yesNo),
            aliasOf(field),
            textOf(field.sDomain),
            textOf(field.sDefault)};
}

void writeFields(Page& page, const ReadingList<FieldDescription>& fields) {
    page.section("Fields", fields, [&] {
        Rows rows{{"Name", "Type", "Literal", "Length", "Precision", "Nullable", "Editable", "Alias",
                   "Domain", "Default"}};
        for (const auto& field : *fields) {
            rows.push_back(field ? fieldRow(*field) : std::vector<std::string>(rows.front().size()));
            if (!field)
                rows.back().front() = notReadable(field.sWhyNot);
        }
        page.columns(rows);
    });
}

void writeSubtype(Page& page, const SubtypeDescription& subtype, const Reading<std::int32_t>& lDefaultCode) {
    const bool bDefault = lDefaultCode && *lDefaultCode == subtype.lCode;
    page.line(fmt::format("{}  {}{}", subtype.lCode, textOf(subtype.sName), bDefault ? " (default)" : ""));
    page.indented([&] {
        if (!subtype.fields)
            return page.line("fields " + notReadable(subtype.fields.sWhyNot));
        if (subtype.fields->empty())
            return;
        Rows rows{{"Field", "Domain", "Default"}};
        for (const auto& field : *subtype.fields)
            rows.push_back({field.sField, textOf(field.sDomain), textOf(field.sDefault)});
        page.columns(rows);
    });
}

void writeSubtypes(Page& page, const Reading<std::optional<SubtypesDescription>>& reading) {
    if (!reading || !*reading)
        return page.fact("Subtypes", reading ? "none" : notReadable(reading.sWhyNot));
    const SubtypesDescription& subtypes = **reading;
    page.line("Subtypes by the field " + textOf(subtypes.sField));
    page.indented([&] {
        if (!subtypes.lDefaultCode)
            page.fact("Default", notReadable(subtypes.lDefaultCode.sWhyNot));
        if (!subtypes.subtypes)
            return page.line(notReadable(subtypes.subtypes.sWhyNot));
        for (const auto& subtype : *subtypes.subtypes)
            if (subtype)
                writeSubtype(page, *subtype, subtypes.lDefaultCode);
            else
                page.line(notReadable(subtype.sWhyNot));
    });
}

// ---- Layers and maps ----

using Workspaces = std::vector<WorkspaceDescription>;

void writeWorkspaceOf(Page& page, const Reading<std::optional<std::size_t>>& lWorkspace,
                      const Workspaces& workspaces) {
    if (!lWorkspace)
        page.fact("Workspace", notReadable(lWorkspace.sWhyNot));
    else
        page.fact("Workspace", *lWorkspace ? textOf(workspaces[**lWorkspace].sPath) : "none");
}

/// The layers and tables of one map.
class MapPage {
public:
    MapPage(Page& page, const OneMapDescription& map, const Workspaces& workspaces)
        : page_(page), map_(map), workspaces_(workspaces) {}

    void write() const {
        const std::string sShown =
            map_.bShown ? (*map_.bShown ? " (shown)" : "")
                        : fmt::format(" (whether it is shown is {})", notReadable(map_.bShown.sWhyNot));
        page_.line(fmt::format("MAP {}{}", textOf(map_.sName), sShown));
        page_.indented([&] {
            writeReference(page_, map_.spatialReference, nullptr);
            writeLayers(map_.layers, "Layers", "LAYER");
            writeTables();
        });
    }

private:
    void writeLayers(const ReadingList<LayerDescription>& layers, const char* sLabel,
                     const char* sHeading) const {
        if (!layers || layers->empty())
            return page_.fact(sLabel, layers ? "none" : notReadable(layers.sWhyNot));
        for (const auto& layer : *layers) {
            page_.gap();
            if (layer)
                writeLayer(*layer, sHeading);
            else
                page_.line(fmt::format("{} {}", sHeading, notReadable(layer.sWhyNot)));
        }
    }

    void writeLayer(const LayerDescription& layer, const char* sHeading) const {
        page_.line(fmt::format("{} {}: {} layer", sHeading, textOf(layer.sName), layerKindWord(layer.kind)));
        page_.indented([&] {
            switch (layer.kind) {
            case LayerKind::Feature:
                return writeFeatureLayer(layer);
            case LayerKind::Raster:
                return page_.fact("File", textOf(layer.sFilePath));
            case LayerKind::Tin:
                return writeWorkspaceOf(page_, layer.lWorkspace, workspaces_);
            case LayerKind::Group:
                return writeLayers(layer.members, "Members", "MEMBER");
            case LayerKind::Other:
                return;
            }
        });
    }

    void writeFeatureLayer(const LayerDescription& layer) const {
        if (layer.sName && layer.sName->find(':') != std::string::npos)
            page_.fact("Identity",
                       "a name with \":\" is read as Group:Member; give the layer another name in a "
                       "map document");
        writeReference(page_, layer.spatialReference, &map_.spatialReference);
        if (!layer.featureClass) {
            page_.fact("Selected", textOf(layer.lSelected, number));
            return page_.fact("Feature class", notReadable(layer.featureClass.sWhyNot));
        }
        const FeatureClassDescription& featureClass = *layer.featureClass;
        page_.fact("Feature class", textOf(featureClass.table.sDataset));
        writeWorkspaceOf(page_, featureClass.table.lWorkspace, workspaces_);
        page_.fact("Shapes", textOf(featureClass.lShapeType, shapeTypeWord));
        page_.fact("Features", textOf(featureClass.lFeatures, number));
        page_.fact("Selected", textOf(layer.lSelected, number));
        writeFields(page_, featureClass.table.fields);
        writeSubtypes(page_, featureClass.subtypes);
    }

    void writeTables() const {
        if (!map_.tables || map_.tables->empty())
            return page_.fact("Tables", map_.tables ? "none" : notReadable(map_.tables.sWhyNot));
        for (const auto& table : *map_.tables) {
            page_.gap();
            if (!table) {
                page_.line("TABLE " + notReadable(table.sWhyNot));
                continue;
            }
            page_.line("TABLE " + textOf(table->sDataset));
            page_.indented([&] {
                writeWorkspaceOf(page_, table->lWorkspace, workspaces_);
                writeFields(page_, table->fields);
            });
        }
    }

    Page& page_;
    const OneMapDescription& map_;
    const Workspaces& workspaces_;
};

// ---- Workspaces ----

void writeDomain(Page& page, const DomainDescription& domain) {
    page.line(fmt::format("{}: {} of {}", textOf(domain.sName), textOf(domain.lType, domainTypeWord),
                          textOf(domain.lFieldType, fieldTypeWord)));
    page.indented([&] {
        if (const auto sText = textOf(domain.sDescription); !sText.empty())
            page.fact("Description", sText);
        page.fact("Policies", fmt::format("merge {}, split {}", textOf(domain.lMergePolicy, mergePolicyWord),
                                          textOf(domain.lSplitPolicy, splitPolicyWord)));
        const auto sMin = textOf(domain.sMin);
        const auto sMax = textOf(domain.sMax);
        if (!sMin.empty() || !sMax.empty())
            page.fact("Range", fmt::format("{} to {}", sMin, sMax));
        if (!domain.codes)
            return page.fact("Codes", notReadable(domain.codes.sWhyNot));
        Rows rows{{"Code", "Name"}};
        for (const auto& code : *domain.codes)
            rows.push_back(code ? std::vector{code->sCode, code->sName}
                                : std::vector{notReadable(code.sWhyNot), std::string()});
        if (rows.size() > 1)
            page.columns(rows);
    });
}

void writeRelationship(Page& page, const RelationshipDescription& relationship) {
    page.line(fmt::format("{}: {} to {}, {}", textOf(relationship.sName), textOf(relationship.sOriginClass),
                          textOf(relationship.sDestinationClass),
                          textOf(relationship.lCardinality, cardinalityWord)));
    page.indented([&] {
        const auto factUnlessEmpty = [&](const char* sLabel, const Reading<std::string>& reading) {
            if (const auto sText = textOf(reading); !sText.empty())
                page.fact(sLabel, sText);
        };
        page.fact("Origin keys", fmt::format("primary {}, foreign {}", textOf(relationship.sOriginPrimaryKey),
                                             textOf(relationship.sOriginForeignKey)));
        factUnlessEmpty("Destination primary key", relationship.sDestinationPrimaryKey);
        factUnlessEmpty("Destination foreign key", relationship.sDestinationForeignKey);
        factUnlessEmpty("Forward label", relationship.sForwardLabel);
        factUnlessEmpty("Backward label", relationship.sBackwardLabel);
        page.fact("Composite", textOf(relationship.bComposite, yesNo));
        page.fact("Attributed", textOf(relationship.bAttributed, yesNo));
        page.fact("Notification", textOf(relationship.lNotification, notificationWord));
        factUnlessEmpty("Feature dataset", relationship.sFeatureDataset);
    });
}

template<class Item, class Write>
void writeItems(Page& page, const char* sLabel, const ReadingList<Item>& items, const Write& write) {
    page.section(sLabel, items, [&] {
        for (const auto& item : *items)
            if (item)
                write(page, *item);
            else
                page.line(notReadable(item.sWhyNot));
    });
}

void writeWorkspace(Page& page, const WorkspaceDescription& workspace) {
    page.gap();
    page.line("WORKSPACE " + textOf(workspace.sPath));
    page.indented([&] {
        page.fact("Type", textOf(workspace.lType, workspaceTypeWord));
        writeItems(page, "Domains", workspace.domains, writeDomain);
        writeItems(page, "Relationship classes", workspace.relationships, writeRelationship);
    });
}

} // namespace

std::string descriptionPage(const MapDescription& description, const std::string& sPath) {
    Page page;
    page.line(sPath);
    if (!description.maps) {
        page.fact("Maps", notReadable(description.maps.sWhyNot));
    } else {
        for (const auto& map : *description.maps) {
            page.gap();
            if (map)
                MapPage(page, *map, description.workspaces).write();
            else
                page.line("MAP " + notReadable(map.sWhyNot));
        }
    }
    for (const auto& workspace : description.workspaces)
        writeWorkspace(page, workspace);
    return page.take();
}

} // namespace halvane::cli
