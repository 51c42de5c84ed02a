#pragma once
// An INI file with the semantics of private profile files: sections and keys compare ignoring
// case, keys may hold spaces and backslashes, values are taken verbatim (no escapes, no lists).
// Comments, blank lines and lines it does not understand are kept in place, in their order, so a
// file written by a user survives a change of one entry.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

class IniFile {
 public:
  /// Reads a file. A missing file gives an empty one and true; false when it exists but can't be
  /// read (the contents are then empty).
  bool load(const std::filesystem::path& path);
  /// Replaces the contents by this text.
  void parse(std::string_view text);
  /// The whole file as it would be written.
  std::string text() const;

  /// Writes the file atomically: a temporary file in the same directory, then a rename over the
  /// target, so a failure leaves the old file as it was. Returns false on failure.
  bool save(const std::filesystem::path& path) const;

  /// The value of the first entry of that key in a section of that name; surrounding blanks are
  /// removed, and so is a matching pair of surrounding double quotes.
  std::optional<std::string> get(std::string_view section, std::string_view key) const;
  /// Changes the first entry in place, or adds one at the end of the section (the section at the
  /// end of the file). A value with surrounding blanks or quotes is written between quotes so that
  /// it reads back as given. False, with nothing changed, for a name the form cannot hold (an empty
  /// key, a key with "=", a section with "]", or a line break anywhere).
  bool set(std::string_view section, std::string_view key, std::string_view value);
  /// Removes every entry of that key in sections of that name; true if one was there.
  bool remove(std::string_view section, std::string_view key);
  /// Removes every section of that name with all its lines; true if one was there.
  bool removeSection(std::string_view section);

  /// Section names in file order (each name once), and the keys of a section.
  std::vector<std::string> sections() const;
  std::vector<std::string> keys(std::string_view section) const;

  bool empty() const { return lines_.empty(); }

 private:
  enum class Kind { Other, Section, Entry };
  struct Line {
    std::string raw;
    Kind kind = Kind::Other;
    std::string name;  ///< the section name or the key, trimmed
  };

  static Line classify(std::string raw);
  /// Calls `visit(index, line)` for each entry line in sections named `section`.
  template <typename Visit>
  void forEachEntryIn(std::string_view section, Visit visit) const;

  std::vector<Line> lines_;
  bool crlf_ = false;
};

}  // namespace zv
