#include "expression/Functions.h"

#include <algorithm>
#include <array>

namespace halvane::expression {

namespace {

constexpr auto nAny = Function::nAny;

constexpr std::array all{
    Function{"abs", 1, 1},       Function{"acos", 1, 1},         Function{"asin", 1, 1},
    Function{"atan", 1, 1},      Function{"atan2", 2, 2},        Function{"ceil", 1, 1},
    Function{"char", 1, nAny},   Function{"coalesce", 2, nAny},  Function{"cos", 1, 1},
    Function{"date", 0, nAny},   Function{"datetime", 1, nAny},  Function{"degrees", 1, 1},
    Function{"exp", 1, 1},       Function{"floor", 1, 1},        Function{"format", 1, nAny},
    Function{"hex", 1, 1},       Function{"ifnull", 2, 2},       Function{"iif", 3, 3},
    Function{"instr", 2, 2},     Function{"julianday", 0, nAny}, Function{"length", 1, 1},
    Function{"ln", 1, 1},        Function{"log", 1, 2},          Function{"log10", 1, 1},
    Function{"log2", 1, 1},      Function{"lower", 1, 1},        Function{"ltrim", 1, 2},
    Function{"max", 2, nAny},    Function{"min", 2, nAny},       Function{"mod", 2, 2},
    Function{"nullif", 2, 2},    Function{"pi", 0, 0},           Function{"pow", 2, 2},
    Function{"power", 2, 2},     Function{"printf", 1, nAny},    Function{"quote", 1, 1},
    Function{"radians", 1, 1},   Function{"replace", 3, 3},      Function{"round", 1, 2},
    Function{"rtrim", 1, 2},     Function{"sign", 1, 1},         Function{"sin", 1, 1},
    Function{"sqrt", 1, 1},      Function{"strftime", 1, nAny},  Function{"substr", 2, 3},
    Function{"substring", 2, 3}, Function{"tan", 1, 1},          Function{"time", 0, nAny},
    Function{"trim", 1, 2},      Function{"trunc", 1, 1},        Function{"typeof", 1, 1},
    Function{"unicode", 1, 1},   Function{"unixepoch", 0, nAny}, Function{"upper", 1, 1},
};
static_assert(std::ranges::is_sorted(all, {}, &Function::sName));

} // namespace

std::span<const Function> functions() {
    return all;
}

const Function* functionNamed(std::string_view sName) {
    const auto found = std::ranges::lower_bound(all, sName, {}, &Function::sName);
    return found != all.end() && found->sName == sName ? &*found : nullptr;
}

} // namespace halvane::expression
