// The beginning of a document, with the lines of the control file beside it.

#include "cli/Samples.h"
#include "run/preview/PreviewPage.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <regex>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class Preview : public ExportFixture {
protected:
    /// Previews the control file over the towns.
    [[nodiscard]] RunResult preview(const std::string& sControl,
                                    std::vector<std::string> arguments = {}) const {
        program.write("control.xml", sControl);
        arguments.insert(arguments.begin(), {"preview", "--map", "towns.geojson", "control.xml"});
        return program.run(arguments);
    }
};

constexpr const char* sSecondControl =
    R"(<T Name="Map" xmlns:h="urn:halvane:control:2">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple" h:Where="POP &gt; 200">
      <F Name="name" Target="Attribute" h:Text="{NAME}"/>
      <F Name="Big" h:When="POP &gt; 500" h:Text="yes"/>
      <F Name="Note" h:Omit="Empty" h:Text=""/>
    </E>
  </L>
</T>)";

/// The names of elements in the order of their start tags.
std::vector<std::string> elementNames(std::string sDocument) {
    sDocument = std::regex_replace(sDocument, std::regex("<!--(.|\n)*?-->"), "");
    const std::regex tag("<([A-Za-z_][^\\s/>]*)");
    std::vector<std::string> names;
    for (std::sregex_iterator pTag(sDocument.begin(), sDocument.end(), tag), pEnd; pTag != pEnd; ++pTag)
        names.push_back((*pTag)[1]);
    return names;
}

} // namespace

TEST_F(Preview, ShowsTheFirstItemsBesideTheLinesThatWroteThem) {
    const auto before = program.names();
    const auto result = program.run({"preview", "--map", "towns.geojson", "-n", "2", "control.xml"});
    EXPECT_EQ(result.sOut, "1 │ <Map>\n"
                           "2 │   <Towns>\n"
                           "3 │     <Town>\n"
                           "4 │       <Name>Abdera</Name>\n"
                           "  │     </Town>\n"
                           "3 │     <Town>\n"
                           "4 │       <Name>Byblos</Name>\n"
                           "  │     </Town>\n"
                           "3 │     … more: only the first 2 items of \"Town\" are shown\n"
                           "  │   </Towns>\n"
                           "  │ </Map>\n");
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(program.names(), before);
}

TEST_F(Preview, SaysNothingOfMoreWhereThereIsNoMore) {
    const auto result = program.run({"preview", "--map", "towns.geojson", "control.xml"});
    EXPECT_THAT(result.sOut, HasSubstr("<Name>Corinth</Name>"));
    EXPECT_THAT(result.sOut, Not(HasSubstr("more")));
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(Preview, ExplainsWhereValuesComeFromAndWhyThereAreNone) {
    const auto result = preview(sSecondControl, {"-n", "1", "--explain"});
    EXPECT_EQ(result.sOut, R"(1 │ <Map>
2 │   <Towns>
  │     · layer "towns"
3 │     <Town name="Byblos"/>
  │       · h:Where="POP > 200"
  │       · layer "towns"
  │       · item 1: row 2 of "towns"
  │       · @name (line 4): h:Text="{NAME}"
  │       · @name (line 4): row 2 of "towns"
5 │       · Big: nothing was written: the condition "POP > 500" is not true; h:When="POP > 500" h:Text="yes"; row 2 of "towns"
6 │       · Note: nothing was written: it is empty, and such is left out; h:Omit="Empty" h:Text=""; row 2 of "towns"
3 │     … more: only the first item of "Town" is shown
  │   </Towns>
  │ </Map>
)");
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(Preview, ExplainsFieldsThatAreNullOrMissing) {
    program.write("towns.geojson", R"({"type": "FeatureCollection", "name": "towns", "features": [
{"type": "Feature", "properties": {"NAME": null, "POP": 120}, "geometry": {"type": "Point", "coordinates": [1, 2]}}]})");
    const auto result = preview(R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <F Name="Name" IdentityValue="NAME"/>
      <F Name="Mayor" IdentityValue="MAYOR"/>
    </E>
  </L>
</T>)",
                                {"--explain", "--quiet"});
    EXPECT_THAT(result.sOut, HasSubstr(R"(4 │       <Name/>
  │         · field "NAME" of row 0 of "towns", which is null
5 │       <Mayor/>
  │         · field "MAYOR" of row 0 of "towns"
  │         · there is no field "MAYOR", so its value is empty; correct the field's name
)"));
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(Preview, TellsThatARepeatedNodeHasNoItems) {
    const auto result = preview(R"(<T Name="Map" xmlns:h="urn:halvane:control:2">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple" h:Where="POP &gt; 900"><F Name="Name" h:Text="x"/></E>
  </L>
</T>)",
                                {"--explain"});
    EXPECT_THAT(result.sOut, HasSubstr("3 │     · Town: nothing was written: there are no items; "));
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(Preview, CountsItemsWhoseConditionHolds) {
    const auto result = preview(R"(<T Name="Map" xmlns:h="urn:halvane:control:2">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Field" h:ForEach="Field" h:When="$Item &gt; 2"><F Name="Number" h:Text="{$Item}"/></E>
  </L>
</T>)",
                                {"-n", "1"});
    EXPECT_EQ(elementNames(result.sOut), (std::vector<std::string>{"Map", "Towns", "Field", "Number"}));
    EXPECT_THAT(result.sOut, HasSubstr("<Number>3</Number>"));
    EXPECT_THAT(result.sOut, HasSubstr("3 │     … more: only the first item of \"Field\" is shown\n"));
}

