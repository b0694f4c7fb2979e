#include "library/ExportHandle.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <thread>

namespace halvane::test {

using ::testing::ElementsAre;

namespace {

/// Calls a function object at each progress.
class Watch {
public:
    explicit Watch(halvane_export& runs, std::function<int(std::uint64_t)> tell) : tell_(std::move(tell)) {
        EXPECT_EQ(halvane_export_on_progress(
                      &runs,
                      [](void* pUser, std::uint64_t lItems) {
                          auto& watch = *static_cast<Watch*>(pUser);
                          watch.told.push_back(lItems);
                          return watch.tell_(lItems);
                      },
                      this),
                  0);
    }

    std::vector<std::uint64_t> told;

private:
    std::function<int(std::uint64_t)> tell_;
};

class LibraryCancel : public LibraryFixture {
protected:
    void expectCancelled(halvane_export* pRun) const {
        EXPECT_EQ(halvane_export_run(pRun), HALVANE_NOT_WRITTEN);
        EXPECT_STREQ(halvane_export_error(pRun), "cancelled");
        EXPECT_EQ(nlohmann::json::parse(halvane_export_report(pRun))["outcome"], "cancelled");
        EXPECT_EQ(document("out.xml"), "<Old/>");
    }
};

} // namespace

TEST_F(LibraryCancel, ProgressIsToldAtTheFirstItemAndAtTheEnd) {
    const Watch watch(*pExport, [](std::uint64_t) { return 0; });
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    ASSERT_GE(watch.told.size(), 2U);
    EXPECT_EQ(watch.told.front(), 1U);
    EXPECT_EQ(watch.told.back(), 3U);
}

TEST_F(LibraryCancel, ProgressThatWantsItEndsTheRun) {
    const Watch watch(*pExport, [](std::uint64_t) { return 1; });
    expectCancelled(pExport.get());
    EXPECT_EQ(watch.told.front(), 1U);
}

TEST_F(LibraryCancel, AnotherThreadEndsTheRun) {
    const Watch watch(*pExport, [this](std::uint64_t) {
        std::thread([this] { halvane_export_cancel(pExport.get()); }).join();
        return 0;
    });
    expectCancelled(pExport.get());
}

TEST_F(LibraryCancel, BeforeARunEndsIt) {
    halvane_export_cancel(pExport.get());
    expectCancelled(pExport.get());
}

TEST_F(LibraryCancel, EndsOneRunAlone) {
    halvane_export_cancel(pExport.get());
    expectCancelled(pExport.get());
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(document("out.xml"), sTownsDocument);
}

TEST_F(LibraryCancel, OfAnotherExportLeavesTheRunAlone) {
    const ExportHandle pOther = townsInto("other.xml");
    const Watch watch(*pExport, [&](std::uint64_t) {
        halvane_export_cancel(pOther.get());
        return 0;
    });
    EXPECT_EQ(halvane_export_run(pExport.get()), HALVANE_WRITTEN);
    EXPECT_EQ(halvane_export_run(pOther.get()), HALVANE_NOT_WRITTEN);
}

TEST_F(LibraryCancel, EndsADescription) {
    const DescriptionHandle pDescription(halvane_description_new(program.file("towns.geojson").c_str()));
    halvane_description_cancel(pDescription.get());
    EXPECT_EQ(halvane_description_run(pDescription.get()), HALVANE_NOT_WRITTEN);
    EXPECT_STREQ(halvane_description_error(pDescription.get()),
                 "nothing was described: the description was cancelled");
    EXPECT_EQ(halvane_description_run(pDescription.get()), HALVANE_WRITTEN);
}

TEST_F(LibraryCancel, RunsOnSeveralThreadsTakeTurns) {
    constexpr int nThreads = 4;
    constexpr int nRuns = 10;
    std::vector<std::thread> threads;
    std::vector<int> failures(nThreads, 0);
    for (int nThread = 0; nThread < nThreads; ++nThread) {
        threads.emplace_back([&, nThread] {
            const ExportHandle pMine = townsInto("out" + std::to_string(nThread) + ".xml");
            for (int nRun = 0; nRun < nRuns; ++nRun)
                failures.at(static_cast<std::size_t>(nThread)) +=
                    halvane_export_run(pMine.get()) == HALVANE_WRITTEN ? 0 : 1;
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_THAT(failures, ElementsAre(0, 0, 0, 0));
    for (int nThread = 0; nThread < nThreads; ++nThread)
        EXPECT_EQ(document("out" + std::to_string(nThread) + ".xml"), sTownsDocument);
}

} // namespace halvane::test
