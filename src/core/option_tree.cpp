// Inserting into the option tree of a game system.

#include "core/option_tree.h"

#include <algorithm>

#include "core/text.h"

namespace zv {

OptionTreeEntry& insertOptionEntry(OptionTree& level, OptionTreeEntry entry) {
  auto place = std::upper_bound(level.begin(), level.end(), entry.name,
                                [](const std::string& name, const OptionTreeEntry& existing) {
                                  return compareIgnoringCase(name, existing.name) < 0;
                                });
  return *level.insert(place, std::move(entry));
}

OptionTreeEntry& findOrAddOptionGroup(OptionTree& level, int groupKind, const std::string& name,
                                      int depth) {
  for (OptionTreeEntry& entry : level)
    if (entry.isGroup() && equalsIgnoringCase(entry.name, name)) return entry;
  OptionTreeEntry group;
  group.groupKind = groupKind;
  group.name = name;
  group.depth = depth;
  return insertOptionEntry(level, std::move(group));
}

}  // namespace zv
