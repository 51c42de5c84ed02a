#include "core/strfmt.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "core/fixed_string.h"

namespace zv {
namespace {

TEST(Strprintf, TextArgumentsOfEveryKind) {
  const std::string whole = "hero.chr and more";
  const std::string_view slice = std::string_view(whole).substr(0, 8);  // no terminator at 8
  const FixedString<16> fixed("Maren");
  const char* pointer = "Vell";
  EXPECT_EQ(strprintf("File '%s' has %d", slice, 3), "File 'hero.chr' has 3");
  EXPECT_EQ(strprintf("%s %s", fixed, pointer), "Maren Vell");
  EXPECT_EQ(strprintf("%s|%s", whole, "lit"), "hero.chr and more|lit");
  EXPECT_EQ(strprintf("%ld%%", 50L), "50%");
  EXPECT_EQ(strprintf("no arguments %d"), "no arguments %d");
}

}  // namespace
}  // namespace zv
