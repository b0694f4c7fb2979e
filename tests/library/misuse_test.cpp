#include "library/ExportHandle.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace halvane::test {

using ::testing::HasSubstr;

namespace {

class LibraryMisuse : public LibraryFixture {
protected:
    void expectRefused(const std::string& sFunction) const {
        EXPECT_THAT(halvane_export_error(pExport.get()), HasSubstr(sFunction));
        for (int nRun = 0; nRun < 2; ++nRun) {
            EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_REFUSED);
            EXPECT_THAT(halvane_export_error(pExport.get()), HasSubstr(sFunction));
            const auto report = nlohmann::json::parse(halvane_export_report(pExport.get()));
            EXPECT_EQ(report["problems"][0], halvane_export_error(pExport.get()));
        }
        EXPECT_EQ(document("out.xml"), "<Old/>");
    }
};

} // namespace

TEST_F(LibraryMisuse, OfASelectionThatIsNoneIsRemembered) {
    EXPECT_EQ(halvane_export_select(pExport.get(), nullptr), -1);
    expectRefused("halvane_export_select");
}

TEST_F(LibraryMisuse, OfAnItemLimitOfNothingIsRemembered) {
    EXPECT_EQ(halvane_export_set_item_limit(pExport.get(), 0), -1);
    expectRefused("halvane_export_set_item_limit");
}

TEST_F(LibraryMisuse, OfAProcessorThatIsNoneIsRemembered) {
    EXPECT_EQ(halvane_export_add_processor(pExport.get(), nullptr), -1);
    expectRefused("halvane_export_add_processor");
}

TEST_F(LibraryMisuse, OfAnotherNumberForSyncIsRemembered) {
    EXPECT_EQ(halvane_export_set_sync(pExport.get(), 2), -1);
    expectRefused("halvane_export_set_sync");
}

TEST_F(LibraryMisuse, OfAnotherNumberForConnectionsIsRemembered) {
    EXPECT_EQ(halvane_export_allow_connections(pExport.get(), 2), -1);
    expectRefused("halvane_export_allow_connections");
}

TEST_F(LibraryMisuse, OfTagsWithoutAPathIsRemembered) {
    EXPECT_EQ(halvane_export_set_tags(pExport.get(), "tags.xml", nullptr), -1);
    expectRefused("halvane_export_set_tags");
}

TEST_F(LibraryMisuse, OfAnExportWithoutAnOutputIsRemembered) {
    pExport.reset(halvane_export_new(program.file("control.xml").c_str(), nullptr));
    expectRefused("halvane_export_new");
}

TEST_F(LibraryMisuse, IsToldOfTheFirstTime) {
    EXPECT_EQ(halvane_export_select(pExport.get(), nullptr), -1);
    EXPECT_EQ(halvane_export_set_sync(pExport.get(), 2), -1);
    expectRefused("halvane_export_select");
}

TEST_F(LibraryMisuse, OfNothingDoesNoHarm) {
    EXPECT_EQ(halvane_export_set_map(nullptr, "x"), -1);
    EXPECT_EQ(halvane_export_set_tags(nullptr, "x", "y"), -1);
    EXPECT_EQ(halvane_export_select(nullptr, "x"), -1);
    EXPECT_EQ(halvane_export_add_processor(nullptr, "x"), -1);
    EXPECT_EQ(halvane_export_set_item_limit(nullptr, 1), -1);
    EXPECT_EQ(halvane_export_set_sync(nullptr, 1), -1);
    EXPECT_EQ(halvane_export_allow_connections(nullptr, 1), -1);
    EXPECT_EQ(halvane_description_allow_connections(nullptr, 1), -1);
    EXPECT_EQ(halvane_export_on_progress(nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(halvane_export_on_message(nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(halvane_export_run(nullptr), HALVANE_REFUSED);
    EXPECT_STREQ(halvane_export_error(nullptr), "there is no export");
    EXPECT_STREQ(halvane_export_report(nullptr), "");
    halvane_export_cancel(nullptr);
    halvane_export_free(nullptr);
    EXPECT_EQ(halvane_description_on_message(nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(halvane_description_run(nullptr), HALVANE_REFUSED);
    EXPECT_STREQ(halvane_description_error(nullptr), "there is no description");
    EXPECT_STREQ(halvane_description_json(nullptr), "");
    halvane_description_cancel(nullptr);
    halvane_description_free(nullptr);
}

TEST_F(LibraryMisuse, OfARunInsideOneIsRefused) {
    struct Inner {
        ExportHandle pExport;
        int nOutcome;
        std::string sError;
    } inner{townsInto("inner.xml"), -1, ""};
    const auto runInside = [](void* pUser, std::uint64_t) {
        auto& inside = *static_cast<Inner*>(pUser);
        inside.nOutcome = halvane_export_run(inside.pExport.get());
        inside.sError = halvane_export_error(inside.pExport.get());
        return 0;
    };
    EXPECT_EQ(halvane_export_on_progress(pExport.get(), runInside, &inner), 0);
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(inner.nOutcome, HALVANE_REFUSED);
    EXPECT_EQ(inner.sError, "a run cannot be started by what it calls back");
    EXPECT_EQ(program.read("inner.xml"), std::nullopt);
    EXPECT_EQ(document("out.xml"), sTownsDocument);
}

} // namespace halvane::test
