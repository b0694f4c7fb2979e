#include "exporters/RelatedRows.h"

#include "exporters/RowValue.h"
#include "host/Fields.h"

namespace halvane {

namespace {

/// Where the link field of a control node is written; it is inherited. "" where the document tells no lines.
std::string placeOfLinkField(dom::Node oNode) {
    for (; isElement(oNode); oNode = oNode.parentNode()) {
        const auto sOwn = oNode.getAttribute("LinkField");
        if (sOwn && !sOwn->empty() && oNode.line() != 0)
            return " in line " + std::to_string(oNode.line());
    }
    return "";
}

} // namespace

template<class Call>
auto RelatedRows::asked(Call call) const {
    try {
        return call();
    } catch (const Failure& failure) {
        throw failure.about(context(failure));
    }
}

RelatedRows::RelatedRows(host::GisTable& table, const host::GisRow& row, std::int32_t lIndex,
                         const ControlNode& control, Clause clause)
    : table_(table), control_(control) {
    const bool bText = clause == Clause::Quoted && row.fields().field(lIndex).typeCode() ==
                                                       static_cast<std::int32_t>(host::FieldType::String);
    const char* sQuote = bText ? "'" : "";
    std::string& sWhere = filter_.sWhereClause;
    sWhere.append(control.merged.sLinkField).append(clause == Clause::Quoted ? "=" : " = ").append(sQuote);
    nValue_ = sWhere.size();
    appendRowText(sWhere, row, lIndex, row.value(lIndex));
    sWhere.append(sQuote);
    pCursor_ = asked([&] { return table.search(&filter_); });
}

host::GisRowPtr RelatedRows::next() {
    return asked([&] { return pCursor_->nextRow(); });
}

bool RelatedRows::tableLacksLinkField() const {
    try {
        return table_.fields()->findField(control_.merged.sLinkField) < 0;
    } catch (const Failure&) {
        return false;
    }
}

std::string RelatedRows::context(const Failure& failure) const {
    const std::string& sWhere = filter_.sWhereClause;
    const bool bText = sWhere[nValue_ - 1] == '\'';
    const auto sValue = std::string_view(sWhere).substr(nValue_, sWhere.size() - nValue_ - (bText ? 1 : 0));
    const bool bTold = failure.description().find(sWhere) != std::string::npos;
    std::string sContext = "it";
    if (!bTold)
        sContext = "the clause " + sWhere;
    sContext.append(" is made of LinkField=\"").append(control_.merged.sLinkField).append("\"");
    sContext.append(placeOfLinkField(control_.oNode)).append(" and the row's value as it is");
    if (tableLacksLinkField())
        return sContext + ": the related table needs a field of that name";
    if (sValue.empty())
        return sContext + ", which is empty";
    if (sValue.find('\'') != std::string_view::npos)
        return sContext + ", and the apostrophe in it ends the text: link by a field without apostrophes, or "
                          "let a view of the linking data double them";
    return sContext;
}

} // namespace halvane
