// Items are written straight to the spool from the first on, so that one item may be larger than memory.

#include "exporters/GeometryTest.h"
#include "exporters/NodeCounter.h"

namespace halvane::test {
namespace {

using host::memory::MemoryGeometry;
using host::memory::Part;

constexpr int vertexCount = 3000;

class StreamedItems : public GeometryTest {
protected:
    static constexpr const char* sRoads = "<r Name='R' DataSource='Feature' Entries='Multiple'>"
                                          "<n Name='N' IdentityValue='NAME'/></r>";

    /// Repeats a node over the roads. @returns what was written, without line breaks.
    std::string repeated(std::string_view sControl) { return repeatedInto(element("R"), sControl); }
    std::string repeatedInto(Node oElement, std::string_view sControl) {
        ExportMultiple(state, control(sControl), oElement, nullptr, nullptr, nullptr);
        return joined();
    }
    [[nodiscard]] std::string joined() const { return replaceAll(written(), "\r\n", ""); }
    [[nodiscard]] dom::MemoryUse memoryUse() const { return state.oOutputManager->DOMDoc()->memoryUse(); }

    /// The vertices of every road inside an element for the road.
    std::string verticesOfRoads() {
        return repeated("<r Name='R' DataSource='Feature' Entries='Multiple'>"
                        "<v Name='V' DataSource='Geometry.Vertice' Entries='Multiple'>"
                        "<x Name='x' Target='Attribute' DataProperty='Geometry.X'/>" +
                        std::string(NodeCounter::sElement) + "</v></r>");
    }
    static std::string numbered(const std::string& sOpen, const std::string& sClose) {
        std::string sXml;
        for (int i = 0; i < vertexCount; ++i)
            sXml.append(sOpen).append(std::to_string(i)).append(sClose);
        return sXml;
    }

    std::shared_ptr<std::size_t> pMostNodes = NodeCounter::registerAt(*pHost, state.oOutputManager->DOMDoc());
};

TEST_F(StreamedItems, BeginWithTheFirst) {
    addRoad(straightLine(1));
    const std::size_t nNodesBefore = memoryUse().nodes;
    EXPECT_EQ(repeated(sRoads), "<R><N>Road</N></R>");
    EXPECT_EQ(memoryUse().spooledBytes, std::string("<R>\r\n<N>Road</N>\r\n</R>").size());
    EXPECT_EQ(memoryUse().nodes, nNodesBefore + 1); // what stands for them
}

TEST_F(StreamedItems, HoldNoNodesOfTheVerticesOfAPart) {
    Part aVertices;
    for (int i = 0; i < vertexCount; ++i)
        aVertices.push_back({static_cast<double>(i), 0});
    addRoad(MemoryGeometry::polyline({aVertices}));
    EXPECT_EQ(verticesOfRoads(), "<R><V><Part>" + numbered("<V x=\"", "\"><N/></V>") + "</Part></V></R>");
    EXPECT_GT(*pMostNodes, 0U);
    EXPECT_LT(*pMostNodes, 10U);
}

TEST_F(StreamedItems, HoldNoNodesOfThePartsOfAShape) {
    std::vector<Part> aParts;
    for (int i = 0; i < vertexCount; ++i)
        aParts.push_back({{static_cast<double>(i), 0}});
    addRoad(MemoryGeometry::polyline(aParts));
    EXPECT_EQ(verticesOfRoads(), "<R><V>" + numbered("<Part><V x=\"", "\"><N/></V></Part>") + "</V></R>");
    EXPECT_LT(*pMostNodes, 10U);
}

TEST_F(StreamedItems, HoldNoNodesOfShapesThatAreRepeatedByThemselves) {
    Part aVertices;
    for (int i = 0; i < vertexCount; ++i)
        aVertices.push_back({static_cast<double>(i), 0});
    addRoad(MemoryGeometry::polyline({aVertices}));
    EXPECT_EQ(repeated("<v Name='R' DataSource='Geometry.Vertice' Entries='Multiple'>"
                       "<x Name='x' Target='Attribute' DataProperty='Geometry.X'/>" +
                       std::string(NodeCounter::sElement) + "</v>"),
              "<R><Part>" + numbered("<R x=\"", "\"><N/></R>") + "</Part></R>");
    EXPECT_LT(*pMostNodes, 10U);
}

TEST_F(StreamedItems, FollowAFirstOneWhoseElementHoldsSomethingAlready) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    const Node oElement = element("R");
    Node(oElement).setAttribute("kept", "yes");
    EXPECT_EQ(repeatedInto(oElement, sRoads), "<R kept=\"yes\"><N>Road</N></R><R><N>Road</N></R>");
    EXPECT_EQ(memoryUse().spooledBytes, std::string("<R>\r\n<N>Road</N>\r\n</R>").size());
}

TEST_F(StreamedItems, HoldNoNodesOfAFirstOneThatStoodInTheTree) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    const Node oElement = element("R");
    Node(oElement).setAttribute("kept", "yes");
    std::string sFields;
    for (int i = 0; i < vertexCount; ++i)
        sFields += "<n Name='N' IdentityValue='NAME'/>";
    repeatedInto(oElement, "<r Name='R' DataSource='Feature' Entries='Multiple'>" + sFields + "</r>");
    EXPECT_LT(memoryUse().nodes, 10U);
}

TEST_F(StreamedItems, FollowAFirstOneBehindWhichSomethingStandsAlready) {
    addRoad(straightLine(1));
    addRoad(straightLine(2));
    const Node oElement = element("R");
    element("Last");
    EXPECT_EQ(repeatedInto(oElement, sRoads), "<R><N>Road</N></R><Last/><R><N>Road</N></R>");
}

TEST_F(StreamedItems, LeaveTheElementHandedInWhereThereIsNone) {
    const Node oElement = element("R");
    EXPECT_EQ(repeatedInto(oElement, sRoads), "<R/>");
    EXPECT_EQ(oRoot.lastChild(), oElement);
}

TEST_F(StreamedItems, StayInTheTreeInsideAnItemThatStandsThere) {
    addRoad(straightLine(1));
    state.pTable = pRoads;
    ExportMultiple(state,
                   control("<r Name='R' DataSource='Record' Entries='Multiple'>"
                           "<n Name='N' DataSource='Record' IdentityValue='NAME'/></r>"),
                   element("R"), row(0), nullptr, nullptr);
    EXPECT_EQ(joined(), "<R><N>Road</N></R>");
    EXPECT_EQ(memoryUse().spooledBytes, 0U);
}

TEST_F(StreamedItems, KeepWhatWasWrittenOfAFirstOneThatFails) {
    addRoad(MemoryGeometry::polyline({{{1, 2}, {3, 4}}}));
    pHost->faults().failAt("GisGeometry.point", 2);
    EXPECT_EQ(verticesOfRoads(), "<R><V><Part><V x=\"1\"><N/></V></Part></V></R>");
    EXPECT_EQ(state.lModErrNum, 1004);
}

TEST_F(StreamedItems, AreNoNodes) {
    dom::ItemStream stream(oRoot);
    const OutputElement oItem =
        OutputElement(stream, 0).appendElement(*state.oOutputManager->DOMDoc()->findName("R"));
    try {
        (void)oItem.node();
        FAIL() << "a node was given";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), static_cast<std::int32_t>(FailureNumber::ActionNotSupported));
        EXPECT_EQ(failure.description(), "the element is written straight to the spool");
    }
}

} // namespace
} // namespace halvane::test
