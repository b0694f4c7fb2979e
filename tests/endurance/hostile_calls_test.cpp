// Each function that the SQL of data may call, with what a hostile author would give it: none ends the
// process, computes for seconds at a few arguments, or takes memory without measure.

#include "host/gdal/source/DataFiles.h"
#include "host/gdal/source/DatabaseFunctions.h"
#include "host/gdal/source/Drivers.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/Sqlite.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <ostream>
#include <random>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace halvane::test {
namespace {

using namespace host::gdal;
using testing::HasSubstr;
using testing::IsEmpty;

using Arguments = std::vector<std::string>;

struct Function {
    std::string sName;
    int lArguments = 0; ///< -1 for any number
};

const std::string sArea = "GeomFromText('POLYGON((0 0,10 0,10 10,0 10,0 0))')";

/// What is given to each place of each function.
const Arguments& hostileValues() {
    static const Arguments values{"NULL", "1", "-1", "0", "9223372036854775807", "-9223372036854775808",
                                  "1e308", "-1e308", "1e-300", "9e999", "'x'", "''", "x''", "x'00'",
                                  "zeroblob(60)", "x'0001ffffffff7c0100000003000000fe'",
                                  "'POLYGON((0 0,1 0,1 1,0 0))'", "'%s%n'", sArea,
                                  // A shape of the database, as its own format keeps it.
                                  "(SELECT geom FROM shapes LIMIT 1)"};
    return values;
}

/// A list of all of one value; of one at each place, among ones, among shapes and behind a shape; and some at
/// random, the same in each run.
std::vector<Arguments> hostileCalls(std::size_t nArguments) {
    if (nArguments == 0)
        return {{}};
    std::vector<Arguments> calls;
    for (const std::string& sValue : hostileValues()) {
        calls.emplace_back(nArguments, sValue);
        for (std::size_t nPlace = 0; nPlace < nArguments && nArguments > 1; ++nPlace) {
            Arguments amongOnes(nArguments, "1");
            Arguments amongShapes(nArguments, sArea);
            Arguments behindShape = amongOnes;
            behindShape.front() = sArea;
            for (Arguments* pOne : {&amongOnes, &amongShapes, &behindShape}) {
                pOne->at(nPlace) = sValue;
                calls.push_back(std::move(*pOne));
            }
        }
    }
    std::minstd_rand random(static_cast<unsigned>(nArguments));
    constexpr int lRandomCalls = 40;
    for (int lCall = 0; lCall < lRandomCalls && nArguments > 1; ++lCall) {
        Arguments arguments(nArguments);
        for (std::string& sValue : arguments)
            sValue = hostileValues()[random() % hostileValues().size()];
        calls.push_back(std::move(arguments));
    }
    return calls;
}

/// What a child tells of where it is; it stays when the child ends.
class SharedText {
public:
    SharedText()
        : pBytes_(static_cast<char*>(
              ::mmap(nullptr, nSize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
    SharedText(const SharedText&) = delete;
    SharedText& operator=(const SharedText&) = delete;
    ~SharedText() { ::munmap(pBytes_, nSize); }

    void set(const std::string& sText) { pBytes_[sText.copy(pBytes_, nSize - 1)] = '\0'; }
    [[nodiscard]] std::string get() const { return pBytes_; }

private:
    static constexpr std::size_t nSize = 1U << 14U;
    char* pBytes_;
};

void limit(__rlimit_resource_t what, rlim_t lMost) {
    const rlimit both{lMost, lMost};
    ASSERT_EQ(::setrlimit(what, &both), 0);
}

/// How a child ended that did something within limits; "" for well.
std::string endOf(const std::function<void()>& doIt) {
    const pid_t lChild = ::fork();
    if (lChild == 0) {
        for (const int lSignal : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGILL})
            std::signal(lSignal, SIG_DFL);
        constexpr rlim_t lSecondsOfProcessor = 10;
        constexpr rlim_t lMemory = 3UL << 30U;
        limit(RLIMIT_CPU, lSecondsOfProcessor);
        limit(RLIMIT_AS, lMemory);
        limit(RLIMIT_CORE, 0);
        doIt();
        ::_exit(EXIT_SUCCESS);
    }
    int lStatus = 0;
    EXPECT_EQ(::waitpid(lChild, &lStatus, 0), lChild);
    return WIFSIGNALED(lStatus) ? ::strsignal(WTERMSIG(lStatus)) : "";
}

class HostileCalls : public testing::TestWithParam<const char*> {
protected:
    HostileCalls() {
        prepareLibrary();
        folder.write("shapes.geojson",
                     R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{},
            "geometry":{"type":"Polygon","coordinates":[[[0,0],[1,0],[1,1],[0,0]]]}}]})");
        const GDALDatasetUniquePtr pFrom(
            GDALDataset::Open(folder.file("shapes.geojson").c_str(), GDAL_OF_VECTOR));
        CPLStringList ofFile;
        if (GetParam() == std::string("SQLite"))
            ofFile.SetNameValue("SPATIALITE", "YES");
        const GDALDatasetUniquePtr pTo(GetGDALDriverManager()
                                           ->GetDriverByName(GetParam())
                                           ->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, ofFile.List()));
        CPLStringList ofLayer;
        ofLayer.SetNameValue("GEOMETRY_NAME", "geom");
        pTo->CopyLayer(pFrom->GetLayer(0), "shapes", ofLayer.List());
    }

    /// Those of the database's connection that are allowed.
    std::vector<Function> functions() {
        const auto pPool = std::make_shared<HandlePool>();
        const Handle handle = pPool->acquire(featureSourceOf(*pPool, sPath));
        const StatementPtr pRows = prepare(databaseOf(handle.dataset()),
                                           "SELECT DISTINCT lower(name), narg FROM pragma_function_list");
        std::vector<Function> allowed;
        while (sqlite3_step(pRows.get()) == SQLITE_ROW) {
            Function function{textOf(pRows.get(), 0), sqlite3_column_int(pRows.get(), 1)};
            if (isAllowedFunction(function.sName))
                allowed.push_back(std::move(function));
        }
        return allowed;
    }

    void call(sqlite3* pDatabase, const std::string& sName, const Arguments& arguments) {
        std::string sSql = "SELECT \"" + sName + "\"(";
        for (const std::string& sArgument : arguments)
            sSql += (sSql.ends_with('(') ? "" : ", ") + sArgument;
        sSql += ") FROM (SELECT 1)";
        at.set(sSql);
        const StatementPtr pCall = prepare(pDatabase, sSql);
        while (pCall != nullptr && sqlite3_step(pCall.get()) == SQLITE_ROW) {
        }
    }

    void callEachWay(const Function& function) {
        const auto pPool = std::make_shared<HandlePool>();
        const Handle handle = pPool->acquire(featureSourceOf(*pPool, sPath));
        constexpr int lMostArguments = 4;
        const int lFirst = std::max(function.lArguments, 0);
        const int lLast = function.lArguments < 0 ? lMostArguments : function.lArguments;
        for (int lArguments = lFirst; lArguments <= lLast; ++lArguments)
            for (const Arguments& arguments : hostileCalls(static_cast<std::size_t>(lArguments)))
                call(databaseOf(handle.dataset()), function.sName, arguments);
    }

    TemporaryFolder folder;
    const std::string sPath =
        folder.file(GetParam() == std::string("GPKG") ? "shapes.gpkg" : "shapes.sqlite");
    SharedText at;
};

