#include "cli/Choices.h"

#include "cli/Text.h"
#include "collection/NearestName.h"

#include <fmt/format.h>

namespace halvane::cli {

namespace {

constexpr std::size_t lMostListed = 8;

std::string joined(const std::vector<std::string>& names) {
    std::string sAll;
    for (std::size_t n = 0; n < names.size(); ++n) {
        if (n > 0)
            sAll += n + 1 == names.size() ? " and " : ", ";
        sAll += inQuotes(names[n]);
    }
    return sAll;
}

std::string listOf(const Choice& choice) {
    if (choice.names.empty())
        return fmt::format("{} no {}", choice.sWhere, choice.sMany);
    if (choice.names.size() == 1)
        return fmt::format("{} only the {} {}", choice.sWhere, choice.sOne, joined(choice.names));
    if (choice.names.size() <= lMostListed)
        return fmt::format("{} the {} {}", choice.sWhere, choice.sMany, joined(choice.names));
    return fmt::format("{} {} {}, none of a similar name", choice.sWhere, choice.names.size(), choice.sMany);
}

} // namespace

std::string meantOrThere(std::string_view sWritten, const Choice& choice) {
    std::string sMeant = NearestName(sWritten).offerAll(choice.names).question("");
    if (sMeant.empty())
        return listOf(choice);
    if (choice.names.size() == 1 || choice.names.size() > lMostListed)
        return sMeant;
    std::string sList = listOf(choice);
    sList.front() = 'T';
    return sMeant + " " + sList;
}

} // namespace halvane::cli
