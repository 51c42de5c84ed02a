#include "core/app_settings.h"

#include <variant>

#include "core/numbers.h"
#include "core/paths.h"
#include "core/strfmt.h"
#include "core/text.h"

namespace zv {

namespace fs = std::filesystem;

namespace {

using Member = std::variant<std::string AppSettings::*, long AppSettings::*, bool AppSettings::*,
                            std::optional<WindowRect> AppSettings::*, fs::path AppSettings::*>;

struct Field {
  SettingDefault setting;
  Member member;
};

// One row per key: where it lives, its default as stored, and the member that holds it.
const std::vector<Field>& fields() {
  static const std::vector<Field> table = {
      {{kMainSection, "Source Directory", ""}, &AppSettings::sourceDirectory},
      {{kMainSection, "screenPos", ""}, &AppSettings::screenPos},
      {{kMainSection, "selectItemDlgRect", ""}, &AppSettings::selectItemDlgRect},
      {{kMainSection, "gameSystem", ""}, &AppSettings::gameSystem},
      {{kMainSection, "MaxUndo", "50"}, &AppSettings::maxUndo},
      {{kMainSection, "maximized", "0"}, &AppSettings::maximized},
      {{kMainSection, "binary", "1"}, &AppSettings::binary},
      {{kMainSection, "editAddedOptions", "1"}, &AppSettings::editAddedOptions},
      {{kMainSection, "SnapToGrid", "0"}, &AppSettings::snapToGrid},
      {{kMainSection, "ShowRuler", "1"}, &AppSettings::showRuler},
      {{kMainSection, "OverlappingWindows", "0"}, &AppSettings::overlappingWindows},
      {{kMainSection, "PrintAssociatedFiles", "1"}, &AppSettings::printAssociatedFiles},
      {{kMainSection, "ApplyRules", "0"}, &AppSettings::applyRules},
      {{kMainSection, "Measure", "-1"}, &AppSettings::measure},
      {{kMainSection, "curDir", ""}, &AppSettings::curDir},
      {{kMainSection, "defTemplate", ""}, &AppSettings::defTemplate},
      {{kMainSection, "NewFileGameSystem", ""}, &AppSettings::newFileGameSystem},
      {{kMainSection, "CopyrightDelay", "0"}, &AppSettings::copyrightDelay},
      {{kPreferencesSection, "showButtonBar", "1"}, &AppSettings::showButtonBar},
      {{kPreferencesSection, "showStatusBar", "1"}, &AppSettings::showStatusBar},
      {{kPreferencesSection, "showTipWindow", "1"}, &AppSettings::showTipWindow},
      {{kPreferencesSection, "ShowRules", "1"}, &AppSettings::showRules},
      {{kPreferencesSection, "ConfirmMultipleDeletions", "1"},
       &AppSettings::confirmMultipleDeletions},
      {{kPreferencesSection, "Short File Names", "0"}, &AppSettings::shortFileNames},
      {{kPreferencesSection, "ShowNamesOnly", "0"}, &AppSettings::showNamesOnly},
      {{kPreferencesSection, "CheckReq", "1"}, &AppSettings::checkReq},
      {{kPreferencesSection, "DisallowIfNotSatisfied", "0"}, &AppSettings::disallowIfNotSatisfied},
      {{kPreferencesSection, "NoBadValueDlg", "0"}, &AppSettings::noBadValueDlg},
      {{kPreferencesSection, "MakeBackups", "1"}, &AppSettings::makeBackups},
      {{kPreferencesSection, "ShowHourGlass", "1"}, &AppSettings::showHourGlass},
      {{kPreferencesSection, "AskForFilters", "1"}, &AppSettings::askForFilters},
      {{kPreferencesSection, "UseFractions", "1"}, &AppSettings::useFractions},
      {{kPreferencesSection, "setDlgBGColor", "0"}, &AppSettings::setDlgBGColor},
      {{kPreferencesSection, "DlgBGColor", "-1"}, &AppSettings::dlgBGColor},
      {{kPreferencesSection, "Editor", ""}, &AppSettings::editor},
  };
  return table;
}

const Field* findField(std::string_view section, std::string_view key) {
  for (const Field& field : fields()) {
    if (equalsIgnoringCase(field.setting.section, section) &&
        equalsIgnoringCase(field.setting.key, key)) {
      return &field;
    }
  }
  return nullptr;
}

template <typename... Ts>
struct Overloaded : Ts... {
  using Ts::operator()...;
};
template <typename... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

}  // namespace

AppSettings AppSettings::load(const Settings& settings, const fs::path& programDir) {
  AppSettings app;
  for (const Field& field : fields()) {
    // Plain names rather than structured bindings, which lambdas may not capture in every
    // compiler this project builds with.
    const std::string_view section = field.setting.section;
    const std::string_view key = field.setting.key;
    const std::string_view defaultText = field.setting.defaultText;
    std::visit(Overloaded{
                   [&](std::string AppSettings::*m) {
                     app.*m = settings.getString(section, key, defaultText);
                   },
                   [&](long AppSettings::*m) {
                     app.*m = settings.getInt(section, key, leadingInteger(defaultText));
                   },
                   [&](bool AppSettings::*m) {
                     app.*m = settings.getInt(section, key, leadingInteger(defaultText)) != 0;
                   },
                   [&](std::optional<WindowRect> AppSettings::*m) {
                     app.*m = parseWindowRect(settings.getString(section, key, defaultText));
                   },
                   [&](fs::path AppSettings::*m) {
                     std::string text = settings.getString(section, key, defaultText);
                     app.*m = text.empty() ? defaultDataDirectory(programDir) : fs::path(text);
                   },
               },
               field.member);
  }
  if (app.setDlgBGColor == 0) app.dlgBGColor = kDefaultDialogColor;
  return app;
}

std::optional<std::string> AppSettings::valueText(std::string_view section,
                                                  std::string_view key) const {
  const Field* field = findField(section, key);
  if (!field) return std::nullopt;
  return std::visit(Overloaded{
                        [&](std::string AppSettings::*m) { return this->*m; },
                        [&](long AppSettings::*m) { return strprintf("%ld", this->*m); },
                        [&](bool AppSettings::*m) { return std::string(this->*m ? "1" : "0"); },
                        [&](std::optional<WindowRect> AppSettings::*m) {
                          const std::optional<WindowRect>& rect = this->*m;
                          return rect ? formatWindowRect(*rect) : std::string();
                        },
                        [&](fs::path AppSettings::*m) { return (this->*m).string(); },
                    },
                    field->member);
}

void AppSettings::saveAtExit(Settings& settings, bool maximizedNow) const {
  static const SettingDefault order[] = {
      {kMainSection, "screenPos", ""},
      {kMainSection, "OverlappingWindows", ""},
      {kMainSection, "selectItemDlgRect", ""},
      {kMainSection, "maximized", ""},
      {kMainSection, "Measure", ""},
      {kMainSection, "SnapToGrid", ""},
      {kMainSection, "ShowRuler", ""},
      {kMainSection, "gameSystem", ""},
      {kPreferencesSection, "CheckReq", ""},
      {kPreferencesSection, "ShowNamesOnly", ""},
      {kMainSection, "curDir", ""},
  };
  for (const SettingDefault& entry : order) {
    if (entry.key == "screenPos" && maximizedNow) continue;
    std::string text = entry.key == "maximized" ? std::string(maximizedNow ? "1" : "0")
                                                : valueText(entry.section, entry.key).value_or("");
    settings.setString(entry.section, entry.key, text);
  }
}

std::string AppSettings::effectiveEditor() const {
  std::string name = trim(editor);
  if (equalsIgnoringCase(name, "notepad.exe")) return std::string();
  return name;
}

const std::vector<SettingDefault>& settingDefaults() {
  static const std::vector<SettingDefault> table = [] {
    std::vector<SettingDefault> rows;
    for (const Field& field : fields())
      rows.push_back(field.setting);
    return rows;
  }();
  return table;
}

}  // namespace zv