TEST_F(Preview, LeavesOutMostOfWhatOneLongValueIsMadeOf) {
    program.write("line.geojson", R"({"type": "FeatureCollection", "name": "line", "features": [
{"type": "Feature", "properties": {}, "geometry": {"type": "LineString", "coordinates": [[1, 2], [3, 4], [5, 6], [7, 8]]}}]})");
    program.write("line.xml", R"(<T Name="Map">
  <L Name="Line" DataSource="MapLayer" Identity="LayerName" IdentityValue="line">
    <E Name="Row" DataSource="Feature" Entries="Multiple">
      <V Name="V" DataSource="Geometry.Vertice" Entries="Multiple"><X Name="X" DataProperty="Geometry.X"/></V>
    </E>
  </L>
</T>)");
    const auto result = program.run({"preview", "--map", "line.geojson", "line.xml", "-n", "2"});
    EXPECT_EQ(elementNames(result.sOut),
              (std::vector<std::string>{"Map", "Line", "Row", "V", "Part", "V", "X", "V", "X"}));
    EXPECT_THAT(result.sOut, HasSubstr("… more: only the first 2 items of \"V\" are shown"));
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(Preview, HasTheElementsOfTheDocument) {
    RunSettings inExamples;
    inExamples.environment = {{"SOURCE_DATE_EPOCH", "0"}};
    inExamples.sFolder = HALVANE_EXAMPLES;
    std::size_t nCompared = 0;
    for (const auto& example : nlohmann::json::parse(std::ifstream(HALVANE_EXAMPLES "/examples.json"))) {
        auto arguments = example["arguments"].get<std::vector<std::string>>();
        if (example.contains("command") || std::ranges::find(arguments, "{processor}") != arguments.end())
            continue;
        auto exporting = arguments;
        exporting.insert(exporting.begin(), "export");
        exporting.emplace_back("-");
        arguments.insert(arguments.begin(), {"preview", "--quiet", "-n", "1000"});
        const auto document = program.run(exporting, inExamples);
        const auto shown = program.run(arguments, inExamples);
        EXPECT_EQ(elementNames(shown.sOut), elementNames(document.sOut)) << example["name"];
        EXPECT_EQ(shown.lExitCode, document.lExitCode) << example["name"];
        ++nCompared;
    }
    EXPECT_GT(nCompared, 20U);
}

TEST_F(Preview, LeavesWithTheCodesOfAnExport) {
    auto result = preview("<T Name=\"Map\"><E/></T>");
    EXPECT_EQ(result.sOut, "");
    EXPECT_THAT(result.sErr, HasSubstr("control.xml:1:"));
    EXPECT_EQ(result.lExitCode, 2);
    result = preview(controlWithProcessor("No.Such"), {"-n", "1"});
    EXPECT_EQ(elementNames(result.sOut), (std::vector<std::string>{"Map", "Towns", "Town", "Value"}));
    EXPECT_THAT(result.sErr, HasSubstr("halvane: 1 control node failed; the document is incomplete\n"));
    EXPECT_EQ(result.lExitCode, 3);
    result = preview("<T Name=\"Map\"/>");
    EXPECT_EQ(result.sOut, "");
    EXPECT_THAT(result.sErr, HasSubstr("the control file's root has no children"));
    EXPECT_EQ(result.lExitCode, 4);
}

TEST_F(Preview, RefusesNumbersOfItemsThatAreNone) {
    const auto result = program.run({"preview", "-n", "0", "control.xml"});
    EXPECT_EQ(result.sOut, "");
    EXPECT_THAT(result.sErr, HasSubstr("--items: "));
    EXPECT_EQ(result.lExitCode, 2);
}

TEST_F(Preview, ShowsControlCharactersOfTheDataByTheirNumbers) {
    program.write("towns.geojson", R"({"type": "FeatureCollection", "name": "towns", "features": [
{"type": "Feature", "properties": {"NAME": "a\u009b31mb"}, "geometry": {"type": "Point", "coordinates": [1, 2]}}]})");
    const auto result = program.run({"preview", "--map", "towns.geojson", "control.xml"});
    EXPECT_THAT(result.sOut, HasSubstr("<Name>a\\u009B31mb</Name>"));
}

TEST(PreviewPage, ColoursTagsAndValues) {
    const PreviewNotes notes{{{"7", {"a reason"}}}, {}};
    EXPECT_EQ(previewPage("<A b=\"c\">d</A>", notes, {3, true, true}),
              "\x1B[2m7 │ \x1B[0m\x1B[34m<A b=\x1B[32m\"c\"\x1B[34m>\x1B[0md\x1B[34m</A>\x1B[0m\n"
              "\x1B[2m  │ \x1B[0m  \x1B[2m· a reason\x1B[0m\n");
}

TEST(PreviewPage, CutsLongTexts) {
    const std::string sText(1000, 'x');
    const std::string sPage = previewPage("<A>" + sText + "</A>", {}, {});
    EXPECT_EQ(sPage, "  │ <A>" + sText.substr(0, 200) + "… (1000 bytes in all)</A>\n");
}

} // namespace halvane::test
