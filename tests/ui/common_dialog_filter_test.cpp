#include "ui/CommonDialogFilter.h"

#include <gmock/gmock.h>

namespace halvane::test {
namespace {

using ui::FileKind;
using ui::fileKinds;

TEST(CommonDialogFilter, PairsDescriptionsWithPatterns) {
    EXPECT_THAT(fileKinds("XML Files (.xml)|*.xml"),
                ::testing::ElementsAre(FileKind{"XML Files (.xml)", {"*.xml"}}));
    EXPECT_THAT(
        fileKinds("Pictures|*.png;*.jpg|All files|*.*"),
        ::testing::ElementsAre(FileKind{"Pictures", {"*.png", "*.jpg"}}, FileKind{"All files", {"*.*"}}));
}

TEST(CommonDialogFilter, KeepsNoFileBackForADescriptionWithoutAPattern) {
    EXPECT_THAT(fileKinds("XML Files (.xml)"), ::testing::ElementsAre(FileKind{"XML Files (.xml)", {}}));
    EXPECT_THAT(fileKinds("Some|*.x|Any"),
                ::testing::ElementsAre(FileKind{"Some", {"*.x"}}, FileKind{"Any", {}}));
    EXPECT_THAT(fileKinds("Any|; "), ::testing::ElementsAre(FileKind{"Any", {}}));
}

TEST(CommonDialogFilter, HasNoChoiceForAnEmptyFilter) {
    EXPECT_THAT(fileKinds(""), ::testing::IsEmpty());
}

} // namespace
} // namespace halvane::test
