// Repeated items are given back while the export goes on, so that an export may be larger than memory.

#include "exporters/GeometryTest.h"
#include "exporters/NodeCounter.h"

namespace halvane::test {
namespace {

using host::FieldType;
using host::memory::field;
using host::memory::MemoryDomain;
using host::memory::MemoryFeatureClass;
using host::memory::MemoryRelationshipClass;
using host::memory::MemorySubtypes;
using host::memory::MemoryWorkspace;

constexpr int itemCount = 3000;

class CompletedItems : public GeometryTest {
protected:
    CompletedItems() { state.options.lItemLimit = 1'000'000; }

    /// The numbers from 0 on, each between the same tags.
    static std::string numbered(const std::string& sOpen, const std::string& sClose) {
        std::string sXml;
        for (int i = 0; i < itemCount; ++i)
            sXml.append(sOpen).append(std::to_string(i)).append(sClose);
        return sXml;
    }
    /// What was written, without the line breaks that come with giving nodes back.
    [[nodiscard]] std::string joined() const { return replaceAll(written(), "\r\n", ""); }

    void addWorkspace() {
        pWorkspace = MemoryWorkspace::make("D:\\data.mdb", 1);
        pWorkspace->add(pRoads);
    }
    /// A class whose fields are named by numbers.
    static host::memory::MemoryFeatureClassPtr classOfManyFields() {
        std::vector<host::memory::FieldDefinition> aFields;
        for (int i = 0; i < itemCount; ++i)
            aFields.push_back(field(std::to_string(i), FieldType::String));
        return MemoryFeatureClass::make("Wide", host::ShapeType::Polyline, std::move(aFields));
    }

