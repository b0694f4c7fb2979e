#include "cli/FailingLeaf.h"
#include "cli/Samples.h"

#include <gmock/gmock.h>

namespace halvane::test {

using ::testing::HasSubstr;

namespace {

/// One element for each row of a layer, with a leaf inside.
std::string controlOfPlaces(const std::string& sSource, const std::string& sLeaf,
                            const std::string& sMore = {}) {
    return R"(<T Name="Map">
  <L Name="Places" DataSource="MapLayer" Identity="LayerName" IdentityValue="places">
    <E Name="Place" Entries="Multiple" DataSource=")" +
           sSource + "\">" + sLeaf + "</E></L>" + sMore + "</T>";
}

constexpr const char* sShape = R"(<G Name="X" DataProperty="Geometry.X"/>)";

class LostShapes : public ExportFixture {
protected:
    LostShapes() {
        program.write("places.csv", "WKT,NAME\n\"POINT (1 2)\",a\n\"POINT (1\",b\nnowhere,c\n,d\n");
    }
};

} // namespace

TEST_F(LostShapes, AreCountedOneLineForEachLayer) {
    program.write("control.xml", controlOfPlaces("Geometry.Point", sShape));
    const auto result = program.run({"export", "--map", "places.csv", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (4 items)\n");
    EXPECT_EQ(result.sErr, "halvane: error: 2 shapes of \"places\" in \"" + program.file("places.csv") +
                               "\" cannot be read and are left out: \"POINT (1\" is not a shape\n"
                               "halvane: 2 shapes cannot be read; the document is incomplete\n");
}

TEST_F(LostShapes, AreToldWhenQuietAndBesideFailures) {
    program.write("control.xml", controlOfPlaces("Geometry.Point", sShape, failingLeaf("Zone")));
    const auto quiet = program.run({"export", "--quiet", "--map", "places.csv", "control.xml", "out.xml"});
    EXPECT_EQ(quiet.lExitCode, 3);
    EXPECT_THAT(quiet.sErr, HasSubstr("halvane: error: 2 shapes of \"places\""));
    const auto result = program.run({"export", "--map", "places.csv", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr, HasSubstr("\nhalvane: 1 control node failed and 2 shapes cannot be read; the "
                                       "document is incomplete\n"));
}

TEST_F(LostShapes, AreNoLossWhereTheDocumentHoldsNone) {
    program.write("control.xml", controlOfPlaces("Feature", R"(<F Name="Name" IdentityValue="NAME"/>)"));
    const auto result = program.run({"export", "--map", "places.csv", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "");
}

TEST_F(LostShapes, StandInTheReport) {
    program.write("control.xml", controlOfPlaces("Geometry.Point", sShape));
    const auto result =
        program.run({"export", "--report", "r.json", "--map", "places.csv", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    const std::string sReport = program.read("r.json").value_or("");
    EXPECT_THAT(sReport, HasSubstr(R"("outcome": "incomplete")"));
    EXPECT_THAT(sReport, HasSubstr(R"(  "lostShapes": [
    {
      "layer": "places",
      "location": ")" + program.file("places.csv") +
                                   R"(",
      "count": 2,
      "reason": "\"POINT (1\" is not a shape"
    }
  ],)"));
}

TEST_F(LostShapes, HaveANumberThatIsTooLargeToldBesideThem) {
    program.write("places.csvt", "String,Integer");
    program.write("places.csv", "WKT,NAME\n\"POINT (1 2)\",5000000000\n\"POINT (1 2)\",7\n");
    program.write("control.xml", controlOfPlaces("Feature", R"(<F Name="Name" IdentityValue="NAME"/>)"));
    const auto result = program.run({"export", "--map", "places.csv", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr,
                HasSubstr("The number in \"NAME\" of row 1 is too large for the field's type; give "
                          "the field a larger one"));
    EXPECT_THAT(program.read("out.xml").value_or(""), ::testing::Not(HasSubstr("2147483647")));
}

} // namespace halvane::test