INSTANTIATE_TEST_SUITE_P(Drivers, HostileCalls, testing::Values("GPKG", "SQLite"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(HostileCalls, EndNoProcess) {
    std::vector<std::string> ends;
    const std::vector<Function> all = functions();
    EXPECT_GT(all.size(), 300U);
    {
        const auto pPool = std::make_shared<HandlePool>();
        const Handle handle = pPool->acquire(featureSourceOf(*pPool, sPath));
        EXPECT_EQ(wholeNumber(databaseOf(handle.dataset()), "SELECT count(geom) FROM shapes"), 1);
    }
    for (const Function& function : all) {
        const std::string sEnd = endOf([&] { callEachWay(function); });
        if (!sEnd.empty())
            ends.push_back(sEnd + " at " + at.get());
    }
    EXPECT_THAT(ends, IsEmpty()) << "take them from the allowed functions";
}

// Otherwise the test above would see nothing.
TEST_P(HostileCalls, AreNoticedWhereTheyEndTheProcess) {
    EXPECT_EQ(endOf([] {}), "");
    EXPECT_THAT(endOf([] { std::abort(); }), HasSubstr("Abort"));
    EXPECT_NE(endOf([&] {
                  sqlite3* pDatabase = nullptr;
                  sqlite3_open(":memory:", &pDatabase);
                  sqlite3_create_function(
                      pDatabase, "crash", 1, SQLITE_UTF8, nullptr,
                      [](sqlite3_context*, int, sqlite3_value**) { std::raise(SIGSEGV); }, nullptr, nullptr);
                  call(pDatabase, "crash", {"1"});
              }),
              "");
    EXPECT_EQ(at.get(), "SELECT \"crash\"(1) FROM (SELECT 1)");
}

} // namespace
} // namespace halvane::test
