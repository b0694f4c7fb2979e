#include "exporters/second/OrderedRows.h"

#include "expression/Ordering.h"
#include "host/Rows.h"

#include <algorithm>
#include <limits>

namespace halvane {

std::int64_t limitOf(ExportState& state, const RowRules& rules) {
    if (!rules.limit)
        return std::numeric_limits<std::int64_t>::max();
    // What counts rows is not written in any form.
    const std::string sLimit = toText(toView(toValue(rules.limit->value(state))));
    if (sLimit.empty() || sLimit.size() > 18 || sLimit.find_first_not_of("0123456789") != std::string::npos)
        throw Failure(FailureNumber::TypeMismatch,
                      "the limit \"" + sLimit + "\" is no whole number from 0 on");
    return std::stoll(sLimit);
}

OrderedRows::OrderedRows(ExportState& state, RowScope& scope, const RowRules& rules,
                         host::GisCursorPtr pCursor, std::int64_t lMost)
    : state_(state), scope_(scope), rules_(rules), pCursor_(std::move(pCursor)), lLeft_(lMost) {}

host::GisRowPtr OrderedRows::next() {
    if (lLeft_-- <= 0)
        return nullptr;
    if (!rules_.order.empty() && pCursor_ != nullptr)
        holdAll();
    host::GisRowPtr pRow;
    if (rules_.order.empty())
        pRow = nextThatHolds();
    else if (nNextHeld_ < held_.size())
        pRow = std::move(held_[nNextHeld_++].pRow);
    if (pRow != nullptr)
        scope_.turnTo(*pRow);
    return pRow;
}

host::GisRowPtr OrderedRows::nextThatHolds() {
    while (host::GisRowPtr pRow = pCursor_ == nullptr ? nullptr : pCursor_->nextRow()) {
        if (state_.options.pObserver != nullptr && !state_.options.pObserver->goesOn())
            throw ExportCancelled{};
        scope_.look(*pRow);
        if (!rules_.where || rules_.where->holds(state_))
            return pRow;
    }
    return nullptr;
}

void OrderedRows::holdAll() {
    while (host::GisRowPtr pRow = nextThatHolds()) {
        Held& held = held_.emplace_back();
        for (const auto& order : rules_.order)
            held.keys.push_back(order.expression.computed(state_));
        held.pRow = std::move(pRow);
    }
    pCursor_.reset();
    std::ranges::stable_sort(held_, [&](const Held& left, const Held& right) {
        for (std::size_t n = 0; n < rules_.order.size(); ++n)
            if (const int lCompared = expression::compareValues(left.keys[n], right.keys[n]); lCompared != 0)
                return rules_.order[n].bDescending ? lCompared > 0 : lCompared < 0;
        return false;
    });
}

} // namespace halvane
