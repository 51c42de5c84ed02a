#include "core/text.h"

#include <gtest/gtest.h>

#include "core/headless_host.h"

namespace zv {
namespace {

TEST(CaseTable, FoldsWindows1252Letters) {
  struct Case {
    unsigned char upper, lower;
  };
  const Case pairs[] = {{'A', 'a'},   {'Z', 'z'},   {0xC0, 0xE0}, {0xDE, 0xFE},
                        {0x8A, 0x9A}, {0x8C, 0x9C}, {0x8E, 0x9E}, {0x9F, 0xFF}};
  for (const Case& c : pairs) {
    EXPECT_EQ(toUpperChar(c.lower), c.upper) << int(c.lower);
    EXPECT_EQ(toLowerChar(c.upper), c.lower) << int(c.upper);
    EXPECT_TRUE(isLetterChar(c.upper) && isLetterChar(c.lower)) << int(c.upper);
  }
  // The multiplication and division signs, the quarter glyphs and the sharp s have no other case.
  for (unsigned char c : std::string_view("\xD7\xF7\xBC\xBD\xBE\xDF_1")) {
    EXPECT_EQ(toUpperChar(c), c) << int(c);
    EXPECT_EQ(toLowerChar(c), c) << int(c);
  }
  for (unsigned char c : std::string_view("\xD7\xF7\xBD_1 "))
    EXPECT_FALSE(isLetterChar(c)) << int(c);
  EXPECT_TRUE(isLetterChar(0xDF));
}

TEST(CompareIgnoringCase, OrdersAndMatches) {
  EXPECT_EQ(compareIgnoringCase("ABC", "abc"), 0);
  EXPECT_LT(compareIgnoringCase("abc", "ABD"), 0);
  EXPECT_LT(compareIgnoringCase("ab", "abc"), 0);
  EXPECT_LT(compareIgnoringCase("\xC9pee",
                                "\xE9PEE"
                                "e"),
            0);
  EXPECT_TRUE(equalsIgnoringCase("\xC9p\xC9", "\xE9P\xE9"));
  EXPECT_FALSE(equalsIgnoringCase("abc", "abcd"));
  EXPECT_TRUE(startsWithIgnoringCase("Character Sheet", "CHAR"));
  EXPECT_TRUE(endsWithIgnoringCase("hero.CHR", ".chr"));
  EXPECT_EQ(findIgnoringCase("Strength and STRENGTH", "strength", 1), 13u);
  EXPECT_EQ(findIgnoringCase("abc", "x"), std::string::npos);
}

TEST(ReplaceToken, ReplacesEveryCaseInsensitiveOccurrence) {
  struct Case {
    const char* text;
    const char* from;
    const char* to;
    int count;
    const char* result;
  };
  const Case cases[] = {
      {"x*2+X", "x", "Climb", 2, "Climb*2+Climb"},
      {"level+Level", "LEVEL", "7", 2, "7+7"},
      {"aaa", "aa", "b", 1, "ba"},
      {"abc", "", "z", 0, "abc"},
      {"abc", "q", "z", 0, "abc"},
  };
  for (const Case& c : cases) {
    std::string text = c.text;
    EXPECT_EQ(replaceToken(text, 64, c.from, c.to), c.count) << c.text;
    EXPECT_EQ(text, c.result) << c.text;
  }
}

TEST(ReplaceToken, OverflowReportsAndKeepsText) {
  HeadlessHost quiet(nullptr);
  HostInstallation installed(quiet);
  std::string text = "x+x";
  EXPECT_EQ(replaceToken(text, 8, "x", "abcd"), -1);  // "abcd+abcd" needs 10 bytes
  EXPECT_EQ(text, "x+x");
  ASSERT_EQ(quiet.transcript().size(), 1u);
  EXPECT_EQ(quiet.transcript()[0], "[Error] Error in replaceToken -- temporary string too small");
  std::string fits = "x+x";
  EXPECT_EQ(replaceToken(fits, 8, "x", "abc"), 2);  // "abc+abc" and its terminator: 8 bytes
}

TEST(TextHelpers, TrimSplitTruncate) {
  EXPECT_EQ(trim("  a b \t\r\n"), "a b");
  EXPECT_EQ(split("a;;b", ';'), (std::vector<std::string>{"a", "", "b"}));
  EXPECT_EQ(truncateToCapacity("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 24), "ABCDEFGHIJKLMNOPQRSTUVW");
  EXPECT_EQ(truncateToCapacity("abc", 0), "");
}

}  // namespace
}  // namespace zv
