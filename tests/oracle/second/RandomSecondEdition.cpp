#include "oracle/second/RandomSecondEdition.h"

#include "oracle/RandomTables.h"
#include "oracle/Vocabulary.h"
#include "oracle/second/RandomExpression.h"
#include "oracle/second/RandomReferences.h"
#include "oracle/second/RandomRelationships.h"

#include <algorithm>
#include <set>

namespace halvane::oracle {

namespace {

bool isRows(const std::string& sKind) {
    return sKind == "Feature" || sKind == "Record" || sKind == "Table";
}

/// What goes its own way: its children say what is told of each definition, or of each point.
bool isOfDefinitions(const std::string& sKind) {
    static const std::set<std::string> kinds{"WorkspaceDomain", "Relationship", "SubType", "SubTypeFieldInfo",
                                             "Field"};
    return kinds.contains(sKind) || sKind.starts_with("Geometry") || sKind.starts_with("geometry");
}

bool isAttributeLeaf(const ControlNode& node) {
    return node.targetsAttribute() && node.aChildren.empty();
}

using Attributes = std::vector<std::pair<std::string, std::string>>;

class Decorator {
public:
    /// @param declarations of the control file's root.
    Decorator(Random& random, const World& world, Attributes declarations)
        : random_(random), world_(world), declarations_(std::move(declarations)) {}

    /// What stands around a node.
    struct Around {
        std::string sKind;
        std::size_t nRows = 0;   ///< loops over rows that are there whatever the data
        std::size_t nGroup = 0;  ///< up to the outermost group, with it; 0: no group
        std::string sThing = {}; ///< of the loop over things around
    };

    void decorate(ControlNode& node, const Around& around) {
        std::vector<ControlNode>& aChildren = node.aChildren;
        if (around.nRows > 0 && random_.chance(30))
            insert(aChildren, rowChild(around));
        if (random_.chance(10))
            insert(aChildren, thingsNode(around));
        if (random_.chance(around.nRows > 0 ? 12 : 15))
            insert(aChildren, geometryLeaf(around));
        for (ControlNode& child : aChildren)
            if (child.kind == ControlNode::Kind::Element)
                decorateChild(child, around);
        for (ControlNode& child : aChildren)
            if (child.kind == ControlNode::Kind::Element && !child.targetsAttribute() && random_.chance(4))
                moveIntoPart(child);
        tidy(node);
    }

private:
    ExpressionMaker expressions(const Around& around, std::size_t nTested = 0) {
        return {random_,
                {around.nRows + nTested, nTested > 0 ? around.nRows : 0, around.nGroup, nTested > 0,
                 around.sThing == "Field"}};
    }

    void insert(std::vector<ControlNode>& aNodes, ControlNode node) {
        const auto nPlace = static_cast<std::ptrdiff_t>(random_.below(aNodes.size() + 1));
        aNodes.insert(aNodes.begin() + nPlace, std::move(node));
    }

