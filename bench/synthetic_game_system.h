#pragma once
// A generator of a large synthetic game system for the load benchmarks: 20,000 master items in
// 40 categories (every 25th entry a sublist of four members), item options, 300 definitions,
// strings and an option tree of 60 groups. The text form writes the items through macros; the
// binary form is the same data sheet compiled.

#include <filesystem>
#include <fstream>
#include <string>

#include "core/strfmt.h"
#include "formats/data_sheet_document.h"
#include "formats/datasheet/data_sheet_writer.h"
#include "formats/tokens/tokenstream.h"

namespace zv::bench {

inline constexpr int kSyntheticItems = 20000;

/// The text form, with macros.
inline std::string makeSyntheticText(int items = kSyntheticItems) {
  std::string text =
      "\"Data Sheet file v. 1\" gamesystem Synthia title \"Synthetic game system\" version 253 "
      "level 1\ncopyright \"Generated for benchmarks\" cdelay 0\ndatafile end\n";
  text += "define\n";
  for (int i = 0; i < 100; ++i) {
    text += strprintf("var Base%d %d\nfunc Twice%d(n) n*2+Base%d\narray Table%d[4] \"1,2,3,%d\"\n",
                      i, i, i, i, i, i);
  }
  text += "end\n";
  text +=
      "$$macro Gear(name, cost) {{item \"$(name)\" cost $(cost) formula x*$(cost) "
      "varname $(name) level 1 cat Gear}}\n"
      "$$macro Fine(name, cost) {{item \"$(name)\" cost $(cost) formula x*$(cost) "
      "varname $(name) level 1 opt add Fine 1 begin mult Heavy 2 alias Hv end end}}\n";
  const int perCategory = items / 40;
  int made = 0;
  for (int c = 0; c < 40 && made < items; ++c) {
    text += strprintf("cat \"Category %d\"\n", c);
    for (int i = 0; i < perCategory && made < items; ++i) {
      if (i % 25 == 24 && made + 5 <= items) {
        text += strprintf("sublist \"Pack %d\" memlist\n", made);
        ++made;
        for (int m = 0; m < 4; ++m, ++made)
          text += strprintf("$$Gear(Member%d, %d)\n", made, 1 + m);
        text += "end\n";
        continue;
      }
      text += strprintf(i % 10 == 0 ? "$$Fine(Item%d, %d)\n" : "$$Gear(Item%d, %d)\n", made,
                        1 + made % 17);
      ++made;
    }
    text += "end\n";
  }
  text += "strings\n";
  for (int i = 0; i < 50; ++i)
    text += strprintf("Label%d \"Text of label %d\"\n", i, i);
  text += "end\noptions\n";
  for (int g = 0; g < 60; ++g) {
    text += strprintf("list Group%d\n", g);
    for (int o = 0; o < 10; ++o)
      text += strprintf("add Opt%d_%d %d\n", g, o, o);
    text += "end\n";
  }
  text += "end\nend\n";
  return text;
}

/// Writes synthia_text.cds (text with macros) and synthia.cds (binary) into `dir`. False when a
/// file could not be written or read back.
inline bool writeSyntheticGameSystem(const std::filesystem::path& dir) {
  std::filesystem::create_directories(dir);
  {
    std::ofstream out(dir / "synthia_text.cds", std::ios::binary);
    out << makeSyntheticText();
    if (!out) return false;
  }
  std::unique_ptr<DataSheetDocument> document = openDataSheetDocument(dir / "synthia_text.cds");
  if (!document) return false;
  MemoryByteStream binary;
  if (writeDataSheetDocument(*document, binary, true) != kWriteOk) return false;
  std::ofstream out(dir / "synthia.cds", std::ios::binary);
  out << binary.data();
  return static_cast<bool>(out);
}

}  // namespace zv::bench
