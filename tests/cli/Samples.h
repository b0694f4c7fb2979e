#pragma once

#include "cli/Program.h"

#include <gtest/gtest.h>

#include <string>

namespace halvane::test {

/// Three towns as points; the identifiers are 1 to 3.
inline constexpr std::string_view sTowns = R"({"type": "FeatureCollection", "name": "towns", "features": [
{"type": "Feature", "id": 1, "properties": {"NAME": "Abdera", "POP": 120}, "geometry": {"type": "Point", "coordinates": [1, 2]}},
{"type": "Feature", "id": 2, "properties": {"NAME": "Byblos", "POP": 340}, "geometry": {"type": "Point", "coordinates": [3, 4]}},
{"type": "Feature", "id": 3, "properties": {"NAME": "Corinth", "POP": 560}, "geometry": {"type": "Point", "coordinates": [5, 6]}}
]})";

/// Two rows without shapes.
inline constexpr std::string_view sRivers = "NAME,LENGTH\nAcheron,52\nStyx,9\n";

inline constexpr std::string_view sTownsControl = R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <F Name="Name" IdentityValue="NAME"/>
    </E>
  </L>
</T>)";

inline constexpr std::string_view sTownsDocument =
    "<Map>\r\n<Towns>\r\n<Town>\r\n<Name>Abdera</Name>\r\n</Town>\r\n"
    "<Town>\r\n<Name>Byblos</Name>\r\n</Town>\r\n"
    "<Town>\r\n<Name>Corinth</Name>\r\n</Town>\r\n</Towns>\r\n</Map>";

/// A control file that asks a processor once for each town.
inline std::string controlWithProcessor(const std::string& sProgId) {
    return R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <X Name="Value" DataSource="External" IdentityValue=")" +
           sProgId + R"("/></E></L></T>)";
}

/// A folder with the towns, a control file for them and an older document.
class ExportFixture : public ::testing::Test {
protected:
    ExportFixture() {
        program.write("towns.geojson", sTowns);
        program.write("control.xml", sTownsControl);
        program.write("out.xml", "<Old/>");
    }

    /// Runs `halvane export` and expects that it is refused with this text on standard error, nothing on
    /// standard output, and that it touches no file.
    void expectRefused(std::vector<std::string> arguments, const std::string& sErr) const {
        const auto before = program.names();
        arguments.insert(arguments.begin(), "export");
        const auto result = program.run(arguments);
        EXPECT_EQ(result.sErr, sErr);
        EXPECT_EQ(result.lExitCode, 2);
        EXPECT_EQ(result.sOut, "");
        EXPECT_EQ(program.names(), before);
        EXPECT_EQ(program.read("out.xml"), "<Old/>");
    }

    /// The document of an export of the towns without its first line, the XML declaration.
    [[nodiscard]] std::string document(std::string_view sName) const {
        return program.read(sName).value_or("no such file");
    }

    Program program;
};

} // namespace halvane::test
