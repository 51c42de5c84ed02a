#include "core/headless_host.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "core/messages.h"
#include "core/text.h"

namespace zv {
namespace {

TEST(HeadlessHost, BoxesBecomeOneLineEach) {
  HeadlessHost h(nullptr);
  HostInstallation installed(h);
  showError("Too many lists.");
  showTitled(Severity::Warning, "Level Mismatch", "first\r\n\r\nsecond\nthird\rfourth");
  showMessage(Severity::Message, "Done");
  reportInternalError("/src/core/item.cpp", 42);
  ASSERT_EQ(h.transcript().size(), 4u);
  EXPECT_EQ(h.transcript()[0], "[Error] Too many lists.");
  EXPECT_EQ(h.transcript()[1], "[Level Mismatch] first\\n\\nsecond\\nthird\\rfourth");
  EXPECT_EQ(h.transcript()[2], "[Message] Done");
  EXPECT_EQ(h.transcript()[3],
            "[Error] Please report the following information to customer support with details of "
            "what you did:\\n\\nInternal error: file item.cpp, line 42.");
}

TEST(HeadlessHost, AnswersAreTakenInOrderThenDefaults) {
  HeadlessHost h(nullptr);
  HostInstallation installed(h);
  auto file = std::filesystem::temp_directory_path() / "zv-answers-test.txt";
  std::ofstream(file) << "no\r\nRetry\nCancel\nSwords\nAxes;Bows\n";
  ASSERT_TRUE(h.loadAnswers(file));
  std::filesystem::remove(file);

  EXPECT_EQ(askQuestion("Save", "Save Changes?", ButtonSet::YesNoCancel), Button::No);
  // An answer that isn't a button of the box gives the default.
  EXPECT_EQ(askQuestion("Q", "Sure?", ButtonSet::YesNo, Button::No), Button::No);
  EXPECT_EQ(h.enterValue("Value", "Enter a level", "3"), std::nullopt);

  ChoiceRequest one{"Pick", "Pick one", {"Axes", "Swords", "Bows"}, false, {}};
  EXPECT_EQ(h.choose(one), std::vector<int>{1});
  ChoiceRequest many{"Pick", "Pick some", {"Axes", "Swords", "Bows"}, true, {}};
  EXPECT_EQ(h.choose(many), (std::vector<int>{0, 2}));

  // Exhausted: the default button, the initial value, the initial selection, no file.
  EXPECT_EQ(askQuestion("Q", "Sure?", ButtonSet::OkCancel, Button::Cancel), Button::Cancel);
  EXPECT_EQ(h.enterValue("Value", "Enter a level", "3"), std::optional<std::string>("3"));
  ChoiceRequest initial{"Pick", "Pick", {"a", "b"}, false, {1}};
  EXPECT_EQ(h.choose(initial), std::vector<int>{1});
  EXPECT_TRUE(h.chooseFiles(FileRequest{}).empty());
  EXPECT_EQ(h.transcript().size(), 9u);
}

TEST(HeadlessHost, ClockSleepAndInterruptBudget) {
  HeadlessHost h(nullptr);
  EXPECT_TRUE(h.now().valid);
  h.setFixedTime(LocalTime{2024, 2, 3, 4, 5, 6, true});
  EXPECT_EQ(h.now().day, 3);
  h.sleepMs(1500);
  h.sleepMs(10);
  EXPECT_EQ(h.sleptMs(), 1510);
  h.setInterruptAfterPolls(2);
  EXPECT_FALSE(h.interruptRequested());
  EXPECT_FALSE(h.interruptRequested());
  EXPECT_TRUE(h.interruptRequested());
}

TEST(HeadlessHost, RunsProcessesWithTimeout) {
  HeadlessHost h(nullptr);
  ProcessResult ok = h.runProcess("exit 3", 5000);
  EXPECT_TRUE(ok.started);
  EXPECT_TRUE(ok.finished);
  EXPECT_EQ(ok.exitCode, 3);
  ProcessResult slow = h.runProcess("sleep 5", 50);
  EXPECT_TRUE(slow.started);
  EXPECT_FALSE(slow.finished);
}

TEST(Buttons, NamesRoundTripIgnoringCase) {
  for (Button b : {Button::Ok, Button::Cancel, Button::Yes, Button::No, Button::Abort,
                   Button::Retry, Button::Ignore}) {
    EXPECT_EQ(buttonFromName(toLower(buttonName(b))), b);
  }
  EXPECT_EQ(buttonFromName("Maybe"), Button::None);
}

}  // namespace
}  // namespace zv
