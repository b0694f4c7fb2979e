#pragma once

// A second reading of the rules of a control file: node by node and row by row, everything looked up anew
// each time, nothing kept for later. Slow and plain on purpose: it is what the export's own, compiled way of
// running a control file is measured by.

#include "base/Failure.h"
#include "base/Value.h"
#include "engine/second/SecondEdition.h"
#include "host/Domains.h"
#include "host/Fields.h"
#include "host/Relationships.h"
#include "host/Rows.h"
#include "host/Subtypes.h"
#include "oracle/ControlTree.h"
#include "oracle/OutputTree.h"
#include "oracle/second/PlainExpression.h"
#include "oracle/second/PlainShape.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace halvane::oracle {

/// A tag of the second document, with the fields below it.
struct Tag {
    std::string sTagName;
    std::string sAlias;
    std::vector<std::pair<std::string, std::string>> aFields; ///< tag name and alias
};

/// Everything that an export is given.
struct Setting {
    host::GisHostPtr pHost;
    host::GisMapDocumentPtr pMapDocument;
    std::vector<Tag> aTags;
    std::int64_t lItemLimit = 32767;
    bool bIgnoreComments = false;
    std::int32_t lCancelAtItem = -1; ///< the item at which the listener gives up; -1: never
    /// What control files of the second edition are exported with; nothing: they are none.
    const SecondEdition* pSecondEdition = nullptr;
};

struct ToldFailure {
    std::int32_t lNumber = 0;
    std::string sDescription;
    std::uint32_t lLine = 0; ///< of the control node; 0 for none

    friend bool operator==(const ToldFailure&, const ToldFailure&) = default;
};

/// Everything that an export shows to the outside.
struct Outcome {
    std::optional<std::string> sFile;
    std::string sNotSavedReason;
    std::vector<ToldFailure> aFailures;
    std::vector<std::uint32_t> aItemLines; ///< of the repeated node of each item told
    std::int32_t lErrorNumber = 0;
    std::string sErrorMessage;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// What an interpretation touched, for judging the cases themselves.
struct Reach {
    std::size_t nOutputNodes = 0;
    std::map<std::string, std::size_t> writtenByKind; ///< values other than "", by data source
    std::map<std::string, std::size_t> turns;         ///< rules that only some control files call for
};

/// Whether a row's identifier is asked for, where no field bears that name.
[[nodiscard]] bool namesIdentifier(const std::string& sField);

class Interpreter {
public:
    explicit Interpreter(const Setting& setting) : setting_(setting) {}

    /// Interprets the control file once.
    [[nodiscard]] Outcome run(const ControlNode& root);
    [[nodiscard]] const Reach& reach() const noexcept { return reach_; }

private:
    using Attributes = std::map<std::string, std::string>;
    using Node = const ControlNode&;

    struct Cancelled {};
    /// A failure of a child whose output could not be made: it is told at the child.
    struct ChildFailure {
        Failure failure;
        const ControlNode* pChild;
    };
    /// A leaf, with all that decides its value.
    struct Leaf {
        Node node;
        OutputNode* pOut;
        Attributes attributes;
        host::GisRowPtr pRow;
        host::GisRowPtr pRecord;
    };
    /// A repeated node.
    struct Repeat {
        Node node;
        OutputNode* pOut;
        const Attributes& attributes;
        host::GisRowPtr pRow;
        host::GisRowPtr pRecord;
        const Attributes* pParentAttributes;
    };
    /// What the levels of a subtype export share.
    struct SubtypeState {
        std::int32_t lCode = 0;
        std::int64_t lSubtypes = 0;
        std::string sField;
        std::int64_t lFields = 0;
    };

