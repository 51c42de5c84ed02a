#include "core/value.h"

#include <gtest/gtest.h>

#include "core/headless_host.h"

namespace zv {
namespace {

struct ForceCase {
  const char* label;
  Value value;
  std::int32_t integer;
  double real;
};

TEST(Value, ForceIntegerAndForceFloat) {
  const ForceCase cases[] = {
      {"integer", Value(7), 7, 7.0},
      {"negative integer", Value(-12), -12, -12.0},
      {"real truncates toward zero", Value(-3.7), -3, -3.7},
      {"real above range", Value(3e9), 2147483647, 3e9},
      {"real below range", Value(-3e9), -2147483647 - 1, -3e9},
      {"word", Value("abc"), 1, 1.0},
      {"empty text", Value(""), 0, 0.0},
      {"half glyph", Value("2\xBD"), 2, 2.5},
      {"glyph alone", Value("\xBD"), 1, 0.5},
      {"leading number", Value("12abc"), 12, 12.0},
      {"plus sign", Value("+7"), 7, 7.0},
      {"minus decimal", Value("-2.25"), -2, -2.25},
      {"point first", Value(".5"), 1, 0.5},
      {"blank first", Value(" 12"), 1, 1.0},
      {"exponent", Value("1e3x"), 1, 1000.0},
  };
  for (const auto& c : cases) {
    Value asInteger = c.value;
    forceInteger(asInteger);
    ASSERT_TRUE(asInteger.isInteger()) << c.label;
    EXPECT_EQ(asInteger.integer(), c.integer) << c.label;

    Value asFloat = c.value;
    forceFloat(asFloat);
    ASSERT_TRUE(asFloat.isFloat()) << c.label;
    EXPECT_DOUBLE_EQ(asFloat.real(), c.real) << c.label;

    // The non-changing forms agree and leave the value as it was.
    EXPECT_EQ(integerOf(c.value), c.integer) << c.label;
    EXPECT_DOUBLE_EQ(floatOf(c.value), c.real) << c.label;
  }
}

TEST(Value, KindsAndCopies) {
  Value none;
  EXPECT_EQ(none.kind(), ValueKind::Integer);
  EXPECT_EQ(none.integer(), 0);

  EXPECT_EQ(Value(1.5).kind(), ValueKind::Float);
  EXPECT_EQ(Value("x").kind(), ValueKind::String);
  EXPECT_EQ(static_cast<int>(ValueKind::ArrayRef), 3);
  EXPECT_EQ(static_cast<int>(ValueKind::LocalRef), 4);

  Value original("text");
  Value copy = original;
  copy.text() += "!";
  EXPECT_EQ(original.text(), "text");
  EXPECT_EQ(copy.text(), "text!");
}

TEST(Value, BadGlyphTextReportsAndGivesZero) {
  HeadlessHost hostObject(nullptr);
  HostInstallation installed(hostObject);
  Value value("1x\xBD");
  forceFloat(value);
  EXPECT_DOUBLE_EQ(value.real(), 0.0);
  ASSERT_EQ(hostObject.transcript().size(), 1u);
  EXPECT_EQ(hostObject.transcript()[0], "[Error] Poorly formatted floating point value: 1x\xBD");
}

}  // namespace
}  // namespace zv
