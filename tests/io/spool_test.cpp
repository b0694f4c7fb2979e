#include "IoSupport.h"
#include "support/FileSizeLimit.h"

#include "io/Spool.h"

namespace halvane::test {
namespace {

using io::OutputBuffer;
using io::Spool;

std::string read(Spool& spool, std::uint64_t nOffset, std::uint64_t nBytes) {
    std::string sText;
    io::StringSink sink(sText);
    OutputBuffer out(sink, 100);
    spool.copy({nOffset, nBytes}, out);
    out.flush();
    return sText;
}

std::string numbered(std::size_t nBytes) {
    std::string sText;
    while (sText.size() < nBytes)
        sText += std::to_string(sText.size()) + " ";
    sText.resize(nBytes);
    return sText;
}

TEST(Spool, GivesBackAnyRangeWhileInMemory) {
    Spool spool("");
    spool.out().put("0123456789");
    spool.out().put("abc");
    EXPECT_EQ(spool.size(), 13U);
    EXPECT_EQ(read(spool, 0, 13), "0123456789abc");
    EXPECT_EQ(read(spool, 9, 2), "9a");
    EXPECT_EQ(read(spool, 5, 0), "");
}

TEST(Spool, GivesBackAnyRangeOnceItIsOnDisk) {
    const TemporaryFolder folder;
    Spool spool(folder.path().string());
    const std::string sText = numbered(Spool::memoryLimit + 3000000);
    for (std::size_t n = 0; n < sText.size(); n += 12345)
        spool.out().put(std::string_view(sText).substr(n, 12345));
    EXPECT_EQ(spool.size(), sText.size());
    EXPECT_EQ(read(spool, 0, sText.size()), sText);
    EXPECT_EQ(read(spool, Spool::memoryLimit - 10, 20), sText.substr(Spool::memoryLimit - 10, 20));
    spool.out().put("more");
    EXPECT_EQ(read(spool, sText.size(), 4), "more");
}

TEST(Spool, CopiesIntoItselfsNeighbour) {
    Spool first("");
    Spool second("");
    first.out().put("abc");
    first.copy({1, 2}, second.out());
    EXPECT_EQ(read(second, 0, 2), "bc");
}

TEST(Spool, StaysBrokenOnceItsFileFailed) {
    if (!FileSizeLimit::isPossible)
        GTEST_SKIP() << FileSizeLimit::whyNot;
    const TemporaryFolder folder;
    Spool spool(folder.path().string());
    {
        const FileSizeLimit limit(Spool::memoryLimit);
        const auto fill = [&] {
            spool.out().put(numbered(Spool::memoryLimit));
            spool.out().put(numbered(1U << 20U));
        };
        EXPECT_EQ(failureOf(fill), number(FailureNumber::DeviceIo));
    }
    EXPECT_EQ(failureOf([&] { spool.requireWhole(); }), number(FailureNumber::DeviceIo));
    EXPECT_EQ(failureOf([&] { (void)read(spool, 0, 1); }), number(FailureNumber::DeviceIo));
}

TEST(Spool, KeepsSmallPiecesInOrderWhileTheyAreWrittenBehind) {
    const TemporaryFolder folder;
    Spool spool(folder.path().string());
    std::string sExpected;
    for (std::size_t n = 0; sExpected.size() < 3 * Spool::memoryLimit; ++n) {
        const std::string sPiece = std::to_string(n) + ",";
        spool.out().put(sPiece);
        sExpected += sPiece;
        // Reading waits for what is on its way.
        if (n % 700'000 == 0) {
            ASSERT_EQ(read(spool, sExpected.size() - sPiece.size(), sPiece.size()), sPiece);
        }
    }
    EXPECT_EQ(read(spool, 0, spool.size()), sExpected);
}

TEST(Spool, TellsOfAFailureBehindItWithTheNextBuffersAndToWhoeverAsks) {
    if (!FileSizeLimit::isPossible)
        GTEST_SKIP() << FileSizeLimit::whyNot;
    const TemporaryFolder folder;
    Spool spool(folder.path().string());
    const FileSizeLimit limit(Spool::memoryLimit + (2U << 20U));
    const auto fill = [&] {
        for (std::size_t nPut = 0; nPut < 2 * Spool::memoryLimit; nPut += 10)
            spool.out().put("0123456789");
    };
    EXPECT_EQ(failureOf(fill), number(FailureNumber::DeviceIo));
    EXPECT_LT(spool.size(), Spool::memoryLimit + (4U << 20U));
    EXPECT_EQ(failureOf([&] { spool.requireWhole(); }), number(FailureNumber::DeviceIo));
    EXPECT_EQ(failureOf([&] { (void)read(spool, 0, 1); }), number(FailureNumber::DeviceIo));
}

TEST(Spool, FinishesWritingBeforeItGoes) {
    const TemporaryFolder folder;
    for (int n = 0; n < 20; ++n) {
        Spool spool(folder.path().string());
        spool.out().put(numbered(Spool::memoryLimit));
        for (int nPiece = 0; nPiece < 100'000; ++nPiece)
            spool.out().put("0123456789");
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(OutputBuffer, HandsBytesOnInOrderWhateverTheirSizes) {
    std::string sText;
    std::string sExpected;
    io::StringSink sink(sText);
    OutputBuffer out(sink, 16);
    for (std::size_t n = 0; n < 50; ++n) {
        const std::string sPiece = numbered(n);
        out.put(sPiece);
        out.put('|');
        sExpected += sPiece + "|";
        EXPECT_EQ(out.position(), sExpected.size());
    }
    out.flush();
    EXPECT_EQ(sText, sExpected);
}

} // namespace
} // namespace halvane::test
