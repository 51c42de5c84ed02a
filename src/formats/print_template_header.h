#pragma once
// The quick header reader of print templates (.prt): enough to recognise one and to tell its game
// system, level and description without reading the whole template.

#include <filesystem>
#include <optional>
#include <string>

namespace zv {

inline constexpr uint32_t kPrintTemplateMagic = 0x56239921;

struct PrintTemplateHeader {
  std::string gameSystem;
  int level = 0;
  int version = 0;
  std::string description;
};

/// Reads records from the start of the file while they are the magic, the version, the game
/// system, the level or the description. Nullopt when the file can't be read, the magic is wrong,
/// the version is 4 or more, a value is cut short, or no known record comes first.
std::optional<PrintTemplateHeader> readPrintTemplateHeader(const std::filesystem::path& file);

}  // namespace zv
