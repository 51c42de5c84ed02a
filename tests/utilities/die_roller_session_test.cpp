// The die roller window's state without the window: settings read and written, a roll's
// outcome, the lists it keeps and the quick buttons.

#include "utilities/die_roller_session.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "core/headless_host.h"
#include "core/random.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

class DieRollerSessionTest : public ::testing::Test {
 protected:
  DieRollerSessionTest() : host_(nullptr), installed_(host_) {
    file_ = fs::temp_directory_path() / ("zv-dice-" + std::to_string(::getpid()) + ".ini");
    std::ofstream(file_, std::ios::binary)
        << "[Die Roller]\r\ndierollbutton2=2d8+1\r\ndieroll1=3d6\r\ndieroll2=d20\r\n"
           "dieroll4=lost\r\nShow BODY=1\r\nDie Font Size=500\r\n";
    settings_ = std::make_unique<Settings>(Settings::fromFile(file_));
  }
  ~DieRollerSessionTest() override { fs::remove(file_); }

  HeadlessHost host_;
  HostInstallation installed_;
  fs::path file_;
  std::unique_ptr<Settings> settings_;
};

TEST_F(DieRollerSessionTest, SettingsReadAndWritten) {
  DieRollerSettings loaded = DieRollerSettings::load(*settings_);
  EXPECT_EQ(loaded.buttons[0], "d100");
  EXPECT_EQ(loaded.buttons[1], "2d8+1");
  EXPECT_EQ(loaded.remembered, (std::vector<std::string>{"3d6", "d20"})) << "up to the first gap";
  EXPECT_TRUE(loaded.showBody);
  EXPECT_TRUE(loaded.showRolls);
  EXPECT_EQ(loaded.dieFontSize, 16) << "a size out of range keeps the default";
  EXPECT_EQ(loaded.screenPosition, "-1 -1 -1 -1");

  loaded.remembered = {"4dF"};
  loaded.saveRemembered(*settings_);
  loaded.dieFontSize = 20;
  loaded.saveWindow(*settings_);
  DieRollerSettings again = DieRollerSettings::load(*settings_);
  EXPECT_EQ(again.remembered, (std::vector<std::string>{"4dF"}));
  EXPECT_EQ(settings_->getString("Die Roller", "dieroll4", "gone"), "gone");
  EXPECT_EQ(again.dieFontSize, 20);
  EXPECT_EQ(again.buttons[1], "2d8+1");
}

TEST_F(DieRollerSessionTest, FontSizes) {
  EXPECT_EQ(parseDieFontSize(" 12 "), 12);
  for (const char* bad : {"", "5", "73", "12pt", "x"}) {
    host_.clearTranscript();
    EXPECT_FALSE(parseDieFontSize(bad)) << bad;
    ASSERT_EQ(host_.transcript().size(), 1u);
    EXPECT_EQ(host_.transcript()[0],
              "[Incorrect Die Size] The font size for the die is incorrectly formatted, too small "
              "or too large.");
  }
}

TEST_F(DieRollerSessionTest, RollsInTheWindow) {
  DieRollerSession session(DieRollerSettings::load(*settings_));
  seedRandom(1);
  std::optional<RollOutcome> first = session.roll("3d6");
  ASSERT_TRUE(first);
  EXPECT_EQ(first->result, "17");
  EXPECT_EQ(first->bodyLine, "17 / 5 BODY");
  EXPECT_EQ(first->sound, "3dice.wav");
  EXPECT_EQ(first->rolls.size(), 3u);
  EXPECT_EQ(session.history().remembered().front(), "3d6") << "already remembered: unmoved";
  EXPECT_TRUE(session.history().results().empty()) << "the empty result before is not kept";

  EXPECT_FALSE(session.roll("32768")) << "a failure shows its box";
  EXPECT_EQ(session.result(), "17") << "and leaves the old result";
  EXPECT_EQ(session.history().results(), (std::vector<std::string>{"17"}));
  EXPECT_FALSE(session.roll("0*3d6")) << "an empty result";
  EXPECT_FALSE(session.roll(""));

  ASSERT_TRUE(session.roll("d4", true));
  EXPECT_EQ(session.history().remembered().front(), "3d6") << "quick buttons aren't remembered";
  ASSERT_TRUE(session.roll("2d4"));
  EXPECT_EQ(session.history().remembered().front(), "2d4");
  EXPECT_EQ(session.rollForScript("5c10").value_or("").empty(), false);
  EXPECT_TRUE(session.settings().showRolls);

  EXPECT_TRUE(session.setButtonCaption(3, "2d8+1"));
  EXPECT_FALSE(session.setButtonCaption(11, "d6"));
  EXPECT_FALSE(session.setButtonCaption(1, ""));
  EXPECT_EQ(session.settings().buttons[2], "2d8+1");
  session.forget(0);
  EXPECT_EQ(session.settings().remembered.front(), "2d4");
}

}  // namespace
}  // namespace zv