    /// Where a child of the second edition stands: that tells which of its "Multiple" are heeded.
    enum class Place { Walk, Feature, Record };
    /// A child on its way to the document.
    struct Child {
        Node node;
        OutputNode* pOut;
        const Attributes* pParent;
        const host::GisRowPtr& pRow;
        const host::GisRowPtr& pRecord;
        Place place;
    };
    using Rows = std::vector<host::GisRowPtr>;
    /// Rows up to one that cannot be read, or cannot be chosen; what stands before it is written.
    struct ReadRows {
        Rows rows = {};
        std::optional<Failure> failure = {};
    };
    /// A loop over rows that is being written.
    struct RowLoop {
        host::GisTablePtr pTable;
        bool bSecond = false;
        host::GisFeatureLayerPtr pLayer = nullptr; ///< of rows of the second edition
        host::GisRowPtr pRow = nullptr;
        std::int64_t nItem = 0;
        const Rows* pGroup = nullptr; ///< of a loop over groups: the rows of the one at hand
    };
    /// What a loop over the things of a map is at.
    struct Thing {
        std::string sKind;
        ObjectPtr pObject = nullptr;
        host::GisTablePtr pTable = nullptr; ///< of a field: that it is one of, if it is known
        const host::GisFields* pFields = nullptr;
        std::int32_t lField = 0;
        host::CodedValue code = {};
        std::int32_t lSubtype = 0;
        host::GisGeometryPtr pShape = nullptr;
        std::int32_t lPart = 0;
        host::GisPointPtr pPoint = nullptr;
        std::int64_t nNumber = 0;
        std::size_t nRowLoops = 0; ///< around it
    };
    /// Adds a loop around what is written as long as it lives.
    class InLoop {
    public:
        InLoop(Interpreter& interpreter, host::GisTablePtr pTable, bool bSecond) : interpreter_(interpreter) {
            interpreter_.aRowLoops_.push_back({std::move(pTable), bSecond});
        }
        InLoop(const InLoop&) = delete;
        InLoop& operator=(const InLoop&) = delete;
        ~InLoop() { interpreter_.aRowLoops_.pop_back(); }

        void turnTo(const host::GisRowPtr& pRow, const Rows* pGroup = nullptr) {
            RowLoop& loop = interpreter_.aRowLoops_.back();
            loop.pRow = pRow;
            loop.pGroup = pGroup;
            ++loop.nItem;
        }

    private:
        Interpreter& interpreter_;
    };
    /// Brings the loops back to what they are now.
    class LoopsAgain {
    public:
        explicit LoopsAgain(std::vector<RowLoop>& aLoops) : aLoops_(aLoops), aBefore_(aLoops) {}
        LoopsAgain(const LoopsAgain&) = delete;
        LoopsAgain& operator=(const LoopsAgain&) = delete;
        ~LoopsAgain() { aLoops_ = aBefore_; }

    private:
        std::vector<RowLoop>& aLoops_;
        std::vector<RowLoop> aBefore_;
    };
    /// What is current, to be so again.
    struct Current {
        host::GisMapPtr pMap;
        host::GisMapPtr pShownMap;
        host::GisFeatureLayerPtr pLayer;
        host::GisFeatureClassPtr pClass;
        host::GisWorkspacePtr pWorkspace;
        host::GisTablePtr pTable;
        host::GisTablePtr pRelatedTable;
        host::GisTinLayerPtr pTin;
        host::GisRasterLayerPtr pRaster;
    };

    // Procedures and their failures
    void procedure(Node node, const std::function<void()>& body);
    void tell(const Failure& failure, const ControlNode* pNode);
    void tellItem(Node repeatedNode);
    void countItem(std::int64_t& lCounter) const;

    // The walk (Interpreter.cpp)
    void runEntry(Node root);
    [[nodiscard]] static Attributes rootAttributes(Node root);
    [[nodiscard]] static Attributes merged(Node node, const Attributes* pParent);
    void walk(Node node, OutputNode* pOut, const Attributes* pParent, const host::GisRowPtr& pRow,
              const host::GisRowPtr& pRecord, bool bMayRepeat);
    void bind(const Attributes& attributes, const Attributes* pParent);
    void bindMap(const Attributes& attributes, const Attributes* pParent);
    [[nodiscard]] std::vector<const ControlNode*> childrenOf(Node node) const;
    OutputNode* outputForChild(Node child, OutputNode* pParent);
    void writeChild(Node node, OutputNode* pOut, const std::string& sValue);
    void noteWritten(const std::string& sKind, const std::string& sValue);
    void noteTurn(const std::string& sWhat) { ++reach_.turns[sWhat]; }
    void exportChild(const Child& child);
    void fill(const Child& child, OutputNode* pTarget);
    void forEachChild(Node node, OutputNode* pOut, const Attributes& attributes,
                      const std::function<void(Node)>& visit);

