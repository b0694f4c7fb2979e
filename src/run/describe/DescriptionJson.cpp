#include "run/describe/DescriptionJson.h"

#include "base/Redaction.h"
#include "exporters/FieldTypeName.h"
#include "run/describe/Words.h"
#include "telling/Text.h"
#include "telling/Version.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace halvane {

namespace {

using Json = nlohmann::ordered_json;

/// An object under construction. What could not be read is null, and "notReadable" tells why.
class JsonObject {
public:
    void put(const char* sName, Json value) { object_[sName] = std::move(value); }

    template<class Fact>
    void put(const char* sName, const Reading<Fact>& reading) {
        put(sName, reading, [](const Fact& fact) { return Json(fact); });
    }

    template<class Fact>
    void put(const char* sName, const Reading<std::optional<Fact>>& reading) {
        put(sName, reading, [](const Fact& fact) { return Json(fact); });
    }

    template<class Fact, class Convert>
    void put(const char* sName, const Reading<Fact>& reading, const Convert& convert) {
        object_[sName] = reading ? Json(convert(*reading)) : notReadable(sName, reading.sWhyNot);
    }

    template<class Fact, class Convert>
    void put(const char* sName, const Reading<std::optional<Fact>>& reading, const Convert& convert) {
        if (!reading)
            object_[sName] = notReadable(sName, reading.sWhyNot);
        else
            object_[sName] = *reading ? Json(convert(**reading)) : Json(nullptr);
    }

    /// A code with its word: "type" beside "typeCode".
    template<class Word>
    void putCode(const std::string& sName, const Reading<std::int32_t>& reading, const Word& word) {
        object_[sName] = reading ? Json(word(*reading)) : Json(nullptr);
        put((sName + "Code").c_str(), reading);
    }

    template<class Item, class Convert>
    void putList(const std::string& sName, const ReadingList<Item>& list, const Convert& convert) {
        if (!list) {
            object_[sName] = notReadable(sName, list.sWhyNot);
            return;
        }
        Json array = Json::array();
        for (std::size_t i = 0; i < list->size(); ++i) {
            const auto& item = (*list)[i];
            array.push_back(item ? Json(convert(*item))
                                 : notReadable(fmt::format("{}[{}]", sName, i), item.sWhyNot));
        }
        object_[sName] = std::move(array);
    }

    [[nodiscard]] Json take() {
        if (!notReadable_.empty())
            object_["notReadable"] = std::move(notReadable_);
        return std::move(object_);
    }

private:
    Json notReadable(const std::string& sWhat, const std::string& sWhy) {
        notReadable_.push_back({{"what", sWhat}, {"why", sWhy}});
        return nullptr;
    }

