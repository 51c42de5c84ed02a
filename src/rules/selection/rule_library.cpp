#include "rules/selection/rule_library.h"

#include <algorithm>
#include <system_error>

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"

namespace zv {

namespace {

constexpr std::string_view kConfigurationSection = "Configuration";
constexpr std::string_view kRulesetsSection = "Rulesets";
constexpr std::string_view kDefaultValuesSection = "DefaultValues";
constexpr std::string_view kRulesExtension = ".rules";

bool isReservedSection(std::string_view name) {
  return equalsIgnoringCase(name, kConfigurationSection) ||
         equalsIgnoringCase(name, kRulesetsSection) ||
         equalsIgnoringCase(name, kDefaultValuesSection);
}

/// "true" (ignoring case) is true; anything else, and a missing key, false.
bool readFlag(const IniFile& ini, std::string_view section, std::string_view key) {
  const std::optional<std::string> text = ini.get(section, key);
  return text && equalsIgnoringCase(*text, "true");
}

/// The rule of a section, or null when it can't be read.
std::unique_ptr<Rule> readRule(const IniFile& ini, const std::string& section) {
  const std::optional<std::string> type = ini.get(section, "Type");
  const std::optional<std::string> value = ini.get(section, "Value");
  const std::optional<std::string> description = ini.get(section, "Description");
  if (!type || !value || !description) return nullptr;
  std::unique_ptr<Rule> rule = makeRule(*type);
  if (!rule) return nullptr;
  rule->name = section;
  rule->value = *value;
  rule->description = *description;
  rule->defaultValue = ini.get(section, "DefaultValue").value_or("");
  rule->duplicatesOnly = readFlag(ini, section, "DuplicatesOnly");
  rule->negated = readFlag(ini, section, "Not");
  return rule;
}

bool hasRulesExtension(const std::filesystem::path& path) {
  return equalsIgnoringCase(path.extension().string(), kRulesExtension);
}

/// The sorted entries of a directory that pass `keep`; empty when it can't be listed.
template <typename Keep>
std::vector<std::filesystem::path> listDirectory(const std::filesystem::path& dir, Keep keep) {
  std::vector<std::filesystem::path> found;
  std::error_code ec;
  for (std::filesystem::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
    if (keep(*it)) found.push_back(it->path());
  }
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    return compareIgnoringCase(a.filename().string(), b.filename().string()) < 0;
  });
  return found;
}

/// The folder of `parent` named `name` ignoring case, or `parent/name` when there is none.
std::filesystem::path childIgnoringCase(const std::filesystem::path& parent,
                                        std::string_view name) {
  for (const std::filesystem::path& entry :
       listDirectory(parent, [](const auto& e) { return e.is_directory(); })) {
    if (equalsIgnoringCase(entry.filename().string(), name)) return entry;
  }
  return parent / std::string(name);
}

}  // namespace

std::vector<std::string> RuleSetDef::entries() const {
  std::vector<std::string> out;
  for (const std::string& part : split(list, ';')) {
    std::string entry = trim(part);
    if (!entry.empty()) out.push_back(std::move(entry));
  }
  return out;
}

Rule* RuleFile::findRule(std::string_view name) const {
  for (const auto& rule : rules) {
    if (equalsIgnoringCase(rule->name, name)) return rule.get();
  }
  return nullptr;
}

const RuleSetDef* RuleFile::findRuleSet(std::string_view name) const {
  for (const RuleSetDef& set : ruleSets) {
    if (equalsIgnoringCase(set.name, name)) return &set;
  }
  return nullptr;
}

bool RuleFile::isNamed(std::string_view name) const {
  const std::string wanted = trim(name);
  if (equalsIgnoringCase(shortName, wanted)) return true;
  return endsWithIgnoringCase(shortName, kRulesExtension) &&
         equalsIgnoringCase(
             std::string_view(shortName).substr(0, shortName.size() - kRulesExtension.size()),
             wanted);
}

std::filesystem::path RuleLibrary::directoryOf(std::string_view gameSystem) const {
  return childIgnoringCase(childIgnoringCase(dataDir_, kRulesDirectory), gameSystem);
}

bool RuleLibrary::readRuleFile(std::string_view gameSystem, const std::filesystem::path& path) {
  IniFile ini;
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec) || !ini.load(path)) return false;
  addRuleFile(gameSystem, path, ini);
  return true;
}

void RuleLibrary::readRuleText(std::string_view gameSystem, const std::filesystem::path& path,
                               std::string_view text) {
  IniFile ini;
  ini.parse(text);
  addRuleFile(gameSystem, path, ini);
}

