// What is shown of an export's progress at which moment, by a clock of the test.

#include "cli/SchemaCheck.h"
#include "cli/progress/ProgressJson.h"
#include "cli/progress/ProgressLine.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace halvane::test {

using cli::ProgressJson;
using cli::ProgressLine;
using nlohmann::json;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

class ProgressForms : public ::testing::Test {
protected:
    ProgressForms() : pStream_(std::tmpfile(), &std::fclose) {}

    [[nodiscard]] std::string taken() {
        std::array<char, 4096> buffer{};
        std::fseek(pStream_.get(), lTaken_, SEEK_SET);
        const std::size_t nRead = std::fread(buffer.data(), 1, buffer.size(), pStream_.get());
        lTaken_ += static_cast<long>(nRead);
        std::fseek(pStream_.get(), lTaken_, SEEK_SET);
        return {buffer.data(), nRead};
    }
    /// The lines that the progress wrote, which keep to their schema.
    [[nodiscard]] std::vector<json> takenJson() {
        const auto schema = json::parse(std::ifstream(HALVANE_SOURCE_DIR "/docs/progress.schema.json"));
        std::vector<json> lines;
        std::istringstream stream(taken());
        for (std::string sLine; std::getline(stream, sLine);) {
            lines.push_back(json::parse(sLine));
            EXPECT_THAT(breaches(schema, lines.back()), IsEmpty());
        }
        return lines;
    }

    [[nodiscard]] cli::TimedProgress::Clock clock() {
        return [this] { return moment_; };
    }
    void pass(double dSeconds) {
        moment_ += std::chrono::milliseconds(static_cast<std::int64_t>(dSeconds * 1000));
    }
    [[nodiscard]] Progress::AskRows rows() {
        return [this] { return rows_; };
    }

    std::FILE* stream() { return pStream_.get(); }

    std::optional<host::RowsUnderWay> rows_ = host::RowsUnderWay{1, "Roads", 0, 4000};

private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> pStream_;
    long lTaken_ = 0;
    std::chrono::steady_clock::time_point moment_ = std::chrono::steady_clock::now();
};

class OnTerminal : public ProgressForms {
protected:
    /// After a second of a loop, and another one.
    std::string after(double dSeconds, std::int64_t lRead) {
        rows_->lRead = 0;
        ProgressLine line(stream(), clock());
        line.setRows(rows());
        pass(1);
        line.update(1);
        rows_->lRead = lRead;
        pass(dSeconds);
        line.update(2);
        const std::string sText = taken();
        const std::size_t nLast = sText.rfind('\r');
        return sText.substr(nLast + 1, sText.rfind("\x1B[K") - nLast - 1);
    }
};

} // namespace

TEST_F(OnTerminal, IsABarWithTheSpeedAndTheTimeLeft) {
    EXPECT_EQ(after(2, 1000), "Roads [#####               ] 25 %, 500 rows/s, 6 s left");
    EXPECT_EQ(after(100, 1000), "Roads [#####               ] 25 %, 10 rows/s, 5 min 0 s left");
}

TEST_F(OnTerminal, IsFullAndNotMoreWhereTheDataHasMoreRowsThanItSays) {
    EXPECT_EQ(after(1, 5000), "Roads [####################] 100 %, 5000 rows/s, 0 s left");
}

TEST_F(OnTerminal, TellsItemsWhereTheNumberOfRowsIsNotKnown) {
    rows_->lAll.reset();
    EXPECT_EQ(after(2, 1000), "2 items, 3.0 s");
    static_cast<void>(taken());
    rows_.reset();
    ProgressLine line(stream(), clock());
    line.setRows(rows());
    pass(0.5);
    line.update(7);
    EXPECT_EQ(taken(), "\r7 items, 0.5 s\x1B[K");
}

TEST_F(OnTerminal, CountsExportsOfAList) {
    rows_->sTable = "";
    ProgressLine line(stream(), clock());
    line.setUnit("exports");
    line.setRows(rows());
    pass(1);
    rows_->lRead = 1000;
    line.update(1000);
    EXPECT_EQ(taken(), "\r[#####               ] 25 %, 1000 of 4000 exports\x1B[K");
}

TEST_F(OnTerminal, ComesAfterHalfASecondAndTenTimesASecondAtMost) {
    ProgressLine line(stream(), clock());
    pass(0.499);
    line.update(1);
    EXPECT_EQ(taken(), "");
}

TEST_F(ProgressForms, OfProgramsAreLinesTwiceASecondAndOneAtTheEnd) {
    ProgressJson progress(stream(), clock());
    progress.setRows(rows());
    for (int i = 1; i <= 20; ++i) {
        pass(0.1);
        rows_->lRead = i * 100;
        progress.update(static_cast<std::uint64_t>(i));
    }
    rows_.reset();
    progress.clear();
    progress.clear();
    const auto lines = takenJson();
    ASSERT_THAT(lines, SizeIs(5));
    EXPECT_EQ(lines[1], (json{{"event", "progress"},
                              {"seconds", 1.0},
                              {"items", 10},
                              {"unit", "rows"},
                              {"of", "Roads"},
                              {"done", 1000},
                              {"all", 4000},
                              {"perSecond", 1000.0},
                              {"secondsLeft", 3.0}}));
    EXPECT_EQ(lines[4]["items"], 20);
    EXPECT_EQ(lines[4]["done"], nullptr);
}

TEST_F(ProgressForms, BeginTheSpeedAnewWithEachLoop) {
    ProgressJson progress(stream(), clock());
    progress.setRows(rows());
    pass(1);
    progress.update(1);
    rows_ = host::RowsUnderWay{2, "Towns", 10, std::nullopt};
    pass(1);
    progress.update(2);
    rows_->lRead = 40;
    pass(2);
    progress.update(3);
    const auto lines = takenJson();
    ASSERT_THAT(lines, SizeIs(3));
    EXPECT_EQ(lines[1]["perSecond"], nullptr);
    EXPECT_EQ(lines[2]["perSecond"], 15.0);
    EXPECT_EQ(lines[2]["secondsLeft"], nullptr);
}

} // namespace halvane::test
