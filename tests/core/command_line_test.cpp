#include <gtest/gtest.h>

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
