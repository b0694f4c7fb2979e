#include "engine/second/FieldCheck.h"

#include "base/NearestName.h"
#include "engine/ModExporter.h"
#include "engine/second/SecondControl.h"
#include "engine/sources/MapIndex.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"

#include <map>
#include <string>
#include <utility>

namespace halvane {

namespace {

using host::GisFieldsPtr;

/// What is current while a node is written. Fields that are not known are nothing.
struct Current {
    GisFieldsPtr pLayer;
    GisFieldsPtr pTable;
    GisFieldsPtr pRelated;

    /// What is the same afterwards whether something was done or not.
    void forgetUnless(const Current& other) {
        for (const auto pMember : {&Current::pLayer, &Current::pTable, &Current::pRelated})
            if (this->*pMember != other.*pMember)
                (this->*pMember).reset();
    }
};

/// The fields of the layers and tables that the shown map has.
class FieldsOfMap {
public:
    explicit FieldsOfMap(const host::GisMapPtr& pMap) : index_(pMap) {}

    [[nodiscard]] GisFieldsPtr ofLayer(std::string_view sName) {
        return known(layers_, sName, [&]() -> GisFieldsPtr {
            const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(index_.findLayer(sName));
            const auto pClass = pLayer == nullptr ? nullptr : pLayer->featureClass();
            return pClass == nullptr ? nullptr : pClass->fields();
        });
    }
    [[nodiscard]] GisFieldsPtr ofTable(std::string_view sName) {
        return known(tables_, sName, [&]() -> GisFieldsPtr {
            const auto pTable = index_.findTable(sName);
            return pTable == nullptr ? nullptr : pTable->fields();
        });
    }
    /// As related tables are looked for.
    [[nodiscard]] GisFieldsPtr ofTableOrLayer(std::string_view sName) {
        auto pFields = ofTable(sName);
        return pFields != nullptr ? pFields : ofLayer(sName);
    }

private:
    using Known = std::map<std::string, GisFieldsPtr, std::less<>>;

    template<class Find>
    static GisFieldsPtr known(Known& all, std::string_view sName, const Find& find) {
        const auto place = all.find(sName);
        if (place != all.end())
            return place->second;
        GisFieldsPtr pFields;
        try {
            pFields = find();
        } catch (const Failure&) {
            pFields.reset(); // whoever asks for its rows is told
        }
        return all.emplace(sName, std::move(pFields)).first->second;
    }

    MapIndex index_;
    Known layers_;
    Known tables_;
};

/// Walks the control file as an export does.
class FieldCheck {
public:
    explicit FieldCheck(const host::GisMapPtr& pMap) : map_(pMap) {}

    void visitChildren(const ControlNode& node, Current& current) {
        for (const ControlNode& child : childrenOf(node))
            visit(child, current);
    }

    [[nodiscard]] std::vector<SecondProblem> takeProblems() { return std::move(problems_); }

private:
    void visit(const ControlNode& node, Current& current) {
        if (node.pSecond == nullptr) {
            bind(node, current);
            visitRows(node, current);
            return;
        }
        const Current before = current;
        if (node.pSecond->forEach)
            current = {}; // which thing it is at, the map tells
        if (node.pSecond->when)
            check(node, *node.pSecond->when);
        bind(node, current);
        visitRows(node, current);
        if (node.pSecond->forEach || node.pSecond->rows)
            current = before;
        else if (node.pSecond->when)
            current.forgetUnless(before);
    }

    void bind(const ControlNode& node, Current& current) {
        const Binding& binding = *node.pBinding;
        const bool bElsewhere = !binding.bFrameBlank || !binding.bLocationBlank;
        const auto named = [&](std::string_view sIdentity) {
            return !bElsewhere && binding.sIdentity == sIdentity;
        };
        switch (binding.kind) {
        case DataSourceKind::MapLayer:
            current.pLayer = named("LayerName") ? map_.ofLayer(binding.sIdentityValue) : nullptr;
            break;
        case DataSourceKind::FeatureLayer:
        case DataSourceKind::LayerInOtherCase:
            current.pLayer.reset();
            break;
        case DataSourceKind::Table:
            current.pTable = named("TableName") ? map_.ofTable(binding.sIdentityValue) : nullptr;
            break;
        case DataSourceKind::RelatedTable:
            current.pRelated = named("LayerName") ? map_.ofTableOrLayer(binding.sIdentityValue) : nullptr;
            break;
        default:
            break;
        }
    }

