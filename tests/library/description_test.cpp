#include "library/ExportHandle.h"
#include "support/ProjectText.h"

#include <gmock/gmock.h>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class LibraryDescription : public LibraryFixture {};

} // namespace

TEST_F(LibraryDescription, IsTheJsonOfTheProgram) {
    const std::string sMap = program.file("towns.geojson");
    const DescriptionHandle pDescription(halvane_description_new(sMap.c_str()));
    EXPECT_STREQ(halvane_description_json(pDescription.get()), "");
    EXPECT_EQ(halvane_description_run(pDescription.get()), HALVANE_WRITTEN);
    EXPECT_STREQ(halvane_description_error(pDescription.get()), "");
    EXPECT_EQ(halvane_description_json(pDescription.get()), program.run({"describe", "--json", sMap}).sOut);
}

TEST_F(LibraryDescription, IsNotThereWithTheReasonWhereTheMapIsNot) {
    const DescriptionHandle pDescription(halvane_description_new(program.file("gone.gpkg").c_str()));
    EXPECT_EQ(halvane_description_run(pDescription.get()), HALVANE_REFUSED);
    EXPECT_THAT(halvane_description_error(pDescription.get()), HasSubstr("gone.gpkg"));
    EXPECT_STREQ(halvane_description_json(pDescription.get()), "");
}

TEST_F(LibraryDescription, NeedsAMap) {
    const DescriptionHandle pDescription(halvane_description_new(nullptr));
    EXPECT_EQ(halvane_description_run(pDescription.get()), HALVANE_REFUSED);
    EXPECT_THAT(halvane_description_error(pDescription.get()), HasSubstr("halvane_description_new"));
}

TEST_F(LibraryDescription, ReachesAProjectsServersOnlyWhereThatIsAllowed) {
    const std::string sMap = program.write(
        "city.qgs",
        test::projectText({{"Far", "dbname='gis' host=127.0.0.1 port=1 table=\"t\" (g) sql=", "postgres"}}));
    const DescriptionHandle pDescription(halvane_description_new(sMap.c_str()));
    EXPECT_EQ(halvane_description_run(pDescription.get()), HALVANE_WRITTEN);
    EXPECT_THAT(halvane_description_json(pDescription.get()), HasSubstr("--allow-connections"));
    EXPECT_EQ(halvane_description_allow_connections(pDescription.get(), 1), 0);
    EXPECT_EQ(halvane_description_run(pDescription.get()), HALVANE_WRITTEN);
    EXPECT_THAT(halvane_description_json(pDescription.get()), Not(HasSubstr("--allow-connections")));
}

TEST_F(LibraryDescription, TellsWhatIsOddInTheMapDocument) {
    program.write("map.xml", R"(<MapDocument><Map name="M">
<FeatureLayer name="towns" source="towns.geojson"/><FeatureLayer name="towns" source="towns.geojson"/></Map></MapDocument>)");
    const DescriptionHandle pDescription(halvane_description_new(program.file("map.xml").c_str()));
    std::string sTold;
    EXPECT_EQ(halvane_description_on_message(
                  pDescription.get(),
                  [](void* pUser, int nLevel, const char* pText) {
                      *static_cast<std::string*>(pUser) += std::to_string(nLevel) + " " + pText + "\n";
                  },
                  &sTold),
              0);
    EXPECT_EQ(halvane_description_run(pDescription.get()), HALVANE_WRITTEN);
    EXPECT_THAT(sTold, HasSubstr("1 halvane: warning: map: "));
}

TEST(Library, TellsItsVersion) {
    EXPECT_STREQ(halvane_version(), HALVANE_VERSION);
}

} // namespace halvane::test