    // Nodes of the second edition (second/Nodes.cpp)
    [[nodiscard]] OutputForm formOf(Node root);
    void declareNamespaces(Node root, OutputNode* pRoot);
    [[nodiscard]] bool isSecond(Node node) const;
    [[nodiscard]] bool hasText(Node node) const;
    [[nodiscard]] bool writesElements(Node node) const;
    void appendText(Node node, OutputNode* pOut, const std::string& sText);
    void appendFragment(Node node, OutputNode* pOut, const std::string& sText); // second/Fragments.cpp
    void bindPrefixes(Node node, std::string sAround);
    OutputNode* newElement(Node node, const std::string& sName);
    OutputNode* newItemElement(Node node);
    OutputNode* newItemElement(Node node, const std::string& sName);
    [[nodiscard]] bool omits(Node node, const char* sWhat) const;
    [[nodiscard]] bool readsRow(const Attributes& attributes) const;
    [[nodiscard]] Attributes handedDown(Node node, const Attributes& attributes) const;
    void writeSecond(const Child& child);
    void writeOne(const Child& child);
    void writeSecondAttribute(const Child& child, bool bRepeated);
    void writeSecondElement(const Child& child, bool bRepeated);
    void fillSecond(const Child& child, OutputNode* pTarget, bool bRepeated);
    void writeOwnText(Node node, OutputNode* pOut, const Attributes& attributes);
    OutputNode* itemElement(Node repeatedNode, OutputNode* pFirst, bool bFirst);
    [[nodiscard]] Current current() const;
    void makeCurrent(const Current& current);

    // Things of a map (second/Things.cpp)
    void writeThings(const Child& child);
    [[nodiscard]] std::vector<Thing> thingsOf(const std::string& sKind);
    [[nodiscard]] std::vector<Thing> layersOfMap() const;
    [[nodiscard]] std::vector<Thing> tablesOfMap() const;
    [[nodiscard]] std::vector<Thing> workspacesOfMap() const;
    [[nodiscard]] std::vector<Thing> workspacesAtHand() const;
    [[nodiscard]] std::vector<Thing> fieldsAtHand() const;
    [[nodiscard]] std::vector<Thing> domainsAtHand() const;
    [[nodiscard]] std::vector<Thing> verticesAtHand() const;
    [[nodiscard]] host::GisGeometryPtr shapeAtHand() const;
    [[nodiscard]] const Thing* thingOf(const std::set<std::string>& kinds) const;
    [[nodiscard]] bool rowsAreWithin(const Thing* pThing) const;
    [[nodiscard]] host::GisTablePtr tableAtHand() const;
    void makeThingCurrent(const Thing& thing);
    [[nodiscard]] bool readsThing(const Attributes& attributes) const;
    void writeThing(const Leaf& leaf);
    void writeThingValue(const Leaf& leaf);
    void writeLayerThing(const Leaf& leaf, const Thing& thing);
    [[nodiscard]] std::string propertyOf(const Thing& thing, const Leaf& leaf);
    [[nodiscard]] const host::GisRow* rowOfField(const Thing& field) const;

    // Shapes in the forms of the second edition (second/Geometries.cpp)
    [[nodiscard]] std::string nearest(const char* sName) const;
    [[nodiscard]] const host::GisRow* rowAtHand() const;
    [[nodiscard]] host::GisTablePtr tableOfShape() const;
    [[nodiscard]] std::string crsFor(const std::string& sForm) const;
    [[nodiscard]] host::GisSpatialReferencePtr referenceNamed(const std::string& sCrs) const;
    [[nodiscard]] host::GisTransformationPtr wayTo(const std::string& sCrs,
                                                   const host::GisTablePtr& pTable) const;
    [[nodiscard]] host::GisSpatialReferencePtr referenceWritten(const std::string& sForm) const;
    [[nodiscard]] bool isYFirst(const std::string& sForm) const;
    [[nodiscard]] Notation notationFor(const std::string& sForm, const Attributes& attributes);
    [[nodiscard]] PlainShape shapeFor(const std::string& sForm) const;
    [[nodiscard]] host::GisTransformationPtr wayFor(const host::GisRow& row) const;
    [[nodiscard]] host::GisGeometryPtr movedShape(const host::GisRow& row) const;
    [[nodiscard]] std::optional<host::Bounds> boundsOfLayer() const;
    [[nodiscard]] std::string shapeText(Node node, const Attributes& attributes);
    [[nodiscard]] std::string figureText(const std::string& sForm, const PlainShape& shape,
                                         const Notation& notation) const;

