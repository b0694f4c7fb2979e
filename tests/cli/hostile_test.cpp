// What nobody means well, in control files and map documents, as those who run the program meet it: each case
// is told with its line, and nothing beside it is opened, run or written.

#include "cli/Samples.h"
#include "support/HostileExpressions.h"
#include "support/OpenCounter.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>

namespace halvane::test {

namespace {

using ::testing::HasSubstr;
using Cases = std::vector<std::string>;

std::string escaped(const std::string& sText) {
    std::string sEscaped;
    for (const char c : sText) {
        const std::string_view sEntity = c == '"' ? "&quot;" : c == '<' ? "&lt;" : c == '&' ? "&amp;" : "";
        if (sEntity.empty())
            sEscaped += c;
        else
            sEscaped += sEntity;
    }
    return sEscaped;
}

class HostileInputs : public ExportFixture {
protected:
    HostileInputs() {
        std::filesystem::create_directory(program.file("bait"));
        program.write("bait/secret.csv", "A\ncanary\n");
        program.write("bait/part.xml", "<P Name=\"canary\" xmlns:h=\"urn:halvane:control:2\"/>");
        program.write("rivers.csv", sRivers);
        counter.emplace(program.file("bait"));
    }
    ~HostileInputs() override { EXPECT_GE(told.size(), nCases); }

    /// Runs an export that is to be refused. @returns what it tells.
    std::string refusal(const std::string& sMap) {
        const auto before = program.names();
        const auto result = program.run({"export", "--map", sMap, "control.xml", "out.xml"});
        EXPECT_EQ(result.lExitCode, 2) << result.sErr;
        EXPECT_EQ(result.sOut, "");
        EXPECT_EQ(program.read("out.xml"), "<Old/>");
        EXPECT_EQ(program.names(), before);
        EXPECT_TRUE(counter->works());
        EXPECT_EQ(counter->opens(), 0);
        EXPECT_EQ(result.sErr.find("canary"), std::string::npos) << result.sErr;
        return result.sErr;
    }

    /// Each node stands on a line of its own, which must be told. As many are refused at once as are listed.
    void expectLinesTold(const Cases& nodes) {
        nCases += nodes.size();
        constexpr std::size_t nListed = 15;
        for (std::size_t nFirst = 0; nFirst < nodes.size(); nFirst += nListed) {
            const std::size_t nEnd = std::min(nFirst + nListed, nodes.size());
            std::string sControl = "<T Name=\"T\" xmlns:h=\"urn:halvane:control:2\">";
            for (std::size_t n = nFirst; n < nEnd; ++n)
                sControl += "\n" + nodes[n];
            program.write("control.xml", sControl + "</T>");
            const std::string sTold = refusal("towns.geojson");
            for (std::size_t n = nFirst; n < nEnd; ++n) {
                EXPECT_THAT(sTold, HasSubstr("control.xml:" + std::to_string(n - nFirst + 2) + ": "))
                    << nodes[n];
                told.insert(nodes[n]);
            }
        }
    }

    /// Of a map document with one element, on line 2.
    void expectMapRefused(const Cases& elements) {
        nCases += elements.size();
        for (const auto& sElement : elements) {
            program.write("map.xml", "<MapDocument><Map name=\"M\">\n" + sElement + "</Map></MapDocument>");
            EXPECT_THAT(refusal("map.xml"), ::testing::ContainsRegex("map.xml(:|, line )2")) << sElement;
            told.insert(sElement);
        }
    }