void RuleLibrary::addRuleFile(std::string_view gameSystem, const std::filesystem::path& path,
                              const IniFile& ini) {
  auto file = std::make_unique<RuleFile>();
  file->path = path;
  file->shortName = path.filename().string();
  file->gameSystem =
      trim(ini.get(kConfigurationSection, "GameSystem").value_or(std::string(gameSystem)));
  if (file->gameSystem.empty()) file->gameSystem = std::string(gameSystem);

  // A file read again replaces its earlier reading.
  std::erase_if(files_, [&](const auto& known) { return known->path == path; });

  for (const std::string& key : ini.keys(kRulesetsSection)) {
    file->ruleSets.push_back(RuleSetDef{key, ini.get(kRulesetsSection, key).value_or("")});
  }
  for (const std::string& key : ini.keys(kDefaultValuesSection)) {
    file->defaultValues.emplace_back(key, ini.get(kDefaultValuesSection, key).value_or(""));
  }
  for (const std::string& section : ini.sections()) {
    if (isReservedSection(section)) continue;
    std::unique_ptr<Rule> rule = readRule(ini, section);
    if (!rule) continue;
    if (findRule(file->gameSystem, section) != nullptr || file->findRule(section) != nullptr) {
      showTitled(Severity::Warning, "Duplicate Rule",
                 strprintf("The rule %s is duplicated in the file %s", section, file->shortName));
      continue;
    }
    rule->file = file->shortName;
    file->rules.push_back(std::move(rule));
  }
  files_.push_back(std::move(file));
}

int RuleLibrary::scanRuleFiles(const std::filesystem::path& dataDir) {
  setDataDir(dataDir);
  int read = 0;
  const std::filesystem::path rulesDir = childIgnoringCase(dataDir, kRulesDirectory);
  for (const std::filesystem::path& systemDir :
       listDirectory(rulesDir, [](const auto& e) { return e.is_directory(); })) {
    const std::string gameSystem = systemDir.filename().string();
    for (const std::filesystem::path& path : listDirectory(systemDir, [](const auto& e) {
           return e.is_regular_file() && hasRulesExtension(e.path());
         })) {
      if (readRuleFile(gameSystem, path)) ++read;
    }
  }
  return read;
}

std::vector<RuleFile*> RuleLibrary::filesOf(std::string_view gameSystem) const {
  std::vector<RuleFile*> out;
  for (const auto& file : files_) {
    if (equalsIgnoringCase(file->gameSystem, gameSystem)) out.push_back(file.get());
  }
  return out;
}

RuleFile* RuleLibrary::findFile(std::string_view gameSystem, std::string_view name) const {
  for (RuleFile* file : filesOf(gameSystem)) {
    if (file->isNamed(name)) return file;
  }
  return nullptr;
}

Rule* RuleLibrary::findRule(std::string_view gameSystem, std::string_view name) const {
  for (RuleFile* file : filesOf(gameSystem)) {
    if (Rule* rule = file->findRule(name)) return rule;
  }
  return nullptr;
}

Rule* RuleLibrary::resolve(std::string_view gameSystem, std::string_view reference,
                           const RuleFile* from) const {
  const std::string entry = trim(reference);
  if (const std::size_t colon = entry.find(':'); colon != std::string::npos) {
    const RuleFile* file = findFile(gameSystem, std::string_view(entry).substr(0, colon));
    return file != nullptr ? file->findRule(trim(std::string_view(entry).substr(colon + 1)))
                           : nullptr;
  }
  if (from != nullptr) {
    if (Rule* rule = from->findRule(entry)) return rule;
  }
  return findRule(gameSystem, entry);
}

RuleFile* RuleLibrary::fileOf(const Rule& rule) const {
  for (const auto& file : files_) {
    for (const auto& own : file->rules) {
      if (own.get() == &rule) return file.get();
    }
  }
  return nullptr;
}

RuleFile& RuleLibrary::defaultFile(std::string_view gameSystem) {
  const std::string name = std::string(gameSystem) + std::string(kRulesExtension);
  if (RuleFile* file = findFile(gameSystem, name)) return *file;
  auto file = std::make_unique<RuleFile>();
  file->path = directoryOf(gameSystem) / name;
  file->shortName = name;
  file->gameSystem = std::string(gameSystem);
  files_.push_back(std::move(file));
  return *files_.back();
}

template <typename Change>
bool RuleLibrary::updateFile(RuleFile& file, Change change) {
  IniFile ini;
  std::error_code ec;
  const bool exists = std::filesystem::exists(file.path, ec);
  if (exists && !ini.load(file.path)) {
    showError(strprintf("The rule file %s cannot be read.", file.path.string()));
    return false;
  }
  if (!exists) {
    // A new file starts with its game system, in the line form of the program's files.
    ini.parse("[Configuration]\r\nGameSystem=" + file.gameSystem + "\r\n");
  }
  if (!change(ini)) return false;
  std::filesystem::create_directories(file.path.parent_path(), ec);
  if (!ini.save(file.path)) {
    showError(strprintf("The rule file %s cannot be written.", file.path.string()));
    return false;
  }
  return true;
}

