#include "core/numbers.h"

#include <gtest/gtest.h>

#include "core/headless_host.h"

namespace zv {
namespace {

struct DisplayCase {
  double value;
  bool fractions;
  const char* expected;
};

TEST(FormatFloat, DisplayForms) {
  const DisplayCase cases[] = {
      {0.0, true, "0"},      {2.5, true, "2\xBD"},        {2.5, false, "2.5"},
      {0.25, true, "\xBC"},  {0.25, false, "0.25"},       {-2.5, true, "-2\xBD"},
      {3.75, true, "3\xBE"}, {-0.5, true, "-\xBD"},       {1234567.0, true, "1234567"},
      {0.1, true, "0.1"},    {2.125, true, "2.125"},      {1.0 / 3.0, false, "0.3333333"},
      {-7.0, false, "-7"},   {2.99999999999, false, "3"}, {12345678.125, false, "12345678.125"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(formatFloat(c.value, c.fractions), c.expected) << c.value << " " << c.fractions;
  }
}

TEST(FormatFloat, FileForms) {
  const std::pair<double, const char*> cases[] = {
      {0.0, "0"},
      {6.0, "6"},
      {-7.0, "-7"},
      {2.5, "2.5"},
      {1.0 / 3.0, "0.33333333"},
      {0.1, "0.1"},
      {-0.5, "-0.5"},
      {3.000001, "3.0000010000000001"},
      {1e-7, "0.0000001"},
      {2147483647.0, "2147483647"},
      {-2147483648.0, "-2147483648"},
      {5e9, "5000000000"},
  };
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(formatRealForFile(value), expected) << value;
  }
}

TEST(FormatFloat, FileFormReadsBackToTheSameText) {
  for (double v : {1.0 / 3.0, 3.000001, 0.1, 123.456, -9.87654321, 1e-7, 5e9 + 0.5}) {
    std::string once = formatRealForFile(v);
    EXPECT_EQ(formatRealForFile(parseReal(once)), once) << once;
  }
}

TEST(ParseReal, AcceptsGlyphsAndLeadingNumbers) {
  HeadlessHost quiet(nullptr);
  HostInstallation installed(quiet);
  const std::pair<const char*, double> cases[] = {
      {"2\xBD", 2.5},  {"1\xBC", 1.25}, {"\xBE", 0.75},      {"-3\xBD", -3.5}, {"1 2\xBC", 12.25},
      {"12abc", 12.0}, {"abc", 0.0},    {"-4.5e2x", -450.0}, {"+.5", 0.5},     {"", 0.0},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_DOUBLE_EQ(parseReal(text), expected) << text;
  }
  EXPECT_TRUE(quiet.transcript().empty());
}

TEST(ParseReal, StrayCharacterBeforeGlyphIsReported) {
  HeadlessHost quiet(nullptr);
  HostInstallation installed(quiet);
  EXPECT_EQ(parseReal("-2x\xBD"), 0.0);
  ASSERT_EQ(quiet.transcript().size(), 1u);
  EXPECT_EQ(quiet.transcript()[0], "[Error] Poorly formatted floating point value: 2x\xBD");
}

TEST(LeadingInteger, ReadsLikeAtolAndWraps) {
  EXPECT_EQ(leadingInteger("12abc"), 12);
  EXPECT_EQ(leadingInteger("  -7"), -7);
  EXPECT_EQ(leadingInteger("abc"), 0);
  EXPECT_EQ(leadingInteger("4294967297"), 1);
}

}  // namespace
}  // namespace zv
