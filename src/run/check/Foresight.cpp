#include "run/check/Foresight.h"

#include "base/Text.h"
#include "engine/ModExporter.h"
#include "engine/second/RowsWalk.h"
#include "engine/second/SecondNode.h"
#include "exporters/KindExports.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Rows.h"
#include "host/Tables.h"
#include "telling/ControlVocabulary.h"
#include "telling/NameHints.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <initializer_list>
#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace halvane {

namespace {

using host::GisFieldsPtr;
using enum DataSourceKind;

bool isOneOf(DataSourceKind kind, std::initializer_list<DataSourceKind> kinds) {
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

bool asksReference(std::string_view sProperty) {
    constexpr std::string_view sPrefix = "SPATIALREFERENCE.";
    return equalIgnoringCase(sProperty.substr(0, sPrefix.size()), sPrefix);
}

bool isKnownProperty(std::string_view sProperty) {
    return std::ranges::any_of(controlVocabulary().properties,
                               [&](std::string_view sKnown) { return equalIgnoringCase(sKnown, sProperty); });
}

/// The properties of kinds that have few; none for other kinds.
std::vector<std::string_view> propertiesOf(DataSourceKind kind) {
    switch (kind) {
    case MapLayer:
    case FeatureLayer:
        return {"LayerName", "FeatureCount"};
    case TinLayer:
        return {"LayerName"};
    case RasterLayer:
        return {"LayerName", "Path"};
    case TinWorkspace:
    case RasterWorkspace:
        return {"Path"};
    default:
        return {};
    }
}

/// What a key is compared as.
enum class KeyType { Number, Text, Other };

KeyType keyType(const host::GisField& field) {
    switch (static_cast<host::FieldType>(field.typeCode())) {
    case host::FieldType::SmallInteger:
    case host::FieldType::Integer:
    case host::FieldType::Single:
    case host::FieldType::Double:
    case host::FieldType::Oid:
        return KeyType::Number;
    case host::FieldType::String:
        return KeyType::Text;
    default:
        return KeyType::Other;
    }
}

/// Other for a field that is not known.
KeyType typeOf(const GisFieldsPtr& pFields, std::string_view sField) {
    const std::int32_t lField = pFields == nullptr ? -1 : pFields->findField(sField);
    return lField < 0 ? KeyType::Other : keyType(pFields->field(lField));
}

bool doDiffer(KeyType left, KeyType right) {
    return left != right && left != KeyType::Other && right != KeyType::Other;
}

const char* wordOf(KeyType type) {
    return type == KeyType::Number ? "numbers" : "texts";
}

class Foresight final : public RowsWalk {
public:
    Foresight(const host::GisMapPtr& pMap, bool bAnythingMayBeCurrent)
        : RowsWalk(pMap), index_(pMap), bLayer_(bAnythingMayBeCurrent), bTable_(bAnythingMayBeCurrent) {}

    [[nodiscard]] Foreseen take() { return std::move(foreseen_); }

private:
    // ---- The walk ----

    void reach(const ControlNode& node) override {
        for (const ControlNode& child : childrenOf(node))
            parents_.emplace(&child, &node);
    }

    void beginRows(const ControlNode& node, const Current& current) override {
        if (node.pSecond == nullptr || !node.pSecond->rows || rows().empty())
            return;
        for (const auto& link : node.pSecond->rows->links)
            compareKeys(node, rows().back().pFields, link.sAround, current.related.pFields, link.sRelated);
    }

    void at(const ControlNode& node, const Current& current) override {
        noteBinding(node);
        if (node.bHasText || node.bReadsItem || (node.pSecond != nullptr && node.pSecond->rows))
            return;
        if (isInListing(node))
            readListed(node);
        else if (node.bRepeated && !isRecordOf(node))
            readRepeat(node);
        else if (!node.hasChildren())
            readLeaf(node, current);
    }

    /// What may be current from here on.
    void noteBinding(const ControlNode& node) {
        const Binding& binding = *node.pBinding;
        const bool bLoop = node.pSecond != nullptr && (node.pSecond->forEach || node.pSecond->rows);
        if (bLoop || isOneOf(binding.kind, {MapLayer, FeatureLayer})) {
            bLayer_ = true;
            sLayer_ = bLoop || binding.sIdentity != "LayerName" ? "" : binding.sIdentityValue;
        }
        if (bLoop || (binding.kind == Table && (node.hasChildren() || node.bRepeated))) {
            bTable_ = true;
            sTable_ = bLoop || binding.sIdentity != "TableName" ? "" : binding.sIdentityValue;
        }
    }

    [[nodiscard]] const ControlNode* parentOf(const ControlNode& node) const {
        const auto found = parents_.find(&node);
        return found == parents_.end() ? nullptr : found->second;
    }

    [[nodiscard]] bool isInListing(const ControlNode& node) const {
        for (const ControlNode* p = parentOf(node); p != nullptr; p = parentOf(*p))
            if (p->bRepeated && listsThings(p->pBinding->kind))
                return true;
        return false;
    }

    /// Whether it stands directly inside a repeated node of a table, which heeds no `Entries` of it.
    [[nodiscard]] bool isRecordOf(const ControlNode& node) const {
        const ControlNode* const pParent = parentOf(node);
        return pParent != nullptr && pParent->bRepeated &&
               rowOf(pParent->pBinding->kind).rowUse == RowUse::Record;
    }

    /// The node whose rows the node is written for; nothing where there is none.
    [[nodiscard]] const ControlNode* loopAround(const ControlNode& node) const {
        for (const ControlNode* p = parentOf(node); p != nullptr; p = parentOf(*p))
            if (p->bRepeated || (p->pSecond != nullptr && p->pSecond->rows))
                return p;
        return nullptr;
    }

    // ---- Nodes ----

    void readListed(const ControlNode& node) {
        const std::string_view sProperty = node.own.sDataProperty;
        if (!node.hasChildren() && !sProperty.empty() && !isKnownProperty(sProperty) && !node.bNamesAttribute)
            add(node, Notice::UnknownProperty, std::string(sProperty));
    }

    void readRepeat(const ControlNode& node) {
        const Binding& binding = *node.pBinding;
        const KindExport& kind = exportOf(binding.kind);
        const bool bSilent = (node.hasChildren() ? kind.fnRepeatGroup : kind.fnRepeatLeaf) == nullptr ||
                             binding.kind == RelatedTable ||
                             rowOf(binding.kind).shapePart == ShapePart::Unknown;
        const bool bFeatures = binding.kind == Feature || binding.kind == FeatureTable;
        if (bSilent || (bFeatures && !node.hasChildren() && binding.sIdentity != "FieldName"))
            add(node, Notice::RepeatIsSilent, std::string(binding.sDataSource));
        else if (binding.kind == Record && !bTable_)
            add(node, Notice::NoCurrentTable, std::string(binding.sDataSource));
        else if ((binding.kind == Field || rowOf(binding.kind).shapePart != ShapePart::None) && !bLayer_)
            add(node, Notice::NoCurrentLayer, std::string(binding.sDataSource));
        else if (binding.kind == Field && !sLayer_.empty() && isInsideOtherSource(node.oNode))
            add(node, Notice::FieldsOfLayer, std::string(sLayer_));
    }

    void readLeaf(const ControlNode& node, const Current& current) {
        const DataSourceKind kind = node.pBinding->kind;
        if (node.bReadsRow) {
            if (!rows().empty())
                checkField(node, rows().back().pFields, node.merged.sIdentityValue);
        } else if (exportOf(kind).fnWriteLeaf == nullptr) {
            readSilentLeaf(node);
        } else if (rowOf(kind).rowUse != RowUse::None) {
            readValueOfRow(node);
        } else if (kind == RelatedRecord) {
            readRelated(node, current);
        } else {
            readProperty(node);
        }
    }

    void readSilentLeaf(const ControlNode& node) {
        const DataSourceKind kind = node.pBinding->kind;
        if (exportOf(kind).fnRepeatGroup != nullptr && kind != OtherGeometry)
            add(node, Notice::OnlyRepeated, std::string(node.pBinding->sDataSource));
        else if (kind != Blank)
            add(node, Notice::UnknownKind, std::string(node.pBinding->sDataSource));
    }

    void readProperty(const ControlNode& node) {
        const std::string_view sProperty = node.merged.sDataProperty;
        const auto known = propertiesOf(node.pBinding->kind);
        if (asksReference(sProperty) && isOneOf(node.pBinding->kind, {Map, MapLayer, FeatureLayer}))
            readReference(node);
        else if (!known.empty() && !sProperty.empty() &&
                 std::ranges::none_of(known, [&](auto s) { return equalIgnoringCase(s, sProperty); }))
            add(node, Notice::UnknownProperty, std::string(sProperty));
    }

    void readReference(const ControlNode& node) {
        const std::string sProperty = upperCase(node.own.sDataProperty);
        if (!isKnownProperty(sProperty))
            return; // some are known and have no value; which, the exporter knows
        if (node.bTargetsAttribute && node.own.sDataLocation != "Attribute")
            add(node, Notice::ReplacesParentContent, sProperty);
    }

    // ---- Rows ----

    void readValueOfRow(const ControlNode& node) {
        if (const auto facts = factsOf(node.oNode); facts.bFieldMeant && !isRecordOf(node)) {
            add(node, Notice::ResolvedToNothing, "Table",
                nameHint(facts, Notice::ResolvedToNothing, "Table", {}));
            return;
        }
        const ControlNode* const pLoop = loopAround(node);
        const DataSourceKind kind = node.pBinding->kind;
        const bool bTableNamed = kind == Table && !isRecordOf(node);
        if (pLoop == nullptr || rows().empty() || bTableNamed ||
            rowOf(pLoop->pBinding->kind).rowUse != rowOf(kind).rowUse ||
            equalIgnoringCase(node.merged.sDataProperty, "TableName"))
            return;
        checkField(node, rows().back().pFields, node.merged.sIdentityValue);
    }

    void readRelated(const ControlNode& node, const Current& current) {
        checkField(node, current.related.pFields, node.merged.sIdentityValue);
        const std::string sLink(node.merged.sLinkField);
        if (sLink.empty() || rows().empty() || loopAround(node) == nullptr)
            return;
        checkField(node, rows().back().pFields, sLink);
        if (current.related.pFields != nullptr && current.related.pFields->findField(sLink) < 0)
            tell(node, "KeyMissing", "LinkField", sLink,
                 fmt::format("the related table has no field {}", inQuotes(sLink)),
                 "name in LinkField a field that both tables have");
        const KeyType around = typeOf(rows().back().pFields, sLink);
        const KeyType related = typeOf(current.related.pFields, sLink);
        if (doDiffer(around, related))
            tell(node, "KeysOfTwoTypes", "LinkField", sLink,
                 fmt::format("{} holds {} and that of the related rows {}: most data rejects a clause that "
                             "compares them",
                             inQuotes(sLink), wordOf(around), wordOf(related)),
                 "link by a field of one type");
        if (around == KeyType::Text)
            lookForApostrophe(node, sLink);
    }

    /// The first edition makes a clause of the value as it is.
    void lookForApostrophe(const ControlNode& node, const std::string& sLink) {
        const bool bLayer = loopAround(node)->pBinding->kind == Feature;
        const std::string sRows(bLayer ? sLayer_ : sTable_);
        if (sRows.empty())
            return;
        const auto [place, bNew] = apostrophes_.try_emplace({bLayer, sRows, sLink});
        if (bNew)
            place->second = valueWithApostrophe(sRows, bLayer, sLink);
        if (!place->second.empty())
            tell(node, "LinkValueEndsText", "LinkField", sLink,
                 fmt::format("the apostrophe in {} of {} ends the text of the clause, and what follows it is "
                             "read as SQL",
                             inQuotes(place->second), inQuotes(sLink)),
                 "link by a number or a code, or by a view that doubles apostrophes");
    }

    /// "" where there is none, and where the rows cannot be read: whoever asks for them is told.
    std::string valueWithApostrophe(const std::string& sRows, bool bLayer, const std::string& sField) {
        try {
            const auto pTable = bLayer ? classOf(sRows) : index_.findTable(sRows);
            const auto pCursor = pTable == nullptr ? nullptr : pTable->searchWithoutShapes();
            for (host::GisRowPtr pRow; pCursor != nullptr && (pRow = pCursor->nextRow()) != nullptr;) {
                std::string sValue = toText(pRow->value(pRow->fields().findField(sField)));
                if (sValue.find('\'') != std::string::npos)
                    return sValue;
            }
        } catch (const Failure&) { // NOLINT(bugprone-empty-catch)
        }
        return {};
    }

    [[nodiscard]] host::GisTablePtr classOf(const std::string& sLayer) {
        const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(index_.findLayer(sLayer));
        return pLayer == nullptr ? nullptr : pLayer->featureClass();
    }

    void checkField(const ControlNode& node, const GisFieldsPtr& pFields, std::string_view sName) {
        if (pFields == nullptr || sName.empty() || node.merged.sIdentity == "TagName" ||
            namesObjectId(sName) || pFields->findField(sName) >= 0)
            return;
        Surroundings around;
        around.pFields = pFields.get();
        const std::string sDetail(sName);
        add(node, Notice::FieldNotFound, sDetail,
            nameHint(factsOf(node.oNode), Notice::FieldNotFound, sDetail, around));
    }

    void compareKeys(const ControlNode& node, const GisFieldsPtr& pAround, std::string_view sAround,
                     const GisFieldsPtr& pRelated, std::string_view sRelated) {
        const KeyType around = typeOf(pAround, sAround);
        const KeyType related = typeOf(pRelated, sRelated);
        if (!doDiffer(around, related))
            return;
        tell(node, "KeysDiffer", "Link", std::string(sRelated),
             fmt::format("{} holds {} and {} of the related rows {}, so no row belongs to another",
                         inQuotes(sAround), wordOf(around), inQuotes(sRelated), wordOf(related)),
             "link fields of one type, or let a view change the type of one");
    }

    // ---- What is foreseen ----

    void add(const ControlNode& node, Notice notice, std::string sDetail, std::string sHint = {}) {
        foreseen_.notices.push_back({node.oNode, notice, std::move(sDetail), std::move(sHint)});
    }

    void tell(const ControlNode& node, std::string_view sKind, const char* sAttribute, std::string sDetail,
              std::string sText, std::string sRemedy) {
        Finding finding;
        finding.severity = Finding::Severity::Warning;
        finding.sKind = sKind;
        finding.sDetail = std::move(sDetail);
        finding.sText = std::move(sText);
        finding.sRemedy = std::move(sRemedy);
        finding.oNode = node.oNode;
        finding.sAttribute = sAttribute;
        foreseen_.findings.push_back(std::move(finding));
    }

    /// Of a layer or table, by its name and a field.
    using Values = std::map<std::tuple<bool, std::string, std::string>, std::string>;

    MapIndex index_;
    Values apostrophes_; ///< with an apostrophe; "" for none
    bool bLayer_;        ///< a layer may be current
    bool bTable_;
    std::string_view sLayer_; ///< the name of the layer that was bound last; "" where it is not known
    std::string_view sTable_; ///< the same of a table
    std::unordered_map<const ControlNode*, const ControlNode*> parents_;
    Foreseen foreseen_;
};

} // namespace

Foreseen foresee(dom::Node oControlRoot, const SecondEdition& edition,
                 const host::GisMapDocumentPtr& pMapDocument) {
    const auto oOutput = dom::Document::create();
    const ControlTree tree(oControlRoot, ControlTree::Root::OfDocument, *oOutput, true, {}, &edition);
    Foresight foresight(pMapDocument == nullptr ? nullptr : pMapDocument->focusMap(), tree.asksProcessors());
    foresight.walk(tree.root());
    return foresight.take();
}

} // namespace halvane
