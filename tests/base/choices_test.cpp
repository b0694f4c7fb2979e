#include "base/Choices.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace halvane {

namespace {

std::string answerTo(std::string_view sWritten, const std::vector<std::string>& names) {
    return meantOrThere(sWritten, {"the map has", "layer", "layers", names});
}

std::vector<std::string> lettersFromA(std::size_t nLetters) {
    std::vector<std::string> names;
    for (std::size_t n = 0; n < nLetters; ++n)
        names.emplace_back(1, static_cast<char>('a' + n));
    return names;
}

} // namespace

TEST(Choices, AreAllToldWhereNoneIsNear) {
    EXPECT_EQ(answerTo("lakes", {}), "the map has no layers");
    EXPECT_EQ(answerTo("lakes", {"roads"}), "the map has only the layer \"roads\"");
    EXPECT_EQ(answerTo("lakes", {"roads", "towns"}), "the map has the layers \"roads\" and \"towns\"");
    EXPECT_EQ(answerTo("lakes", {"roads", "towns", "rivers"}),
              "the map has the layers \"roads\", \"towns\" and \"rivers\"");
}

TEST(Choices, AreCountedWhereTheyAreTooManyToBeTold) {
    EXPECT_EQ(answerTo("lakes", lettersFromA(8)),
              "the map has the layers \"a\", \"b\", \"c\", \"d\", \"e\", \"f\", \"g\" and \"h\"");
    EXPECT_EQ(answerTo("lakes", lettersFromA(9)), "the map has 9 layers, none of a similar name");
}

TEST(Choices, FollowTheNearestNameWhereThereAreFewOthers) {
    EXPECT_EQ(answerTo("raods", {"towns", "roads"}),
              "did you mean \"roads\"? The map has the layers \"towns\" and \"roads\"");
}

TEST(Choices, AreLeftOutBehindTheNearestNameWhereItIsTheOnlyOneOrOneOfMany) {
    EXPECT_EQ(answerTo("raods", {"roads"}), "did you mean \"roads\"?");
    std::vector<std::string> names = lettersFromA(8);
    names.emplace_back("roads");
    EXPECT_EQ(answerTo("raods", names), "did you mean \"roads\"?");
}

} // namespace halvane
