#pragma once
// Type-ahead in a list window: the printable keys typed since the selection last changed find
// the next row whose name begins with them.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv::ui {

class TypeAhead {
 public:
  /// The most keys kept, and how much of a name is compared.
  static constexpr std::size_t kMostKeys = 15;
  static constexpr std::size_t kNameChars = 32;

  /// Adds a key (kept in lower case, at most kMostKeys) and looks for the first row after `caret`
  /// (going round past the end; from the top when there is no caret) whose name, its first
  /// kNameChars characters in lower case, begins with the keys. When none does, the keys start
  /// again from this one alone and the search is repeated. nullopt when no row matches.
  std::optional<std::size_t> type(char key, const std::vector<std::string_view>& names,
                                  std::optional<std::size_t> caret);

  /// A change of the selection or the loss of the focus forgets the keys.
  void clear() { keys_.clear(); }
  const std::string& keys() const { return keys_; }

 private:
  std::optional<std::size_t> find(const std::vector<std::string_view>& names,
                                  std::optional<std::size_t> caret) const;

  std::string keys_;
};

}  // namespace zv::ui
