#include "core/recent_files.h"

#include <gtest/gtest.h>

#include "core/scratch_dir.h"

namespace zv {
namespace {

using test::ScratchDir;
using Paths = std::vector<std::string>;

TEST(RecentFiles, NinthDropsTheOldestAndReAddingMovesToTheFront) {
  RecentFiles recent;
  for (const char* path : {"/s/A", "/s/B", "/s/C", "/s/D", "/s/E", "/s/F", "/s/G", "/s/H"}) {
    recent.add(path);
  }
  EXPECT_EQ(recent.entries(),
            (Paths{"/s/H", "/s/G", "/s/F", "/s/E", "/s/D", "/s/C", "/s/B", "/s/A"}));
  recent.add("/s/I");
  EXPECT_EQ(recent.entries(),
            (Paths{"/s/I", "/s/H", "/s/G", "/s/F", "/s/E", "/s/D", "/s/C", "/s/B"}));
  // The oldest, given in another case, moves to the front and nothing is dropped.
  recent.add("/S/b");
  EXPECT_EQ(recent.entries(),
            (Paths{"/S/b", "/s/I", "/s/H", "/s/G", "/s/F", "/s/E", "/s/D", "/s/C"}));
  recent.add("/s/h");
  EXPECT_EQ(recent.entries(),
            (Paths{"/s/h", "/S/b", "/s/I", "/s/G", "/s/F", "/s/E", "/s/D", "/s/C"}));
  EXPECT_EQ(recent.size(), RecentFiles::kCapacity);
}

TEST(RecentFiles, LoadSkipsEmptyEntriesAndSaveFillsAllEight) {
  ScratchDir dir;
  auto file = dir.write("s.ini",
                        "[Recent Files]\nFile0=/a.chr\nFile1=\nFile2=/b.chr\nFile3=/A.CHR\n"
                        "File7=/c.chr\nFile8=/ignored.chr\n");
  Settings settings = Settings::fromFile(file);
  RecentFiles recent;
  recent.add("/stale.chr");
  recent.load(settings);
  EXPECT_EQ(recent.entries(), (Paths{"/a.chr", "/b.chr", "/c.chr"}));

  recent.add("/d.chr");
  recent.save(settings);
  const char* expected[] = {"/d.chr", "/a.chr", "/b.chr", "/c.chr", "", "", "", ""};
  for (int i = 0; i < 8; ++i) {
    std::string key = "File" + std::to_string(i);
    EXPECT_EQ(settings.getString("Recent Files", key, "missing"), expected[i]) << key;
  }
  RecentFiles reread;
  reread.load(settings);
  EXPECT_EQ(reread.entries(), recent.entries());
}

TEST(RecentFiles, CommandNumbers) {
  EXPECT_EQ(kFirstRecentFileCommand, 1062);
  EXPECT_EQ(RecentFiles::commandFor(0), 1062);
  EXPECT_EQ(RecentFiles::commandFor(7), 1069);
  EXPECT_EQ(RecentFiles::indexForCommand(1062), 0);
  EXPECT_EQ(RecentFiles::indexForCommand(1069), 7);
  EXPECT_EQ(RecentFiles::indexForCommand(1061), -1);
  EXPECT_EQ(RecentFiles::indexForCommand(1070), -1);
}

TEST(RecentFiles, MenuText) {
  struct Case {
    int number;
    const char* path;
    const char* workingDir;
    size_t maxChars;
    const char* expected;
  };
  const Case cases[] = {
      {1, "/home/u/sheets/R&D.chr", "/home/u/sheets", 0, "&1 R&&D.chr"},
      {2, "/home/u/sheets/old/x.chr", "/home/u/sheets/", 0, "&2 old/x.chr"},
      {3, "/home/u/other/x.chr", "/home/u/sheets", 0, "&3 /home/u/other/x.chr"},
      {4, "/home/u/sheetsX/x.chr", "/home/u/sheets", 0, "&4 /home/u/sheetsX/x.chr"},
      {5, "/a/b/x.chr", "", 0, "&5 /a/b/x.chr"},
      {6, "/a/b/x.chr", "/a/b", 100, "&6 x.chr"},
      // Shortened in the middle, keeping the file name.
      {7, "/home/someone/long directory/a.chr", "/tmp", 20, "&7 /home/someo.../a.chr"},
      {8, "/home/someone/a-rather-long-name.chr", "/tmp", 16, "&8 /home/...ame.chr"},
      {1, "/q/&&&.chr", "/tmp", 0, "&1 /q/&&&&&&.chr"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(RecentFiles::menuText(c.number, c.path, c.workingDir, c.maxChars), c.expected)
        << c.path;
  }
}

TEST(RecentFiles, MenuTextIsAtMost254Characters) {
  std::string longPath = "/" + std::string(300, 'x') + ".chr";
  std::string text = RecentFiles::menuText(1, longPath, "/tmp", 0);
  EXPECT_EQ(text.size(), 254u);
  EXPECT_EQ(text.substr(0, 5), "&1 /x");
  // A doubled "&" is never cut in half at the limit.
  text = RecentFiles::menuText(1, "/x" + std::string(250, '&'), "/tmp", 0);
  EXPECT_EQ(text.size(), 253u);
  EXPECT_EQ(text.substr(3), "/x" + std::string(248, '&'));
  text = RecentFiles::menuText(1, "/" + std::string(250, '&'), "/tmp", 0);
  EXPECT_EQ(text.size(), 254u);
}

TEST(RecentFiles, ShortenInMiddle) {
  const std::tuple<const char*, size_t, const char*> cases[] = {
      {"short", 10, "short"},
      {"exactly10!", 10, "exactly10!"},
      {"/dir/sub/file.chr", 13, "/.../file.chr"},
      {"abcdefghij", 7, "ab...ij"},
      {"abcdefghij", 3, "..."},
      {"abcdefghij", 2, ".."},
  };
  for (const auto& [text, maxChars, expected] : cases) {
    EXPECT_EQ(shortenInMiddle(text, maxChars), expected) << text << " " << maxChars;
    EXPECT_LE(shortenInMiddle(text, maxChars).size(), maxChars);
  }
}

}  // namespace
}  // namespace zv