    void decorateChild(ControlNode& node, const Around& around) {
        const std::string sOwn = node.get("DataSource");
        const std::string sKind = sOwn.empty() ? around.sKind : sOwn;
        const bool bRepeated = node.get("Entries") == "Multiple";
        if (random_.chance(10))
            node.put("h:When", expressions(around).condition());
        if (random_.chance(7))
            node.put("h:Format", someFormat());
        if (random_.chance(3) && !node.has("h:Crs"))
            node.put("h:Crs", someCode(random_));
        if (random_.chance(4) && !hasPrefixedAttribute(node))
            node.put("xmlns:p", random_.oneOf({"urn:q", "urn:q", "urn:p", "urn:r"}));
        if (random_.chance(2) && !node.has("h:Axes"))
            node.put("h:Axes", random_.oneOf({"yx", "authority"}));
        if (isOfDefinitions(sKind)) {
            if (!node.targetsAttribute() && random_.chance(15))
                node.put("h:Omit", mayDissolve(node) && random_.chance(40) ? "Self" : "Empty");
            return;
        }
        const bool bLoop = bRepeated && isRows(sKind);
        Around inside{sKind, around.nRows, around.nGroup, around.sThing};
        if (bLoop && !node.targetsAttribute() && random_.chance(40))
            addRules(node, around, inside);
        else if (bLoop && around.nRows == 0)
            inside.nRows = 1;
        const bool bOfShape = node.has("h:Geometry");
        if (!bOfShape && node.aChildren.empty() && (!bRepeated || bLoop) && random_.chance(25))
            node.put("h:Text", expressions(inside).textWithValues());
        else if (!bOfShape && !node.has("h:Text") && inside.nRows > 0 && (!bRepeated || bLoop) &&
                 random_.chance(7))
            addGeometry(node, inside);
        else if (!bOfShape && !node.aChildren.empty() && (!bRepeated || bLoop) && random_.chance(10))
            node.put("h:Text", expressions(inside).textWithValues());
        // What such an attribute's node writes into the element around is neither its content nor not.
        const bool bWritesAround = node.targetsAttribute() && (!node.aChildren.empty() || bRepeated ||
                                                               !node.get("DataProperty").empty());
        if (random_.chance(12) && !bWritesAround)
            node.put("h:Omit", "Empty");
        if (!node.aChildren.empty())
            decorate(node, inside);
        if (random_.chance(12) && mayDissolve(node))
            node.put("h:Omit", "Self");
        else if (random_.chance(4) && !node.targetsAttribute())
            node.put("h:Indent", "none");
        if (random_.chance(10) && node.has("h:Text") && !node.targetsAttribute())
            node.put("h:As", "cdata");
        if (random_.chance(8) && node.has("h:Text") && !node.targetsAttribute()) {
            node.put("h:Text", fragment(inside));
            node.put("h:As", "xml");
        }
    }

    /// A piece of XML, well-formed or not.
    std::string fragment(const Around& around) {
        const std::string sText = random_.oneOf(
            {"a<b>c</b>d", "<b/><i k='1' l=\"&lt;&amp;\">{{ &amp; &gt; }</i>", "<p:e p:k='1'><e/></p:e>",
             "<z:e/>", "<!-- {{ --><?pi x?>", "<![CDATA[<&]]>x", "<x:b xmlns:x='urn:x'><x:c/></x:b>",
             "<a><b></a>", "a & b", "{$Item}", "{$who}<br/>"});
        if (around.nRows == 0 || random_.chance(30))
            return sText;
        return random_.oneOf({"<b>{NAME}</b>", "{NAME}{CODE}", "<![CDATA[<{NAME}]]>",
                              "<b k=\"{CODE}\">{KIND}</b>", "<i>{NAME}</i>"}) +
               sText;
    }

    /// Rows in an order, some of them, in groups.
    void addRules(ControlNode& node, const Around& around, Around& inside) {
        const bool bGroups = random_.chance(25);
        if (random_.chance(35))
            node.put("h:Where", expressions(around, 1).condition());
        if (random_.chance(35))
            node.put("h:OrderBy", expressions(around, 1).order());
        if (random_.chance(25))
            node.put("h:Limit", std::to_string(random_.between(0, 3)));
        if (bGroups)
            node.put("h:Group", expressions(around, 1).value(1));
        if (node.get("h:Rows").empty() && (random_.chance(25) || !isSecond(node)))
            node.put("h:Rows", "Each");
        inside.nRows = around.nRows + 1;
        inside.nGroup = groupOf(around, bGroups);
        if (node.has("h:Rows"))
            inside.sKind.clear();
    }
    /// Such an attribute may stand for another namespace than its element's prefix, which is refused.
    static bool hasPrefixedAttribute(const ControlNode& node) {
        return (node.targetsAttribute() && node.outputName().starts_with("p:")) ||
               std::any_of(node.aChildren.begin(), node.aChildren.end(), hasPrefixedAttribute);
    }
    /// Inside rows, or groups of them, that stand in what is around.
    static std::size_t groupOf(const Around& around, bool bGroups) {
        return around.nGroup == 0 && bGroups ? around.nRows + 1 : around.nGroup;
    }
    static bool isSecond(const ControlNode& node) {
        return std::any_of(node.aAttributes.begin(), node.aAttributes.end(),
                           [](const auto& attribute) { return attribute.first.starts_with("h:"); });
    }

    ControlNode named(const Attributes& attributes) {
        ControlNode node;
        node.set("Name", std::string(1, static_cast<char>('m' + random_.between(0, 6))));
        for (const auto& [sName, sValue] : attributes)
            node.put(sName, sValue);
        return node;
    }

