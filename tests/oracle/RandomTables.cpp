#include "oracle/RandomTables.h"

#include "oracle/second/RandomReferences.h"
#include "oracle/second/RandomRelationships.h"
#include "oracle/second/RandomShapes.h"

namespace halvane::oracle {

using namespace host::memory;
using host::FieldType;
using host::ShapeType;

namespace {

std::string randomText(Random& random) {
    if (random.chance(60))
        return random.oneOf({"High Street", "R17", "R18", "1", "2", "12", "Quay"});
    const bool bAnyBytes = random.texts() == Texts::AnyBytes;
    return random.pick(std::vector<std::string>{"", " ", "a<b>&\"c'", "tab\tlf\ncr\r",
                                                "\xC3\xA9\xE6\xBC\xA2\xF0\x9F\x98\x80", "\x01 ctl", "\x01",
                                                bAnyBytes ? "\xFF\xFE bad" : "\xEF\xBF\xBD\xEF\xBF\xBD bad",
                                                bAnyBytes ? "cut \xE2\x82" : "cut \xEF\xBF\xBD", "]]>",
                                                "O'Brien", "-5", "1e3", "><", "  two  ", "\xEF\xBF\xBE"});
}

std::string repeated(const std::string& sText, std::size_t nTimes) {
    std::string sAll;
    for (; nTimes > 0; --nTimes)
        sAll += sText;
    return sAll;
}

double randomDouble(Random& random) {
    switch (random.below(5)) {
    case 0:
        return random.between(-5, 20);
    case 1:
        return random.between(-100000, 100000) / 1000.0;
    case 2:
        return random.between(1, 1000000) * 1e12;
    case 3:
        return random.between(1, 99) * 1e-7;
    default:
        return random.between(0, 1000) / 7.0;
    }
}

Date randomDate(Random& random) {
    Date date{random.between(1890, 2030),
              static_cast<std::uint8_t>(random.between(1, 12)),
              static_cast<std::uint8_t>(random.between(1, 28)),
              0,
              0,
              0};
    if (random.chance(20))
        date.hour = 13;
    return random.chance(5) ? Date{0, 0, 0, 9, 5, 7} : date;
}

/// A value that fits the type; now and then null, or one of another type that reads as it.
Value randomValue(Random& random, std::int32_t lType) {
    if (random.chance(12))
        return Null{};
    switch (static_cast<FieldType>(lType)) {
    case FieldType::SmallInteger:
    case FieldType::Integer:
        return random.chance(90) ? Value(random.between(1, 3)) : Value(std::int64_t{9007199254740993});
    case FieldType::Single:
        return static_cast<float>(random.between(-2000, 2000)) / 8.0F;
    case FieldType::Double:
        if (random.mayFail() && random.chance(8))
            return random.chance(50) ? Value(std::string("12.5")) : Value(std::string("no number"));
        return random.chance(8) ? Value(random.between(1, 9)) : Value(randomDouble(random));
    case FieldType::Date:
        return randomDate(random);
    case FieldType::Blob:
        return random.chance(50);
    default:
        return repeated(randomText(random), random.repeats().nTexts);
    }
}

// ---- Shapes ----

/// What is computed of sound shapes has to be exact: they lie on quarters.
Vertex randomVertex(Random& random) {
    const double dYUnit = random.shapes() == Shapes::Sound ? 4.0 : 3.0;
    Vertex vertex{random.between(-40, 40) / 4.0, random.between(-40, 40) / dYUnit};
    if (random.chance(40))
        vertex.dZ = random.between(0, 50) / 10.0;
    if (random.chance(40))
        vertex.dM = random.between(0, 500);
    return vertex;
}

Part randomPart(Random& random, std::int32_t lVertices) {
    Part part;
    for (; lVertices > 0; --lVertices)
        part.push_back(randomVertex(random));
    return part;
}

template<class Item>
void repeat(std::vector<Item>& aItems, std::size_t nTimes) {
    const std::vector<Item> aOnce = aItems;
    for (std::size_t n = 1; n < nTimes; ++n)
        aItems.insert(aItems.end(), aOnce.begin(), aOnce.end());
}

/// Many vertices in a part, many parts, or as it was.
void enlarge(Random& random, std::vector<Part>& aParts) {
    if (random.chance(40))
        repeat(random.chance(50) ? aParts.front() : aParts.back(), random.repeats().nVertices);
    else if (random.chance(50))
        repeat(aParts, random.repeats().nVertices);
}

Value randomShape(Random& random, ShapeType type) {
    if (random.chance(8))
        return Null{};
    if (random.chance(6))
        return ObjectPtr(MemoryGeometry::empty(type));
    if (random.shapes() == Shapes::Sound && random.chance(75))
        return ObjectPtr(soundShape(random, type));
    if (type == ShapeType::Point)
        return ObjectPtr(MemoryGeometry::point(randomVertex(random)));
    if (type == ShapeType::Multipoint)
        return ObjectPtr(MemoryGeometry::multipoint(randomPart(random, random.between(1, 3))));
    std::vector<Part> aParts;
    for (std::int32_t i = random.between(1, 2); i > 0; --i)
        aParts.push_back(randomPart(random, random.between(0, 3)));
    if (random.repeats().nVertices > 1)
        enlarge(random, aParts);
    const auto pShape = std::make_shared<MemoryGeometry>(type, std::move(aParts));
    // Hosts may have numbers at hand, some or all.
    if (random.chance(50))
        pShape->keepAtHand(static_cast<std::size_t>(random.between(1, 3)));
    return ObjectPtr(pShape);
}

// ---- Fields and rows ----

FieldDefinition definitionOf(const std::string& sName) {
    if (sName == "OBJECTID")
        return field(sName, FieldType::Oid);
    if (sName == "SHAPE")
        return field(sName, FieldType::Geometry);
    if (sName == "NAME")
        return field(sName, FieldType::String).alias("Full name").length(40);
    if (sName == "CODE")
        return field(sName, FieldType::String).alias("Code").length(8);
    if (sName == "ROUTE")
        return field(sName, FieldType::Integer).precision(9);
    if (sName == "KIND")
        return field(sName, FieldType::SmallInteger).notNull();
    if (sName == "WIDTH")
        return field(sName, FieldType::Double).precision(12);
    if (sName == "DEPTH")
        return field(sName, FieldType::Single);
    if (sName == "OPENED")
        return field(sName, FieldType::Date);
    if (sName == "NOTE")
        return field(sName, FieldType::Blob).readOnly();
    if (sName == "Shape_Area")
        return field(sName, FieldType::Double);
    return field(sName, 12);
}

/// The shape stands where the type has one; the other fields come in random number and order.
std::vector<FieldDefinition> randomFields(Random& random, bool bShape) {
    std::vector<std::string> aNames = fieldNames();
    std::vector<FieldDefinition> aFields;
    while (!aNames.empty()) {
        const std::size_t nNext = random.below(aNames.size());
        const std::string sName = aNames[nNext];
        aNames.erase(aNames.begin() + static_cast<std::ptrdiff_t>(nNext));
        const bool bTaken = sName == "SHAPE" ? bShape : random.chance(sName == "OBJECTID" ? 85 : 65);
        if (bTaken)
            aFields.push_back(definitionOf(sName));
    }
    return aFields;
}

template<class Table>
void addRows(Random& random, Table& table, const std::vector<FieldDefinition>& aFields, ShapeType type) {
    const std::int32_t lRows = random.chance(12) ? 0 : random.between(1, 4);
    for (std::int32_t lRow = 1; lRow <= lRows; ++lRow) {
        std::vector<Value> aValues;
        for (const FieldDefinition& definition : aFields) {
            if (definition.lTypeCode == static_cast<std::int32_t>(FieldType::Oid))
                aValues.emplace_back(lRow);
            else if (definition.lTypeCode == static_cast<std::int32_t>(FieldType::Geometry))
                aValues.push_back(randomShape(random, type));
            else
                aValues.push_back(randomValue(random, definition.lTypeCode));
        }
        table.addRow(std::move(aValues));
        for (const FieldDefinition& definition : aFields) {
            if (definition.sName == "NOTE" && random.chance(50))
                table.setBytes("NOTE",
                               {std::byte{1}, std::byte{200}, std::byte{static_cast<unsigned char>(lRow)}});
        }
    }
}

} // namespace

const std::vector<std::string>& fieldNames() {
    static const std::vector<std::string> aNames{"OBJECTID", "SHAPE", "NAME",   "CODE", "ROUTE",      "KIND",
                                                 "WIDTH",    "DEPTH", "OPENED", "NOTE", "Shape_Area", "ODD"};
    return aNames;
}

MemoryTablePtr randomTable(Random& random, const std::string& sName) {
    const auto aFields = randomFields(random, false);
    auto pTable = MemoryTable::make(sName, aFields);
    addRows(random, *pTable, aFields, ShapeType::Null);
    return pTable;
}

MemoryFeatureClassPtr randomFeatureClass(Random& random, const std::string& sName) {
    static const std::vector<ShapeType> types{ShapeType::Point,    ShapeType::Multipoint, ShapeType::Polyline,
                                              ShapeType::Polyline, ShapeType::Polygon,    ShapeType::Line};
    const ShapeType type = random.pick(types);
    const auto aFields = randomFields(random, random.chance(92));
    auto pClass = MemoryFeatureClass::make(sName, type, aFields);
    addRows(random, *pClass, aFields, type);
    return pClass;
}

host::GisSpatialReferencePtr randomReference(Random& random) {
    std::string sDescription;
    for (const char* sLine :
         {"Projection    UTM", "Zone 15", "Datum NAD83", "Units METERS", "Fipszone 2202", "Spheroid GRS80",
          "Zunits NO", "Xshift 0.5", "Yshift   -3", "Parameters a b", "Datum", "Zone",
          "in the zone of Zone 7", "Projection \xC3\xA9t\xC3\xA9", "other"}) {
        if (random.chance(30))
            sDescription += (sDescription.empty() ? "" : "\n") + std::string(sLine);
    }
    const auto pReference = MemorySpatialReference::make(sDescription);
    if (random.chance(80))
        pReference->setXyDomain({-12.5, -7.25, randomDouble(random), 7.5, -400, -300, 10000});
    if (random.chance(40))
        pReference->setZDomain({-1, randomDouble(random), 2, 1000});
    if (random.chance(40))
        pReference->setMDomain({0, 1e15, -1, randomDouble(random)});
    if (random.shapes() == Shapes::Sound)
        placeInWorld(random, *pReference);
    return pReference;
}

namespace {

host::GisDomainPtr randomDomain(Random& random, const std::string& sName) {
    MemoryDomainPtr pDomain;
    switch (random.below(4)) {
    case 0:
        pDomain = MemoryDomain::range(sName, FieldType::Double, randomDouble(random), std::int32_t{9});
        break;
    case 1: {
        const std::int32_t lFieldType = random.between(0, 10);
        pDomain = MemoryDomain::ofType(sName, lFieldType, random.between(0, 4));
        break;
    }
    default: {
        std::vector<host::CodedValue> aCodes;
        for (std::int32_t i = random.between(0, 3); i > 0; --i)
            aCodes.push_back({randomValue(random, random.between(0, 5)), randomText(random)});
        pDomain = MemoryDomain::coded(sName, FieldType::Integer, std::move(aCodes));
    }
    }
    if (random.chance(50))
        pDomain->setDescription(randomText(random));
    const std::int32_t lMerge = random.between(0, 3);
    pDomain->setPolicies(lMerge, random.between(0, 3));
    return pDomain;
}

} // namespace

void giveSubtypes(Random& random, MemoryFeatureClass& featureClass) {
    if (random.chance(4)) {
        featureClass.setSubtypes(nullptr);
        return;
    }
    if (random.chance(35))
        return;
    const auto pSubtypes = MemorySubtypes::make("KIND", random.between(0, 3));
    for (std::int32_t lCode = random.between(0, 1), lLast = random.between(1, 2); lCode <= lLast; ++lCode) {
        pSubtypes->addSubtype(lCode, random.oneOf({"Major", "Minor", "Dirt", "Major", "Minor", "Dirt", ""}));
        if (random.chance(60))
            pSubtypes->setDomain(lCode, "NAME", randomDomain(random, "Names"));
        const std::string& sField = random.pick(fieldNames());
        if (random.chance(60))
            pSubtypes->setDefaultValue(lCode, sField, randomValue(random, random.between(0, 5)));
    }
    featureClass.setSubtypes(pSubtypes);
}

void fillWorkspace(Random& random, MemoryWorkspace& workspace) {
    if (random.shapes() == Shapes::Sound)
        addRelationships(random, workspace);
    if (random.chance(8))
        workspace.refuseDomains();
    for (const char* sName : {"Kinds", "Widths", "Notes"}) {
        if (random.chance(60))
            workspace.add(randomDomain(random, sName));
    }
    for (const char* sName : {"RoadSigns", "HouseWells"}) {
        if (!random.chance(60))
            continue;
        RelationshipDefinition definition;
        definition.sName = sName;
        definition.sForwardPathLabel = randomText(random);
        definition.sBackwardPathLabel = random.oneOf({"belongs to", ""});
        definition.sFeatureDatasetName = random.oneOf({"Traffic", ""});
        definition.bAttributed = random.chance(50);
        definition.bComposite = random.chance(50);
        definition.lNotification = random.between(0, 5);
        definition.lCardinality = random.between(0, 4);
        definition.sOriginClassName = "ROADS";
        definition.sDestinationClassName = "SIGNS";
        definition.sOriginPrimaryKey = "ROUTE";
        definition.sOriginForeignKey = random.oneOf({"ROUTE", ""});
        definition.sDestinationPrimaryKey = random.oneOf({"KEY", ""});
        definition.sDestinationForeignKey = random.oneOf({"OTHER", ""});
        workspace.add(MemoryRelationshipClass::make(definition));
    }
}

TableFaultsPtr randomFaults(Random& random) {
    TableFaults faults;
    if (random.faults() == Faults::OfShapes && random.chance(15)) {
        faults.nShapeRow = random.chance(75) ? random.between(1, 4) : -1;
        faults.bFeatureCount = faults.nShapeRow < 0;
    }
    if (random.faults() == Faults::OfRows && random.chance(40)) {
        const std::size_t nKind = random.below(3);
        if (nKind == 0)
            faults.lNextRow = random.between(0, 3);
        else if (nKind == 1)
            faults.bSearch = faults.bFilteredSearch = true;
        faults.nValueRow = nKind == 2 ? random.between(1, 4) : -1;
        faults.lValueField = random.between(0, 7);
    }
    if (random.mayFail() && random.chance(12)) {
        switch (random.below(6)) {
        case 0:
            faults.lNextRow = random.between(0, 3);
            break;
        case 1:
        case 2:
            faults.nValueRow = random.between(1, 4);
            faults.lValueField = random.between(0, 7);
            break;
        case 3:
            faults.nShapeRow = random.between(1, 4);
            break;
        case 4:
            (random.chance(50) ? faults.bSearch : faults.bFilteredSearch) = true;
            break;
        default:
            faults.bFeatureCount = true;
        }
    }
    return std::make_shared<const TableFaults>(faults);
}

} // namespace halvane::oracle
