// Thousands of exports in one process through the component: memory and descriptors stay what they are.

#include "component/clsExport.h"
#include "host/gdal/GdalHost.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <malloc.h>
#include <map>
#include <string>
#include <vector>

namespace halvane::test {
namespace {

/// HALVANE_EXPORTS says how many in all.
std::size_t exportCount() {
    const char* const pCount = std::getenv("HALVANE_EXPORTS");
    return pCount == nullptr ? 480 : std::strtoul(pCount, nullptr, 10);
}

const std::vector<std::string>& controlFiles() {
    static const std::vector<std::string> aNames{"attributes",
                                                 "decimals",
                                                 "domains",
                                                 "ends",
                                                 "features",
                                                 "fields",
                                                 "layers",
                                                 "lengths",
                                                 "maps",
                                                 "notes",
                                                 "relationship-classes",
                                                 "residents",
                                                 "spatial-reference",
                                                 "subtypes",
                                                 "surfaces",
                                                 "tables",
                                                 "vertices",
                                                 "workspaces"};
    return aNames;
}

struct Use {
    std::size_t nBytes = 0; ///< that the process has allocated
    std::ptrdiff_t nDescriptors = 0;
};

Use use() {
    const auto memory = ::mallinfo2();
    return {memory.uordblks + memory.hblkhd,
            std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {})};
}

class Soak : public testing::Test {
protected:
    /// Every control file once, on a host and a map document of its own.
    void exportAll() {
        for (const std::string& sName : controlFiles())
            exportOnce(sName);
    }

    void exportOnce(const std::string& sName) {
        const auto pHost = host::gdal::GdalHost::create();
        clsExport component(pHost);
        std::string sOutput = "out.xml";
        std::int32_t lErrNum = 0;
        std::string sErrMsg;
        component.Export2XML(pHost->openMapDocument(HALVANE_EXAMPLES "/city.xml"),
                             HALVANE_EXAMPLES "/" + sName + ".xml", folder.path().string(), sOutput, nullptr,
                             "", lErrNum, sErrMsg);
        ASSERT_EQ(lErrNum, 0) << sErrMsg;
        const std::string sDocument = folder.read("out.xml").value_or("");
        ASSERT_NE(sDocument, "");
        ASSERT_EQ(documents_.try_emplace(sName, sDocument).first->second, sDocument) << sName;
    }

    TemporaryFolder folder;

private:
    std::map<std::string, std::string> documents_; ///< by control file, as each was written first
};

TEST_F(Soak, ManyExportsTakeNoMoreMemoryAndDescriptorsThanSome) {
    const std::size_t nRounds = exportCount() / controlFiles().size();
    // What libraries keep for the process, they have after a quarter.
    const std::size_t nSome = nRounds / 4;
    for (std::size_t n = 0; n < nSome; ++n)
        exportAll();
    const Use before = use();
    for (std::size_t n = nSome; n < nRounds; ++n)
        exportAll();
    const Use after = use();
    std::cout << nRounds * controlFiles().size() << " exports; after a quarter of them " << before.nBytes
              << " bytes and " << before.nDescriptors << " descriptors, at the end " << after.nBytes
              << " bytes and " << after.nDescriptors << " descriptors\n";
    EXPECT_EQ(after.nDescriptors, before.nDescriptors);
    // Tables of the libraries grow now and then; 1,800 exports take what 3,600 take.
    constexpr std::size_t nLeeway = 64U << 10U;
    EXPECT_LT(after.nBytes, before.nBytes + nLeeway);
}

} // namespace
} // namespace halvane::test
