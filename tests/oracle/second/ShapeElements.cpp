// Shapes as elements of GML and KML.

#include "host/Rows.h"
#include "oracle/Interpreter.h"

namespace halvane::oracle {

namespace {

std::string namespaceOf(const std::string& sForm) {
    return sForm == "GML" ? "http://www.opengis.net/gml/3.2" : "http://www.opengis.net/kml/2.2";
}

/// The outermost element of a shape of GML, and that around each of its members.
std::pair<std::string, std::string> gmlNames(const std::string& sType) {
    if (sType == "MultiPoint")
        return {sType, "pointMember"};
    if (sType == "MultiLineString")
        return {"MultiCurve", "curveMember"};
    if (sType == "MultiPolygon")
        return {"MultiSurface", "surfaceMember"};
    if (sType == "GeometryCollection")
        return {"MultiGeometry", "geometryMember"};
    return {sType, ""};
}

/// Makes the elements of one form in one place.
class ElementMaker {
public:
    ElementMaker(OutputTree& tree, std::string sPrefix) : tree_(tree), sPrefix_(std::move(sPrefix)) {}

    [[nodiscard]] std::string name(const std::string& sLocal) const { return sPrefix_ + sLocal; }
    OutputNode* add(OutputNode* pParent, const std::string& sLocal) const {
        return tree_.append(pParent, tree_.newElement(name(sLocal)));
    }
    void addText(OutputNode* pParent, const std::string& sLocal, const std::string& sText,
                 bool bThree = false) const {
        OutputNode* const pElement = add(pParent, sLocal);
        if (bThree)
            tree_.setAttribute(pElement, "srsDimension", "3");
        tree_.setText(pElement, sText);
    }

private:
    OutputTree& tree_;
    std::string sPrefix_;
};

void addGml(const ElementMaker& make, OutputNode* pMember, const ShapeMember& member, bool bHeights,
            const Notation& notation) {
    const auto list = [&](const Points& aRun) { return notation.positions(aRun, " ", bHeights); };
    if (member.sType == "Point") {
        make.addText(pMember, "pos", list(member.aRuns.front()), bHeights);
    } else if (member.sType == "LineString") {
        make.addText(pMember, "posList", list(member.aRuns.front()), bHeights);
    } else {
        for (const Points& aRing : member.aRuns) {
            OutputNode* const pSide =
                make.add(pMember, &aRing == member.aRuns.data() ? "exterior" : "interior");
            make.addText(make.add(pSide, "LinearRing"), "posList", list(aRing), bHeights);
        }
    }
}

void addKml(const ElementMaker& make, OutputNode* pMember, const ShapeMember& member, bool bHeights,
            const Notation& notation) {
    for (const Points& aRun : member.aRuns) {
        OutputNode* pOfRun = pMember;
        if (member.sType == "Polygon")
            pOfRun = make.add(
                make.add(pMember, &aRun == member.aRuns.data() ? "outerBoundaryIs" : "innerBoundaryIs"),
                "LinearRing");
        make.addText(pOfRun, "coordinates", notation.positions(aRun, ",", bHeights));
    }
}

} // namespace

/// With its colon; "" for the default namespace, which GML cannot use: its attributes need a prefix.
std::string Interpreter::prefixFor(const std::string& sForm) const {
    for (const auto& [sName, sValue] : pRoot_->aAttributes) {
        if (sValue != namespaceOf(sForm))
            continue;
        if (sName.starts_with("xmlns:"))
            return sName.substr(6) + ":";
        if (sName == "xmlns" && sForm != "GML")
            return "";
    }
    return sForm == "GML" ? "gml:" : "kml:";
}

/// The outermost element declares the prefix that the control file does not.
OutputNode* Interpreter::outermost(OutputNode* pOut, const std::string& sForm, const std::string& sName) {
    const std::string sPrefix = prefixFor(sForm);
    OutputNode* const pElement = tree_.newElement(sPrefix + sName);
    const std::string sDeclared =
        sPrefix.empty() ? "xmlns" : "xmlns:" + sPrefix.substr(0, sPrefix.size() - 1);
    if (pRoot_->get(sDeclared) != namespaceOf(sForm))
        tree_.setConstantAttribute(pElement, sDeclared, namespaceOf(sForm));
    return tree_.append(pOut, pElement);
}

/// Nothing where no name tells the reference and the order of the axes.
std::string Interpreter::srsName() const {
    const bool bYFirst = isYFirst("GML");
    const auto pReference = referenceWritten("GML");
    const std::string sCode = pReference == nullptr ? std::string() : pReference->authorityCode();
    const std::size_t nColon = sCode.find(':');
    if (nColon == std::string::npos)
        return {};
    if (bYFirst != pReference->isNorthFirst())
        return bYFirst ? std::string() : sCode;
    const std::string sAuthority = sCode.substr(0, nColon);
    const std::string sVersion = sAuthority == "OGC" ? "1.3" : "0";
    return "http://www.opengis.net/def/crs/" + sAuthority + "/" + sVersion + "/" + sCode.substr(nColon + 1);
}

std::string Interpreter::idOfShape(Node node, const Attributes& attributes) {
    if (!node.has("h:Id"))
        return {};
    const std::string sId = filledIn(node.get("h:Id"), attributes);
    if (sId.find(':') != std::string::npos || !isAllowedName(sId))
        throw Failure(FailureNumber::DocumentFailure,
                      "the identifier \"" + sId +
                          "\" is no name that XML allows; let it begin with a letter");
    return sId;
}

void Interpreter::writeShapeElements(Node node, OutputNode* pOut, const Attributes& attributes) {
    if (node.get("h:Geometry") == "KML")
        writeKml(pOut, attributes);
    else if (rowAtHand() == nullptr)
        writeEnvelope(pOut, attributes);
    else
        writeGml(node, pOut, attributes);
}

void Interpreter::writeEnvelope(OutputNode* pOut, const Attributes& attributes) {
    const auto bounds = boundsOfLayer();
    if (!bounds)
        return;
    const Notation notation = notationFor("GML", attributes);
    const std::string sReference = srsName();
    OutputNode* const pEnvelope = outermost(pOut, "GML", "Envelope");
    if (!sReference.empty())
        tree_.setAttribute(pEnvelope, "srsName", sReference);
    const ElementMaker make(tree_, prefixFor("GML"));
    make.addText(pEnvelope, "lowerCorner",
                 notation.position({bounds->dXMin, bounds->dYMin, 0, 0}, " ", false));
    make.addText(pEnvelope, "upperCorner",
                 notation.position({bounds->dXMax, bounds->dYMax, 0, 0}, " ", false));
    noteTurn("an envelope of a layer");
}

void Interpreter::writeGml(Node node, OutputNode* pOut, const Attributes& attributes) {
    const PlainShape shape = shapeFor("GML");
    if (shape.isEmpty())
        return;
    const Notation notation = notationFor("GML", attributes);
    const std::string sReference = srsName();
    const std::string sId = idOfShape(node, attributes);
    const ElementMaker make(tree_, prefixFor("GML"));
    const auto [sOutermost, sAroundMember] = gmlNames(shape.sType);
    OutputNode* const pOutermost = outermost(pOut, "GML", sOutermost);
    if (!sId.empty())
        tree_.setAttribute(pOutermost, make.name("id"), sId);
    if (!sReference.empty())
        tree_.setAttribute(pOutermost, "srsName", sReference);
    std::size_t nMember = 0;
    for (const ShapeMember& member : shape.aMembers) {
        OutputNode* pMember = pOutermost;
        if (shape.isOfMembers()) {
            pMember = make.add(make.add(pOutermost, sAroundMember), member.sType);
            if (!sId.empty())
                tree_.setAttribute(pMember, make.name("id"), sId + "." + std::to_string(++nMember));
        }
        addGml(make, pMember, member, shape.bHeights, notation);
    }
    noteTurn("h:Geometry=\"GML\"");
    noteTurn("a shape in elements: " + shape.sType);
    noteTurn(sReference.empty() ? "a shape that names no reference" : "a shape that names its reference");
}

void Interpreter::writeKml(OutputNode* pOut, const Attributes& attributes) {
    const PlainShape shape = shapeFor("KML");
    if (shape.isEmpty())
        return;
    const Notation notation = notationFor("KML", attributes);
    const ElementMaker make(tree_, prefixFor("KML"));
    OutputNode* const pOutermost =
        outermost(pOut, "KML", shape.isOfMembers() ? "MultiGeometry" : shape.sType);
    for (const ShapeMember& member : shape.aMembers)
        addKml(make, shape.isOfMembers() ? make.add(pOutermost, member.sType) : pOutermost, member,
               shape.bHeights, notation);
    noteTurn("h:Geometry=\"KML\"");
}

} // namespace halvane::oracle