    /// What only the second edition can write of a row.
    ControlNode rowChild(const Around& around) {
        if (random_.chance(45) && nDepth_ < 3)
            return rowsNode(around);
        ControlNode leaf = named({{"h:Text", expressions(around).textWithValues()}});
        if (random_.chance(30))
            leaf.put("Target", "Attribute");
        return leaf;
    }

    std::string someFormat() {
        return random_.oneOf({"xs", "xs", "0.00", "0.0##", "000", "0", "dd.MM.yyyy", "d.M.yy 'at' HH:mm",
                              "yyyy-MM-dd'T'HH:mm:ss", "domain", "domain", "xs;domain", "0.0; dd/MM/yyyy",
                              "EEEE, d MMMM yyyy", "EEE d MMM", "none", "none; 0.0"});
    }

    std::string someField() {
        return random_.oneOf({"ROUTE", "CODE", "KIND", "NAME", "WIDTH", "OBJECTID", "OPENED", "Nowhere"});
    }

    /// The node becomes the root of a part, which has the prefixes that it declares itself.
    void moveIntoPart(ControlNode& node) {
        ControlNode inclusion = named({{"h:Include", "parts/" + std::to_string(++nParts_) + ".xml"}});
        for (const auto& [sName, sValue] : declarations_)
            node.put(sName, sValue);
        inclusion.aChildren.push_back(std::move(node));
        node = std::move(inclusion);
    }

    // ---- Shapes ----

    ControlNode geometryLeaf(const Around& around) {
        ControlNode leaf = named({});
        if (random_.chance(25))
            leaf.put("Target", "Attribute");
        addGeometry(leaf, around);
        return leaf;
    }

    void addGeometry(ControlNode& node, const Around& around) {
        std::string sForm = random_.oneOf(
            {"area", "centroid", "coordinates", "GeoJSON", "GML", "GML", "GML",  "KML",  "KML",  "length",
             "pos",  "posList",  "SVG",         "type",    "WKT", "WKT", "xmax", "xmin", "ymax", "ymin"});
        if (around.nRows == 0 && random_.chance(80))
            sForm = random_.oneOf({"xmin", "ymin", "xmax", "ymax", "GML", "GML"});
        if (node.targetsAttribute() && (sForm == "GML" || sForm == "KML"))
            sForm = "type";
        node.put("h:Geometry", sForm);
        if (sForm == "GML" && random_.chance(60))
            node.put("h:Id", someId(around));
        // The last digits of what is computed tell in which order it was summed up.
        const bool bComputed = sForm == "centroid" || sForm == "length" || sForm == "area";
        if (bComputed || random_.chance(25))
            node.put("DecimalPlace", std::to_string(random_.between(1, 4)));
        if (random_.chance(30))
            node.put("h:Axes", random_.oneOf({"xy", "yx", "authority"}));
        if (random_.chance(35))
            node.put("h:Crs", someCode(random_));
    }

    std::string someId(const Around& around) {
        if (around.nRows == 0)
            return "e.{$Item}";
        return random_.oneOf({"p.{OBJECTID}", "p.{OBJECTID}", "p.{OBJECTID}", "s{ROUTE}-{KIND}", "{OBJECTID}",
                              "{'a' || ':' || OBJECTID}"});
    }

