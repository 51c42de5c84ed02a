#pragma once
// The option tree of a game system: groups (`list`, `ulist`) holding options and further groups.
// At each level the entries stay sorted by name, ignoring case, and groups of one name merge.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/option.h"

namespace zv {

struct OptionTreeEntry {
  int groupKind = 0;  ///< the keyword id of `list` or `ulist`; 0 for an option
  std::string name;   ///< the group's name, or the option's
  int depth = 0;
  std::int32_t sourceId = 0;       ///< the data sheet of an option
  std::unique_ptr<Option> option;  ///< set for an option
  std::vector<OptionTreeEntry> entries;

  bool isGroup() const { return groupKind != 0; }
};

using OptionTree = std::vector<OptionTreeEntry>;

/// Puts the entry behind those that aren't greater than it, ignoring case. Returns it.
OptionTreeEntry& insertOptionEntry(OptionTree& level, OptionTreeEntry entry);
/// The group of that name at the level (ignoring case), created in sorted place when new.
OptionTreeEntry& findOrAddOptionGroup(OptionTree& level, int groupKind, const std::string& name,
                                      int depth);

}  // namespace zv