    // Shapes as elements (second/ShapeElements.cpp)
    void writeShapeElements(Node node, OutputNode* pOut, const Attributes& attributes);
    void writeGml(Node node, OutputNode* pOut, const Attributes& attributes);
    void writeEnvelope(OutputNode* pOut, const Attributes& attributes);
    void writeKml(OutputNode* pOut, const Attributes& attributes);
    [[nodiscard]] std::string srsName() const;
    [[nodiscard]] std::string idOfShape(Node node, const Attributes& attributes);
    [[nodiscard]] std::string prefixFor(const std::string& sForm) const;
    OutputNode* outermost(OutputNode* pOut, const std::string& sForm, const std::string& sName);

    // Texts and expressions (second/Texts.cpp)
    [[nodiscard]] std::string textOf(Node node, const Attributes& attributes);
    [[nodiscard]] std::string filledIn(const std::string& sTemplate, const Attributes& attributes);
    [[nodiscard]] std::string textOfTerm(const Term& term, std::int32_t lPlaces);
    [[nodiscard]] SqlValue valueOf(const Term& term);
    [[nodiscard]] const host::GisRow& rowFor(const std::string& sField, std::size_t nClimb) const;
    [[nodiscard]] SqlValue fieldValue(const std::string& sField, std::size_t nClimb);
    [[nodiscard]] SqlValue variable(const std::string& sName);
    [[nodiscard]] SqlValue codeAtHand() const;
    [[nodiscard]] SqlValue aggregate(const std::string& sName, const Term* pArgument);

    // Forms of values (second/Formats.cpp)
    enum class FormatOf { Numbers, Dates, Codes, Truths };
    [[nodiscard]] std::string formatOf(FormatOf what) const;
    [[nodiscard]] std::optional<std::string> numberText(double dValue, std::int32_t lPlaces);
    [[nodiscard]] std::optional<std::string> wholeText(std::int64_t nValue);
    [[nodiscard]] std::optional<std::string> dateText(const Date& date);
    [[nodiscard]] std::optional<std::string> codeName(const host::GisRow& row, std::int32_t lField);
    [[nodiscard]] std::optional<std::string> formattedField(const host::GisRow& row, std::int32_t lField);

    // Rows of the second edition (second/SecondRows.cpp)
    void repeatSecondRows(const Child& child, OutputNode* pFirst);
    [[nodiscard]] host::GisTablePtr tableOfRows(const std::string& sKind) const;
    [[nodiscard]] ReadRows rowsToGoOver(Node node, const Attributes& attributes);
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    [[nodiscard]] ReadRows relatedRows(Node node, const Attributes& attributes);
    [[nodiscard]] static ReadRows matchingRows(host::GisTable& table, const Pairs& aPairs,
                                               const host::GisRow& around);
    [[nodiscard]] ReadRows chosenRows(Node node, ReadRows found, const host::GisTablePtr& pTable);
    [[nodiscard]] Rows orderedRows(Node node, const Rows& aRows);
    [[nodiscard]] std::vector<Rows> grouped(Node node, const Rows& aRows, const host::GisTablePtr& pTable);
    void writeSecondItem(Node node, OutputNode* pItem, const Attributes& attributes,
                         const host::GisRowPtr& pRow);

    // Relationship classes (second/Relationships.cpp)
    [[nodiscard]] host::GisTablePtr tableOfData(host::GisWorkspace& workspace,
                                                const std::string& sName) const;
    [[nodiscard]] ReadRows rowsOfRelationship(Node node);