bool RuleLibrary::writeRule(std::string_view gameSystem, RuleFile& file, const Rule& rule,
                            bool replacing) {
  if (!file.gameSystem.empty() && !equalsIgnoringCase(file.gameSystem, gameSystem)) {
    showTitled(Severity::Error, "Incompatible Game System",
               strprintf("The file %s uses the %s game system. This rule uses %s and cannot be "
                         "written into this file.",
                         file.shortName, file.gameSystem, std::string(gameSystem)));
    return false;
  }
  if (trim(rule.name).empty() || trim(rule.value).empty() || trim(rule.description).empty()) {
    showTitled(Severity::Error, "Missing Value", "All fields in the rule must have a value");
    return false;
  }
  Rule* existing = file.findRule(rule.name);
  if (!replacing || existing == nullptr) {
    if (findRule(gameSystem, rule.name) != nullptr) {
      showTitled(Severity::Error, "Duplicate Rule Name",
                 strprintf("A rule by the name of '%s' already exist", rule.name));
      return false;
    }
  }
  const bool written = updateFile(file, [&](IniFile& ini) {
    if (existing != nullptr) ini.removeSection(existing->name);
    if (rule.write(ini)) return true;
    showError(strprintf("The rule name %s cannot be written.", rule.name));
    return false;
  });
  if (!written) return false;
  std::unique_ptr<Rule> stored = makeRule(rule.typeWord());
  stored->assign(rule);
  stored->file = file.shortName;
  if (existing != nullptr) {
    stored->active = existing->active;
    for (auto& slot : file.rules) {
      if (slot.get() == existing) slot = std::move(stored);
    }
  } else {
    file.rules.push_back(std::move(stored));
  }
  return true;
}

bool RuleLibrary::deleteRule(RuleFile& file, std::string_view name) {
  Rule* rule = file.findRule(name);
  if (rule == nullptr) return false;
  const std::string section = rule->name;
  if (!updateFile(file, [&](IniFile& ini) {
        ini.removeSection(section);
        return true;
      })) {
    return false;
  }
  std::erase_if(file.rules, [&](const auto& own) { return own.get() == rule; });
  return true;
}

bool RuleLibrary::checkRuleSetName(const RuleFile& file, std::string_view name) const {
  const std::string text(name);
  if (trim(text).empty() || text.find_first_of("=(~\\;") != std::string::npos) {
    showError(
        strprintf("The rule set name %s is not allowed. The characters =, (, ~, \\ and ; "
                  "are illegal.",
                  text));
    return false;
  }
  if (file.findRuleSet(text) != nullptr || equalsIgnoringCase(trim(text), kWholeFileRuleSet)) {
    showTitled(Severity::Error, "Name Already Defined",
               strprintf("The rule set name %s is already defined.", text));
    return false;
  }
  return true;
}

bool RuleLibrary::writeRuleSet(RuleFile& file, std::string_view name, std::string_view list,
                               bool replacing) {
  const RuleSetDef* existing = file.findRuleSet(name);
  if ((!replacing || existing == nullptr) && !checkRuleSetName(file, name)) return false;
  const std::string setName = existing != nullptr ? existing->name : trim(name);
  if (!updateFile(file, [&](IniFile& ini) { return ini.set(kRulesetsSection, setName, list); })) {
    return false;
  }
  for (RuleSetDef& set : file.ruleSets) {
    if (equalsIgnoringCase(set.name, setName)) {
      set.list = std::string(list);
      return true;
    }
  }
  file.ruleSets.push_back(RuleSetDef{setName, std::string(list)});
  return true;
}

bool RuleLibrary::deleteRuleSet(RuleFile& file, std::string_view name) {
  if (equalsIgnoringCase(trim(name), kNoRuleSet) ||
      equalsIgnoringCase(trim(name), kWholeFileRuleSet)) {
    showTitled(Severity::Warning, "Cannot Delete", "This rule set cannot be deleted.");
    return false;
  }
  const RuleSetDef* set = file.findRuleSet(name);
  if (set == nullptr) return false;
  const std::string setName = set->name;
  if (askQuestion("Delete Rule Set?",
                  strprintf("Do you want to delete the rule set '%s'?", setName),
                  ButtonSet::YesNo) != Button::Yes) {
    return false;
  }
  if (!updateFile(file, [&](IniFile& ini) {
        ini.remove(kRulesetsSection, setName);
        return true;
      })) {
    return false;
  }
  std::erase_if(file.ruleSets,
                [&](const RuleSetDef& known) { return equalsIgnoringCase(known.name, setName); });
  return true;
}

bool RuleLibrary::setDefaultValue(RuleFile& file, std::string_view name, std::string_view value) {
  if (!updateFile(file,
                  [&](IniFile& ini) { return ini.set(kDefaultValuesSection, name, value); })) {
    return false;
  }
  for (auto& entry : file.defaultValues) {
    if (equalsIgnoringCase(entry.first, name)) {
      entry.second = std::string(value);
      return true;
    }
  }
  file.defaultValues.emplace_back(std::string(name), std::string(value));
  return true;
}

RuleLibrary& selectionRules() {
  static RuleLibrary library;
  return library;
}

}  // namespace zv