    /// Rows inside a row: related ones, or those of the current layer, table or group.
    ControlNode rowsNode(const Around& around) {
        ++nDepth_;
        ControlNode node = named({{"h:Rows", "Each"}});
        if (random_.chance(45)) {
            node.put("DataSource", "RelatedTable");
            node.put("h:Relationship", someRelationship(random_));
            if (random_.chance(40))
                node.put("h:Direction", random_.oneOf({"Forward", "Backward"}));
        } else if (random_.chance(60)) {
            node.put("DataSource", "RelatedTable");
            node.put("Identity", "LayerName");
            const auto& aNames =
                !world_.aTables.empty() && random_.chance(60) ? world_.aTables : world_.aFeatureLayers;
            node.put("IdentityValue", aNames.empty() ? "LISTING" : random_.pick(aNames));
            addKeys(node);
        } else {
            node.put("DataSource", random_.oneOf({"Feature", "Feature", "Record"}));
        }
        for (std::int32_t n = random_.between(1, 3); n > 0; --n)
            node.aChildren.push_back(leafOfRow());
        if (random_.chance(20))
            node.aChildren.push_back(geometryLeaf({"", around.nRows + 1}));
        if (random_.chance(15))
            node.aChildren.clear();
        Around inside = around;
        if (random_.chance(40))
            addRules(node, around, inside);
        inside = {"", around.nRows + 1, groupOf(around, node.has("h:Group")), around.sThing};
        if (node.aChildren.empty() && node.get("DataSource") != "RelatedTable" && random_.chance(50))
            node.put("IdentityValue", random_.chance(30) ? "OBJECTID" : random_.pick(fieldNames()));
        else if (node.aChildren.empty())
            node.put("h:Text", expressions(inside).textWithValues());
        else if (random_.chance(35) && nDepth_ < 4)
            node.aChildren.push_back(rowChild(inside));
        --nDepth_;
        return node;
    }

    /// The properties of a kind of thing, and a few that it lacks.
    std::string propertyOf(const std::string& sThing) {
        if (sThing == "Map")
            return random_.oneOf({"MapName", "mapname", "SPATIALREFERENCE.DATUM", "SPATIALREFERENCE.XMIN"});
        if (sThing == "Layer")
            return random_.oneOf({"LayerName", "LayerType", "GeometryType", "FeatureCount", "Path",
                                  "SPATIALREFERENCE.ZONE", "layername"});
        if (sThing == "Table")
            return random_.oneOf({"TableName", "TableName", "LayerName"});
        if (sThing == "Workspace")
            return random_.oneOf({"Path", "WorkspaceType", "Other"});
        if (sThing == "Field")
            return random_.chance(25) ? "FieldDomain" : random_.pick(fieldProperties());
        if (sThing == "Domain")
            return random_.pick(domainProperties());
        if (sThing == "Relationship")
            return random_.pick(relationshipProperties());
        if (sThing == "Code")
            return random_.oneOf({"DomainCodeValue", "DomainCodeName", "domaincodename", "Other"});
        if (sThing == "Subtype")
            return random_.oneOf({"SubTypeName", "SubTypeCode", "SubTypeFieldName", "DefaultSubTypeCode"});
        return random_.oneOf({"X", "Y", "Z", "M", "Geometry.X", "Geometry.Measure", "x"});
    }

    std::string someThing(const Around& around) {
        if (around.sThing == "Field" && random_.chance(70))
            return random_.oneOf({"Domain", "Code"});
        if (around.sThing == "Domain" && random_.chance(80))
            return "Code";
        if (around.sThing == "Part" && random_.chance(80))
            return "Vertex";
        if (around.sThing == "Workspace")
            return random_.oneOf({"Domain", "Relationship"});
        if (around.nRows > 0 && random_.chance(60))
            return random_.oneOf({"Part", "Vertex", "Field"});
        return random_.oneOf({"Map", "Layer", "Layer", "Table", "Field", "Field", "Domain", "Relationship",
                              "Workspace", "Subtype", "Code"});
    }

    ControlNode thingsNode(const Around& around) {
        ++nDepth_;
        const std::string sThing = someThing(around);
        ControlNode node = named({{"h:ForEach", sThing}});
        const Around inside{"", around.nRows, around.nGroup, sThing};
        for (std::int32_t n = random_.between(1, 3); n > 0; --n) {
            ControlNode leaf = named({{"DataProperty", propertyOf(sThing)}});
            if (random_.chance(25))
                leaf = named({{"h:Text", expressions(inside).textWithValues()}});
            if (random_.chance(30))
                leaf.put("Target", "Attribute");
            if (random_.chance(15))
                leaf.put("h:Omit", "Empty");
            node.aChildren.push_back(leaf);
        }
        if (nDepth_ < 4 && random_.chance(50))
            node.aChildren.push_back(thingsNode(inside));
        if (nDepth_ < 4 && (sThing == "Layer" || sThing == "Table") && random_.chance(40))
            node.aChildren.push_back(rowsOfThing(inside));
        if (random_.chance(15))
            node.put("h:When", expressions(inside).condition());
        if (random_.chance(10))
            node.put("h:Omit", "Empty");
        tidy(node);
        if (random_.chance(20) && mayDissolve(node))
            node.put("h:Omit", "Self");
        --nDepth_;
        return node;
    }

