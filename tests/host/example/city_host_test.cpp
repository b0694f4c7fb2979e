// The host that docs/writing-a-host.md prints.

#include "component/clsExport.h"
#include "host/CityHost.h"
#include "support/RecordingObserver.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace halvane::test {

namespace {

std::string read(const std::string& sPath) {
    std::ifstream stream(sPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

TEST(CityHost, IsEnoughForAnExport) {
    const TemporaryFolder folder;
    RecordingObserver observer;
    clsExport exporter(std::make_shared<example::CityHost>(), {.pObserver = &observer});
    const std::string sControl =
        folder.write("control.xml",
                     "<a Name='Cities'><b Name='City' DataSource='Table' Identity='TableName' "
                     "IdentityValue='Cities' Entries='Multiple'><c Name='Id' DataSource='Table' "
                     "IdentityValue='id'/><c Name='Name' DataSource='Table' IdentityValue='NAME'/></b></a>");
    std::string sName = "out.xml";
    std::int32_t lNumber = 0;
    std::string sText;
    exporter.Export2XML(std::make_shared<example::CityDocument>(), sControl, folder.path().string(), sName,
                        nullptr, "", lNumber, sText);
    for (const auto& failure : observer.aFailures)
        ADD_FAILURE() << failure.sName << ": " << failure.sDescription;
    EXPECT_EQ(sText, "");
    EXPECT_EQ(folder.read("out.xml"), "<Cities>\r\n<City>\r\n<Id>1</Id>\r\n<Name>Bergen</Name>\r\n</City>\r\n"
                                      "<City>\r\n<Id>2</Id>\r\n<Name>Graz</Name>\r\n</City>\r\n</Cities>");
}

TEST(CityHost, RefusesClausesRatherThanYieldAllRows) {
    example::CityTable table;
    const host::GisQueryFilter filter{"NAME = 'Graz'"};
    EXPECT_THROW(static_cast<void>(table.search(&filter)), Failure);
}

TEST(CityHost, IsPrintedOnThePage) {
    const std::string sPage = read(HALVANE_SOURCE_DIR "/docs/writing-a-host.md");
    for (const char* pFile : {"/examples/host/CityHost.h", "/src/cli/main.cpp"}) {
        const std::string sCode = read(std::string(HALVANE_SOURCE_DIR) + pFile);
        ASSERT_NE(sCode, "") << pFile;
        EXPECT_NE(sPage.find("```cpp\n" + sCode + "```\n"), std::string::npos) << pFile;
    }
}

} // namespace halvane::test
