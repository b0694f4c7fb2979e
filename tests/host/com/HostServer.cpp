#include "host/com/HostServer.h"

#include "base/Conversions.h"
#include "base/Failure.h"
#include "base/com/HResult.h"
#include "collection/dCollection.h"
#include "host/Application.h"
#include "host/Domains.h"
#include "host/Fields.h"
#include "host/Geometry.h"
#include "host/IExternalProcessor.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/Rows.h"
#include "host/SpatialReference.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "host/com/CollectionFace.h"
#include "host/com/DispatchObject.h"
#include "host/com/LateBound.h"

#include <cstring>
#include <functional>
#include <unordered_map>

namespace halvane::test {

using com::ComPtr;
using com::require;
using com::toValue;
using com::toVariant;
using com::Variant;
using namespace host;

namespace {

using Arguments = std::vector<Variant>;
using Answer = std::function<Variant(const Arguments&)>;
using Members = std::unordered_map<std::string, Answer>;

// What each kind of object answers.
Members membersOf(const GisPointPtr& pReal);
Members membersOf(const GisGeometryPtr& pReal);
Members membersOf(const GisSpatialReferencePtr& pReal);
Members membersOf(const GisDomainPtr& pReal);
Members membersOf(const GisSubtypesPtr& pReal);
Members membersOf(const GisRelationshipClassPtr& pReal);
Members membersOf(const GisRowPtr& pReal);
Members membersOf(const GisCursorPtr& pReal);
Members membersOf(const GisWorkspacePtr& pReal);
Members membersOf(const GisTablePtr& pReal);
Members membersOf(const GisFeatureClassPtr& pReal);
Members membersOf(const GisDatasetPtr& pReal);
Members membersOf(const GisLayerPtr& pReal);
Members membersOf(const GisMapPtr& pReal);
Members membersOf(const GisPropertySetPtr& pReal);
Members membersOf(const GisWorkspaceFactoryPtr& pReal);
Members membersOf(const GisCatalogObjectPtr& pReal);
Members membersOf(const GisCatalogPtr& pReal);
Members membersOf(const GisNumericFormatPtr& pReal);
Members membersOf(const GisHostPtr& pReal);

/// A real object behind a table of members.
class ServedReal final : public DispatchObject {
public:
    ServedReal(ObjectPtr pReal, Members members) : pReal_(std::move(pReal)), members_(std::move(members)) {}

