#include "base/NearestName.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace halvane {

namespace {

std::string nearest(std::string_view sWritten, const std::vector<std::string>& names) {
    return NearestName(sWritten).offerAll(names).name();
}

} // namespace

TEST(NearestName, IsTheOneWithTheFewestWrongLetters) {
    EXPECT_EQ(nearest("tovns", {"rivers", "towns", "downs"}), "towns");
    EXPECT_EQ(nearest("town", {"rivers", "towns"}), "towns");
    EXPECT_EQ(nearest("townns", {"rivers", "towns"}), "towns");
    EXPECT_EQ(nearest("POPULATOIN", {"POPULAR", "POPULATION"}), "POPULATION");
}

TEST(NearestName, IsALaterOneThatHasFewerWrongLetters) {
    EXPECT_EQ(nearest("rivers", {"rixxrs", "riverz"}), "riverz");
    EXPECT_EQ(nearest("rivers", {"riverz", "rixxrs"}), "riverz");
}

TEST(NearestName, CountsTwoLettersThatChangedPlacesOnce) {
    EXPECT_EQ(nearest("nmae", {"made", "name"}), "name");
    EXPECT_EQ(nearest("dna", {"and", "nda"}), "nda");
}

TEST(NearestName, DoesNotCountLetterCaseInAnyScript) {
    EXPECT_EQ(nearest("datasource", {"DataFrame", "DataSource"}), "DataSource");
    EXPECT_EQ(nearest("ДОРОГА", {"реки", "дорога"}), "дорога");
    EXPECT_EQ(nearest("Strasse", {"Straße"}), "Straße");
}

TEST(NearestName, IsNoneWhereMoreThanAThirdIsWrong) {
    EXPECT_EQ(nearest("towns", {"rivers", "tunes", "t"}), "");
    EXPECT_EQ(nearest("abc", {"abd"}), "abd");
    EXPECT_EQ(nearest("ab", {"ad", "a"}), "");
    EXPECT_EQ(nearest("abcdef", {"abxdxf"}), "abxdxf");
    EXPECT_EQ(nearest("abcdef", {"xbxdxf"}), "");
    EXPECT_EQ(nearest("towns", {}), "");
    EXPECT_EQ(nearest("", {"", "towns"}), "");
}

TEST(NearestName, OfSeveralEquallyNearIsTheFirst) {
    EXPECT_EQ(nearest("road", {"roads", "toad"}), "roads");
    EXPECT_EQ(nearest("road", {"toad", "roads"}), "toad");
    EXPECT_EQ(nearest("towns", {"Towns", "TOWNS"}), "Towns");
}

TEST(NearestName, IsAskedForBehindWhatAMessageHasBefore) {
    const std::vector<std::string> names{"towns"};
    EXPECT_EQ(NearestName("tovns").offerAll(names).question("; "), "; did you mean \"towns\"?");
    EXPECT_EQ(NearestName("rivers").offerAll(names).question("; "), "");
}

TEST(NearestName, TakesNamesOfAnyKindOfList) {
    constexpr std::array<std::string_view, 2> names{"Identity", "IdentityValue"};
    EXPECT_EQ(NearestName("IdentitiValue").offerAll(names).name(), "IdentityValue");
}

TEST(NearestName, IsNoneForNamesThatNobodyTypes) {
    const std::string sLong(200, 'a');
    EXPECT_EQ(nearest(sLong, {sLong + "b"}), "");
    EXPECT_EQ(nearest(std::string(100, 'a'), {std::string(101, 'a')}), std::string(101, 'a'));
    EXPECT_EQ(nearest(std::string(100, 'a'), {std::string(129, 'a')}), "");
    EXPECT_EQ(nearest(std::string(100, 'a'), {std::string(600, 'a')}), "");
}

TEST(NearestName, StandsTextsThatAreNoUtf8) {
    EXPECT_EQ(nearest("t\xFFwns", {"towns"}), "towns");
    EXPECT_EQ(nearest("towns", {"tow\xFEs"}), "tow\xFEs");
}

} // namespace halvane
