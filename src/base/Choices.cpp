#include "base/Choices.h"

#include "base/NearestName.h"
#include "base/Text.h"

namespace halvane {

namespace {

constexpr std::size_t nMostListed = 8;

std::string joined(const std::vector<std::string>& names) {
    std::string sAll;
    for (std::size_t n = 0; n < names.size(); ++n) {
        if (n > 0)
            sAll += n + 1 == names.size() ? " and " : ", ";
        sAll.append("\"").append(names[n]).append("\"");
    }
    return sAll;
}

std::string listOf(const Choice& choice) {
    std::string sList(choice.sWhere);
    if (choice.names.empty())
        return sList.append(" no ").append(choice.sMany);
    if (choice.names.size() == 1)
        return sList.append(" only the ").append(choice.sOne).append(" ").append(joined(choice.names));
    if (choice.names.size() <= nMostListed)
        return sList.append(" the ").append(choice.sMany).append(" ").append(joined(choice.names));
    return sList.append(" ")
        .append(std::to_string(choice.names.size()))
        .append(" ")
        .append(choice.sMany)
        .append(", none of a similar name");
}

} // namespace

std::string meantOrThere(std::string_view sWritten, const Choice& choice) {
    std::string sMeant = NearestName(sWritten).offerAll(choice.names).question("");
    if (sMeant.empty())
        return listOf(choice);
    if (choice.names.size() == 1 || choice.names.size() > nMostListed)
        return sMeant;
    const std::string sList = listOf(choice);
    return sMeant + " " + upperCase(sList.substr(0, 1)) + sList.substr(1);
}

} // namespace halvane