    [[nodiscard]] const ObjectPtr& real() const { return pReal_; }

protected:
    bool hasMember(const std::string& sName) const override { return members_.contains(sName); }
    Variant get(const std::string& sName, const Arguments& aArguments) override {
        return members_.at(sName)(aArguments);
    }
    void put(const std::string& sName, Variant value) override {
        Arguments aArguments;
        aArguments.push_back(std::move(value));
        static_cast<void>(members_.at(sName + "=")(aArguments));
    }

private:
    ObjectPtr pReal_;
    Members members_;
};

ObjectPtr realOf(IDispatch* pDispatch) {
    const auto* pServed = dynamic_cast<const ServedReal*>(pDispatch);
    return pServed == nullptr ? nullptr : pServed->real();
}

template<class Role>
std::shared_ptr<Role> realIn(const Variant& variant) {
    return std::dynamic_pointer_cast<Role>(realOf(host::com::dispatchIn(variant.get()).get()));
}

std::string text(const Arguments& aArguments, std::size_t nArgument) {
    return toText(toValue(aArguments.at(nArgument).get()));
}

std::int32_t integer(const Arguments& aArguments, std::size_t nArgument) {
    return wholeNumberOf(toView(toValue(aArguments.at(nArgument).get())));
}

/// A member that answers with a plain value.
template<class Call>
Answer plain(Call call) {
    return [call](const Arguments&) { return toVariant(Value(call())); };
}

template<class Role>
Variant served(const std::shared_ptr<Role>& pReal) {
    return variantOf(pReal == nullptr ? ComPtr<IDispatch>()
                                      : makeDispatch<ServedReal>(pReal, membersOf(pReal)));
}

/// A member that answers with an object.
template<class Call>
Answer another(Call call) {
    return [call](const Arguments&) { return served(call()); };
}

Variant list(std::vector<Variant> aItems) {
    static int nLists = 0;
    constexpr int nShapes = 3;
    return listVariant(static_cast<ListShape>(nLists++ % nShapes), std::move(aItems));
}

/// The list of what is told apart by number.
template<class Count, class Item>
Answer listOf(Count count, Item item) {
    return [count, item](const Arguments&) {
        std::vector<Variant> aItems;
        const std::int32_t lCount = count();
        for (std::int32_t i = 0; i < lCount; ++i)
            aItems.push_back(item(i));
        return list(std::move(aItems));
    };
}

/// The list of what an enumeration yields.
template<class Enumeration>
Variant listOf(const std::shared_ptr<Enumeration>& pEnumeration) {
    std::vector<Variant> aItems;
    while (const auto pItem = pEnumeration->next())
        aItems.push_back(served(pItem));
    return list(std::move(aItems));
}

Variant bytes(Bytes held) {
    VARIANT array;
    VariantInit(&array);
    V_VT(&array) = VT_ARRAY | VT_UI1;
    V_ARRAY(&array) = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(held.size()));
    void* pData = nullptr;
    require(SafeArrayAccessData(V_ARRAY(&array), &pData), "SafeArrayAccessData");
    if (!held.empty())
        std::memcpy(pData, held.data(), held.size());
    SafeArrayUnaccessData(V_ARRAY(&array));
    return Variant::attach(array);
}

Members membersOf(const GisPointPtr& p) {
    return {{"X", plain([p] { return p->x(); })},
            {"Y", plain([p] { return p->y(); })},
            {"Z", plain([p] { return p->z(); })},
            {"M", plain([p] { return p->m(); })}};
}

Members membersOf(const GisGeometryPtr& p) {
    return {{"GeometryType", plain([p] { return p->geometryType(); })},
            {"Length", plain([p] { return p->length(); })},
            {"FromPoint", another([p] { return p->fromPoint(); })},
            {"ToPoint", another([p] { return p->toPoint(); })},
            {"PartCount", plain([p] { return p->partCount(); })},
            {"PointCount", [p](const Arguments& a) { return toVariant(p->pointCount(integer(a, 0))); }},
            {"Point", [p](const Arguments& a) { return served(p->point(integer(a, 0), integer(a, 1))); }}};
}

Variant record(Members members) {
    return variantOf(makeDispatch<ServedReal>(nullptr, std::move(members)));
}

Variant measureDomain(const std::optional<MeasureDomain>& found) {
    if (!found.has_value())
        return toVariant(Null{});
    return record({{"Min", plain([d = found->dMin] { return d; })},
                   {"Max", plain([d = found->dMax] { return d; })},
                   {"FalseOrigin", plain([d = found->dFalseOrigin] { return d; })},
                   {"Scale", plain([d = found->dScale] { return d; })}});
}

Variant xyDomain(const std::optional<XyDomain>& found) {
    if (!found.has_value())
        return toVariant(Null{});
    return record({{"XMin", plain([d = found->dXMin] { return d; })},
                   {"YMin", plain([d = found->dYMin] { return d; })},
                   {"XMax", plain([d = found->dXMax] { return d; })},
                   {"YMax", plain([d = found->dYMax] { return d; })},
                   {"FalseX", plain([d = found->dFalseX] { return d; })},
                   {"FalseY", plain([d = found->dFalseY] { return d; })},
                   {"Scale", plain([d = found->dScale] { return d; })}});
}

Members membersOf(const GisSpatialReferencePtr& p) {
    return {{"XyDomain", [p](const Arguments&) { return xyDomain(p->xyDomain()); }},
            {"ZDomain", [p](const Arguments&) { return measureDomain(p->zDomain()); }},
            {"MDomain", [p](const Arguments&) { return measureDomain(p->mDomain()); }},
            {"Description", plain([p] { return p->description(); })}};
}

Members membersOf(const GisDomainPtr& p) {
    return {{"Name", plain([p] { return p->name(); })},
            {"Description", plain([p] { return p->description(); })},
            {"FieldType", plain([p] { return p->fieldType(); })},
            {"MergePolicy", plain([p] { return p->mergePolicy(); })},
            {"SplitPolicy", plain([p] { return p->splitPolicy(); })},
            {"DomainType", plain([p] { return p->domainType(); })},
            {"MinValue", plain([p] { return p->minValue(); })},
            {"MaxValue", plain([p] { return p->maxValue(); })},
            {"CodeCount", plain([p] { return p->codeCount(); })},
            {"CodeValue", [p](const Arguments& a) { return toVariant(p->code(integer(a, 0)).vCode); }},
            {"CodeName", [p](const Arguments& a) { return toVariant(p->code(integer(a, 0)).sName); }}};
}

Members membersOf(const GisSubtypesPtr& p) {
    return {{"HasSubtypes", plain([p] { return p->hasSubtypes(); })},
            {"SubtypeFieldName", plain([p] { return p->subtypeFieldName(); })},
            {"DefaultSubtypeCode", plain([p] { return p->defaultSubtypeCode(); })},
            {"SubtypeCodes", listOf([p] { return p->subtypeCount(); },
                                    [p](std::int32_t i) { return toVariant(p->subtypeCode(i)); })},
            {"SubtypeName", [p](const Arguments& a) { return toVariant(p->subtypeName(integer(a, 0))); }},
            {"Domain", [p](const Arguments& a) { return served(p->domain(integer(a, 0), text(a, 1))); }},
            {"DefaultValue",
             [p](const Arguments& a) { return toVariant(p->defaultValue(integer(a, 0), text(a, 1))); }}};
}

Members membersOf(const GisRelationshipClassPtr& p) {
    return {{"Name", plain([p] { return p->name(); })},
            {"ForwardPathLabel", plain([p] { return p->forwardPathLabel(); })},
            {"BackwardPathLabel", plain([p] { return p->backwardPathLabel(); })},
            {"FeatureDatasetName", plain([p] { return p->featureDatasetName(); })},
            {"IsAttributed", plain([p] { return p->isAttributed(); })},
            {"IsComposite", plain([p] { return p->isComposite(); })},
            {"Notification", plain([p] { return p->notification(); })},
            {"Cardinality", plain([p] { return p->cardinality(); })},
            {"OriginClassName", plain([p] { return p->originClassName(); })},
            {"DestinationClassName", plain([p] { return p->destinationClassName(); })},
            {"OriginPrimaryKey", plain([p] { return p->originPrimaryKey(); })},
            {"OriginForeignKey", plain([p] { return p->originForeignKey(); })},
            {"DestinationPrimaryKey", plain([p] { return p->destinationPrimaryKey(); })},
            {"DestinationForeignKey", plain([p] { return p->destinationForeignKey(); })}};
}

Variant rowValue(const GisRowPtr& pRow, std::int32_t lIndex) {
    const ValueView view = pRow->value(lIndex);
    if (const auto* pBytes = std::get_if<Bytes>(&view))
        return bytes(*pBytes);
    const Value vValue = toValue(view);
    if (const auto pGeometry = objectAs<GisGeometry>(vValue))
        return served(pGeometry);
    return toVariant(vValue);
}

Members membersOf(const GisRowPtr& p) {
    return {{"Value", [p](const Arguments& a) { return rowValue(p, integer(a, 0)); }},
            {"ObjectId", plain([p] { return p->objectId(); })},
            {"Shape", another([p] { return p->shape(); })}};
}

Members membersOf(const GisCursorPtr& p) {
    return {{"NextRow", another([p] { return p->nextRow(); })}};
}

Variant field(const GisFieldsPtr& pFields, std::int32_t lIndex) {
    const GisField* pField = &pFields->field(lIndex);
    return record({{"Name", plain([pFields, pField] { return std::string(pField->name()); })},
                   {"AliasName", plain([pFields, pField] { return std::string(pField->aliasName()); })},
                   {"FieldType", plain([pFields, pField] { return pField->typeCode(); })},
                   {"Length", plain([pFields, pField] { return pField->length(); })},
                   {"Precision", plain([pFields, pField] { return pField->precision(); })},
                   {"IsNullable", plain([pFields, pField] { return pField->isNullable(); })},
                   {"IsEditable", plain([pFields, pField] { return pField->isEditable(); })}});
}

Members membersOf(const GisTablePtr& p) {
    return {{"DatasetName", plain([p] { return p->datasetName(); })},
            {"Fields",
             [p](const Arguments& a) {
                 const GisFieldsPtr pFields = p->fields();
                 return listOf([&] { return pFields->count(); },
                               [&](std::int32_t i) { return field(pFields, i); })(a);
             }},
            {"Search",
             [p](const Arguments& a) {
                 const GisQueryFilter filter{text(a, 0)};
                 return served(p->search(filter.sWhereClause.empty() ? nullptr : &filter));
             }},
            {"SearchWithoutShapes", another([p] { return p->searchWithoutShapes(); })},
            {"Workspace", another([p] { return p->workspace(); })}};
}

Members membersOf(const GisFeatureClassPtr& p) {
    Members members = membersOf(GisTablePtr(p));
    members.merge(Members{{"FeatureCount", plain([p] { return p->featureCount(); })},
                          {"ShapeType", plain([p] { return p->shapeType(); })},
                          {"SpatialReference", another([p] { return p->spatialReference(); })},
                          {"Subtypes", another([p] { return p->subtypes(); })}});
    return members;
}

Members membersOf(const GisWorkspacePtr& p) {
    return {{"PathName", plain([p] { return p->pathName(); })},
            {"WorkspaceType", plain([p] { return p->typeCode(); })},
            {"OpenFeatureClass", [p](const Arguments& a) { return served(p->openFeatureClass(text(a, 0))); }},
            {"OpenTable", [p](const Arguments& a) { return served(p->openTable(text(a, 0))); }},
            {"RelationshipClasses", [p](const Arguments&) { return listOf(p->relationshipClasses()); }},
            {"Domains", [p](const Arguments&) {
                 const auto pRole = p->domainsRole();
                 return pRole == nullptr ? toVariant(Null{}) : listOf(pRole->domains());
             }}};
}

Members membersOf(const GisDatasetPtr& p) {
    return {{"Workspace", another([p] { return p->workspace(); })}};
}

Answer kind(const char* sKind) {
    return plain([sKind] { return std::string(sKind); });
}

Members featureLayer(const GisFeatureLayerPtr& p) {
    return {{"LayerKind", kind("FeatureLayer")},
            {"FeatureClass", another([p] { return p->featureClass(); })},
            {"FeatureClass=",
             [p](const Arguments& a) {
                 p->setFeatureClass(realIn<GisFeatureClass>(a.at(0)));
                 return Variant();
             }},
            {"SelectionCount", plain([p] { return p->selectionCount(); })},
            {"SearchSelection", another([p] { return p->searchSelection(); })},
            {"SpatialReference", another([p] { return p->spatialReference(); })}};
}

template<class Holder>
Answer layersOf(const std::shared_ptr<Holder>& p) {
    return listOf([p] { return p->layerCount(); }, [p](std::int32_t i) { return served(p->layer(i)); });
}

Members membersOf(const GisLayerPtr& pLayer) {
    Members members;
    if (const auto pFeature = std::dynamic_pointer_cast<GisFeatureLayer>(pLayer))
        members = featureLayer(pFeature);
    else if (const auto pRaster = std::dynamic_pointer_cast<GisRasterLayer>(pLayer))
        members = {{"LayerKind", kind("RasterLayer")},
                   {"FilePath", plain([pRaster] { return pRaster->filePath(); })}};
    else if (const auto pTin = std::dynamic_pointer_cast<GisTinLayer>(pLayer))
        members = {{"LayerKind", kind("TinLayer")}, {"Dataset", another([pTin] { return pTin->dataset(); })}};
    else if (const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(pLayer))
        members = {{"LayerKind", kind("GroupLayer")}, {"Layers", layersOf(pGroup)}};
    else
        members = {{"LayerKind", kind("Layer")}};
    members["Name"] = plain([pLayer] { return pLayer->name(); });
    return members;
}

Members membersOf(const GisMapPtr& p) {
    return {{"Name", plain([p] { return p->name(); })},
            {"Layers", layersOf(p)},
            {"StandaloneTables", listOf([p] { return p->standaloneTableCount(); },
                                        [p](std::int32_t i) { return served(p->standaloneTable(i)); })},
            {"SpatialReference", another([p] { return p->spatialReference(); })}};
}

Members membersOf(const GisPropertySetPtr& p) {
    return {{"SetProperty",
             [p](const Arguments& a) {
                 p->setProperty(text(a, 0), toValue(a.at(1).get()));
                 return Variant();
             }},
            {"GetProperty", [p](const Arguments& a) { return toVariant(p->property(text(a, 0))); }}};
}

Members membersOf(const GisWorkspaceFactoryPtr& p) {
    return {{"Open",
             [p](const Arguments& a) {
                 return served(p->open(*realIn<GisPropertySet>(a.at(0)), integer(a, 1)));
             }},
            {"OpenFromFile",
             [p](const Arguments& a) { return served(p->openFromFile(text(a, 0), integer(a, 1))); }}};
}

Members membersOf(const GisCatalogObjectPtr& p) {
    return {{"Name", plain([p] { return p->name(); })},
            {"FullName", plain([p] { return p->fullName(); })},
            {"Category", plain([p] { return p->category(); })},
            {"Parent", another([p] { return p->parent(); })}};
}

Members membersOf(const GisCatalogPtr& p) {
    return {{"ObjectFromFullName",
             [p](const Arguments& a) { return served(p->objectFromFullName(text(a, 0))); }}};
}

Members membersOf(const GisNumericFormatPtr& p) {
    return {{"Configure",
             [p](const Arguments& a) {
                 p->configure({integer(a, 0), integer(a, 1), integer(a, 2), integer(a, 3), integer(a, 4),
                               integer(a, 5), integer(a, 6)});
                 return Variant();
             }},
            {"ValueToText", [p](const Arguments& a) {
                 return toVariant(p->valueToText(numberOf(toView(toValue(a.at(0).get())))));
             }}};
}

/// The collection with the real objects in it.
dCollectionPtr realObjects(const dCollection& objects) {
    auto pReal = dCollection::create();
    for (const std::string& sKey : objects.ReturnKeys()) {
        const auto pDispatch = halvane::com::dispatchOf(std::get<ObjectPtr>(objects.GetValue(sKey)));
        static_cast<void>(pReal->Add(realOf(pDispatch.get()), sKey));
    }
    return pReal;
}

/// A component; only a processor has a member.
Variant component(const ObjectPtr& pComponent) {
    const auto pProcessor = std::dynamic_pointer_cast<IExternalProcessor>(pComponent);
    if (pProcessor == nullptr)
        return record({});
    return record({{"Process", [pProcessor](const Arguments& a) {
                        const auto pCollection = collectionBehind(*V_DISPATCH(&a.at(0).get()));
                        return toVariant(pProcessor->Process(*realObjects(*pCollection)));
                    }}});
}

Members membersOf(const GisHostPtr& p) {
    return {
        {"NewFeatureLayer", another([p] { return GisLayerPtr(p->newFeatureLayer()); })},
        {"NewPropertySet", another([p] { return p->newPropertySet(); })},
        {"NewWorkspaceFactory",
         [p](const Arguments& a) {
             return served(p->newWorkspaceFactory(static_cast<WorkspaceFactoryKind>(integer(a, 0))));
         }},
        {"NewCatalog", another([p] { return p->newCatalog(); })},
        {"NewNumericFormat", another([p] { return p->newNumericFormat(); })},
        {"CreateComponent", [p](const Arguments& a) { return component(p->createComponent(text(a, 0))); }},
        {"Today", plain([p] { return p->today(); })},
        {"PathSeparator", plain([p] { return std::string(1, p->pathSeparator()); })}};
}

} // namespace

ComPtr<IDispatch> serve(const GisMapDocumentPtr& pDocument, const GisHostPtr& pHost) {
    Members members{{"Application", another([pHost] { return pHost; })}};
    if (pDocument != nullptr) {
        members["FocusMap"] = another([pDocument] { return pDocument->focusMap(); });
        members["Maps"] = listOf([pDocument] { return pDocument->mapCount(); },
                                 [pDocument](std::int32_t i) { return served(pDocument->map(i)); });
    }
    return makeDispatch<ServedReal>(pDocument, std::move(members));
}

} // namespace halvane::test
