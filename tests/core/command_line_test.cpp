#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "core/command_line.h"
#include "core/conversation.h"

namespace zv {
namespace {

TEST(CommandLine, PrintFlagOnlyAsSeparateFirstWord) {
  struct Case {
    const char* text;
    bool print;
    const char* path;
  };
  const Case cases[] = {
      {"", false, ""},
      {"   hero.chr", false, "hero.chr"},
      {"/p hero.chr", true, "hero.chr"},
      {"  /P   /home/me/hero.chr", true, "/home/me/hero.chr"},
      {"/proj/hero.chr", false, "/proj/hero.chr"},
      {"/p", true, ""},
      {"/home/me/my hero.chr", false, "/home/me/my hero.chr"},
      {"/px.chr", false, "/px.chr"},
  };
  for (const Case& c : cases) {
    CommandLine parsed = parseCommandLine(std::string_view(c.text));
    EXPECT_EQ(parsed.printAndExit, c.print) << c.text;
    EXPECT_EQ(parsed.path, c.path) << c.text;
  }
}

TEST(CommandLine, ArgvWordsJoinWithoutQuoting) {
  CommandLine parsed = parseCommandLine(std::vector<std::string>{"/p", "/tmp/a", "b.chr"});
  EXPECT_TRUE(parsed.printAndExit);
  EXPECT_EQ(parsed.path, "/tmp/a b.chr");
}

TEST(CommandLine, SeveralFilesFromAFileManager) {
  // Files on the disk of this test: one with blanks in its name.
  const std::set<std::string> disk = {"/home/a.chr", "/home/b c.chr", "/home/d.cst"};
  auto exists = [&disk](const std::string& path) { return disk.count(path) > 0; };
  struct Case {
    std::vector<std::string> words;
    std::vector<std::string> paths;  // as the entries give them
    bool print;
  };
  const Case cases[] = {
      {{}, {}, false},
      {{"/home/a.chr"}, {"/home/a.chr"}, false},
      {{"/home/a.chr", "/home/d.cst"}, {"/home/a.chr", "/home/d.cst"}, false},
      // The words together name a file: a path with a blank, given unquoted.
      {{"/home/b", "c.chr"}, {"/home/b c.chr"}, false},
      {{"/p", "/home/a.chr", "/home/d.cst"}, {"/home/a.chr", "/home/d.cst"}, true},
      {{"/p", "/home/b", "c.chr"}, {"/home/b c.chr"}, true},
      // Missing files stay entries, so that each gets its message.
      {{"/home/x.chr", "/home/a.chr"}, {"/home/x.chr", "/home/a.chr"}, false},
      {{"/p"}, {""}, true},
  };
  for (const Case& c : cases) {
    std::vector<std::string> paths;
    for (const CommandLine& entry : splitCommandLine(c.words, exists)) {
      paths.push_back(entry.path);
      EXPECT_EQ(entry.printAndExit, c.print) << entry.path;
    }
    EXPECT_EQ(paths, c.paths) << (c.words.empty() ? "" : c.words.back());
  }
}

TEST(Conversation, ParsesSequencesAndStopsAtErrors) {
  struct Case {
    const char* text;
    bool ok;
    std::vector<std::string> names;
  };
  const Case cases[] = {
      {"[FileOpen(\"/d/x.chr\")][FileExit()]", true, {"FileOpen", "FileExit"}},
      {" [fileprint] [FileClose()] ", true, {"FilePrint", "FileClose"}},
      {"[EditFilterCopy(\"plain.flt\")]", true, {"EditFilterCopy"}},
      {"[FileOpen()]", false, {}},
      {"[FileExit()][FileOpen(\"a\",\"b\")][FileClose()]", false, {"FileExit"}},
      {"[FileOpen(\"a\"", false, {}},
      {"[Bogus()]", false, {}},
      {"FileExit()", false, {}},
      {"", true, {}},
  };
  for (const Case& c : cases) {
    ConversationRequest request = parseConversation(c.text);
    EXPECT_EQ(request.ok, c.ok) << c.text;
    std::vector<std::string> names;
    for (const auto& command : request.commands)
      names.push_back(command.name);
    EXPECT_EQ(names, c.names) << c.text;
  }
}

TEST(Conversation, FormattedRequestsReadBackAsTheirCommands) {
  const std::vector<ConversationCommand> commands = {
      {"FileOpen", {"/home/My Hero (v2).chr"}}, {"FilePrint", {}}, {"FileOpen", {"C:\\x,y.chr"}}};
  const std::optional<std::string> text = formatConversation(commands);
  ASSERT_TRUE(text);
  EXPECT_EQ(*text,
            "[FileOpen(\"/home/My Hero (v2).chr\")][FilePrint()][FileOpen(\"C:\\x,y.chr\")]");
  const ConversationRequest read = parseConversation(*text);
  ASSERT_TRUE(read.ok);
  ASSERT_EQ(read.commands.size(), 3u);
  for (std::size_t i = 0; i < commands.size(); ++i) {
    EXPECT_EQ(read.commands[i].name, commands[i].name);
    EXPECT_EQ(read.commands[i].arguments, commands[i].arguments);
  }
  // A quote inside a path can't be carried.
  EXPECT_FALSE(formatConversation({{"FileOpen", {"say \"hi\".chr"}}}));
}

TEST(Conversation, KeepsArgumentsVerbatim) {
  ConversationRequest request = parseConversation("[FileOpen(\"/tmp/My Hero, v2.chr\")]");
  ASSERT_TRUE(request.ok);
  ASSERT_EQ(request.commands.size(), 1u);
  EXPECT_EQ(request.commands[0].arguments, std::vector<std::string>{"/tmp/My Hero, v2.chr"});
}

TEST(Conversation, RefusesMoreThanTenArguments) {
  std::string text = "[FileOpen(";
  for (int i = 0; i < 11; ++i)
    text += (i ? ",\"a\"" : "\"a\"");
  text += ")]";
  EXPECT_FALSE(parseConversation(text).ok);
}

}  // namespace
}  // namespace zv