    std::optional<OpenCounter> counter;
    std::set<std::string> told;
    std::size_t nCases = 0;
};

} // namespace

TEST_F(HostileInputs, HaveNoExpressionsThatAreNone) {
    Cases nodes;
    for (const auto& sExpression : noExpressions()) {
        const bool bBraces = sExpression.find_first_of("{}") != std::string::npos;
        const std::string sValue = escaped(sExpression) + "\"";
        switch (bBraces ? 1 : nodes.size() % 3) {
        case 0:
            nodes.push_back("<N Name=\"N\" h:Text=\"{" + escaped(sExpression) + "}\"/>");
            break;
        case 1:
            nodes.push_back("<N Name=\"N\" h:When=\"" + sValue + "/>");
            break;
        default:
            nodes.push_back("<N Name=\"N\" DataSource=\"Feature\" h:Rows=\"Each\" h:Where=\"" + sValue +
                            "/>");
        }
    }
    EXPECT_GE(nodes.size(), 90U);
    expectLinesTold(nodes);
}

TEST_F(HostileInputs, HaveNoExpressionsWithoutMeasure) {
    const auto times = [](std::size_t nTimes, const std::string& sText) {
        std::string sAll;
        for (std::size_t n = 0; n < nTimes; ++n)
            sAll += sText;
        return sAll;
    };
    Cases nodes;
    for (const auto& sExpression :
         {times(101, "(") + "1" + times(101, ")"), times(2000, "1 + ") + "1", times(200, "- ") + "1",
          times(200, "NOT ") + "1", "'" + times(70000, "x") + "'", times(40, "abs(") + "1" + times(40, ")"),
          times(40, "CASE WHEN ") + "1", times(16, "(1 + ") + "1" + times(16, ")")})
        nodes.push_back("<N Name=\"N\" h:When=\"" + sExpression + "\"/>");
    expectLinesTold(nodes);
}

TEST_F(HostileInputs, HaveNoNamesOrNamespacesThatAreNone) {
    const auto named = [](const std::string& sName) {
        return "<N Name=\"" + escaped(sName) + "\" h:Text=\"x\"/>";
    };
    Cases nodes;
    for (const auto* sName : {":a", "a:", "a:b:c", "1a", "-a", "a b<", "a/b", "a&b", "<a", "a\"b", "", " "})
        nodes.push_back(named(sName));
    expectLinesTold(nodes);
    nodes.clear();
    for (const auto* sName : {"xmlns", "xmlns:a", "xmlns:h", "h:a", "p:a"})
        nodes.push_back(named(sName));
    for (const auto* sAttributes : {"h:Nothing=\"x\"",
                                    "h:text=\"x\"",
                                    "h:Texd=\"x\"",
                                    "h:When=\"1\" h:Rows=\"Each\"",
                                    "h:Id=\"x\"",
                                    "h:As=\"xml\"",
                                    "h:Direction=\"Forward\"",
                                    "h:Text=\"x\" h:Geometry=\"GML\"",
                                    "h:Doctype=\"N\"",
                                    "h:Declaration=\"UTF-8\"",
                                    "h:Needs=\"a\"",
                                    "h:Link=\"a=b\"",
                                    "h:Relationship=\"r\"",
                                    "h:Indent=\"2\"",
                                    "h:Crs=\"bait/secret.csv\" h:Text=\"\"",
                                    "h:Crs=\"+proj=longlat +nadgrids=bait/secret.csv\" h:Text=\"\"",
                                    "h:Crs=\"EPSG:999999\" h:Text=\"\"",
                                    "h:Format=\"%n\" h:Text=\"\"",
                                    "h:Limit=\"1\" h:Text=\"\"",
                                    "h:Geometry=\"bait/secret.csv\""})
        nodes.push_back("<N Name=\"N\" " + std::string(sAttributes) + "/>");
    nodes.emplace_back("<N Name=\"p:a\" xmlns:p=\"urn:halvane:control:2\" h:Text=\"x\"/>");
    expectLinesTold(nodes);
}

TEST_F(HostileInputs, IncludeNothingFromElsewhere) {
    std::filesystem::create_directory(program.file("empty"));
    std::filesystem::create_symlink("bait/part.xml", program.file("link.xml"));
    std::filesystem::create_directory_symlink("bait", program.file("folder"));
    const std::string sBait = program.file("bait/part.xml");
    Cases nodes;
    for (const auto& sPath : Cases{"",
                                   " ",
                                   ".",
                                   "..",
                                   "/",
                                   "./",
                                   "../bait/part.xml",
                                   "../../etc/passwd",
                                   "/etc/passwd",
                                   "/dev/zero",
                                   "/proc/self/environ",
                                   sBait,
                                   "file://" + sBait,
                                   "file:" + sBait,
                                   "http://localhost/part.xml",
                                   "ftp://localhost/part.xml",
                                   "//localhost/part.xml",
                                   "\\\\localhost\\part.xml",
                                   "/vsicurl/http://localhost/p",
                                   "/vsizip/" + sBait,
                                   "bait/../../part.xml",
                                   "bait/../bait/../../part.xml",
                                   "link.xml",
                                   "folder/part.xml",
                                   "empty",
                                   "empty/",
                                   "control.xml",
                                   "./control.xml",
                                   "none.xml",
                                   "part.xml?x",
                                   "part.xml#x",
                                   "%2e%2e/part.xml",
                                   "empty/none.xml/x",
                                   "~/part.xml",
                                   "$HOME/part.xml",
                                   "`id`",
                                   "|id",
                                   "; id",
                                   "data:text/xml,<P/>"})
        nodes.push_back("<N h:Include=\"" + escaped(sPath) + "\"/>");
    expectLinesTold(nodes);
}

TEST_F(HostileInputs, ComputeNoLayersOfStatementsThatReachOut) {
    const std::string sBait = program.file("bait/");
    Cases elements;
    for (const auto& sStatement :
         Cases{"",
               ";",
               "x",
               "SELECT",
               "DELETE FROM rivers",
               "DROP TABLE rivers",
               "INSERT INTO rivers VALUES ('x', 1)",
               "UPDATE rivers SET LENGTH = 1",
               "CREATE TABLE t (a)",
               "ALTER TABLE rivers RENAME TO r",
               "VACUUM",
               "VACUUM INTO '" + sBait + "copy'",
               "BEGIN",
               "EXPLAIN SELECT 1",
               "VALUES (1)",
               "ATTACH '" + sBait + "secret.csv' AS o",
               "DETACH main",
               "PRAGMA writable_schema = 1",
               "PRAGMA temp_store_directory = '" + sBait + "'",
               "DELLAYER:rivers",
               "SELECT 1; DELETE FROM rivers",
               "SELECT 1; SELECT 2",
               "WITH x AS (SELECT 1) DELETE FROM rivers",
               "/* */ SELECT 1",
               "-- x",
               "SELECT load_extension('" + sBait + "x.so')",
               "SELECT readfile('" + sBait + "secret.csv')",
               "SELECT writefile('" + sBait + "new', 'x')",
               "SELECT edit('x')",
               "SELECT fts3_tokenizer('simple')",
               "SELECT * FROM '" + sBait + "secret.csv'.secret",
               "SELECT * FROM \"" + sBait + "secret.csv\"",
               "SELECT * FROM ogr_datasource('" + sBait + "secret.csv')",
               "SELECT ogr_datasource_load_layers('" + sBait + "secret.csv')",
               "SELECT ogr_geocode('Paris')",
               "SELECT * FROM VirtualOGR('" + sBait + "secret.csv')",
               "SELECT * FROM VirtualText('" + sBait + "secret.csv')",
               "SELECT BlobFromFile('" + sBait + "secret.csv')",
               "SELECT BlobToFile(x'00', '" + sBait + "new')",
               "SELECT ExportGeoJSON('rivers', 'geom', '" + sBait + "new')",
               "SELECT eval('DELETE FROM rivers')",
               "SELECT * FROM pragma_database_list",
               "SELECT * FROM sqlite_dbpage",
               "SELECT 1 FROM rivers WHERE readfile('" + sBait + "secret.csv') IS NULL",
               "SELECT 1 ORDER BY load_extension('x')",
               "SELECT ?",
               "SELECT :name",
               "SELECT LONG FROM rivers",
               "SELECT * FROM result"})
        elements.push_back("<Table source=\"rivers.csv\" dataset=\"result\" sql=\"" + escaped(sStatement) +
                           "\"/>");
    expectMapRefused(elements);
}

TEST_F(HostileInputs, OpenNothingThatADocumentNamesOutsideOfIt) {
    for (const auto* sBefore :
         {"<!DOCTYPE T SYSTEM \"bait/part.xml\">", "<!DOCTYPE T [<!ENTITY e SYSTEM \"bait/secret.csv\">]>",
          "<!DOCTYPE T [<!ENTITY % e SYSTEM \"bait/part.xml\">%e;]>",
          "<?xml-stylesheet href=\"bait/part.xml\" type=\"text/xsl\"?>",
          "<!DOCTYPE T [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">]>"}) {
        ++nCases;
        program.write("control.xml", std::string(sBefore) +
                                         "\n<T Name=\"T\" xmlns:h=\"urn:halvane:control:2\">\n"
                                         "<N Name=\"N\" h:Text=\"{\"/></T>");
        EXPECT_THAT(refusal("towns.geojson"), HasSubstr("control.xml:")) << sBefore;
        told.insert(sBefore);
    }
}

} // namespace halvane::test
