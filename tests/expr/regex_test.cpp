#include "expr/regex.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace zv {
namespace {

using Span = RegexMatch::Span;
constexpr Span kUnset{-1, -1};
const std::vector<Span> kNoMatch{};

struct MatchCase {
  std::string pattern;
  std::string text;
  std::vector<Span> groups;  // group 0 first; empty when nothing may match; later groups unset
};

void PrintTo(const MatchCase& c, std::ostream* out) {
  *out << '"' << c.pattern << "\" on \"" << c.text << '"';
}

void expectMatch(const MatchCase& c) {
  SCOPED_TRACE("pattern \"" + c.pattern + "\" on \"" + c.text + "\"");
  std::string error;
  std::optional<Regex> regex = Regex::compile(c.pattern, &error);
  ASSERT_TRUE(regex.has_value()) << error;
  RegexMatch match = regex->search(c.text);
  EXPECT_FALSE(match.exhausted);
  EXPECT_EQ(match.error, nullptr);
  EXPECT_EQ(match.matched, !c.groups.empty());
  for (size_t n = 0; n < match.groups.size(); ++n) {
    Span expected = n < c.groups.size() ? c.groups[n] : kUnset;
    EXPECT_EQ(match.groups[n], expected) << "group " << n;
  }
}

class RegexMatchTable : public testing::TestWithParam<MatchCase> {};
TEST_P(RegexMatchTable, FindsExpectedSpans) {
  expectMatch(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    LiteralsAndAny, RegexMatchTable,
    testing::Values(MatchCase{"abc", "xxabcxx", {{2, 5}}}, MatchCase{"a.c", "abc", {{0, 3}}},
                    MatchCase{"a.c", "ac", kNoMatch}, MatchCase{"", "abc", {{0, 0}}},
                    MatchCase{"", "", {{0, 0}}}, MatchCase{"b", "", kNoMatch},
                    MatchCase{"abd", "ababd", {{2, 5}}}, MatchCase{"B", "abc", kNoMatch},
                    MatchCase{"b", "ABC", kNoMatch}));

INSTANTIATE_TEST_SUITE_P(
    Anchors, RegexMatchTable,
    testing::Values(MatchCase{"^ab", "abab", {{0, 2}}}, MatchCase{"^b", "ab", kNoMatch},
                    MatchCase{"b$", "abab", {{3, 4}}}, MatchCase{"a$", "aab", kNoMatch},
                    MatchCase{"^$", "", {{0, 0}}}, MatchCase{"^$", "a", kNoMatch},
                    MatchCase{"a^b", "a^b", kNoMatch}, MatchCase{"x$|y", "yx", {{0, 1}}},
                    MatchCase{"^a|b$", "cab", {{2, 3}}}, MatchCase{"(^a)", "ba", kNoMatch}));

INSTANTIATE_TEST_SUITE_P(
    SetsAndRanges, RegexMatchTable,
    testing::Values(MatchCase{"[abc]+", "xxbcay", {{2, 5}}}, MatchCase{"[a-c]", "dcb", {{1, 2}}},
                    MatchCase{"[^a-c]", "abcd", {{3, 4}}}, MatchCase{"[0-9]+", "a1b22", {{1, 2}}},
                    MatchCase{"[]a]", "x]", {{1, 2}}}, MatchCase{"[^]a]+", "]ab]", {{2, 3}}},
                    MatchCase{"[-a]+", "x-a-", {{1, 4}}}, MatchCase{"[a-]+", "b-a", {{1, 3}}},
                    MatchCase{"[a-c-e]+", "edcbaf", {{0, 5}}}, MatchCase{"[a-a]", "ba", {{1, 2}}},
                    MatchCase{"[a\\]", "x\\", {{1, 2}}}, MatchCase{"[.]", "a.", {{1, 2}}},
                    MatchCase{"[*+?]+", "a+*?b", {{1, 4}}}, MatchCase{"[A-Z]", "abc", kNoMatch}));

INSTANTIATE_TEST_SUITE_P(
    Repetition, RegexMatchTable,
    testing::Values(MatchCase{"a*", "aaab", {{0, 3}}}, MatchCase{"a*", "baaa", {{0, 0}}},
                    MatchCase{"ba*", "baaa", {{0, 4}}}, MatchCase{"a+", "baaa", {{1, 4}}},
                    MatchCase{"a+", "bbb", kNoMatch}, MatchCase{"ab?c", "ac", {{0, 2}}},
                    MatchCase{"ab?c", "abc", {{0, 3}}}, MatchCase{"ab?c", "abbc", kNoMatch},
                    MatchCase{"a.*b", "axbxbx", {{0, 5}}}, MatchCase{"a.*b.*c", "abcbc", {{0, 5}}},
                    MatchCase{"[ab]*b", "aabab", {{0, 5}}}, MatchCase{"x*y", "xxxz xy", {{5, 7}}},
                    MatchCase{"(ab)*c", "ababc", {{0, 5}, {2, 4}}},
                    MatchCase{"(ab)+", "xabab", {{1, 5}, {3, 5}}},
                    MatchCase{"(ab)?c", "c", {{0, 1}, kUnset}},
                    MatchCase{"(a+)(a+)", "aaaa", {{0, 4}, {0, 3}, {3, 4}}},
                    MatchCase{"(a|b)*", "abba", {{0, 4}, {3, 4}}},
                    MatchCase{"((a)|b)+", "ab", {{0, 2}, {1, 2}, {0, 1}}},
                    MatchCase{"(a*)?b", "aab", {{0, 3}, {0, 2}}},
                    MatchCase{"(ab*)*c", "abbac", {{0, 5}, {3, 4}}},
                    MatchCase{"(a.)?a", "aa", {{0, 1}, kUnset}}));

INSTANTIATE_TEST_SUITE_P(
    Alternation, RegexMatchTable,
    testing::Values(MatchCase{"a|ab", "ab", {{0, 1}}}, MatchCase{"ab|a", "ab", {{0, 2}}},
                    MatchCase{"(a|ab)c", "abc", {{0, 3}, {0, 2}}},
                    MatchCase{"(a|ab)(c|bcd)(d*)", "abcd", {{0, 4}, {0, 1}, {1, 4}, {4, 4}}},
                    MatchCase{"cat|dog", "hotdog", {{3, 6}}}, MatchCase{"a||b", "b", {{0, 0}}},
                    MatchCase{"(|a)b", "ab", {{0, 2}, {0, 1}}}, MatchCase{"x|y|z", "--z", {{2, 3}}},
                    MatchCase{"(a)|(b)", "b", {{0, 1}, kUnset, {0, 1}}}));

INSTANTIATE_TEST_SUITE_P(
    Escapes, RegexMatchTable,
    testing::Values(MatchCase{"a\\.b", "axb a.b", {{4, 7}}}, MatchCase{"\\(x\\)", "(x)", {{0, 3}}},
                    MatchCase{"\\*", "a*", {{1, 2}}}, MatchCase{"\\\\", "a\\b", {{1, 2}}},
                    MatchCase{"\\n", "\nn", {{1, 2}}}, MatchCase{"1\\+1", "11+1", {{1, 4}}},
                    MatchCase{"\\[a]", "[a]", {{0, 3}}}, MatchCase{"a\\|b", "a|b", {{0, 3}}},
                    MatchCase{"\\^\\$", "x^$", {{1, 3}}}));

INSTANTIATE_TEST_SUITE_P(
    Groups, RegexMatchTable,
    testing::Values(
        MatchCase{"(a)(b)(c)(d)(e)(f)(g)(h)(i)",
                  "abcdefghi",
                  {{0, 9}, {0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}, {6, 7}, {7, 8}, {8, 9}}},
        MatchCase{"(((x)))", "x", {{0, 1}, {0, 1}, {0, 1}, {0, 1}}},
        MatchCase{"([0-9]+)-([0-9]+)-([0-9]+)", "2024-01-05", {{0, 10}, {0, 4}, {5, 7}, {8, 10}}},
        MatchCase{"()", "ab", {{0, 0}, {0, 0}}},
        MatchCase{"(a(b)?)+", "aba", {{0, 3}, {2, 3}, {1, 2}}}));

INSTANTIATE_TEST_SUITE_P(HighBytes, RegexMatchTable,
                         testing::Values(MatchCase{"\xe9+", "caf\xe9\xe9", {{3, 5}}},
                                         MatchCase{"[\xe0-\xff]+", "ab\xe9\xfc", {{2, 4}}},
                                         MatchCase{"[^a-z]", "ab\xe9", {{2, 3}}},
                                         MatchCase{"[a-\xe9]+", "\xea\x80z", {{1, 3}}},
                                         MatchCase{".", "\xff", {{0, 1}}},
                                         MatchCase{"\xe9", "\xc9", kNoMatch},
                                         MatchCase{"\\\xbd", "1\xbd", {{1, 2}}}));

struct ErrorCase {
  std::string pattern;
  std::string message;
};

void PrintTo(const ErrorCase& c, std::ostream* out) {
  *out << '"' << c.pattern << '"';
}

class RegexErrorTable : public testing::TestWithParam<ErrorCase> {};

TEST_P(RegexErrorTable, RefusesWithMessage) {
  const ErrorCase& c = GetParam();
  std::string error = "unchanged";
  EXPECT_FALSE(Regex::compile(c.pattern, &error).has_value()) << c.pattern;
  EXPECT_EQ(error, c.message) << c.pattern;
}

INSTANTIATE_TEST_SUITE_P(
    Messages, RegexErrorTable,
    testing::Values(
        ErrorCase{"a)", "unmatched ()"}, ErrorCase{"(a", "unmatched ()"},
        ErrorCase{"((a)", "unmatched ()"}, ErrorCase{"(a))", "unmatched ()"},
        ErrorCase{")", "unmatched ()"}, ErrorCase{"(1)(2)(3)(4)(5)(6)(7)(8)(9)(10)", "too many ()"},
        ErrorCase{"((((((((((x))))))))))", "too many ()"},
        ErrorCase{"(a*)*", "*+ operand could be empty"},
        ErrorCase{"(a?)+", "*+ operand could be empty"},
        ErrorCase{"(a|)*", "*+ operand could be empty"},
        ErrorCase{"(a|b*)+", "*+ operand could be empty"},
        ErrorCase{"()+", "*+ operand could be empty"}, ErrorCase{"^*", "*+ operand could be empty"},
        ErrorCase{"$+", "*+ operand could be empty"},
        ErrorCase{"(^)*", "*+ operand could be empty"}, ErrorCase{"a**", "nested *?+"},
        ErrorCase{"a*?", "nested *?+"}, ErrorCase{"a?*", "nested *?+"},
        ErrorCase{"a++", "nested *?+"}, ErrorCase{"(ab)+?", "nested *?+"},
        ErrorCase{"()?+", "nested *?+"}, ErrorCase{"[abc", "unmatched []"},
        ErrorCase{"[", "unmatched []"}, ErrorCase{"[]", "unmatched []"},
        ErrorCase{"[^]", "unmatched []"}, ErrorCase{"[z-a]", "invalid [] range"},
        ErrorCase{"[\x80-\x7f]", "invalid [] range"}, ErrorCase{"*a", "?+* follows nothing"},
        ErrorCase{"a|+b", "?+* follows nothing"}, ErrorCase{"(?a)", "?+* follows nothing"},
        ErrorCase{"abc\\", "trailing \\"}, ErrorCase{"(a\\", "trailing \\"}));

TEST(Regex, MissingPatternIsNullArgument) {
  std::string error;
  EXPECT_FALSE(Regex::compile(std::string_view{}, &error).has_value());
  EXPECT_EQ(error, "NULL argument");
  // An empty pattern that is present is valid.
  EXPECT_TRUE(Regex::compile(std::string(), &error).has_value());
}

TEST(Regex, ErrorPointerMayBeNull) {
  EXPECT_FALSE(Regex::compile("a)", nullptr).has_value());
  EXPECT_TRUE(Regex::compile("a", nullptr).has_value());
}

TEST(Regex, ProgramSizeLimit) {
  // A literal of n bytes is one instruction of 3 + n bytes, and the end of the program 3 more.
  std::string error;
  std::optional<Regex> largest = Regex::compile(std::string(32760, 'a'), &error);
  ASSERT_TRUE(largest.has_value()) << error;
  EXPECT_EQ(largest->programSize(), 32766u);
  EXPECT_FALSE(Regex::compile(std::string(32761, 'a'), &error).has_value());
  EXPECT_EQ(error, "regexp too big");
  // Each set counts its 32-byte bitmap: 1000 sets of 35 bytes are over the limit.
  std::string sets;
  for (int i = 0; i < 1000; ++i)
    sets += "[ab]";
  EXPECT_FALSE(Regex::compile(sets, &error).has_value());
  EXPECT_EQ(error, "regexp too big");
  // A syntax error is reported before the size.
  EXPECT_FALSE(Regex::compile(std::string(40000, 'a') + ")", &error).has_value());
  EXPECT_EQ(error, "unmatched ()");
}

TEST(Regex, GroupCount) {
  struct Case {
    const char* pattern;
    int groups;
  };
  for (Case c : {Case{"abc", 0}, Case{"(a)|(b)", 2}, Case{"((a)(b))", 3},
                 Case{"(1)(2)(3)(4)(5)(6)(7)(8)(9)", 9}, Case{"\\(a\\)", 0}, Case{"[(]", 0}}) {
    std::optional<Regex> regex = Regex::compile(c.pattern, nullptr);
    ASSERT_TRUE(regex.has_value()) << c.pattern;
    EXPECT_EQ(regex->groupCount(), c.groups) << c.pattern;
  }
}

TEST(Regex, SearchFromOffset) {
  struct Case {
    const char* pattern;
    const char* text;
    size_t from;
    Span whole;
  };
  for (Case c :
       {Case{"a", "aXa", 1, {2, 3}}, Case{"a", "aXa", 3, kUnset}, Case{"^a", "aXa", 1, kUnset},
        Case{"^a", "aXa", 0, {0, 1}}, Case{"$", "abc", 3, {3, 3}}, Case{"b*", "abc", 1, {1, 2}},
        Case{"x", "abc", 9, kUnset}, Case{"", "abc", 4, kUnset}}) {
    std::optional<Regex> regex = Regex::compile(c.pattern, nullptr);
    ASSERT_TRUE(regex.has_value()) << c.pattern;
    RegexMatch match = regex->search(c.text, c.from);
    EXPECT_EQ(match.matched, c.whole != kUnset) << c.pattern << " from " << c.from;
    EXPECT_EQ(match.groups[0], c.whole) << c.pattern << " from " << c.from;
  }
}

TEST(Regex, GroupText) {
  std::optional<Regex> regex = Regex::compile("([a-z]+)=([0-9]*)|(none)", nullptr);
  ASSERT_TRUE(regex.has_value());
  std::string text = "set hp=12;";
  RegexMatch match = regex->search(text);
  ASSERT_TRUE(match.matched);
  EXPECT_EQ(match.group(text, 0), "hp=12");
  EXPECT_EQ(match.group(text, 1), "hp");
  EXPECT_EQ(match.group(text, 2), "12");
  EXPECT_EQ(match.group(text, 3), "");
  EXPECT_EQ(match.group(text, 10), "");
  EXPECT_EQ(match.start(), 4);
  EXPECT_EQ(match.end(), 9);
}

TEST(Regex, PathologicalBacktrackingRunsOutCleanly) {
  for (const char* pattern : {"(a|a)*b", "(x+x+)+y", "(a|aa)*c"}) {
    std::optional<Regex> regex = Regex::compile(pattern, nullptr);
    ASSERT_TRUE(regex.has_value()) << pattern;
    regex->setStepLimit(200'000);
    RegexMatch match = regex->search(std::string(40, pattern[1]) + "!");
    EXPECT_FALSE(match.matched) << pattern;
    EXPECT_TRUE(match.exhausted) << pattern;
  }
}

TEST(Regex, StepLimitCoversAllStartPositions) {
  std::optional<Regex> regex = Regex::compile("[a-z]+0", nullptr);
  ASSERT_TRUE(regex.has_value());
  std::string text(2000, 'q');
  RegexMatch unlimited = regex->search(text);
  EXPECT_FALSE(unlimited.matched);
  EXPECT_FALSE(unlimited.exhausted);
  regex->setStepLimit(10'000);
  EXPECT_TRUE(regex->search(text).exhausted);
  EXPECT_TRUE(regex->search("abc0").matched);
}

TEST(Regex, LongTextsNeedNoCallStack) {
  std::optional<Regex> regex = Regex::compile("(ab)*c", nullptr);
  ASSERT_TRUE(regex.has_value());
  std::string text;
  for (int i = 0; i < 100'000; ++i)
    text += "ab";
  text += "c";
  RegexMatch match = regex->search(text);
  ASSERT_TRUE(match.matched);
  EXPECT_EQ(match.groups[0], Span(0, 200'001));
  EXPECT_EQ(match.groups[1], Span(199'998, 200'000));
}

TEST(Regex, ChoiceStackHasABound) {
  // Every turn of a group loop keeps three choices; a million turns is beyond the bound.
  std::optional<Regex> regex = Regex::compile("(a)*b", nullptr);
  ASSERT_TRUE(regex.has_value());
  RegexMatch match = regex->search(std::string(1'000'000, 'a') + "b");
  EXPECT_FALSE(match.matched);
  EXPECT_TRUE(match.exhausted);
}

TEST(Regex, RunTimeFaults) {
  std::optional<Regex> regex = Regex::compile("a", nullptr);
  ASSERT_TRUE(regex.has_value());
  RegexMatch missing = regex->search(std::string_view{});
  EXPECT_FALSE(missing.matched);
  EXPECT_STREQ(missing.error, "NULL parameter");

  Regex taken = std::move(*regex);
  EXPECT_TRUE(taken.search("a").matched);
  RegexMatch moved = regex->search("a");  // NOLINT(bugprone-use-after-move): on purpose
  EXPECT_FALSE(moved.matched);
  EXPECT_STREQ(moved.error, "corrupted program");
}

}  // namespace
}  // namespace zv
