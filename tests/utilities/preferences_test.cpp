// Game system preferences: what a .pref file declares, and the store that configparam and
// setconfigparam reach through the expression engine.

#include "utilities/game_system_preferences.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/numbers.h"
#include "expr/compiler.h"
#include "expr/item_fields.h"
#include "expr/symbols.h"
#include "utilities/install.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefText =
    "[Configuration]\r\nGameSystem=Testland\r\n"
    "[Bonus]\r\nType=number\r\nPrompt=Bonus to hit\r\nDefaultValue=3\r\n"
    "[Dice]\r\nType=checkbox\r\n"
    "[Slider]\r\nType=slider\r\nPrompt=Not a control\r\n"
    "[Speed]\r\nType=Dropdown\r\nPrompt=Speed\r\nDefaultValue=Medium\r\nValues=Low;Medium;High\r\n";

class PreferencesTest : public ::testing::Test {
 protected:
  PreferencesTest() : host_(nullptr), installed_(host_) {
    dir_ = fs::temp_directory_path() / ("zv-prefs-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
    std::ofstream(dir_ / "testland.pref", std::ios::binary) << kPrefText;
    std::ofstream(dir_ / "broken.pref", std::ios::binary) << "[Configuration]\r\n";
    std::ofstream(dir_ / "tavlo.ini", std::ios::binary) << "[zarvel]\r\nMeasure=-1\r\n";
    clearGameSystems();
    settings_ = std::make_unique<Settings>(Settings::fromFile(dir_ / "tavlo.ini"));
    engineContext_->preferences.useFractions = false;
  }
  ~PreferencesTest() override {
    clearGameSystems();
    fs::remove_all(dir_);
  }

  std::string eval(std::string_view text) {
    Value value;
    if (parseExp(&table_, text, value) != 0) return "error";
    return describe(value);
  }
  static std::string describe(const Value& value) {
    if (value.isInteger()) return "int " + std::to_string(value.integer());
    if (value.isFloat()) return "float " + valueToText(value);
    return "text " + value.text();
  }

  HeadlessHost host_;
  HostInstallation installed_;
  fs::path dir_;
  std::unique_ptr<Settings> settings_;
  FileInfo sheet_;
  SymbolTable table_;
  ScopedEngineContext engineContext_;
};

TEST_F(PreferencesTest, AFileDeclaresItsParametersInOrder) {
  std::optional<PreferenceFile> file = parsePreferenceFile(kPrefText);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->gameSystem, "Testland");
  ASSERT_EQ(file->parameters.size(), 2u) << "no Prompt and an unknown type are passed over";
  EXPECT_EQ(file->parameters[0].name, "Bonus");
  EXPECT_EQ(file->parameters[0].defaultValue, "3");
  EXPECT_EQ(file->parameters[1].type, "dropdown");
  EXPECT_EQ(file->parameters[1].choices, (std::vector<std::string>{"Low", "Medium", "High"}));
  EXPECT_FALSE(parsePreferenceFile("[Bonus]\r\nType=number\r\nPrompt=x\r\n"));
}

TEST_F(PreferencesTest, ExpressionsReadAndStoreParameters) {
  wireUtilities(engineContext_.context(), *settings_, dir_);
  ASSERT_NE(findGameSystem("Testland"), nullptr);
  EXPECT_EQ(findGameSystem("Testland")->preferences.size(), 2u);
  sheet_.gameSystemName = "Testland";
  table_.owner = &sheet_;

  EXPECT_EQ(eval("configparam(\"Bonus\")"), "int 3") << "the default until one is stored";
  EXPECT_EQ(eval("configparam(\" Speed \")"), "text Medium");
  EXPECT_EQ(eval("configparam(\"Nothing\")"), "int 0");
  EXPECT_EQ(eval("setconfigparam(\"Bonus\", \"1.5\")"), "int 1");
  EXPECT_EQ(eval("configparam(\"Bonus\")"), "float 1.5");
  EXPECT_EQ(settings_->getString("ConfigParams\\Testland", "Bonus", ""), "1.5");
  EXPECT_EQ(eval("setconfigparam(\"Bonus\", \"- 4\")"), "int 1");
  EXPECT_EQ(eval("configparam(\"Bonus\")"), "int -4") << "blanks are skipped";

  EXPECT_EQ(eval("setconfigparam(\"UseMetric\", 1)"), "int 1");
  EXPECT_EQ(settings_->getInt("zarvel", "Measure", -1), 0) << "metric";
  EXPECT_EQ(eval("configparam(\"UseMetric\")"), "int 1");
  EXPECT_EQ(eval("setconfigparam(\"PrintInheritedOptions\", 0)"), "int 1");
  EXPECT_FALSE(engine().preferences.printInheritedOptions);
  EXPECT_EQ(eval("setconfigparam(\"PrintInheritedOptions\", 1)"), "int 1");
  EXPECT_TRUE(engine().preferences.printInheritedOptions);

  EXPECT_EQ(eval("getsourcedir(0)"), "text " + dir_.string());
  EXPECT_EQ(eval("rolldice(\"2+3x4\")"), "text 20");
}

TEST_F(PreferencesTest, WithoutTheUtilities) {
  EXPECT_EQ(eval("configparam(\"Bonus\")"), "int 0");
  EXPECT_EQ(eval("setconfigparam(\"Bonus\", 2)"), "int 0");
  EXPECT_EQ(eval("rolldice(\"3d6\")"), "int 0");
  EXPECT_EQ(eval("getsourcedir(0)"), "text ");
}

}  // namespace
}  // namespace zv
