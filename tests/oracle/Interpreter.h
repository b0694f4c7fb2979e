#pragma once

// A second reading of the rules of a control file: node by node and row by row, everything looked up anew
// each time, nothing kept for later. Slow and plain on purpose: it is what the export's own, compiled way of
// running a control file is measured by.

#include "base/Failure.h"
#include "base/Value.h"
#include "host/Domains.h"
#include "host/Fields.h"
#include "host/Relationships.h"
#include "host/Rows.h"
#include "host/Subtypes.h"
#include "oracle/ControlTree.h"
#include "oracle/OutputTree.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
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
    void bindMap(const Attributes& attributes, const Attributes* pParent);
    [[nodiscard]] std::vector<const ControlNode*> childrenOf(Node node) const;
    OutputNode* outputForChild(Node child, OutputNode* pParent);
    void writeChild(Node node, OutputNode* pOut, const std::string& sValue);
    void noteWritten(const std::string& sKind, const std::string& sValue);
    void noteTurn(const char* sWhat) { ++reach_.turns[sWhat]; }

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
    void repeatLeaf(const Repeat& repeat);
    void repeatGroup(const Repeat& repeat);
    void repeatRelated(const Repeat& repeat);
    void repeatRows(const Repeat& repeat, const host::GisCursorPtr& pCursor, bool bFeatures);
    void writeRow(const Repeat& repeat, OutputNode* pItem, const host::GisRowPtr& pRow, bool bFeature);
    [[nodiscard]] host::GisCursorPtr currentFeatures() const;
    [[nodiscard]] host::GisCursorPtr currentRecords() const;
    OutputNode* anotherItem(OutputNode* pFirst, const std::string& sName);

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

    host::GisMapDocumentPtr pMapDoc_;
    host::GisMapPtr pMap_;
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