    // Data sources (Resolution.cpp)
    [[nodiscard]] Value resolve(const std::string& sKind, const std::string& sIdentity,
                                const std::string& sIdentityValue, const std::string& sLocation);
    [[nodiscard]] Value resolve(const Attributes& attributes);
    void noteResolution(const Attributes& attributes, const Value& result, const Tag* pTagBefore);
    [[nodiscard]] ObjectPtr resolveKind(const std::string& sKind, const std::string& sIdentity,
                                        const std::string& sName, const std::string& sLocation);
    [[nodiscard]] ObjectPtr resolveLayer(const std::string& sKind, const std::string& sIdentity,
                                         const std::string& sName, const std::string& sLocation);
    [[nodiscard]] ObjectPtr resolveTable(const std::string& sIdentity, const std::string& sName,
                                         const std::string& sLocation, bool bRelated);
    [[nodiscard]] host::GisMapPtr mapNamed(const std::string& sName);
    [[nodiscard]] host::GisLayerPtr layerNamed(const std::string& sName) const;
    [[nodiscard]] std::string layerNameOfTag(const std::string& sTag) const;
    [[nodiscard]] const Tag* tagNamed(const std::string& sTag) const;
    [[nodiscard]] host::GisWorkspacePtr openWorkspace(const std::string& sPath) const;
    [[nodiscard]] host::GisWorkspacePtr workspaceOfLayerOrLocation(const std::string& sLocation) const;
    void keep(const std::string& sKind, const Value& result);
    void keepObject(const std::string& sKey, ObjectPtr pObject);

    // Single values (Values.cpp)
    void exportValue(Node node, OutputNode* pOut, const Attributes& attributes, const host::GisRowPtr& pRow,
                     const host::GisRowPtr& pRecord);
    void writeLeaf(const Leaf& leaf);
    void write(const Leaf& leaf, const std::string& sValue);
    void writeFeatureValue(const Leaf& leaf);
    void writeLeafText(const Leaf& leaf);
    void writeLayerValue(const Leaf& leaf);
    void writeMapValue(const Leaf& leaf);
    void writeWorkspaceValue(const Leaf& leaf);
    void writeRelated(const Leaf& leaf);
    void writeExternal(const Leaf& leaf);
    [[nodiscard]] std::string processed(const std::string& sProgId, bool& bIsProcessor);
    [[nodiscard]] std::string rasterFolder() const;
    [[nodiscard]] std::string fieldText(const host::GisRow& row, const std::string& sIdentity,
                                        const std::string& sName, std::int32_t lPlaces);
    [[nodiscard]] std::string formatted(double dValue, std::int32_t lPlaces);
    [[nodiscard]] static std::int32_t placesOf(const std::string& sText);

    // Spatial references (Values.cpp)
    void exportSpatialReference(Node node, OutputNode* pOut);
    void writeReference(Node node, OutputNode* pOut, const std::string& sValue);

    // Repeated nodes (Repeats.cpp)
    void exportMultiple(Node node, OutputNode* pOut, const Attributes& attributes,
                        const host::GisRowPtr& pRow, const host::GisRowPtr& pRecord,
                        const Attributes* pParentAttributes);
    void revealItem(const Repeat& repeat);
    void repeatLeaf(const Repeat& repeat);
    void repeatGroup(const Repeat& repeat);
    [[nodiscard]] static std::string kindOf(const Attributes& attributes);
    void repeatRelated(const Repeat& repeat);
    void repeatRows(const Repeat& repeat, const host::GisCursorPtr& pCursor, bool bFeatures);
    void writeRow(const Repeat& repeat, OutputNode* pItem, const host::GisRowPtr& pRow, bool bFeature);
    [[nodiscard]] host::GisCursorPtr currentFeatures() const;
    [[nodiscard]] host::GisCursorPtr currentRecords() const;
    OutputNode* anotherItem(Node repeatedNode, OutputNode* pFirst, const std::string& sName);