    Json object_ = Json::object();
    Json notReadable_ = Json::array();
};

// ---- Spatial references ----

Json xyJson(const host::XyDomain& domain) {
    return {{"xMin", domain.dXMin},  {"yMin", domain.dYMin},     {"xMax", domain.dXMax},
            {"yMax", domain.dYMax},  {"falseX", domain.dFalseX}, {"falseY", domain.dFalseY},
            {"scale", domain.dScale}};
}

Json measureJson(const host::MeasureDomain& domain) {
    return {{"min", domain.dMin},
            {"max", domain.dMax},
            {"falseOrigin", domain.dFalseOrigin},
            {"scale", domain.dScale}};
}

Json referenceJson(const SpatialReferenceDescription& reference) {
    JsonObject object;
    object.put("description", reference.lines);
    object.put("xyDomain", reference.xy, xyJson);
    object.put("zDomain", reference.z, measureJson);
    object.put("mDomain", reference.m, measureJson);
    return object.take();
}

// ---- Tables and classes ----

void putFieldType(JsonObject& object, const Reading<std::int32_t>& lTypeCode, std::string_view sLiteral) {
    object.put("type", sLiteral.empty() ? Json(nullptr) : Json(sLiteral));
    object.put("typeWord", lTypeCode ? Json(fieldTypeWord(*lTypeCode)) : Json(nullptr));
    object.put("typeCode", lTypeCode);
}

Json fieldJson(const FieldDescription& field) {
    JsonObject object;
    object.put("name", field.sName);
    object.put("alias", field.sAlias);
    putFieldType(object, field.lTypeCode, field.sTypeLiteral);
    object.put("length", field.lLength);
    object.put("precision", field.lPrecision);
    object.put("nullable", field.bNullable);
    object.put("editable", field.bEditable);
    object.put("domain", field.sDomain);
    object.put("default", field.sDefault);
    return object.take();
}

Json subtypeFieldsJson(const std::vector<SubtypeFieldDescription>& fields) {
    Json array = Json::array();
    for (const auto& field : fields) {
        JsonObject object;
        object.put("name", field.sField);
        object.put("domain", field.sDomain);
        object.put("default", field.sDefault);
        array.push_back(object.take());
    }
    return array;
}

Json subtypeJson(const SubtypeDescription& subtype) {
    JsonObject object;
    object.put("code", subtype.lCode);
    object.put("name", subtype.sName);
    object.put("fields", subtype.fields, subtypeFieldsJson);
    return object.take();
}

Json subtypesJson(const SubtypesDescription& subtypes) {
    JsonObject object;
    object.put("field", subtypes.sField);
    object.put("defaultCode", subtypes.lDefaultCode);
    object.putList("subtypes", subtypes.subtypes, subtypeJson);
    return object.take();
}

void putTable(JsonObject& object, const TableDescription& table) {
    object.put("dataset", table.sDataset);
    object.put("workspace", table.lWorkspace);
    object.putList("fields", table.fields, fieldJson);
}

Json tableJson(const TableDescription& table) {
    JsonObject object;
    putTable(object, table);
    return object.take();
}

Json extentJson(const LayerSketch& sketch) {
    const auto& bounds = sketch.bounds;
    return bounds ? Json{bounds->dXMin, bounds->dYMin, bounds->dXMax, bounds->dYMax} : Json(nullptr);
}

Json featureClassJson(const FeatureClassDescription& featureClass) {
    JsonObject object;
    putTable(object, featureClass.table);
    object.putCode("shapeType", featureClass.lShapeType, shapeTypeWord);
    object.put("features", featureClass.lFeatures);
    object.put("subtypes", featureClass.subtypes, subtypesJson);
    if (featureClass.sketch)
        object.put("extent", *featureClass.sketch, extentJson);
    return object.take();
}

// ---- Layers and maps ----

Json layerJson(const LayerDescription& layer) {
    JsonObject object;
    object.put("name", layer.sName);
    object.put("kind", layerKindWord(layer.kind));
    switch (layer.kind) {
    case LayerKind::Feature:
        object.put("selected", layer.lSelected);
        object.put("spatialReference", layer.spatialReference, referenceJson);
        object.put("featureClass", layer.featureClass, featureClassJson);
        break;
    case LayerKind::Raster:
        object.put("file", layer.sFilePath);
        break;
    case LayerKind::Tin:
        object.put("workspace", layer.lWorkspace);
        break;
    case LayerKind::Group:
        object.putList("layers", layer.members, layerJson);
        break;
    case LayerKind::Other:
        break;
    }
    return object.take();
}

Json oneMapJson(const OneMapDescription& map) {
    JsonObject object;
    object.put("name", map.sName);
    object.put("shown", map.bShown);
    object.put("spatialReference", map.spatialReference, referenceJson);
    object.putList("layers", map.layers, layerJson);
    object.putList("tables", map.tables, tableJson);
    return object.take();
}

// ---- Workspaces ----

Json codeJson(const CodeDescription& code) {
    return {{"code", code.sCode}, {"name", code.sName}};
}

Json domainJson(const DomainDescription& domain) {
    JsonObject object;
    object.put("name", domain.sName);
    object.put("description", domain.sDescription);
    object.putCode("kind", domain.lType, domainTypeWord);
    putFieldType(object, domain.lFieldType, domain.lFieldType ? fieldTypeName(*domain.lFieldType) : "");
    object.putCode("mergePolicy", domain.lMergePolicy, mergePolicyWord);
    object.putCode("splitPolicy", domain.lSplitPolicy, splitPolicyWord);
    object.put("min", domain.sMin);
    object.put("max", domain.sMax);
    object.putList("codes", domain.codes, codeJson);
    return object.take();
}

Json relationshipJson(const RelationshipDescription& relationship) {
    JsonObject object;
    object.put("name", relationship.sName);
    object.putCode("cardinality", relationship.lCardinality, cardinalityWord);
    object.putCode("notification", relationship.lNotification, notificationWord);
    object.put("composite", relationship.bComposite);
    object.put("attributed", relationship.bAttributed);
    object.put("originClass", relationship.sOriginClass);
    object.put("destinationClass", relationship.sDestinationClass);
    object.put("forwardLabel", relationship.sForwardLabel);
    object.put("backwardLabel", relationship.sBackwardLabel);
    object.put("originPrimaryKey", relationship.sOriginPrimaryKey);
    object.put("originForeignKey", relationship.sOriginForeignKey);
    object.put("destinationPrimaryKey", relationship.sDestinationPrimaryKey);
    object.put("destinationForeignKey", relationship.sDestinationForeignKey);
    object.put("featureDataset", relationship.sFeatureDataset);
    return object.take();
}

Json workspaceJson(const WorkspaceDescription& workspace) {
    JsonObject object;
    object.put("path", workspace.sPath);
    object.putCode("type", workspace.lType, workspaceTypeWord);
    object.putList("domains", workspace.domains, domainJson);
    object.putList("relationshipClasses", workspace.relationships, relationshipJson);
    return object.take();
}

void maskPasswords(Json& json) {
    if (json.is_string())
        json = withoutPasswords(json.get_ref<const std::string&>());
    else if (json.is_structured())
        std::for_each(json.begin(), json.end(), maskPasswords);
}

} // namespace

std::string descriptionJson(const MapDescription& description, const std::string& sPath) {
    JsonObject object;
    object.put("version", 1);
    object.put("program", "halvane " + std::string(version()));
    object.put("map", sPath);
    object.putList("maps", description.maps, oneMapJson);
    Json workspaces = Json::array();
    for (const auto& workspace : description.workspaces)
        workspaces.push_back(workspaceJson(workspace));
    object.put("workspaces", std::move(workspaces));
    Json json = object.take();
    maskPasswords(json);
    return withoutSteering(json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

} // namespace halvane
