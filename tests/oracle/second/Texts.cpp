// Texts with values, and what the names in expressions stand for.

#include "base/Text.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "oracle/Interpreter.h"

#include <algorithm>

namespace halvane::oracle {

bool namesIdentifier(const std::string& sField) {
    return upperCase(sField) == "OBJECTID" || upperCase(sField) == "OID";
}

std::string Interpreter::textOf(Node node, const Attributes& attributes) {
    return node.has("h:Geometry") ? shapeText(node, attributes) : filledIn(node.get("h:Text"), attributes);
}

std::string Interpreter::filledIn(const std::string& sTemplate, const Attributes& attributes) {
    std::string sText;
    for (const TextPiece& piece : readTemplate(sTemplate)) {
        sText += piece.sText;
        for (const Term& term : piece.value)
            sText += textOfTerm(term, placesOf(attributes.at("DecimalPlace")));
    }
    return sText;
}

/// A field alone is written as a leaf of the first edition writes it.
std::string Interpreter::textOfTerm(const Term& term, std::int32_t lPlaces) {
    if (term.kind == Term::Kind::Field) {
        noteTurn(term.nClimb > 1   ? "a field of a row further out"
                 : term.nClimb > 0 ? "a field of a row around"
                                   : "a field in a text");
        const host::GisRow& row = rowFor(term.sName, term.nClimb);
        if (namesIdentifier(term.sName) && row.fields().findField(term.sName) < 0)
            return std::to_string(row.objectId());
        return fieldText(row, "", term.sName, lPlaces);
    }
    if (term.kind == Term::Kind::Variable && term.sName == "Value") {
        const Thing* const pField = thingOf({"Field"});
        const host::GisRow* const pRow = pField == nullptr ? nullptr : rowOfField(*pField);
        noteTurn("the value of a field that is gone over");
        // A shape has no text.
        const bool bNone = pRow == nullptr || std::holds_alternative<ObjectPtr>(pRow->value(pField->lField));
        return bNone ? std::string()
                     : fieldText(*pRow, "", std::string(pField->pFields->field(pField->lField).name()),
                                 lPlaces);
    }
    noteTurn(term.kind == Term::Kind::Variable ? "{$" + term.sName + "}" : "an expression in a text");
    const SqlValue value = valueOf(term);
    if (isNull(value))
        return {};
    if (const auto* const pWhole = std::get_if<std::int64_t>(&value))
        return wholeText(*pWhole).value_or(std::to_string(*pWhole));
    const auto* const pNumber = std::get_if<double>(&value);
    return pNumber != nullptr ? formatted(*pNumber, lPlaces) : asText(value);
}

SqlValue Interpreter::valueOf(const Term& term) {
    const Meanings meanings{
        [&](const std::string& sName, std::size_t nClimb) { return fieldValue(sName, nClimb); },
        [&](const std::string& sName, std::size_t nClimb) {
            const LoopsAgain again(aRowLoops_);
            aRowLoops_.resize(aRowLoops_.size() - std::min(nClimb, aRowLoops_.size()));
            if (nClimb > 0)
                noteTurn("{../$" + sName + "}");
            return variable(sName);
        },
        [&](const Term& outer) {
            const LoopsAgain again(aRowLoops_);
            aRowLoops_.pop_back();
            return valueOf(outer);
        },
        [&](const std::string& sName, const Term* pArgument) { return aggregate(sName, pArgument); }};
    return computed(term, meanings);
}

const host::GisRow& Interpreter::rowFor(const std::string& sField, std::size_t nClimb) const {
    if (nClimb >= aRowLoops_.size() || aRowLoops_[aRowLoops_.size() - 1 - nClimb].pRow == nullptr)
        throw Failure(FailureNumber::ObjectVariableNotSet,
                      "no row is at hand that \"" + sField + "\" could be a field of");
    return *aRowLoops_[aRowLoops_.size() - 1 - nClimb].pRow;
}

SqlValue Interpreter::fieldValue(const std::string& sField, std::size_t nClimb) {
    if (nClimb > 1)
        noteTurn("a field of a row further out");
    const host::GisRow& row = rowFor(sField, nClimb);
    const std::int32_t lField = row.fields().findField(sField);
    if (lField >= 0)
        return sqlValueOf(row.value(lField));
    return namesIdentifier(sField) ? SqlValue(row.objectId()) : SqlValue();
}

SqlValue Interpreter::variable(const std::string& sName) {
    if (sName == "Item")
        for (auto thing = aThings_.rbegin(); thing != aThings_.rend(); ++thing)
            if (thing->nRowLoops == aRowLoops_.size())
                return thing->nNumber;
    if (sName == "Item")
        return aRowLoops_.empty() ? SqlValue() : SqlValue(aRowLoops_.back().nItem);
    const Thing* const pField = thingOf({"Field"});
    if (sName == "Value") {
        const host::GisRow* const pRow = pField == nullptr ? nullptr : rowOfField(*pField);
        return pRow == nullptr ? SqlValue() : sqlValueOf(pRow->value(pField->lField));
    }
    const Thing* const pLayer = thingOf({"Layer"});
    if (sName == "Layer" && pLayer_ == nullptr && pLayer != nullptr)
        return std::dynamic_pointer_cast<host::GisLayer>(pLayer->pObject)->name();
    if (sName == "Layer")
        return pLayer_ == nullptr ? SqlValue() : SqlValue(pLayer_->name());
    if (sName == "Table")
        return pTable_ == nullptr ? SqlValue() : SqlValue(pTable_->datasetName());
    if (sName == "Map")
        return pMap_ == nullptr ? SqlValue() : SqlValue(pMap_->name());
    if (sName == "Crs")
        return codeAtHand();
    if (sName == "Date")
        return setting_.pSecondEdition->sDate;
    if (sName == "DateTime")
        return setting_.pSecondEdition->sDateTime;
    if (sName == "Count")
        return aggregate("count", nullptr);
    return setting_.pSecondEdition->values.at(sName);
}

/// Of the reference that coordinates are written in; Null where it is not known.
SqlValue Interpreter::codeAtHand() const {
    const std::string sCrs = nearest("h:Crs");
    const auto pReference = !sCrs.empty()        ? referenceNamed(sCrs)
                            : pLayer_ != nullptr ? pLayer_->spatialReference()
                            : pMap_ != nullptr   ? pMap_->spatialReference()
                                                 : nullptr;
    const std::string sCode = pReference == nullptr ? std::string() : pReference->authorityCode();
    const std::string& sKnown = sCode.empty() ? sCrs : sCode;
    return sKnown.empty() ? SqlValue() : SqlValue(sKnown);
}

/// Over the rows of the innermost group; Null counts for none.
SqlValue Interpreter::aggregate(const std::string& sName, const Term* pArgument) {
    noteTurn("an aggregate: " + sName);
    std::size_t nLoop = aRowLoops_.size();
    while (nLoop > 0 && aRowLoops_[nLoop - 1].pGroup == nullptr)
        --nLoop;
    if (nLoop == 0)
        throw Failure(FailureNumber::ObjectVariableNotSet, "no group of rows is at hand");
    const Rows& aRows = *aRowLoops_[nLoop - 1].pGroup;
    if (pArgument == nullptr)
        return static_cast<std::int64_t>(aRows.size());
    std::vector<SqlValue> aValues;
    const LoopsAgain again(aRowLoops_);
    aRowLoops_.resize(nLoop);
    for (const auto& pRow : aRows) {
        aRowLoops_.back().pRow = pRow;
        SqlValue value = valueOf(*pArgument);
        if (!oracle::isNull(value))
            aValues.push_back(std::move(value));
    }
    return aggregated(sName, aValues);
}

} // namespace halvane::oracle
