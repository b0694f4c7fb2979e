#include "engine/second/FieldCheck.h"

#include "base/NearestName.h"
#include "engine/ModExporter.h"
#include "engine/second/RowsWalk.h"
#include "engine/second/SecondControl.h"
#include "host/Fields.h"
#include "host/Map.h"

#include <string>
#include <utility>

namespace halvane {

namespace {

using host::GisFieldsPtr;

class FieldCheck final : public RowsWalk {
public:
    explicit FieldCheck(const host::GisMapPtr& pMap) : RowsWalk(pMap) {}

    [[nodiscard]] std::vector<RowsProblem> takeProblems() { return std::move(problems_); }

private:
    void reach(const ControlNode& node) override {
        if (node.pSecond != nullptr && node.pSecond->when)
            check(node, *node.pSecond->when);
    }

    void beginRows(const ControlNode& node, const Current& current) override {
        if (node.pSecond == nullptr || !node.pSecond->rows)
            return;
        for (const auto& link : node.pSecond->rows->links) {
            checkName(node, rows().empty() ? nullptr : rows().back().pFields, link.sAround);
            checkName(node, current.related.pFields, link.sRelated);
        }
    }

    void cannotFollow(const ControlNode& node, const Failure& failure) override {
        problems_.push_back({node.oNode, failure.description(), true});
    }

    void at(const ControlNode& node, const Current& /*current*/) override {
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
            if (reference.kind == expression::Reference::Kind::Field && reference.lClimb < rows().size())
                checkName(node, rows()[rows().size() - 1 - reference.lClimb].pFields, reference.sName);
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

    std::vector<RowsProblem> problems_;
};

} // namespace

std::vector<RowsProblem> checkSecondRows(dom::Node oControlRoot, const SecondEdition& edition,
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
    check.walk(tree.root());
    return check.takeProblems();
}

} // namespace halvane