    host::memory::MemoryWorkspacePtr pWorkspace;
    SubtypeProgress progress;
};

TEST_F(CompletedItems, OfFeaturesAreGivenBack) {
    for (int i = 0; i < itemCount; ++i)
        addRoad(straightLine(i));
    OutputElement oElement = element("L");
    ExportGeometry(state,
                   control("<g Name='L' DataSource='Geometry.Length' DataProperty='Geometry.Length'/>"),
                   oElement, nullptr);
    EXPECT_LT(oRoot.childNodes().length(), itemCount);
    EXPECT_EQ(oElement.node(), oRoot.lastChild());
    EXPECT_EQ(joined(), numbered("<L>", "</L>"));
}

TEST_F(CompletedItems, OfVerticesAreGivenBackWithTheirFeature) {
    for (int i = 0; i < itemCount; ++i)
        addRoad(host::memory::MemoryGeometry::point({static_cast<double>(i), 0}));
    OutputElement oElement = element("P");
    ExportGeometry(
        state,
        control("<g Name='P' DataSource='Geometry.Vertice'><x Name='X' DataProperty='Geometry.X'/></g>"),
        oElement, nullptr);
    EXPECT_LT(oRoot.childNodes().length(), itemCount);
    EXPECT_EQ(joined(), numbered("<P><Part><P><X>", "</X></P></Part></P>"));
}

TEST_F(CompletedItems, OfOneLargeShapeAreGivenBackWhileItIsWritten) {
    const auto pMostNodes = NodeCounter::registerAt(*pHost, state.oOutputManager->DOMDoc());
    host::memory::Part aVertices;
    std::vector<host::memory::Part> aParts;
    for (int i = 0; i < 3 * itemCount; ++i) {
        aVertices.push_back({static_cast<double>(i), 0});
        aParts.push_back({{static_cast<double>(i), 0}});
    }
    for (const auto& aOfOneShape : {std::vector<host::memory::Part>{aVertices}, aParts}) {
        addRoad(host::memory::MemoryGeometry::polyline(aOfOneShape));
        OutputElement oElement = element("P");
        ExportGeometry(state,
                       control("<g Name='P' DataSource='Geometry.Vertice'>" +
                               std::string(NodeCounter::sElement) + "</g>"),
                       oElement, row(static_cast<int>(pRoads->contents().rowCount()) - 1));
        EXPECT_LT(*pMostNodes, 5 * itemCount);           // of 15 times as many
        EXPECT_EQ(oElement.node().xml(), "<P><N/></P>"); // the last stays
    }
    std::string sVertices = "<P><Part>";
    std::string sParts = "<P>";
    for (int i = 0; i < 3 * itemCount; ++i) {
        sVertices += "<P><N/></P>";
        sParts += "<Part><P><N/></P></Part>";
    }
    EXPECT_EQ(joined(), sVertices + "</Part></P>" + sParts + "</P>");
}

TEST_F(CompletedItems, OfRelationshipClassesAreGivenBack) {
    addWorkspace();
    for (int i = 0; i < itemCount; ++i) {
        host::memory::RelationshipDefinition definition;
        definition.sName = std::to_string(i);
        pWorkspace->add(MemoryRelationshipClass::make(std::move(definition)));
    }
    OutputElement oElement = element("R");
    ExportRelationshipClasses(
        state,
        control("<r Name='R' DataSource='Relationship'><n Name='N' DataProperty='RelationshipName'/></r>"),
        oElement);
    EXPECT_LT(oRoot.childNodes().length(), itemCount);
    EXPECT_EQ(joined(), numbered("<R><N>", "</N></R>"));
}

TEST_F(CompletedItems, OfDomainsAreGivenBack) {
    addWorkspace();
    for (int i = 0; i < itemCount; ++i)
        pWorkspace->add(MemoryDomain::ofType(std::to_string(i), 4, 3));
    OutputElement oElement = element("D");
    ExportDomains(
        state,
        control("<d Name='D' DataSource='WorkspaceDomain'><n Name='N' DataProperty='DomainName'/></d>"),
        oElement);
    EXPECT_LT(oRoot.childNodes().length(), itemCount);
    EXPECT_EQ(joined(), numbered("<D><N>", "</N></D>"));
}

TEST_F(CompletedItems, OfFieldsAreGivenBack) {
    ExportFields(
        state, classOfManyFields(),
        control(
            "<f Name='Fields' Entries='Multiple'><t Name='F'><n Name='N' DataProperty='FieldName'/></t></f>"),
        oRoot);
    EXPECT_LT(oRoot.childNodes().length(), itemCount);
    EXPECT_EQ(joined(), numbered("<F><N>", "</N></F>"));
}

TEST_F(CompletedItems, OfSubtypesAreGivenBack) {
    const auto pSubtypes = MemorySubtypes::make("KIND", 0);
    for (int i = 0; i < itemCount; ++i)
        pSubtypes->addSubtype(i, "Kind");
    ExportSubtypes(state, pRoads, pSubtypes,
                   control("<s Name='S' DataSource='SubType' Entries='Multiple'><c Name='C' "
                           "DataProperty='SubTypeCode'/></s>"),
                   element("S"), progress);
    EXPECT_LT(oRoot.childNodes().length(), itemCount);
    EXPECT_EQ(joined(), numbered("<S><C>", "</C></S>"));
}

TEST_F(CompletedItems, OfTheFieldsOfASubtypeAreGivenBack) {
    const auto pSubtypes = MemorySubtypes::make("KIND", 0);
    pSubtypes->addSubtype(0, "Kind");
    ExportSubtypes(state, classOfManyFields(), pSubtypes,
                   control("<s Name='F' DataSource='SubTypeFieldInfo' Entries='Multiple'><n Name='N' "
                           "DataProperty='FieldName'/></s>"),
                   element("F"), progress);
    EXPECT_LT(oRoot.childNodes().length(), itemCount);
    EXPECT_EQ(joined(), numbered("<F><N>", "</N></F>"));
}

TEST_F(CompletedItems, LeaveTheElementOfAParentThatTheFirstWasWrittenInto) {
    for (int i = 0; i < itemCount; ++i)
        addRoad(straightLine(i));
    const Node oParentElement = element("G");
    OutputElement oElement = oParentElement;
    ExportGeometry(
        state,
        control(
            "<g Name='l' Target='Attribute' DataSource='Geometry.Length' DataProperty='Geometry.Length'/>"),
        oElement, nullptr);
    EXPECT_LT(oRoot.childNodes().length(), itemCount);
    EXPECT_EQ(oRoot.firstChild(), oParentElement);
    EXPECT_EQ(oParentElement.xml(), "<G l=\"0\"/>");
}

TEST_F(CompletedItems, StayWhileOneElementHoldsThemAll) {
    addWorkspace();
    for (int i = 0; i < itemCount; ++i)
        pWorkspace->add(MemoryDomain::ofType(std::to_string(i), 4, 3));
    OutputElement oElement = element("D");
    ExportDomains(state, control("<d Name='D' DataSource='WorkspaceDomain' DataProperty='DomainName'/>"),
                  oElement);
    EXPECT_EQ(oElement.node().childNodes().length(), itemCount);
}

TEST_F(CompletedItems, GoWithTheContentThatASpatialReferenceReplaces) {
    state.pFeatureClass = classOfManyFields();
    ExportFields(
        state, state.pFeatureClass,
        control(
            "<f Name='Fields' Entries='Multiple'><t Name='F'><n Name='N' DataProperty='FieldName'/></t></f>"),
        oRoot);
    const auto pMap = host::memory::MemoryMap::make("Main");
    pMap->setSpatialReference(host::memory::MemorySpatialReference::make("Datum NAD83"));
    state.pMap = pMap;
    ExportSpatialReference(
        state, control("<v Name='d' Target='Attribute' DataProperty='SPATIALREFERENCE.DATUM'/>"), oRoot);
    EXPECT_EQ(joined(), "NAD83");
}

TEST_F(CompletedItems, GoWithTheContentThatVerticesReplace) {
    ExportFields(
        state, classOfManyFields(),
        control(
            "<f Name='Fields' Entries='Multiple'><t Name='F'><n Name='N' DataProperty='FieldName'/></t></f>"),
        oRoot);
    addRoad(host::memory::MemoryGeometry::point({1, 2}));
    OutputElement oElement = oRoot;
    ExportGeometry(state,
                   control("<g Name='P' Target='Attribute' DataSource='Geometry.Vertice'>"
                           "<x Name='X' DataProperty='Geometry.X'/></g>"),
                   oElement, nullptr);
    EXPECT_EQ(joined(), "<Part><P><X>1</X></P></Part>");
}

} // namespace
} // namespace halvane::test
