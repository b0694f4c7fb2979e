// Which characters XML allows, and what becomes of the others.

#include "xml/dom/Characters.h"

#include "xml/dom/Dom.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using dom::DataCharacter;

TEST(Names, HoldLettersOfAnyAlphabetAndOneColon) {
    for (const char* pName :
         {"a", "Z", "_", "a-b.c9", "\u00C0", "\u00F8\u00B7", "\u037F\u0300", "\u200C\u203F", "\u2070",
          "\u2C00", "\u3001", "\uF900", "\uFDF0", "\U00010000", "p:a", "p:\u00C0"})
        EXPECT_TRUE(dom::isXmlName(pName)) << pName;
    for (const char* pName :
         {"",       ":",       "a:",     ":a",     "a:b:c",  "9",          "-",      ".",
          "a b",    "a@",      "a[",     "a`",     "a{",     "a/",         "p:9",    "\u00D7",
          "\u037E", "\u00B7a", "\u0300", "\u2041", "\uFFFE", "\U000F0000", "a\u00D7"})
        EXPECT_FALSE(dom::isXmlName(pName)) << pName;
    EXPECT_FALSE(dom::isXmlName("\x80"));
    EXPECT_FALSE(dom::isXmlName("a\xC3"));
}

struct Bytes {
    std::string_view sBytes;
    DataCharacter::Kind kind;
    std::size_t nBytes;
};

TEST(CharactersOfData, AreToldByTheirBytes) {
    using Kind = DataCharacter::Kind;
    using std::string_view_literals::operator""sv;
    for (const Bytes& bytes :
         {Bytes{"\t", Kind::Allowed, 1}, Bytes{"\n", Kind::Allowed, 1}, Bytes{"\r", Kind::Allowed, 1},
          Bytes{"\0"sv, Kind::Forbidden, 1}, Bytes{"\x1F", Kind::Forbidden, 1},
          Bytes{"\x7F", Kind::Allowed, 1}, Bytes{"\uFFFD", Kind::Allowed, 3},
          Bytes{"\uFFFE", Kind::Forbidden, 3}, Bytes{"\uFFFF", Kind::Forbidden, 3},
          Bytes{"\U0010FFFF", Kind::Allowed, 4},
          // No beginning of a sequence.
          Bytes{"\x80", Kind::Invalid, 1}, Bytes{"\xC1\x80", Kind::Invalid, 1},
          Bytes{"\xF5\x80\x80\x80", Kind::Invalid, 1},
          // Overlong forms, surrogates, and beyond the last character.
          Bytes{"\xE0\x9F\x80", Kind::Invalid, 1}, Bytes{"\xED\xA0\x80", Kind::Invalid, 1},
          Bytes{"\xF0\x8F\x80\x80", Kind::Invalid, 1}, Bytes{"\xF4\x90\x80\x80", Kind::Invalid, 1},
          // Their neighbours.
          Bytes{"\xE0\xA0\x80", Kind::Allowed, 3}, Bytes{"\xED\x9F\xBF", Kind::Allowed, 3},
          Bytes{"\xF0\x90\x80\x80", Kind::Allowed, 4}, Bytes{"\xF4\x8F\xBF\xBF", Kind::Allowed, 4},
          // Cut off behind each byte.
          Bytes{"\xC3", Kind::Invalid, 1}, Bytes{"\xC3(", Kind::Invalid, 1},
          Bytes{"\xE6\x97", Kind::Invalid, 2}, Bytes{"\xE6\x97(", Kind::Invalid, 2},
          Bytes{"\xF0\x90\x8D", Kind::Invalid, 3}, Bytes{"\xF0\x90\x8D(", Kind::Invalid, 3}}) {
        const auto character =
            dom::characterOfData(bytes.sBytes.data(), bytes.sBytes.data() + bytes.sBytes.size());
        EXPECT_EQ(character.kind, bytes.kind) << testing::PrintToString(bytes.sBytes);
        EXPECT_EQ(character.nBytes, bytes.nBytes) << testing::PrintToString(bytes.sBytes);
    }
}

TEST(CleanedText, IsNothingWhereAllOfItIsForbidden) {
    using std::string_view_literals::operator""sv;
    EXPECT_TRUE(dom::isNothingOnceCleaned(""));
    EXPECT_TRUE(dom::isNothingOnceCleaned("\0\x01\uFFFE"sv));
    EXPECT_FALSE(dom::isNothingOnceCleaned("\x01 "));
    EXPECT_FALSE(dom::isNothingOnceCleaned("\x01\x80")); // which is replaced
}

TEST(CleanedText, CountsWhatIsDroppedAndWhatIsReplaced) {
    dom::CharacterRepairs repairs;
    EXPECT_EQ(dom::cleaned("a\x01\x80\xE6\x97"
                           "b",
                           repairs),
              "a\uFFFD\uFFFDb");
    EXPECT_EQ(repairs.dropped, 1U);
    EXPECT_EQ(repairs.replaced, 2U);
}

} // namespace
} // namespace halvane::test
