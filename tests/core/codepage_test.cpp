#include "core/codepage.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(Codepage, GlyphsAndHighRangeConvert) {
  struct Case {
    const char* system;
    const char* utf8;
  };
  const Case cases[] = {
      {"2\xBD", "2\xC2\xBD"},                        // one half
      {"\xBC\xBE\xD7", "\xC2\xBC\xC2\xBE\xC3\x97"},  // quarter, three quarters, times
      {"\x80", "\xE2\x82\xAC"},                      // euro sign
      {"\x8A\x9F", "\xC5\xA0\xC5\xB8"},              // S caron, Y diaeresis
      {"plain", "plain"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(windows1252ToUtf8(c.system), c.utf8) << c.system;
    EXPECT_EQ(utf8ToWindows1252(c.utf8), c.system) << c.utf8;
  }
}

TEST(Codepage, EveryByteRoundTrips) {
  std::string all;
  for (int b = 1; b < 256; ++b)
    all += static_cast<char>(b);
  EXPECT_EQ(utf8ToWindows1252(windows1252ToUtf8(all)), all);
}

TEST(Codepage, UnrepresentableAndInvalidInput) {
  EXPECT_EQ(utf8ToWindows1252("\xE4\xB8\xAD"), "?");     // a CJK character
  EXPECT_EQ(utf8ToWindows1252("2\xBD"), "2\xBD");        // not UTF-8: already system text
  EXPECT_EQ(utf8ToWindows1252("\xC0\xAF"), "\xC0\xAF");  // overlong: not UTF-8
  EXPECT_EQ(utf8ToWindows1252("\xC3"), "\xC3");          // cut short
}

}  // namespace
}  // namespace zv
