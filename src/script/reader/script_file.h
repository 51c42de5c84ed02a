#pragma once
// Script files: ".scp" scripts run by the user from the Data menu, ".cnv" conversion scripts and
// ".script" scripts of templates and documents. Every script lies in the data directory and is
// named by its bare file name. All have the same header: the word "Conversion script v. 1", then
// `gamesystem`, `title`, `convlevels` (and a menu definition, passed over here) in any order.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "script/reader/script_reader.h"

namespace zv::script {

/// The first word of every script file, compared ignoring case.
inline constexpr std::string_view kScriptSignature = "Conversion script v. 1";
inline constexpr std::size_t kGameSystemNameLength = 24;
inline constexpr std::size_t kScriptTitleLength = 64;

struct ScriptHeader {
  std::string sourceSystem;  ///< empty when the header names no game systems
  std::string destSystem;
  bool hasGameSystems = false;
  std::string title;
  int sourceLevel = 0;  ///< `convlevels`
  int destLevel = 0;
  bool hasMenu = false;  ///< a `menuitem` or `submenu` stood in the header
};

/// Reads the script `name` (a bare file name) from the data directory, whole. Null after the
/// plain box "Conversion script %s doesn't exist", "Can't open script file %s" or "Read error on
/// conversion script %s".
std::shared_ptr<const SourceText> loadScriptFile(const std::filesystem::path& dataDir,
                                                 std::string_view name);

/// Reads the header from the start of the reader's text and leaves the reader at the first
/// statement of the body. False after "The file %s is not formatted as a script.", "Game system
/// string expected", "Script title expected." or a token error.
bool readScriptHeader(ScriptReader& reader, ScriptHeader& header);

/// A script of the data directory as lists show it.
struct ScriptListing {
  std::string fileName;  ///< the bare file name, as runs take it
  ScriptHeader header;
  /// The header's title, or the file name when it has none.
  std::string displayTitle() const { return header.title.empty() ? fileName : header.title; }
};

/// The scripts of the data directory with the extension (".scp"), whose header reads without
/// error and whose source game system is `gameSystem` (ignoring case; any when empty), sorted by
/// title ignoring case. Nothing is shown for files that aren't scripts.
std::vector<ScriptListing> listScripts(const std::filesystem::path& dataDir,
                                       std::string_view extension, std::string_view gameSystem);

}  // namespace zv::script
