#include "telling/Text.h"

#include <gtest/gtest.h>

namespace halvane {

TEST(PrintableText, IsOneLineWithoutControlCharacters) {
    EXPECT_EQ(printable("a\nb\r\nc\x1B[31md\x7F.\n"), "a b  c\\u001B[31md\\u007F.");
    EXPECT_EQ(printable("Zürich\t€"), "Zürich €");
}

TEST(PrintableText, ShowsByNumberWhatSteersATerminalOrTheReader) {
    EXPECT_EQ(printable("a\u0080b\u009B2Jc\u009F\u00A0d"), "a\\u0080b\\u009B2Jc\\u009F\u00A0d");
    EXPECT_EQ(printable("\u200E\u200F\u061C\u202A\u202E\u2066\u2069\u200D"),
              "\\u200E\\u200F\\u061C\\u202A\\u202E\\u2066\\u2069\u200D");
    EXPECT_EQ(printable("one\u2028two\u2029three\u0085four"), "one\\u2028two\\u2029three\\u0085four");
}

TEST(PrintableText, ShowsBytesThatAreNoText) {
    EXPECT_EQ(printable("a\x9B[2Jb\xFF"), "a\\x9B[2Jb\\xFF");
}

TEST(PrintableText, HoldsNoPasswords) {
    EXPECT_EQ(printable("pwd=x"), "pwd=***");
}

TEST(PrintableText, EndsWhereNobodyReadsOn) {
    EXPECT_EQ(printable(std::string(5000, 'x')), std::string(2000, 'x') + "…");
    EXPECT_EQ(printable(std::string(1999, 'x') + "é"), std::string(1999, 'x') + "…");
}

TEST(PrintableText, MasksAPasswordThatTheEndCuts) {
    EXPECT_EQ(printable(std::string(1990, 'x') + " a://u:secret@host"),
              std::string(1990, 'x') + " a://u:***…");
}

TEST(CountedThings, AreSingularOnlyWhenThereIsOne) {
    EXPECT_EQ(counted(0, "item"), "0 items");
    EXPECT_EQ(counted(1, "item"), "1 item");
    EXPECT_EQ(counted(2, "item"), "2 items");
}

} // namespace halvane