    // Geometry (Shapes.cpp)
    void exportGeometry(Node node, OutputNode* pOut, const Attributes& parentAttributes,
                        const host::GisRowPtr& pRow);
    void writeShape(Node node, OutputNode* pOut, const Attributes& attributes,
                    const host::GisRowPtr& pFeature);
    void writeVertices(Node node, OutputNode* pOut, const Attributes& attributes,
                       const host::GisRowPtr& pFeature);
    void writeLength(Node node, OutputNode* pOut, const host::GisRowPtr& pFeature, std::int32_t lPlaces);
    void writeNodePoint(Node node, OutputNode* pOut, const std::string& sRepeatedKind,
                        const host::GisRowPtr& pFeature, std::int32_t lPlaces);
    void writeVertex(Node node, OutputNode* pOut, const host::GisRowPtr& pFeature,
                     const host::GisPointPtr& pPoint, std::optional<double> dMeasure, std::int32_t lPlaces);
    [[nodiscard]] std::string coordinate(const host::GisPointPtr& pPoint, const std::string& sProperty,
                                         std::int32_t lPlaces);
    [[nodiscard]] std::string number(double dValue, std::int32_t lPlaces);

    // Definitions: domains, relationship classes, fields, subtypes (Definitions.cpp)
    void exportDomains(Node node, OutputNode* pOut, const Attributes& parentAttributes);
    void exportDomainProperty(const host::GisDomain& domain, Node node, OutputNode* pOut);
    [[nodiscard]] static std::string domainProperty(const host::GisDomain& domain,
                                                    const std::string& sProperty);
    [[nodiscard]] static std::string relationshipProperty(const host::GisRelationshipClass& relationship,
                                                          const std::string& sProperty);
    [[nodiscard]] static std::string shapeTypeText(std::int32_t lCode);
    [[nodiscard]] static std::string fieldProperty(const host::GisField& field, const std::string& sProperty,
                                                   const host::GisFeatureClassPtr& pClass);
    void exportCodes(const host::GisDomain& domain, Node node, OutputNode* pCodes);
    void exportRelationships(Node node, OutputNode* pOut, const Attributes& parentAttributes);
    void exportRelationshipProperty(const host::GisRelationshipClass& relationship, Node node,
                                    OutputNode* pOut);
    void exportFields(const host::GisFeatureClassPtr& pClass, Node node, OutputNode* pOut);
    void exportFieldProperty(const host::GisField& field, Node node, OutputNode* pOut);
    void exportSubtypes(const host::GisFeatureClassPtr& pClass, const host::GisSubtypesPtr& pSubtypes,
                        Node node, OutputNode* pOut, const Attributes& parentAttributes,
                        SubtypeState& shared);
    void writeSubtypeProperty(const host::GisSubtypes& subtypes, Node node, OutputNode* pOut,
                              const SubtypeState& shared);

    Setting setting_;
    OutputTree tree_;
    Outcome outcome_;
    Reach reach_;
    std::vector<const ControlNode*> aActive_;
    bool bResolving_ = false;
    std::map<const ControlNode*, std::vector<ToldFailure>> sourceFailures_; ///< of the visits that go on
    std::int32_t lItems_ = 0;

    const ControlNode* pRoot_ = nullptr;
    bool bSecond_ = false; ///< the control file is of the second edition
    std::vector<RowLoop> aRowLoops_;
    std::vector<Thing> aThings_;
    std::map<const ControlNode*, std::string> bindings_; ///< of the prefix "p"
    bool bOfThing_ = false;                              ///< a leaf reads the thing at hand

    host::GisMapDocumentPtr pMapDoc_;
    host::GisMapPtr pMap_;
    host::GisMapPtr pShownMap_; ///< instead of the document's; nothing: the document's
    host::GisFeatureLayerPtr pLayer_;
    host::GisFeatureClassPtr pClass_;
    host::GisWorkspacePtr pWorkspace_;
    host::GisTablePtr pTable_;
    host::GisTablePtr pRelatedTable_;
    host::GisTinLayerPtr pTin_;
    host::GisRasterLayerPtr pRaster_;
    const Tag* pTag_ = nullptr;
    std::vector<std::pair<std::string, ObjectPtr>> aObjects_;

    /// What a node's data source was when it was last resolved, for judging the cases alone.
    struct Resolved {
        ObjectPtr pResult;
        host::GisFeatureLayerPtr pLayer;
    };
    std::map<const ControlNode*, Resolved> lastByNode_;
};

} // namespace halvane::oracle
