#include "oracle/second/RandomExpression.h"

#include "oracle/RandomTables.h"

namespace halvane::oracle {

std::string ExpressionMaker::together(const std::string& sLeft, const std::string& sOperator,
                                      const std::string& sRight) {
    const std::string sAll = sLeft + " " + sOperator + " " + sRight;
    return random_.chance(60) ? "(" + sAll + ")" : sAll;
}

std::string ExpressionMaker::field() {
    // Bytes and shapes are no values of expressions.
    std::string sName;
    do {
        sName = random_.chance(95) ? random_.pick(fieldNames()) : "Nowhere";
    } while (sName == "SHAPE" || sName == "NOTE");
    if (sName != "Nowhere" && random_.chance(10))
        sName = "\"" + sName + "\"";
    if (around_.nOuter > 0 && random_.chance(25))
        return "{" + sName + "}";
    if (around_.nRows > 2 && random_.chance(30))
        return "../../" + sName;
    if (around_.nRows > 1 && random_.chance(20))
        return "../" + sName;
    return sName;
}

std::string ExpressionMaker::constant() {
    switch (random_.below(8)) {
    case 0:
    case 1:
    case 2:
        return std::to_string(random_.between(0, 20));
    case 3:
        return random_.oneOf({"2.5", "0.1", "12.0", "1e3"});
    case 4:
        return "null";
    default:
        return random_.oneOf({"'R17'", "'Quay'", "''", "'1'", "'12'", "'O''Brien'", "'-5x'", "'1e3'",
                              "'\xC3\xA9\xE6\xBC\xA2'", "' 7 '"});
    }
}

std::string ExpressionMaker::variable() {
    if (around_.nOuter > 0 && random_.chance(20))
        return "{$Item}";
    if (around_.nRows > 2 && random_.chance(15))
        return "../../$Item";
    if (around_.nRows > 1 && random_.chance(20))
        return "../$Item";
    return random_.oneOf({around_.bTested ? "$Map" : "$Item", "$Layer", "$Table", "$Map", "$Crs", "$Date",
                          "$DateTime", "$who"});
}

std::string ExpressionMaker::aggregate() {
    if (around_.nGroup < around_.nRows && random_.chance(20))
        return "../$Count";
    if (random_.chance(35))
        return random_.chance(70) ? "$Count" : "count(*)";
    const std::string sName = random_.oneOf({"sum", "total", "avg", "min", "max", "count"});
    ExpressionMaker ofRows(random_, {around_.nRows, 0, 0, around_.bTested, around_.bField});
    return sName + "(" + ofRows.value(random_.chance(60) ? 0 : 1) + ")";
}

std::string ExpressionMaker::call(int nDepth) {
    const auto inner = [&] { return value(nDepth - 1); };
    switch (random_.below(7)) {
    case 0:
        return "upper(" + inner() + ")";
    case 1:
        return "lower(" + inner() + ")";
    case 2:
        return "length(" + inner() + ")";
    case 3:
        return "abs(" + inner() + ")";
    case 4: {
        std::string sCall = "substr(" + inner() + ", " + std::to_string(random_.between(-4, 5));
        if (random_.chance(60))
            sCall += ", " + std::to_string(random_.between(-3, 4));
        return sCall + ")";
    }
    case 5:
        return "nullif(" + inner() + ", " + inner() + ")";
    default:
        return random_.oneOf({"coalesce(", "ifnull("}) + inner() + ", " + inner() + ")";
    }
}

std::string ExpressionMaker::cases(int nDepth) {
    const bool bBase = random_.chance(40);
    std::string sCase = bBase ? "case " + value(nDepth - 1) : "case";
    for (std::int32_t n = random_.between(1, 2); n > 0; --n) {
        sCase += " when " + (bBase ? value(0) : condition(nDepth - 1));
        sCase += " then " + value(nDepth - 1);
    }
    if (random_.chance(60))
        sCase += " else " + value(nDepth - 1);
    return sCase + " end";
}

std::string ExpressionMaker::value(int nDepth) {
    if (around_.nGroup > 0 && random_.chance(25))
        return aggregate();
    if (nDepth <= 0 || random_.chance(30)) {
        const std::size_t nKind = random_.below(100);
        if (nKind < (around_.nRows > 0 ? 65U : 2U))
            return field();
        return nKind < 85 ? constant() : variable();
    }
    switch (random_.below(9)) {
    case 0:
    case 1:
    case 2:
        return together(value(nDepth - 1), random_.oneOf({"+", "-", "*", "/", "%"}), value(nDepth - 1));
    case 3:
        return together(value(nDepth - 1), "||", value(nDepth - 1));
    case 4:
        return "(-" + value(0) + ")";
    case 5:
        return cases(nDepth);
    case 6:
        return condition(nDepth - 1);
    default:
        return call(nDepth);
    }
}

std::string ExpressionMaker::condition(int nDepth) {
    const auto inner = [&] { return value(nDepth - 1); };
    const char* const sNot = random_.chance(30) ? "not " : "";
    if (nDepth > 0) {
        switch (random_.below(6)) {
        case 0:
            return together(condition(nDepth - 1), random_.oneOf({"and", "or"}), condition(nDepth - 1));
        case 1:
            return "(not " + condition(nDepth - 1) + ")";
        default:
            break;
        }
    }
    switch (random_.below(7)) {
    case 0:
        return together(inner(), sNot + std::string("between"), value(0) + " and " + value(0));
    case 1:
        return "(" + inner() + " " + sNot + "in (" + value(0) + ", " + constant() + ", " + constant() + "))";
    case 2:
        return together(inner(), std::string("is ") + sNot, "null");
    case 3:
        return together(inner(), "is", value(0));
    default:
        return together(inner(), random_.oneOf({"=", "<>", "<", "<=", ">", ">="}), inner());
    }
}

std::string ExpressionMaker::textWithValues() {
    std::string sText;
    for (std::int32_t n = random_.between(1, 2); n > 0; --n) {
        if (random_.chance(40))
            sText += random_.oneOf({"a", "PS_", " & ", "{{", "}", "<x>", "\xC3\xA9"});
        if (random_.chance(15))
            continue;
        const std::size_t nKind = random_.below(10);
        const std::string sField = random_.chance(92) ? random_.pick(fieldNames()) : "Nowhere";
        if (sField == "SHAPE")
            continue; // it has no text
        if (nKind < 5 && around_.nRows > 0)
            sText += "{" + std::string(around_.nRows > 1 && random_.chance(30) ? "../" : "") + sField + "}";
        else if (nKind < 7)
            sText += "{" + (around_.bField && random_.chance(40) ? std::string("$Value") : variable()) + "}";
        else
            sText += "{" + value() + "}";
    }
    return sText;
}

std::string ExpressionMaker::order() {
    std::string sOrder;
    for (std::int32_t n = random_.between(1, 2); n > 0; --n) {
        sOrder += sOrder.empty() ? "" : ", ";
        sOrder += random_.chance(70) ? field() : "(" + value(1) + ")";
        sOrder += random_.oneOf({"", "", " desc", " asc"});
    }
    return sOrder;
}

} // namespace halvane::oracle
