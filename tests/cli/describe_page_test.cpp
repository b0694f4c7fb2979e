// The description of a map as a page of HTML.

#include "cli/Samples.h"

#include <gmock/gmock.h>

#include <regex>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class DescribePage : public ExportFixture {
protected:
    /// Describes a map that the program can write a page about.
    [[nodiscard]] std::string pageOf(const std::string& sMap) const {
        const auto result = program.run({"describe", sMap, "--html", "page.html"});
        EXPECT_EQ(result.sOut, "Wrote " + program.file("page.html") + "\n");
        EXPECT_EQ(result.sErr, "");
        EXPECT_EQ(result.lExitCode, 0);
        return program.read("page.html").value_or("");
    }

    void expectRefused(const std::string& sFile, const std::string& sErr) const {
        const auto before = program.names();
        const auto result = program.run({"describe", "towns.geojson", "--html", sFile});
        EXPECT_EQ(result.sOut, "");
        EXPECT_EQ(result.sErr, sErr);
        EXPECT_EQ(result.lExitCode, 2);
        EXPECT_EQ(program.names(), before);
    }
};

/// Start tags whose end tags are missing, or the other way round.
std::vector<std::string> unbalanced(const std::string& sPage) {
    const std::regex tag("<(/?)([a-z][a-z0-9]*)[^>]*?(/?)>");
    const std::string sBody =
        std::regex_replace(sPage, std::regex("<(script|style)>[^<]*(<[^/][^<]*)*</(script|style)>"), "");
    std::vector<std::string> open;
    for (std::sregex_iterator pTag(sBody.begin(), sBody.end(), tag), pEnd; pTag != pEnd; ++pTag) {
        const std::string sName = (*pTag)[2];
        if ((*pTag)[3].length() > 0 || sName == "meta" || sName == "input" || sName == "br")
            continue;
        if ((*pTag)[1].length() == 0)
            open.push_back(sName);
        else if (!open.empty() && open.back() == sName)
            open.pop_back();
        else
            return {"/" + sName};
    }
    return open;
}

} // namespace

TEST_F(DescribePage, ShowsLayersWithTheirFieldsAndADrawing) {
    const std::string sPage = pageOf("towns.geojson");
    EXPECT_THAT(sPage, HasSubstr("<h3>Layer towns</h3>"));
    EXPECT_THAT(sPage, HasSubstr("<tr><th scope=\"row\">POP</th><td></td><td>integer</td>"));
    EXPECT_THAT(sPage, HasSubstr("<dt>Features</dt><dd>3</dd><dt>Extent</dt><dd>1, 2 to 5, 6</dd>"));
    EXPECT_THAT(sPage, HasSubstr("aria-label=\"Outline of the map\""));
    EXPECT_THAT(sPage, HasSubstr("<circle cx="));
    EXPECT_THAT(unbalanced(sPage), IsEmpty());
}

TEST_F(DescribePage, ShowsDomainsAndRelationshipClasses) {
    const std::string sPage = pageOf(HALVANE_EXAMPLES "/data/city.gpkg");
    EXPECT_THAT(sPage, HasSubstr("<h3>Domain Borough</h3>"));
    EXPECT_THAT(sPage, HasSubstr("<tr><th scope=\"row\">2</th><td>Bronx</td></tr>"));
    EXPECT_THAT(sPage, HasSubstr("aria-label=\"Relationship classes\""));
    EXPECT_THAT(sPage, HasSubstr(">Borough</a>"));
    EXPECT_THAT(unbalanced(sPage), IsEmpty());
}

TEST_F(DescribePage, AsksNothingOfOtherPlaces) {
    const std::string sPage = pageOf(HALVANE_EXAMPLES "/data/city.gpkg");
    for (const char* sPlace : {"http:", "https:", " src=", "@import", "url("})
        EXPECT_THAT(sPage, Not(HasSubstr(sPlace)));
}

TEST_F(DescribePage, DrawsALayerWithFewPoints) {
    std::string sLine;
    for (int n = 0; n < 5000; ++n)
        sLine += (n == 0 ? "[" : ",[") + std::to_string(n) + "," + std::to_string(n % 7) + "]";
    program.write(
        "long.geojson",
        R"({"type": "FeatureCollection", "name": "long", "features": [{"type": "Feature", "properties": {},
"geometry": {"type": "LineString", "coordinates": [)" +
            sLine + "]}}]}");
    const std::string sPage = pageOf("long.geojson");
    const auto nPath = sPage.find("<path d=\"M");
    ASSERT_NE(nPath, std::string::npos);
    const std::string sPath = sPage.substr(nPath, sPage.find("/>", nPath) - nPath);
    EXPECT_EQ(std::count(sPath.begin(), sPath.end(), 'L'), 399);
    EXPECT_THAT(sPage, HasSubstr("0, 0 to 4999, 6"));
}

TEST_F(DescribePage, TakesNoMarkupFromData) {
    program.write("evil.geojson",
                  R"({"type": "FeatureCollection", "name": "<script>alert(1)</script>", "features": [
{"type": "Feature", "properties": {"\"><img src=x onerror=alert(2)>": 1, "a&b'": 2},
"geometry": {"type": "Point", "coordinates": [1, 2]}}]})");
    const std::string sPage = pageOf("evil.geojson");
    EXPECT_THAT(sPage, Not(HasSubstr("<script>alert")));
    EXPECT_THAT(sPage, Not(HasSubstr("<img")));
    EXPECT_THAT(sPage, HasSubstr("&lt;script&gt;alert(1)&lt;/script&gt;"));
    EXPECT_THAT(sPage, HasSubstr("a&amp;b&#39;"));
    EXPECT_THAT(unbalanced(sPage), IsEmpty());
}

TEST_F(DescribePage, ReplacesAPageAndNothingElse) {
    static_cast<void>(pageOf("towns.geojson"));
    EXPECT_THAT(pageOf("towns.geojson"), HasSubstr("<h3>Layer towns</h3>"));
    expectRefused("out.xml",
                  "halvane: --html: \"" + program.file("out.xml") +
                      "\" is there already, and is no page of an earlier run; give another name\n");
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
    EXPECT_EQ(program.read("towns.geojson"), sTowns);
    expectRefused(".", "halvane: --html: \"" + program.file("") + "\" is not the path of a file\n");
}

TEST_F(DescribePage, LeavesNoPageWhereTheMapCannotBeOpened) {
    const auto result = program.run({"describe", "nowhere.gpkg", "--html", "page.html"});
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr,
              "halvane: MAP: There is no file or folder \"" + program.file("nowhere.gpkg") + "\"\n");
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_FALSE(program.read("page.html"));
}

} // namespace halvane::test