    ControlNode rowsOfThing(const Around& around) {
        ControlNode node = named({{"DataSource", around.sThing == "Layer" ? "Feature" : "Record"}});
        if (random_.chance(50))
            node.put("h:Rows", "Each");
        else
            node.put("Entries", "Multiple");
        const Around inside{"", around.nRows + 1, around.nGroup, around.sThing};
        for (std::int32_t n = random_.between(1, 2); n > 0; --n)
            node.aChildren.push_back(random_.chance(40) ? leafOfRow() : rowChild(inside));
        return node;
    }

    void addKeys(ControlNode& node) {
        if (random_.chance(40)) {
            node.put("LinkField", someField());
            return;
        }
        const std::string sField = someField();
        std::string sLink = sField + "=" + (random_.chance(60) ? sField : someField());
        if (random_.chance(25))
            sLink += ", " + someField() + " = " + someField();
        node.put("h:Link", sLink);
    }

    ControlNode leafOfRow() {
        ControlNode leaf = named({{"IdentityValue", random_.pick(fieldNames())}});
        if (random_.chance(20))
            leaf.put("DataSource", random_.oneOf({"Feature", "Record", "RelatedRecord"}));
        if (random_.chance(20))
            leaf.put("Target", "Attribute");
        if (random_.chance(10))
            leaf.put("DecimalPlace", "1");
        return leaf;
    }

    /// Neither attributes nor their like may come into the element around.
    static bool mayDissolve(const ControlNode& node) {
        return !node.targetsAttribute() && node.get("h:Omit") != "Empty" &&
               std::none_of(node.aChildren.begin(), node.aChildren.end(), [](const ControlNode& child) {
                   return child.kind != ControlNode::Kind::Element || child.targetsAttribute();
               });
    }

    /// Attributes stand before what else is in an element, and none of them twice.
    static void tidy(ControlNode& node) {
        auto& aChildren = node.aChildren;
        const auto endOfAttributes =
            std::stable_partition(aChildren.begin(), aChildren.end(), isAttributeLeaf);
        std::set<std::string> names;
        for (auto child = aChildren.begin(); child != endOfAttributes; ++child)
            while (!names.insert(child->get("Name")).second)
                child->set("Name", child->get("Name") + "x");
    }

    Random& random_;
    const World& world_;
    Attributes declarations_;
    int nDepth_ = 0;
    int nParts_ = 0;
};

/// Attributes that would come into the element around are refused: their node gets its own.
void settle(ControlNode& node) {
    for (ControlNode& child : node.aChildren)
        settle(child);
    const bool bWritesAttributes =
        std::any_of(node.aChildren.begin(), node.aChildren.end(),
                    [](const ControlNode& child) { return child.targetsAttribute(); });
    if (node.get("h:Omit") == "Self" && bWritesAttributes) {
        node.set("h:Omit", "");
        if (node.get("Name").empty())
            node.set("Name", "self");
    }
}

} // namespace

void addSecondEdition(Random& random, const World& world, ControlNode& root) {
    root.put("xmlns:h", random.chance(97) ? "urn:halvane:control:2" : "urn:halvane:control:1");
    root.put("xmlns:p", "urn:p");
    if (random.chance(20))
        root.put("xmlns:g", "http://www.opengis.net/gml/3.2");
    if (random.chance(10))
        root.put("xmlns:k", "http://www.opengis.net/kml/2.2");
    if (random.chance(20))
        root.put("h:Indent", random.oneOf({"0", "1", "2", "none"}));
    if (random.chance(10))
        root.put("h:Declaration", "UTF-8");
    if (random.chance(5))
        root.put("h:Doctype", root.outputName());
    if (random.chance(10))
        root.put("h:Format", random.oneOf({"xs", "0.00", "domain", "yyyy"}));
    Attributes declarations;
    for (const auto& attribute : root.aAttributes)
        if (attribute.first.starts_with("xmlns:"))
            declarations.push_back(attribute);
    Decorator(random, world, std::move(declarations)).decorate(root, {root.get("DataSource")});
    settle(root);
}

} // namespace halvane::oracle
