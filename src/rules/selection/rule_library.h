#pragma once
// The selection rules of every game system: the `.rules` files found under the data directory's
// "Rules/<game system>" folders, each an INI file of a [Configuration] section (its game system),
// a [Rulesets] section (named sets of rules, "rule" or "file:rule" separated by ";"), a
// [DefaultValues] section and one section per rule. The editing operations keep the files and
// these tables in step.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "rules/selection/rule.h"

namespace zv {

/// The rule set that stands for no rules.
inline constexpr std::string_view kNoRuleSet = "(None)";
/// The rule set that stands for every rule of a file.
inline constexpr std::string_view kWholeFileRuleSet = "whole-file";
/// The folder of the data directory that holds a folder of rule files per game system.
inline constexpr std::string_view kRulesDirectory = "Rules";

/// A named set of rules: its entries, each "rule" or "file:rule".
struct RuleSetDef {
  std::string name;
  std::string list;  ///< the entries as written, separated by ";"
  std::vector<std::string> entries() const;
};

/// One rule file as it was read or last written.
struct RuleFile {
  std::filesystem::path path;
  std::string shortName;   ///< the file name, "Campaign.rules"
  std::string gameSystem;  ///< [Configuration] GameSystem
  std::vector<RuleSetDef> ruleSets;
  std::vector<std::pair<std::string, std::string>> defaultValues;  ///< [DefaultValues]
  std::vector<std::unique_ptr<Rule>> rules;                        ///< in section order

  Rule* findRule(std::string_view name) const;
  const RuleSetDef* findRuleSet(std::string_view name) const;
  /// True when `name` is the file's short name with or without its ".rules".
  bool isNamed(std::string_view name) const;
};

class RuleLibrary {
 public:
  RuleLibrary() = default;
  RuleLibrary(const RuleLibrary&) = delete;
  RuleLibrary& operator=(const RuleLibrary&) = delete;

  /// The folder where a game system's rule files are sought and new ones made:
  /// "<dataDir>/Rules/<gameSystem>".
  void setDataDir(std::filesystem::path dataDir) { dataDir_ = std::move(dataDir); }
  std::filesystem::path directoryOf(std::string_view gameSystem) const;

  /// Reads a rule file for a game system (the one its [Configuration] names, else
  /// `gameSystem`). A file that can't be read is skipped (false). A rule without Type, Value and
  /// Description, or of an unknown Type, isn't read; a rule whose name another file of the game
  /// system already holds shows "The rule %s is duplicated in the file %s" ("Duplicate Rule")
  /// and isn't read. A file read again replaces its earlier reading.
  bool readRuleFile(std::string_view gameSystem, const std::filesystem::path& path);
  /// The same for the text of a rule file that stands at `path`.
  void readRuleText(std::string_view gameSystem, const std::filesystem::path& path,
                    std::string_view text);

  /// The start-up scan: every "*.rules" of each folder "<dataDir>/Rules/<game system>", in name
  /// order. Returns how many files were read.
  int scanRuleFiles(const std::filesystem::path& dataDir);

  /// The rule files of a game system, in the order read.
  std::vector<RuleFile*> filesOf(std::string_view gameSystem) const;
  /// The rule file of that name ("Campaign" or "Campaign.rules") of the game system; null if none.
  RuleFile* findFile(std::string_view gameSystem, std::string_view name) const;
  /// The first rule of that name among the game system's files; null if none.
  Rule* findRule(std::string_view gameSystem, std::string_view name) const;
  /// The rule an entry names: "file:rule", or "rule" in `from`'s file first, then in any file.
  Rule* resolve(std::string_view gameSystem, std::string_view reference,
                const RuleFile* from) const;
  /// The file a rule was read from; null if it isn't one of the library's.
  RuleFile* fileOf(const Rule& rule) const;

  /// The file new rules of a game system go to when none is chosen: "<gameSystem>.rules" in
  /// its folder, made (in memory, empty) when it doesn't exist yet.
  RuleFile& defaultFile(std::string_view gameSystem);

  /// Writes a rule into a file and the tables (a new rule, or one of that name replaced when
  /// `replacing`). Refuses, with its box: a rule of another game system than the file's ("The
  /// file %s uses the %s game system. This rule uses %s and cannot be written into this file.",
  /// "Incompatible Game System"); a name, Type, Value or Description left empty ("All fields in
  /// the rule must have a value", "Missing Value"); a new rule whose name the game system already
  /// has ("A rule by the name of '%s' already exist", "Duplicate Rule Name").
  bool writeRule(std::string_view gameSystem, RuleFile& file, const Rule& rule, bool replacing);
  /// Takes a rule out of its file and the tables; false when the file has no such rule or can't
  /// be written.
  bool deleteRule(RuleFile& file, std::string_view name);

  /// Checks a new rule set's name: "The rule set name %s is not allowed. The characters =, (,
  /// ~, \ and ; are illegal." or "The rule set name %s is already defined." ("Name Already
  /// Defined"). True when it may be used.
  bool checkRuleSetName(const RuleFile& file, std::string_view name) const;
  /// Adds a rule set (or changes the entries of one when `replacing`) in the file and the tables.
  bool writeRuleSet(RuleFile& file, std::string_view name, std::string_view list, bool replacing);
  /// Asks "Do you want to delete the rule set '%s'?" ("Delete Rule Set?") and on Yes takes the
  /// set out of the file. "(None)" and "whole-file" give "This rule set cannot be deleted."
  /// ("Cannot Delete"). True when it was deleted.
  bool deleteRuleSet(RuleFile& file, std::string_view name);
  /// Stores a value the user set, "name=value" of [DefaultValues].
  bool setDefaultValue(RuleFile& file, std::string_view name, std::string_view value);

 private:
  /// Writes the file's text with `change` applied to what stands on disk, so that comments and
  /// unknown entries stay; false after a message when it can't be written.
  template <typename Change>
  bool updateFile(RuleFile& file, Change change);
  void addRuleFile(std::string_view gameSystem, const std::filesystem::path& path,
                   const IniFile& ini);

  std::filesystem::path dataDir_;
  std::vector<std::unique_ptr<RuleFile>> files_;
};

/// The process-wide rule library, filled by the start-up scan of the data directory.
RuleLibrary& selectionRules();

}  // namespace zv
