#include "engine/second/NodeExpression.h"

#include "engine/ModExporter.h"
#include "engine/second/GroupScope.h"
#include "engine/second/Inherited.h"
#include "engine/second/ItemScope.h"
#include "engine/second/RowScope.h"
#include "engine/second/SecondEdition.h"
#include "expression/Aggregation.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Rows.h"
#include "host/SpatialReference.h"
#include "host/Tables.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

namespace halvane {

namespace {

using expression::Reference;

/// Lends the name of an object, or Null where there is none.
template<class Object, class Name>
Value nameOf(const Object& pObject, Name fnName) {
    return pObject == nullptr ? Value(Null()) : Value((*pObject.*fnName)());
}

/// That many rows further out; nothing where there are fewer.
const RowScope* scopeAround(const RowScope* pScope, std::uint32_t lClimb) {
    for (; pScope != nullptr && lClimb > 0; --lClimb)
        pScope = pScope->around();
    return pScope;
}

/// Of the innermost loop, over rows or things, as the row that is climbed to sees it.
Value itemNumber(const ExportState& state, std::uint32_t lClimb) {
    const RowScope* const pRows = scopeAround(state.pRowScope, lClimb);
    for (const ItemScope* pItem = state.pItemScope; pItem != nullptr; pItem = pItem->around())
        if (pItem->rows() == pRows)
            return pItem->number();
    return pRows == nullptr ? Value(Null()) : Value(pRows->item());
}

Value layerName(const ExportState& state, std::uint32_t /*lClimb*/) {
    if (state.pFeatureLayer != nullptr)
        return state.pFeatureLayer->name();
    const LoopItem* const pItem = itemOf(state, ForEach::Layer);
    return pItem == nullptr ? Value(Null()) : Value(pItem->as<host::GisLayer>()->name());
}

/// The code of the reference in which the node at hand writes coordinates: without one of its own, the
/// current layer's, or the map's where there is no layer.
Value referenceCode(const ExportState& state, std::uint32_t /*lClimb*/) {
    if (state.pInherited != nullptr && !state.pInherited->space.sCode.empty())
        return state.pInherited->space.sCode;
    host::GisSpatialReferencePtr pReference;
    if (state.pFeatureLayer != nullptr)
        pReference = state.pFeatureLayer->spatialReference();
    else if (state.pMap != nullptr)
        pReference = state.pMap->spatialReference();
    std::string sCode = pReference == nullptr ? std::string() : pReference->authorityCode();
    return sCode.empty() ? Value(Null()) : Value(std::move(sCode));
}

struct Variable {
    std::string_view sName;
    Value (*fnValue)(const ExportState& state, std::uint32_t lClimb);
};

constexpr std::string_view sValueOfField = "Value";

/// Of the innermost group that the row which is climbed to is of, or is in.
Value countOfGroup(const ExportState& state, std::uint32_t lClimb) {
    for (const RowScope* pRows = scopeAround(state.pRowScope, lClimb); pRows != nullptr;
         pRows = pRows->around())
        for (const GroupScope* pGroup = state.pGroup; pGroup != nullptr; pGroup = pGroup->around())
            if (&pGroup->loop() == pRows)
                return static_cast<std::int64_t>(pGroup->rows().size());
    return Null();
}

constexpr std::array<Variable, 9> variables{{
    {sCountOfGroup, &countOfGroup},
    {"Crs", &referenceCode},
    {"Date",
     [](const ExportState& state, std::uint32_t) { return Value(state.options.pSecondEdition->sDate); }},
    {"DateTime",
     [](const ExportState& state, std::uint32_t) { return Value(state.options.pSecondEdition->sDateTime); }},
    {"Item", &itemNumber},
    {"Layer", &layerName},
    {"Map", [](const ExportState& state, std::uint32_t) { return nameOf(state.pMap, &host::GisMap::name); }},
    {"Table", [](const ExportState& state,
                 std::uint32_t) { return nameOf(state.pTable, &host::GisTable::datasetName); }},
    {sValueOfField, nullptr}, // a field of the row, not a text of the export
}};

const Variable* variableNamed(std::string_view sName) noexcept {
    const auto found = std::ranges::find(variables, sName, &Variable::sName);
    return found == variables.end() ? nullptr : &*found;
}

/// A text of the export that outlives the views of it: values of variables are few and short.
ValueView kept(ExportState& state, Value value) {
    return toView(state.variableValues.emplace_back(std::move(value)));
}

ValueView variableValue(ExportState& state, const Reference& reference) {
    if (const Variable* const pVariable = variableNamed(reference.sName); pVariable != nullptr)
        return kept(state, pVariable->fnValue(state, reference.lClimb));
    const auto& values = state.options.pSecondEdition->values;
    const auto found = values.find(reference.sName);
    return found == values.end() ? ValueView(Null()) : ValueView(std::string_view(found->second));
}

/// @throws Failure ObjectVariableNotSet when there are not as many rows around.
const host::GisRow& rowOf(const ExportState& state, const Reference& reference) {
    const RowScope* const pScope = scopeAround(state.pRowScope, reference.lClimb);
    if (pScope != nullptr && pScope->row() != nullptr)
        return *pScope->row();
    throw Failure(FailureNumber::ObjectVariableNotSet,
                  "no row is at hand that \"" + reference.sName + "\" could be a field of");
}

/// A row's identifier can be asked for by name, where no field bears it.
bool asksIdentifier(const host::GisRow& row, const std::string& sName) {
    return namesObjectId(sName) && row.fields().findField(sName) < 0;
}

ValueView fieldValue(ExportState& state, const Reference& reference, FoundField& found) {
    const host::GisRow& row = rowOf(state, reference);
    if (asksIdentifier(row, reference.sName))
        return std::int64_t{row.objectId()};
    if (findRowField(state, row, "", reference.sName, found))
        return row.value(found.lIndex);
    return Null();
}

FieldText fieldText(ExportState& state, const Reference& reference, FoundField& found,
                    std::int32_t lDecimalPlaces) {
    const host::GisRow& row = rowOf(state, reference);
    if (!asksIdentifier(row, reference.sName))
        return RecordFieldText(state, row, "", reference.sName, lDecimalPlaces, found);
    state.sValueText = std::to_string(row.objectId());
    return {state.sValueText, TextKind::Plain};
}

/// The field that the loop over fields is at, of the row that has it; nothing outside of such a loop, and
/// where no such row is at hand.
std::optional<Reference> fieldOfLoop(const ExportState& state) {
    const LoopItem* const pItem = itemOf(state, ForEach::Field);
    if (pItem == nullptr)
        return std::nullopt;
    Reference field{.sName = std::string(pItem->field().name())};
    for (const RowScope* pScope = state.pRowScope; pScope != nullptr; pScope = pScope->around()) {
        if (pScope->row() != nullptr && &pScope->row()->fields() == pItem->pFields.get())
            return field;
        ++field.lClimb;
    }
    return std::nullopt;
}

bool isOfShapes(const host::GisField& field) {
    return field.typeCode() == static_cast<std::int32_t>(host::FieldType::Geometry);
}

/// It has no text.
bool isShape(const ValueView& value) {
    const auto* const pObject = std::get_if<ObjectPtr>(&value);
    return pObject != nullptr && dynamic_cast<const TextHolder*>(pObject->get()) == nullptr;
}

/// Whether a loop over things stands in the group: what is computed of the rows may be about the thing.
bool isAtThingOf(const ExportState& state, const GroupScope& group) {
    const RowScope* pRows = state.pItemScope == nullptr ? nullptr : state.pItemScope->rows();
    while (pRows != nullptr && pRows != &group.loop())
        pRows = pRows->around();
    return pRows != nullptr;
}

/// Makes the loop over groups the innermost one, whose rows can be looked at, as long as it lives.
class AtGroup {
public:
    AtGroup(ExportState& state, const GroupScope& group)
        : state_(state), group_(group), pRows_(std::exchange(state.pRowScope, &group.loop())) {}
    AtGroup(const AtGroup&) = delete;
    AtGroup& operator=(const AtGroup&) = delete;
    ~AtGroup() {
        group_.loop().look(*group_.rows().front());
        state_.pRowScope = pRows_;
    }

private:
    ExportState& state_;
    const GroupScope& group_;
    const RowScope* pRows_;
};

} // namespace

NodeExpression::NodeExpression(expression::Expression expression)
    : expression_(std::move(expression)), found_(expression_.references().size()),
      arguments_(expression_.references().size()) {
    for (const auto& aggregate : expression_.aggregates())
        aggregates_.emplace_back(aggregate);
}

/// Computed before anything else of the expression: what they are computed of takes the same room.
void NodeExpression::computeAggregates(ExportState& state) const {
    if (aggregates_.empty())
        return;
    if (state.pGroup == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet, "no group of rows is at hand");
    const GroupScope& group = *state.pGroup;
    if (nGroup_ == group.number() && !isAtThingOf(state, group))
        return;
    const AtGroup atGroup(state, group);
    std::vector<expression::Aggregation> aggregations;
    for (const auto& reference : expression_.references())
        if (reference.kind == Reference::Kind::Aggregate)
            aggregations.emplace_back(reference.sName);
    for (const auto& pRow : group.rows()) {
        group.loop().look(*pRow);
        for (std::size_t n = 0; n < aggregates_.size(); ++n)
            aggregations[n].add(aggregates_[n].computed(state));
    }
    aggregateValues_.clear();
    for (const auto& aggregation : aggregations)
        aggregateValues_.push_back(aggregation.result());
    nGroup_ = group.number();
}

ValueView NodeExpression::valueOf(ExportState& state, std::size_t nReference) const {
    const Reference& reference = expression_.references()[nReference];
    if (reference.kind == Reference::Kind::Aggregate)
        return toView(aggregateValues_[reference.nAggregate]);
    if (asksFieldOfLoop(reference)) {
        const auto field = fieldOfLoop(state);
        FoundField found;
        return field ? fieldValue(state, *field, found) : ValueView(Null());
    }
    return reference.kind == Reference::Kind::Variable ? variableValue(state, reference)
                                                       : fieldValue(state, reference, found_[nReference]);
}

ValueView NodeExpression::value(ExportState& state) const {
    computeAggregates(state);
    state.variableValues.clear();
    return asReference() != nullptr ? valueOf(state, 0) : evaluate(state);
}

Value NodeExpression::computed(ExportState& state) const {
    computeAggregates(state);
    state.variableValues.clear();
    return toValue(evaluate(state));
}

ValueView NodeExpression::evaluate(ExportState& state) const {
    for (std::size_t n = 0; n < arguments_.size(); ++n)
        arguments_[n] = valueOf(state, n);
    if (pEvaluation_ == nullptr)
        pEvaluation_ = state.options.pSecondEdition->evaluator.prepare(expression_);
    return pEvaluation_->of(arguments_);
}

FieldText NodeExpression::text(ExportState& state, std::int32_t lDecimalPlaces) const {
    const Reference* const pReference = asReference();
    if (pReference != nullptr && asksFieldOfLoop(*pReference)) {
        const auto field = fieldOfLoop(state);
        FoundField found;
        // Of rows that were read without their shapes, a shape is not to be looked at.
        if (!field || isOfShapes(itemOf(state, ForEach::Field)->field()) ||
            isShape(fieldValue(state, *field, found)))
            return {};
        return fieldText(state, *field, found, lDecimalPlaces);
    }
    if (pReference != nullptr && pReference->kind == Reference::Kind::Field)
        return fieldText(state, *pReference, found_.front(), lDecimalPlaces);
    const ValueView result = value(state);
    if (const auto* pText = std::get_if<std::string_view>(&result))
        return {*pText, TextKind::Any};
    if (const auto* dNumber = std::get_if<double>(&result))
        return FormatNumber(state, *dNumber, lDecimalPlaces);
    state.sValueText.clear();
    const auto* const lWhole = std::get_if<std::int64_t>(&result);
    if (lWhole != nullptr && state.pInherited != nullptr && state.pInherited->format.formatsNumbers())
        state.pInherited->format.appendNumber(state.sValueText, *lWhole);
    else
        appendText(state.sValueText, result);
    return {state.sValueText, TextKind::Plain};
}

bool NodeExpression::holds(ExportState& state) const {
    const ValueView result = value(state);
    const auto* const lNumber = std::get_if<std::int64_t>(&result);
    return lNumber != nullptr && *lNumber != 0;
}

bool asksFieldOfLoop(const Reference& reference) noexcept {
    return reference.kind == Reference::Kind::Variable && reference.sName == sValueOfField;
}

bool isKnownVariable(std::string_view sName) noexcept {
    return variableNamed(sName) != nullptr;
}

std::vector<std::string_view> knownVariables() {
    std::vector<std::string_view> names;
    for (const auto& variable : variables)
        names.push_back(variable.sName);
    return names;
}

} // namespace halvane