    void visitRows(const ControlNode& node, Current& current) {
        const bool bSecond = node.pSecond != nullptr && node.pSecond->rows;
        const bool bRows = (node.bRepeated || bSecond) && isOfRows(node.pBinding->kind);
        if (bRows) {
            checkLinks(node, current);
            rows_.push_back(rowsOf(node, current));
        }
        checkOwn(node);
        visitChildren(node, current);
        if (bRows)
            rows_.pop_back();
    }

    static GisFieldsPtr rowsOf(const ControlNode& node, const Current& current) {
        switch (node.pBinding->kind) {
        case DataSourceKind::Feature:
            return current.pLayer;
        case DataSourceKind::RelatedTable:
            return node.pSecond != nullptr && node.pSecond->rows && node.pSecond->rows->sRelationship.empty()
                       ? current.pRelated
                       : nullptr;
        default:
            return current.pTable;
        }
    }

    void checkLinks(const ControlNode& node, const Current& current) {
        if (node.pSecond == nullptr || !node.pSecond->rows)
            return;
        for (const auto& link : node.pSecond->rows->links) {
            checkName(node, rows_.empty() ? nullptr : rows_.back(), link.sAround);
            checkName(node, current.pRelated, link.sRelated);
        }
    }

    void checkOwn(const ControlNode& node) {
        if (node.pSecond == nullptr)
            return;
        check(node, node.pSecond->text);
        check(node, node.pSecond->geometryId);
        if (!node.pSecond->rows)
            return;
        const RowRules& rules = *node.pSecond->rows;
        if (rules.where)
            check(node, *rules.where);
        if (rules.group)
            check(node, *rules.group);
        for (const auto& order : rules.order)
            check(node, order.expression);
    }

    void check(const ControlNode& node, const std::optional<NodeText>& text) {
        if (!text)
            return;
        for (const auto& piece : text->pieces)
            if (piece.value)
                check(node, *piece.value);
    }

    void check(const ControlNode& node, const NodeExpression& expression) {
        check(node, expression.expression());
    }

    void check(const ControlNode& node, const expression::Expression& expression) {
        for (const auto& aggregate : expression.aggregates())
            check(node, aggregate);
        for (const auto& reference : expression.references())
            if (reference.kind == expression::Reference::Kind::Field && reference.lClimb < rows_.size())
                checkName(node, rows_[rows_.size() - 1 - reference.lClimb], reference.sName);
    }

    void checkName(const ControlNode& node, const GisFieldsPtr& pFields, const std::string& sName) {
        if (pFields == nullptr || pFields->findField(sName) >= 0 || namesObjectId(sName))
            return;
        NearestName nearest(sName);
        for (std::int32_t n = 0; n < pFields->count(); ++n)
            nearest.offer(pFields->field(n).name());
        problems_.push_back(
            {node.oNode, "the rows have no field \"" + sName + "\"" + nearest.question("; ")});
    }

    FieldsOfMap map_;
    std::vector<GisFieldsPtr> rows_; ///< of the loops around, the innermost last
    std::vector<SecondProblem> problems_;
};

} // namespace

std::vector<SecondProblem> checkSecondFields(dom::Node oControlRoot, const SecondEdition& edition,
                                             const host::GisMapDocumentPtr& pMapDocument) {
    if (pMapDocument == nullptr || !isOfSecondEdition(oControlRoot))
        return {};
    const auto oOutput = dom::Document::create();
    const ControlTree tree(oControlRoot, ControlTree::Root::OfDocument, *oOutput, true, {}, &edition);
    const auto pMap = pMapDocument->focusMap();
    // A processor may make anything current.
    if (pMap == nullptr || tree.asksProcessors())
        return {};
    FieldCheck check(pMap);
    Current current;
    check.visitChildren(tree.root(), current);
    return check.takeProblems();
}

} // namespace halvane
