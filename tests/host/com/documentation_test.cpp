#include "host/com/ObjectKinds.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>

namespace halvane::test {

namespace {

using host::com::Member;

/// "Map.Layers property required" for each member.
std::set<std::string> membersOfTheCode() {
    std::set<std::string> members;
    for (const host::com::ObjectKind* pKind : host::com::objectKinds())
        for (const Member& member : pKind->aMembers)
            members.insert(std::string(pKind->sName) + "." + std::string(member.sName) +
                           (member.sort == Member::Sort::Method ? " method" : " property") +
                           (member.need == Member::Need::Optional ? " optional" : " required"));
    return members;
}

std::set<std::string> membersOfThePage() {
    std::ifstream page(HALVANE_SOURCE_DIR "/docs/host-automation.md");
    const std::regex row(R"(\| `(\w+)(\([^)]*\))?` \| (property|method) \| (required|optional) \| .+ \|\r?)");
    std::set<std::string> members;
    std::string sKind;
    for (std::string sLine; std::getline(page, sLine);) {
        std::smatch found;
        if (sLine.starts_with("### "))
            sKind = sLine.substr(4);
        else if (std::regex_match(sLine, found, row))
            members.insert(sKind + "." + found[1].str() + " " + found[3].str() + " " + found[4].str());
    }
    return members;
}

TEST(TheAutomationPage, ListsWhatTheCodeAsksFor) {
    ASSERT_FALSE(membersOfTheCode().empty());
    EXPECT_EQ(membersOfThePage(), membersOfTheCode());
}

} // namespace

} // namespace halvane::test
