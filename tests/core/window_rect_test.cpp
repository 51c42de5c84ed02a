#include "core/window_rect.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(WindowRect, Parse) {
  const std::pair<const char*, std::optional<WindowRect>> cases[] = {
      {"10 20 800 600", WindowRect{10, 20, 800, 600}},
      {"-5 10 800 600", WindowRect{-5, 10, 800, 600}},
      {"  1\t2  +3 -4 trailing", WindowRect{1, 2, 3, -4}},
      {"", std::nullopt},
      {"10 20 800", std::nullopt},
      {"a 20 800 600", std::nullopt},
      {"10 - 800 600", std::nullopt},
      {"99999999999 0 0 0", WindowRect{2147483647, 0, 0, 0}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(parseWindowRect(text), expected) << text;
  }
}

TEST(WindowRect, FormatReadsBack) {
  const WindowRect rects[] = {{0, 0, 0, 0}, {10, 20, 800, 600}, {-7, -8, 1, 2}};
  EXPECT_EQ(formatWindowRect(rects[1]), "10 20 800 600");
  EXPECT_EQ(formatWindowRect(rects[2]), "-7 -8 1 2");
  for (const WindowRect& rect : rects)
    EXPECT_EQ(parseWindowRect(formatWindowRect(rect)), rect);
}

TEST(WindowRect, ClampedToAScreenOf1024By768) {
  struct Case {
    const char* text;
    WindowRect expected;
  };
  const Case cases[] = {
      {"-5 10 800 600", {0, 10, 800, 600}},
      {"984 708 800 600", {984, 708, 800, 600}},  // the last places still kept
      {"985 708 800 600", {0, 708, 800, 600}},
      {"984 709 800 600", {984, 0, 800, 600}},
      {"100 -1 800 600", {100, 0, 800, 600}},
      {"-1 -1 5000 5000", {0, 0, 5000, 5000}},  // the size stands
  };
  for (const auto& c : cases) {
    EXPECT_EQ(parseWindowRect(c.text, 1024, 768), c.expected) << c.text;
  }
  EXPECT_EQ(parseWindowRect("", 1024, 768), std::nullopt);
}

}  // namespace
}  // namespace zv
